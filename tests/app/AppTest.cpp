#include <gtest/gtest.h>

#include "AppHarness.h"
#include "app/App.h"
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

TEST(App, accessor_checksTheClassOfTheApplicationObject) {
    _RuntimeRegisterAppObject(New<Application>());
    EXPECT_THROW(App::_Instance(), IllegalCastException);
    _RuntimeRegisterAppObject(nullptr);
    EXPECT_EQ(App::_Instance(), nullptr);
}

}  // namespace
}  // namespace vx
