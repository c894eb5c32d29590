#include "runtime/ui/ScreenMenuBar.h"

#include <QApplication>

namespace vx {

namespace {
bool runsWithoutWindows = false;
}  // namespace

bool _MenuBarOutlivesWindows(const String& platformName) {
    return platformName == "cocoa";
}

void _KeepRunningWithoutWindows(bool keep) {
    runsWithoutWindows = keep;
    QApplication::setQuitOnLastWindowClosed(!keep);
}

bool _RunsWithoutWindows() {
    return runsWithoutWindows;
}

}  // namespace vx
