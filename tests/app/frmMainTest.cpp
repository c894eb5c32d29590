#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QTest>
#include <QWidget>
#include <ostream>
#include <string>
#include <vector>

#include "WizardHarness.h"
#include "runtime/ui/Picture.h"
#include "support/ToolkitEnvironment.h"

namespace vx {
namespace {

using test::WizardTest;

// One step a user takes on the wizard.
enum class Step {
    BrowseFolder,
    CancelFolder,
    BrowseFile,
    CancelFile,
    Continue,
    Help,
    ClearName,
    ClearMain,
    TypeInTitle,
};

struct StateCase {
    const char* name;
    std::vector<Step> steps;
    int64_t page;
    int64_t lastPanel;
    bool buildEnabled;
    int64_t beeps;
};
// Failures name the case rather than dump its bytes.
void PrintTo(const StateCase& testCase, std::ostream* out) {
    *out << testCase.name;
}

class WizardStates : public WizardTest, public ::testing::WithParamInterface<StateCase> {
protected:
    void Take(Step step) {
        switch (step) {
            case Step::BrowseFolder:
                return BrowseFolder(wizard, scratch.item(scratch.makeFolder("site")));
            case Step::CancelFolder:
                return BrowseFolder(wizard, nullptr);
            case Step::BrowseFile:
                return BrowseFile(wizard, scratch.item("out.vxpk"));
            case Step::CancelFile:
                return BrowseFile(wizard, nullptr);
            case Step::Continue:
                return wizard->cmdNEXT()->Push();
            case Step::Help:
                return wizard->cmdHelp()->Push();
            case Step::ClearName:
                return wizard->txtName()->Text("");
            case Step::ClearMain:
                return wizard->txtMain()->Text("");
            case Step::TypeInTitle:
                wizard->txtTitle()->Text("");
                return QTest::keyClicks(wizard->txtTitle()->_Widget(), "x");
        }
    }
};

TEST_P(WizardStates, stepsFromANewWindow_endInTheExpectedState) {
    for (Step step : GetParam().steps) {
        Take(step);
    }
    EXPECT_EQ(wizard->PagePanel1()->Value(), GetParam().page);
    EXPECT_EQ(wizard->lastPanel, GetParam().lastPanel);
    EXPECT_EQ(wizard->cmdBuild()->Enabled(), GetParam().buildEnabled);
    EXPECT_EQ(ui.beeps, GetParam().beeps);
}

using S = Step;
INSTANTIATE_TEST_SUITE_P(
    frmMain, WizardStates,
    ::testing::Values(
        StateCase{"opened", {}, 0, 0, false, 0},
        StateCase{"aboutFromSettings", {S::Help}, 2, 0, false, 0},
        StateCase{"aboutAndBackToSettings", {S::Help, S::Help}, 0, 0, false, 0},
        StateCase{"continueWithNothingChosen", {S::Continue}, 0, 0, false, 1},
        StateCase{"folderChosen", {S::BrowseFolder}, 0, 0, true, 0},
        StateCase{"fileChosen", {S::BrowseFile}, 0, 0, true, 0},
        StateCase{"folderCancelledWithEmptyPath", {S::BrowseFile, S::CancelFolder}, 0, 0, false, 0},
        StateCase{"folderCancelledWithPathSet", {S::BrowseFolder, S::CancelFolder}, 0, 0, true, 0},
        StateCase{"fileCancelledWithPathSet",
                  {S::BrowseFile, S::ClearName, S::CancelFile},
                  0,
                  0,
                  false,
                  0},
        StateCase{"onlyFolderThenContinue", {S::BrowseFolder, S::Continue}, 0, 0, true, 1},
        StateCase{
            "bothChosenThenContinue", {S::BrowseFolder, S::BrowseFile, S::Continue}, 1, 0, true, 0},
        StateCase{"aboutFromBuild",
                  {S::BrowseFolder, S::BrowseFile, S::Continue, S::Help},
                  2,
                  1,
                  true,
                  0},
        StateCase{"aboutAndBackToBuild",
                  {S::BrowseFolder, S::BrowseFile, S::Continue, S::Help, S::Help},
                  1,
                  1,
                  true,
                  0},
        StateCase{"aboutFromSettingsAfterBuildPageVisit",
                  {S::BrowseFolder, S::BrowseFile, S::Continue, S::Help, S::Help, S::Help},
                  2,
                  1,
                  true,
                  0},
        // Clearing the main file disables Build and Continue still goes on:
        // a build page whose only button is dead.
        StateCase{"deadEndAfterClearingMain",
                  {S::BrowseFolder, S::BrowseFile, S::ClearMain, S::Continue},
                  1,
                  0,
                  false,
                  0},
        StateCase{"clearedNameDisablesBuild",
                  {S::BrowseFolder, S::BrowseFile, S::ClearName},
                  0,
                  0,
                  false,
                  0},
        StateCase{"typingInTitleEnablesBuildAgain",
                  {S::BrowseFolder, S::BrowseFile, S::ClearName, S::TypeInTitle},
                  0,
                  0,
                  true,
                  0},
        StateCase{"continueStillRefusesAnEmptyName",
                  {S::BrowseFolder, S::BrowseFile, S::ClearName, S::TypeInTitle, S::Continue},
                  0,
                  0,
                  true,
                  1}),
    [](const auto& testCase) { return std::string(testCase.param.name); });

struct CheckCase {
    const char* name;
    bool folderChosen;
    bool fileChosen;
    const char* appName;
    const char* uid;
    const char* focusedAfter;  // the field that has the focus after the beep
};
// Failures name the case rather than dump its bytes.
void PrintTo(const CheckCase& testCase, std::ostream* out) {
    *out << testCase.name;
}

class ContinueChecks : public WizardTest, public ::testing::WithParamInterface<CheckCase> {};

TEST_P(ContinueChecks, failingCheck_beepsOnceAndMovesFocusOnlyToTypedFields) {
    const CheckCase& c = GetParam();
    if (c.folderChosen) {
        BrowseFolder(wizard, scratch.item(scratch.makeFolder("site")));
    }
    if (c.fileChosen) {
        BrowseFile(wizard, scratch.item("out.vxpk"));
    }
    wizard->txtName()->Text(c.appName);
    wizard->txtUID()->Text(c.uid);
    ASSERT_TRUE(test::ShowActive(wizard->_Widget()));
    wizard->txtVersion()->SetFocus();

    wizard->cmdNEXT()->Push();

    EXPECT_EQ(ui.beeps, 1);
    EXPECT_TRUE(ui.messages.empty());
    EXPECT_EQ(wizard->PagePanel1()->Value(), 0);
    ASSERT_NE(QApplication::focusWidget(), nullptr);
    EXPECT_EQ(QApplication::focusWidget()->objectName().toStdString(), c.focusedAfter);
}

INSTANTIATE_TEST_SUITE_P(
    frmMain, ContinueChecks,
    ::testing::Values(CheckCase{"noFolder", false, true, "My App", "a.b.c", "txtVersion"},
                      CheckCase{"noFile", true, false, "My App", "a.b.c", "txtVersion"},
                      CheckCase{"noName", true, true, "", "a.b.c", "txtName"},
                      CheckCase{"noUID", true, true, "My App", "", "txtUID"},
                      CheckCase{"neitherNameNorUID", true, true, "", "", "txtName"}),
    [](const auto& testCase) { return std::string(testCase.param.name); });

TEST_F(WizardTest, continueWithEverythingFilled_setsThePackerAndTheLabels) {
    BrowseFolder(wizard, scratch.item(scratch.makeFolder("site")));
    BrowseFile(wizard, scratch.item("out.vxpk"));
    // A single blank counts as a name.
    wizard->txtName()->Text(" ");

    wizard->cmdNEXT()->Push();

    EXPECT_EQ(ui.beeps, 0);
    EXPECT_EQ(wizard->PagePanel1()->Value(), 1);
    EXPECT_EQ(vxPacker::name, " ");
    EXPECT_EQ(vxPacker::uid, "com.example.myapp");
    EXPECT_EQ(wizard->lblBuilding()->Text(), "Ready to build your app...");
    EXPECT_EQ(wizard->lblMsg()->Text(), "...");
}

TEST_F(WizardTest, browse_offersTheTypeAndANameMadeFromTxtNameAtThatMoment) {
    const Ref<FolderItem> site = scratch.item(scratch.makeFolder("site"));
    BrowseFolder(wizard, site);
    wizard->txtName()->Text(" ");
    BrowseFile(wizard, scratch.item("out.vxpk"));
    wizard->txtName()->Text("");
    BrowseFile(wizard, nullptr);

    EXPECT_EQ(wizard->txtPath()->Text(), site->NativePath());
    EXPECT_EQ(vxPacker::folder, site);
    EXPECT_EQ(wizard->txtPathFile()->Text().bytes(), scratch.path("out.vxpk"));
    ASSERT_EQ(ui.saveRequests.size(), 2u);
    EXPECT_EQ(ui.saveRequests[0].filter, "Vantrelix App");
    EXPECT_EQ(ui.saveRequests[0].defaultName, " .vxpk");
    EXPECT_EQ(ui.saveRequests[1].defaultName, ".vxpk");
    // The cancelled second dialog left the chosen file in place.
    EXPECT_EQ(vxPacker::target->NativePath().bytes(), scratch.path("out.vxpk"));
}

TEST_F(WizardTest, controls_areCreatedInTheirOrderWithTheirIrregularitiesKept) {
    std::vector<std::string> names;
    for (const Ref<Control>& control : wizard->_Controls()) {
        names.emplace_back(control->Name().bytes());
    }
    EXPECT_EQ(names, (std::vector<std::string>{"PagePanel1",  "cmdSelectAppFolder",
                                               "txtPath",     "txtUID",
                                               "Label1",      "Label2",
                                               "Label3",      "lblBuilding",
                                               "lblMsg",      "cmdBuild",
                                               "cmdNEXT",     "cmdSelectAppFile",
                                               "txtPathFile", "Label4",
                                               "txtLog",      "Label6",
                                               "txtHelp",     "txtName",
                                               "Canvas1",     "opJSON",
                                               "Label7",      "txtWidth",
                                               "Label8",      "txtHeight",
                                               "Label9",      "txtTitle",
                                               "Label10",     "txtMain",
                                               "Label11",     "txtVersion",
                                               "Label12",     "txtCompany",
                                               "Label5",      "cmdHelp"}));

    EXPECT_EQ(wizard->Label8()->HelpTag(), "Initial window width");
    EXPECT_EQ(wizard->txtWidth()->HelpTag(), "");
    EXPECT_EQ(wizard->txtTitle()->Left(), 219);
    EXPECT_EQ(wizard->txtTitle()->Top(), wizard->Label9()->Top());
    EXPECT_EQ(wizard->txtWidth()->Mask(), "0#");
    EXPECT_EQ(wizard->txtWidth()->Text(), "600") << "the default text is kept past the mask";
    EXPECT_TRUE(wizard->cmdNEXT()->Default());
    EXPECT_TRUE(wizard->cmdBuild()->Default());
    EXPECT_TRUE(wizard->opJSON()->Value());
    EXPECT_FALSE(wizard->txtHelp()->ReadOnly());
    EXPECT_EQ(wizard->txtHelp()->Text(),
              "Use this utility to pack a web app for distribution using Vantrelix.\n\n"
              "The contents of the source folder will be packed into a single file that can be "
              "opened with Vantrelix.\n\n\n");
}

TEST_F(WizardTest, tabKey_walksTheSettingsFieldsInTheirTabOrder) {
    ASSERT_TRUE(test::ShowActive(wizard->_Widget()));
    wizard->txtUID()->SetFocus();
    std::vector<std::string> visited;
    for (int i = 0; i < 14; ++i) {
        visited.push_back(QApplication::focusWidget()->objectName().toStdString());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    EXPECT_EQ(visited, (std::vector<std::string>{"txtUID", "txtVersion", "txtName", "txtCompany",
                                                 "txtPath", "cmdSelectAppFolder", "txtPathFile",
                                                 "cmdSelectAppFile", "opJSON", "txtWidth",
                                                 "txtHeight", "txtTitle", "txtMain", "cmdNEXT"}));
}

TEST_F(WizardTest, returnKeyOnBuildPage_pressesNothingWhileBuildIsDisabled) {
    BrowseFolder(wizard, scratch.item(scratch.makeFolder("site")));
    BrowseFile(wizard, scratch.item("out.vxpk"));
    wizard->txtMain()->Text("");
    ASSERT_TRUE(test::ShowActive(wizard->_Widget()));
    QTest::keyClick(wizard->txtName()->_Widget(), Qt::Key_Return);
    ASSERT_EQ(wizard->PagePanel1()->Value(), 1) << "Return pressed Continue";

    QTest::keyClick(wizard->_Content(), Qt::Key_Return);

    EXPECT_FALSE(scratch.item("out.vxpk")->Exists());
    EXPECT_EQ(LogOf(wizard), "");
}

TEST_F(WizardTest, canvas_drawsThePackageIconScaledIntoItsSquare) {
    Ref<Picture> icon = Picture::_OpenFromApp("icon_vxpk_file");
    ASSERT_NE(icon, nullptr);
    ASSERT_GE(icon->Width(), 1067);

    const QImage drawn = wizard->Canvas1()->_Widget()->grab().toImage();

    ASSERT_EQ(drawn.size(), QSize(128, 128));
    // The same spot of the picture, 1067 pixels scaled down to 128.
    for (const QPoint spot : {QPoint(64, 100), QPoint(20, 64), QPoint(64, 64)}) {
        const QColor expected =
            icon->_Image().pixelColor(spot.x() * 1067 / 128, spot.y() * 1067 / 128);
        const QColor seen = drawn.pixelColor(spot);
        EXPECT_NEAR(seen.red(), expected.red(), 24) << spot.x() << "," << spot.y();
        EXPECT_NEAR(seen.green(), expected.green(), 24) << spot.x() << "," << spot.y();
        EXPECT_NEAR(seen.blue(), expected.blue(), 24) << spot.x() << "," << spot.y();
    }
}

}  // namespace
}  // namespace vx
