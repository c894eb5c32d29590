#include <gtest/gtest.h>

#include "runtime/ui/ScreenMenuBar.h"

namespace vx {
namespace {

TEST(ScreenMenuBar, onlyTheDesktopWithAMenuBarAtTheTopOfTheScreen_keepsItWithoutWindows) {
    EXPECT_TRUE(_MenuBarOutlivesWindows("cocoa"));
    for (const char* platform : {"xcb", "wayland", "windows", "offscreen", ""}) {
        EXPECT_FALSE(_MenuBarOutlivesWindows(platform)) << platform;
    }
}

}  // namespace
}  // namespace vx
