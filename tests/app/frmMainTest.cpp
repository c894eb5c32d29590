#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QTest>
#include <QWidget>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>

#include "WizardHarness.h"
#include "runtime/ui/Picture.h"
#include "support/ToolkitEnvironment.h"

namespace vx {
namespace {

using test::WizardTest;

// The steps a user takes on the wizard, one letter each: F browses for the
// folder and f cancels that dialog, P browses for the package file and p
// cancels, C continues, H presses help, n clears the name, u the uid and m the
// main file, t types into the title.
struct StateCase {
    const char* name;
    const char* steps;
    int64_t page;
    int64_t lastPanel;
    bool buildEnabled;
    int64_t beeps;
    const char* focused;  // the field with the focus at the end; "" when no matter
};
void PrintTo(const StateCase& c, std::ostream* out) {
    *out << c.name;
}

class WizardStates : public WizardTest, public ::testing::WithParamInterface<StateCase> {
protected:
    // clang-format off
    void Take(char step) {
        switch (step) {
            case 'F': return BrowseFolder(wizard, scratch.item(scratch.makeFolder("site")));
            case 'f': return BrowseFolder(wizard, nullptr);
            case 'P': return BrowseFile(wizard, scratch.item("out.vxpk"));
            case 'p': return BrowseFile(wizard, nullptr);
            case 'C': return wizard->cmdNEXT()->Push();
            case 'H': return wizard->cmdHelp()->Push();
            case 'n': return wizard->txtName()->Text("");
            case 'u': return wizard->txtUID()->Text("");
            case 'm': return wizard->txtMain()->Text("");
            case 't': wizard->txtTitle()->Text("");
                      return QTest::keyClicks(wizard->txtTitle()->_Widget(), "x");
        }
        FAIL() << "unknown step " << step;
    }
    // clang-format on
};

// A failed check beeps once and moves the focus only to a field the user types
// into, never to a path chosen by browsing.
TEST_P(WizardStates, stepsFromANewWindow_endInTheExpectedState) {
    ASSERT_TRUE(test::ShowActive(wizard->_Widget()));
    wizard->txtVersion()->SetFocus();
    for (const char step : std::string_view(GetParam().steps)) {
        Take(step);
    }
    EXPECT_EQ(wizard->PagePanel1()->Value(), GetParam().page);
    EXPECT_EQ(wizard->lastPanel, GetParam().lastPanel);
    EXPECT_EQ(wizard->cmdBuild()->Enabled(), GetParam().buildEnabled);
    EXPECT_EQ(ui.beeps, GetParam().beeps);
    EXPECT_TRUE(ui.messages.empty());
    if (*GetParam().focused != '\0') {
        ASSERT_NE(QApplication::focusWidget(), nullptr);
        EXPECT_EQ(QApplication::focusWidget()->objectName().toStdString(), GetParam().focused);
    }
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(
    frmMain, WizardStates,
    ::testing::Values(
        //        name                                   steps   page last build beeps focused
        StateCase{"aboutFromSettings",                    "H",      2, 0, false, 0, ""},
        StateCase{"aboutAndBackToSettings",               "HH",     0, 0, false, 0, ""},
        StateCase{"continueWithNothingChosen",            "C",      0, 0, false, 1, "txtVersion"},
        StateCase{"fileChosen",                           "P",      0, 0, true,  0, "txtVersion"},
        StateCase{"folderCancelledWithEmptyPath",         "Pf",     0, 0, false, 0, "txtVersion"},
        StateCase{"folderCancelledWithPathSet",           "Ff",     0, 0, true,  0, "txtVersion"},
        StateCase{"fileCancelledWithPathSet",             "Pnp",    0, 0, false, 0, "txtVersion"},
        StateCase{"onlyFolderThenContinue",               "FC",     0, 0, true,  1, "txtVersion"},
        StateCase{"onlyFileThenContinue",                 "PC",     0, 0, true,  1, "txtVersion"},
        StateCase{"noUIDThenContinue",                    "FPuC",   0, 0, false, 1, "txtUID"},
        StateCase{"neitherNameNorUIDThenContinue",        "FPnuC",  0, 0, false, 1, "txtName"},
        StateCase{"bothChosenThenContinue",               "FPC",    1, 0, true,  0, ""},
        StateCase{"aboutFromBuild",                       "FPCH",   2, 1, true,  0, ""},
        StateCase{"aboutAndBackToBuild",                  "FPCHH",  1, 1, true,  0, ""},
        StateCase{"aboutFromSettingsAfterBuildPageVisit", "FPCHHH", 2, 1, true,  0, ""},
        // Clearing the main file disables Build and Continue still goes on:
        // a build page whose only button is dead.
        StateCase{"deadEndAfterClearingMain",             "FPmC",   1, 0, false, 0, ""},
        StateCase{"clearedNameDisablesBuild",             "FPn",    0, 0, false, 0, "txtVersion"},
        StateCase{"typingInTitleEnablesBuildAgain",       "FPnt",   0, 0, true,  0, "txtVersion"},
        StateCase{"continueStillRefusesAnEmptyName",      "FPntC",  0, 0, true,  1, "txtName"}),
    [](const auto& testCase) { return std::string(testCase.param.name); });
// clang-format on

TEST_F(WizardTest, browseThenContinue_offerTheTypeAndANameAndFillThePacker) {
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
    // The offered name is made from txtName at the moment of browsing.
    EXPECT_EQ(ui.saveRequests[0].defaultName, " .vxpk");
    EXPECT_EQ(ui.saveRequests[1].defaultName, ".vxpk");
    // The cancelled second dialog left the chosen file in place.
    EXPECT_EQ(vxPacker::target->NativePath().bytes(), scratch.path("out.vxpk"));

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

TEST_F(WizardTest, controls_keepTheirIrregularities) {
    EXPECT_EQ(wizard->Label8()->HelpTag(), "Initial window width");
    EXPECT_EQ(wizard->txtTitle()->Left(), 219);
    EXPECT_EQ(wizard->txtTitle()->Top(), wizard->Label9()->Top());
    EXPECT_EQ(wizard->txtWidth()->Mask(), "0#");
    EXPECT_EQ(wizard->txtWidth()->Text(), "600") << "the default text is kept past the mask";
    EXPECT_TRUE(wizard->cmdBuild()->Default());
    EXPECT_FALSE(wizard->txtHelp()->ReadOnly());
    EXPECT_EQ(wizard->txtHelp()->Text(),
              "Use this utility to pack a web app for distribution using Vantrelix.\r\r"
              "The contents of the source folder will be packed into a single file that can be "
              "opened with Vantrelix.\r\r\r");
}

// Each line of the log is the message as it is, whatever it holds, and the
// line end.
TEST_F(WizardTest, log_addsTheMessageAndTheLineEndByteForByte) {
    std::string expected;
    for (const String& message :
         {String("plain"), String("cr\rcrlf\r\nlf\n"),
          String(std::string_view("raw \xFF\0 bytes", 12), nullptr), String()}) {
        wizard->log(message);
        expected += std::string(message.bytes()) + "\n";
        EXPECT_EQ(LogOf(wizard), expected);
    }
}

// Each menu accessor asks the window's bar of the moment for its item and
// checks the class; the window's own Open has its (empty) handler.
TEST_F(WizardTest, menuAccessors_findTheItemsOfTheWindowsBarByName) {
    const std::pair<Ref<MenuItem>, const char*> items[] = {
        {wizard->FileMenu(), "FileMenu"},
        {wizard->mnuNewBuild(), "mnuNewBuild"},
        {wizard->mnuExtract(), "mnuExtract"},
        {wizard->FileQuit(), "FileQuit"},
        {wizard->EditMenu(), "EditMenu"},
        {wizard->EditUndo(), "EditUndo"},
        {wizard->EditSeparator1(), "EditSeparator1"},
        {wizard->EditCut(), "EditCut"},
        {wizard->EditCopy(), "EditCopy"},
        {wizard->EditPaste(), "EditPaste"},
        {wizard->EditClear(), "EditClear"},
        {wizard->EditSeparator2(), "EditSeparator2"},
        {wizard->EditSelectAll(), "EditSelectAll"},
    };
    for (const auto& [item, name] : items) {
        ASSERT_NE(item, nullptr) << name;
        EXPECT_EQ(item, MainMenuBar::_Instance()->_Lookup(name)) << name;
    }
    EXPECT_TRUE(wizard->Open.IsImplemented());

    // Another bar whose FileQuit is a plain item fails the class check.
    auto other = New<MenuBar>();
    auto plainQuit = New<MenuItem>();
    plainQuit->Name("FileQuit");
    other->Append(plainQuit);
    wizard->MenuBar(other);
    EXPECT_THROW(wizard->FileQuit(), IllegalCastException);
    EXPECT_EQ(wizard->mnuExtract(), nullptr);
    wizard->MenuBar(nullptr);
    EXPECT_THROW(wizard->EditCopy(), NilObjectException);
}

TEST_F(WizardTest, tabKey_walksTheSettingsFieldsInTheirTabOrder) {
    ASSERT_TRUE(test::ShowActive(wizard->_Widget()));
    wizard->txtUID()->SetFocus();
    std::string visited;
    for (int i = 0; i < 14; ++i) {
        visited += QApplication::focusWidget()->objectName().toStdString() + " ";
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    EXPECT_EQ(visited,
              "txtUID txtVersion txtName txtCompany txtPath cmdSelectAppFolder txtPathFile "
              "cmdSelectAppFile opJSON txtWidth txtHeight txtTitle txtMain cmdNEXT ");
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

TEST_F(WizardTest, canvas_drawsTheStoredPackageIconScaledIntoItsSquare) {
    Ref<Picture> icon = Picture::_OpenFromApp("icon_vxpk_file");
    ASSERT_NE(icon, nullptr);
    ASSERT_EQ(icon->Width(), 1067);
    EXPECT_EQ(icon->Height(), 1067);
    EXPECT_EQ(qAlpha(icon->_Image().pixel(533, 600)), 255) << "drawn where the mark stands";
    EXPECT_EQ(qAlpha(icon->_Image().pixel(5, 5)), 0) << "transparent outside the sheet";

    const QImage drawn = wizard->Canvas1()->_Widget()->grab().toImage();

    ASSERT_EQ(drawn.size(), QSize(128, 128));
    // The same spot of the picture, 1067 pixels scaled down to 128.
    for (const QPoint spot : {QPoint(64, 100), QPoint(20, 64), QPoint(64, 64)}) {
        const QColor expected =
            icon->_Image().pixelColor(spot.x() * 1067 / 128, spot.y() * 1067 / 128);
        const QColor seen = drawn.pixelColor(spot);
        for (auto channel : {&QColor::red, &QColor::green, &QColor::blue}) {
            EXPECT_NEAR((seen.*channel)(), (expected.*channel)(), 24)
                << spot.x() << "," << spot.y();
        }
    }
}

}  // namespace
}  // namespace vx
