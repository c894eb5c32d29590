#include "runtime/ui/UnhandledException.h"

#include <QApplication>
#include <QMessageBox>
#include <cstdio>
#include <typeinfo>

#include "runtime/ui/RuntimeClassName.h"
#include "runtime/ui/internal/QtText.h"

namespace vx {

namespace {

void DefaultReport(const RuntimeException& failure) {
    const String text = UnhandledExceptionText(failure);
    std::fprintf(stderr, "%s\n", text.c_str());
    if (QApplication::instance() != nullptr) {
        QMessageBox::critical(nullptr, QApplication::applicationDisplayName(), ToQString(text));
    }
}

UnhandledExceptionReport& InstalledReport() {
    static UnhandledExceptionReport report = DefaultReport;
    return report;
}

}  // namespace

UnhandledExceptionReport SetUnhandledExceptionReport(UnhandledExceptionReport report) {
    UnhandledExceptionReport previous = std::move(InstalledReport());
    InstalledReport() = report ? std::move(report) : DefaultReport;
    return previous;
}

void RuntimeUnhandledException(const RuntimeException& failure) {
    InstalledReport()(failure);
}

String UnhandledExceptionText(const RuntimeException& failure) {
    String text =
        "An exception of class " + RuntimeClassName(typeid(failure)) + " was not handled.";
    if (!failure.Message.isEmpty()) {
        text = text + "\n\nMessage: " + failure.Message;
    }
    return text;
}

}  // namespace vx
