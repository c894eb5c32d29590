#include <gtest/gtest.h>

#include <QImage>

#include "AppHarness.h"
#include "app/App.h"
#include "runtime/ui/Picture.h"
#include "support/RecordingUIServices.h"
#include "support/ToolkitEnvironment.h"

namespace vx {
namespace {

TEST(Extract, cancelledDialog_returnsTrueAndDoesNothingElse) {
    test::StartApplication();
    test::RecordingUIServices ui;
    test::InstalledUIServices installed(ui);

    EXPECT_TRUE(App::_Instance()->_mnuExtract_Action());

    ASSERT_EQ(ui.openRequests.size(), 1u);
    EXPECT_EQ(ui.openRequests[0].promptText, "Enter a filename");
    EXPECT_EQ(ui.openRequests[0].title, "Open App file");
    EXPECT_EQ(ui.openRequests[0].filter, "vxpk");
    EXPECT_TRUE(ui.launchedPaths.empty());
    EXPECT_TRUE(ui.messages.empty());
}

TEST(Extract, withAllWindowsClosed_stillAsksForAPackage) {
    test::StartApplication();
    for (const Ref<Window>& window : _OpenWindows()) {
        window->Close();
    }
    test::RecordingUIServices ui;
    test::InstalledUIServices installed(ui);

    test::Choose("mnuExtract");

    EXPECT_EQ(ui.openRequests.size(), 1u);
}

TEST(App, accessor_checksTheClassOfTheApplicationObject) {
    _RuntimeRegisterAppObject(New<Application>());
    EXPECT_THROW(App::_Instance(), IllegalCastException);
    _RuntimeRegisterAppObject(nullptr);
    EXPECT_EQ(App::_Instance(), nullptr);
}

TEST(PackageIcon, storedWithTheApp_isASquareOf1067WithAMarkInTheMiddle) {
    Ref<Picture> icon = Picture::_OpenFromApp("icon_vxpk_file");
    ASSERT_NE(icon, nullptr);
    EXPECT_EQ(icon->Width(), 1067);
    EXPECT_EQ(icon->Height(), 1067);
    EXPECT_EQ(qAlpha(icon->_Image().pixel(533, 600)), 255) << "drawn where the mark stands";
    EXPECT_EQ(qAlpha(icon->_Image().pixel(5, 5)), 0) << "transparent outside the sheet";
}

}  // namespace
}  // namespace vx
