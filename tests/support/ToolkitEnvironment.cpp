#include "support/ToolkitEnvironment.h"

#include <gtest/gtest.h>

#include <QTest>
#include <QWidget>
#include <typeinfo>

#include "runtime/ui/RuntimeClassName.h"
#include "runtime/ui/RuntimeLifecycle.h"

namespace vx::test {

namespace {

void FailTheTest(const RuntimeException& failure) {
    ADD_FAILURE() << "uncaught " << UnhandledExceptionText(failure).c_str();
}

// Brings the toolkit up once per test program, before the first test, and
// takes down what a test left (windows, the application object) after each.
class ToolkitEnvironment : public ::testing::Environment {
public:
    void SetUp() override {
        _RuntimeInitExternalClasses();
        SetUnhandledExceptionReport(FailTheTest);
    }
};

class Cleanup : public ::testing::EmptyTestEventListener {
    void OnTestEnd(const ::testing::TestInfo&) override { RuntimePerformFinalizers(); }
};

[[maybe_unused]] const bool registered = [] {
    ::testing::AddGlobalTestEnvironment(new ToolkitEnvironment());
    ::testing::UnitTest::GetInstance()->listeners().Append(new Cleanup());
    return true;
}();

}  // namespace

ReportRecorder::ReportRecorder()
    : previous_(SetUnhandledExceptionReport([this](const RuntimeException& failure) {
          reports.push_back({RuntimeClassName(typeid(failure)), failure.Message});
      })) {}

ReportRecorder::~ReportRecorder() {
    SetUnhandledExceptionReport(previous_);
}

bool ShowActive(QWidget* window) {
    window->show();
    window->activateWindow();
    return QTest::qWaitForWindowActive(window);
}

}  // namespace vx::test

// The desktop's font library keeps caches for the life of the process, which
// LeakSanitizer would otherwise report at the end of every GUI test.
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libfontconfig.so\n";
}
