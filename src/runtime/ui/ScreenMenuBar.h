#pragma once

#include "runtime/text/String.h"

namespace vx {

// Where the desktop keeps the application's menu bar at the top of the screen,
// with or without a window (the toolkit's platform "cocoa"), the application
// stays when its last window closes and its menu bar keeps offering its
// commands; elsewhere the menu bar lives in the windows, and closing the last
// window quits, as users there expect.
bool _MenuBarOutlivesWindows(const String& platformName);

// Applies the choice to the running toolkit; decided once when it comes up.
// While on, the application's menu bar stands in a menu bar of no window.
void _KeepRunningWithoutWindows(bool keep);
bool _RunsWithoutWindows();

}  // namespace vx
