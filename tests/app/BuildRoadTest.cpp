#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QPlainTextEdit>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "../container/PackageBytes.h"
#include "WizardHarness.h"
#include "app/App.h"
#include "container/PackageDescriptionText.h"
#include "support/ToolkitEnvironment.h"

namespace vx {
namespace {

namespace fs = std::filesystem;
using test::WizardTest;

std::string ReadAt(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

// An extraction folder lies in the system's temporary folder, outside any
// scratch folder; the test takes it away itself.
struct RemovedAfterwards {
    fs::path folder;
    ~RemovedAfterwards() { fs::remove_all(folder); }
};

std::string Lines(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) {
        text += line + "\n";
    }
    return text;
}

class BuildRoad : public WizardTest {
protected:
    // A small web app with a hidden folder and a private file, which stay
    // out of the package.
    void SetUp() override {
        WizardTest::SetUp();
        scratch.writeFile("site/index.html", "<p>hi</p>");
        scratch.writeFile("site/js/app.js", "x=1");
        scratch.writeFile("site/.git/HEAD", "ref");
        scratch.writeFile("site/_notes.txt", "private");
        site = scratch.item("site");
        package = scratch.item("out/demo.vxpk");
        scratch.makeFolder("out");
    }

    // Fills the settings page, browses twice and continues, as a user does.
    void ComeToTheBuildPage() {
        wizard->txtName()->Text("Demo");
        wizard->txtUID()->Text("com.example.demo");
        BrowseFolder(wizard, site);
        BrowseFile(wizard, package);
        wizard->cmdNEXT()->Push();
        ASSERT_EQ(wizard->PagePanel1()->Value(), 1);
    }

    static std::string Description() {
        return test::PackageDescriptionText("Demo", "com.example.demo");
    }
    static std::string DescriptionRecord() {
        return test::EncodeRecord(
            {"package.json", "", 1, static_cast<int32_t>(Description().size()), Description()});
    }

    static std::string ExpectedPackage() {
        return test::EncodeHeader("V001", "Demo", "com.example.demo", "site") +
               test::EncodeRecord({"index.html", "", 1, 9, "<p>hi</p>"}) +
               test::EncodeRecord({"js", "", 2, 0, ""}) +
               test::EncodeRecord({"app.js", "js", 1, 3, "x=1"}) + DescriptionRecord();
    }

    // The lines every build starts with, once it knows its source and target.
    std::string Opening(const char* target) const {
        return Lines({"Build using file version 001", "Source: " + scratch.path("site"),
                      "Target: " + scratch.path(target)});
    }

    std::string ExpectedLog() const {
        return "Created file package.json\n" + Opening("out/demo.vxpk") +
               Lines({"Copying: index.html", "Processing Folder: js", "Copying: app.js",
                      "Copying: package.json", "BUILD DONE..."});
    }

    Ref<FolderItem> site;
    Ref<FolderItem> package;
};

TEST_F(BuildRoad, buildTwice_showsTheLogAsItGoesAndWritesTheSameFilesEachTime) {
    ComeToTheBuildPage();
    auto* shown = static_cast<QPlainTextEdit*>(wizard->txtLog()->_Widget());
    std::vector<std::string> seen;
    ui.onBackgroundTask = [&] {
        QCoreApplication::processEvents();
        seen.push_back(shown->toPlainText().toStdString());
    };

    wizard->cmdBuild()->Push();

    EXPECT_EQ(scratch.readFile("site/package.json"), Description());
    EXPECT_EQ(scratch.readFile("out/demo.vxpk"), ExpectedPackage());
    EXPECT_EQ(LogOf(wizard), ExpectedLog());
    // The packer yields after each entry, so the first entry's line is on
    // the screen while the build is still going.
    EXPECT_THAT(seen, ::testing::Contains("Created file package.json\n" + Opening("out/demo.vxpk") +
                                          "Copying: index.html\n"));
    EXPECT_TRUE(ui.messages.empty());
    // Nothing after the build touches the labels or the button.
    EXPECT_EQ(wizard->lblBuilding()->Text(), "Building your app...");
    EXPECT_TRUE(wizard->cmdBuild()->Enabled());
    EXPECT_EQ(vxPacker::owner.get(), static_cast<LogReceiver*>(wizard.get()));

    // An untidy package.json of the user's own is replaced, whatever the box
    // says, and the second build's lines follow the first's.
    scratch.writeFile("site/package.json", std::string(2000, ' '));
    wizard->opJSON()->Value(false);
    wizard->cmdBuild()->Push();

    EXPECT_EQ(LogOf(wizard), ExpectedLog() + ExpectedLog());
    EXPECT_EQ(scratch.readFile("site/package.json"), Description());
    EXPECT_EQ(scratch.readFile("out/demo.vxpk"), ExpectedPackage());
}

TEST_F(BuildRoad, descriptionThatCannotBeWritten_saysSoAndTheBuildGoesOn) {
    ComeToTheBuildPage();
    // A folder where the file should go: it can be neither opened nor made.
    scratch.makeFolder("site/package.json");

    wizard->cmdBuild()->Push();

    EXPECT_EQ(ui.messages, std::vector<String>{"Unable to write package.json"});
    EXPECT_EQ(LogOf(wizard),
              Opening("out/demo.vxpk") +
                  Lines({"Copying: index.html", "Processing Folder: js", "Copying: app.js",
                         "Processing Folder: package.json", "BUILD DONE..."}));
    EXPECT_TRUE(wizard->cmdBuild()->Enabled());
}

TEST_F(BuildRoad, packageThatCannotBeCreated_endsInThePackersMessage) {
    package = scratch.item("missing/demo.vxpk");
    ComeToTheBuildPage();

    wizard->cmdBuild()->Push();

    EXPECT_EQ(ui.messages, std::vector<String>{"Error creating app file."});
    EXPECT_EQ(LogOf(wizard), "Created file package.json\n" + Opening("missing/demo.vxpk"));
    EXPECT_TRUE(wizard->cmdBuild()->Enabled());
}

TEST_F(BuildRoad, secondWindowChoosesOtherPaths_firstWindowBuildsThemUnderItsOwnName) {
    ComeToTheBuildPage();
    scratch.writeFile("other/readme.txt", "other");
    Ref<frmMain> second = OpenWizard();
    second->txtName()->Text("Second");
    BrowseFolder(second, scratch.item("other"));
    BrowseFile(second, scratch.item("out/second.vxpk"));

    wizard->cmdBuild()->Push();

    // The first window still shows its own paths...
    EXPECT_EQ(wizard->txtPath()->Text().bytes(), scratch.path("site"));
    // ...but packed what the second one chose, with its own name and log.
    EXPECT_FALSE(scratch.item("out/demo.vxpk")->Exists());
    EXPECT_FALSE(scratch.item("site/package.json")->Exists());
    EXPECT_EQ(scratch.readFile("out/second.vxpk"),
              test::EncodeHeader("V001", "Demo", "com.example.demo", "other") +
                  DescriptionRecord() + test::EncodeRecord({"readme.txt", "", 1, 5, "other"}));
    EXPECT_NE(LogOf(wizard).find("BUILD DONE...\n"), std::string::npos);
    EXPECT_EQ(LogOf(second), "");
}

// Extract asks for a package; a cancelled dialog and a package of another
// version end quietly, and a package that the wizard built comes back whole.
TEST_F(BuildRoad, extract_restoresABuiltPackageAndLaunchesItsFolderButNothingElse) {
    ComeToTheBuildPage();
    wizard->cmdBuild()->Push();
    scratch.writeFile("future.vxpk", test::EncodeHeader("V002", "Demo", "demo1", "site"));
    for (const Ref<FolderItem>& answer :
         {Ref<FolderItem>(), scratch.item("future.vxpk"), package}) {
        ui.openDialogAnswers.push_back(answer);
        EXPECT_TRUE(App::_Instance()->_mnuExtract_Action());
    }

    ASSERT_EQ(ui.openRequests.size(), 3u);
    EXPECT_EQ(ui.openRequests[0].promptText, "Enter a filename");
    EXPECT_EQ(ui.openRequests[0].title, "Open App file");
    EXPECT_EQ(ui.openRequests[0].filter, "vxpk");
    EXPECT_TRUE(ui.messages.empty());
    ASSERT_EQ(ui.launchedPaths.size(), 1u);
    const fs::path folder(std::string(ui.launchedPaths[0].bytes()));
    const RemovedAfterwards removed{folder};
    EXPECT_EQ(ui.launchActivations, std::vector<bool>{true});
    EXPECT_EQ(ReadAt(folder / "index.html"), "<p>hi</p>");
    EXPECT_EQ(ReadAt(folder / "js" / "app.js"), "x=1");
    EXPECT_EQ(ReadAt(folder / "package.json"), Description());
}

}  // namespace
}  // namespace vx
