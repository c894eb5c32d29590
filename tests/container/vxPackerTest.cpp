#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "DecodedPackage.h"
#include "container/vxPacker.h"
#include "support/ChildProcess.h"
#include "support/RecordingUIServices.h"
#include "support/ScratchFolder.h"

namespace vx {
namespace {

using test::PackageRecord;
using test::ScratchFolder;

class RecordingLog : public LogReceiver {
public:
    void log(const String& text) override { lines.emplace_back(text.bytes()); }
    std::vector<std::string> lines;
};

std::string allByteValues() {
    std::string bytes;
    for (int b = 0; b < 256; ++b) {
        bytes += static_cast<char>(b);
    }
    return bytes;
}

class vxPackerTest : public ::testing::Test {
protected:
    void SetUp() override {
        vxPacker::bs = nullptr;
        vxPacker::folder = scratch.item("site");
        vxPacker::target = scratch.item("out.vxpk");
        vxPacker::name = "Demo";
        vxPacker::uid = "demo1";
        vxPacker::owner = log;
    }
    void TearDown() override {
        vxPacker::bs = nullptr;
        vxPacker::folder = nullptr;
        vxPacker::target = nullptr;
        vxPacker::owner = nullptr;
    }

    // What the user saw of a build: the log lines, then the messages, one a line.
    std::string outcome() const {
        std::string text;
        for (const auto& line : log->lines) {
            text += line + "\n";
        }
        for (const auto& message : ui.messages) {
            text += "MsgBox " + std::string(message.bytes()) + "\n";
        }
        return text;
    }
    std::string header() const {
        return "Build using file version 001\nSource: " + scratch.path("site") +
               "\nTarget: " + scratch.path("out.vxpk") + "\n";
    }

    ScratchFolder scratch;
    Ref<RecordingLog> log = New<RecordingLog>();
    test::RecordingUIServices ui;
    test::InstalledUIServices installed{ui};
};

TEST_F(vxPackerTest, workedExample_givesThe71BytesOfTheFormat) {
    scratch.writeFile("site/index.html", "<h1/>");
    scratch.writeFile("site/css/a.css", "p{}");
    scratch.writeFile("site/.DS_Store", "junk");

    vxPacker::build();

    const std::string expected = std::string(
        "\x04V001\x04"
        "Demo\x05"
        "demo1\x04site"
        "\x03"
        "css\x00\x02\x00\x00\x00\x00"
        "\x05"
        "a.css\x03"
        "css\x01\x00\x00\x00\x03p{}"
        "\x0aindex.html\x00\x01\x00\x00\x00\x05<h1/>",
        71);
    EXPECT_EQ(scratch.readFile("out.vxpk"), expected);
    EXPECT_EQ(outcome(), header() +
                             "Processing Folder: css\nCopying: a.css\nCopying: index.html\n"
                             "BUILD DONE...\n");
    EXPECT_EQ(ui.backgroundTasks, 4);
}

TEST_F(vxPackerTest, missingOrWrongProperties_returnSilently) {
    scratch.writeFile("site/file", "x");
    scratch.writeFile("out.vxpk", "old");
    const std::vector<std::pair<Ref<FolderItem>, Ref<FolderItem>>> cases = {
        {nullptr, scratch.item("out.vxpk")},
        {scratch.item("site"), nullptr},
        {scratch.item("site/file"), scratch.item("out.vxpk")},
        {scratch.item("missing"), scratch.item("out.vxpk")},
    };
    for (const auto& [source, destination] : cases) {
        vxPacker::folder = source;
        vxPacker::target = destination;
        vxPacker::build();
        EXPECT_EQ(outcome(), "");
        EXPECT_EQ(scratch.readFile("out.vxpk"), "old");
        EXPECT_EQ(vxPacker::bs, nullptr);
    }
}

TEST_F(vxPackerTest, nilOwner_raisesAfterTheTargetIsDeleted) {
    scratch.makeFolder("site");
    scratch.writeFile("out.vxpk", "old");
    vxPacker::owner = nullptr;
    EXPECT_THROW(vxPacker::build(), NilObjectException);
    EXPECT_FALSE(scratch.item("out.vxpk")->Exists());
}

TEST_F(vxPackerTest, secondBuild_replacesThePackageWithTheSameBytes) {
    scratch.writeFile("site/a/b.txt", "bee");
    vxPacker::build();
    const std::string first = scratch.readFile("out.vxpk");
    vxPacker::build();
    EXPECT_EQ(scratch.readFile("out.vxpk"), first);
    EXPECT_EQ(log->lines.back(), "BUILD DONE...");
    EXPECT_EQ(test::DecodePackage(first).records.size(), 2u);
}

TEST_F(vxPackerTest, secondBuildAfterTheSourceChanged_packsTheSourceAsItIsNow) {
    scratch.writeFile("site/old.txt", "old");
    vxPacker::build();
    scratch.writeFile("site/new.txt", "new");
    ASSERT_EQ(::unlink(scratch.path("site/old.txt").c_str()), 0);

    vxPacker::build();

    const auto records = test::DecodePackage(scratch.readFile("out.vxpk")).records;
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].name, "new.txt");
    EXPECT_EQ(records[0].contents, "new");
}

TEST_F(vxPackerTest, fileSystemFailures_showTheirMessageAndKeepWhatWasWritten) {
    scratch.writeFile("site/big.bin", std::string(300000, 'b'));
    scratch.makeFolder("locked");
    ::chmod(scratch.path("locked").c_str(), 0755);
    ::chmod(scratch.writeFile("readonly.vxpk", "keep me").c_str(), 0644);
    struct Case {
        const char* what;
        std::string target;
        test::ChildOptions options;
        std::string outcome;
    };
    const std::string source = "Source: " + scratch.path("site") + "\n";
    const Case cases[] = {
        {"read-only target",
         "readonly.vxpk",
         {},
         "MsgBox Destination file exists and is not writable.\n"},
        {"unwritable folder",
         "locked/out.vxpk",
         {},
         "Build using file version 001\n" + source + "Target: " + scratch.path("locked/out.vxpk") +
             "\nMsgBox ERROR: Access dinied while creating destination.\n"},
        {"file size limit",
         "out.vxpk",
         {.unprivileged = false, .fileSizeLimit = 65536},
         header() + "Copying: big.bin\nMsgBox Error creating app file.\n"},
    };
    for (const Case& c : cases) {
        vxPacker::target = scratch.item(c.target);
        EXPECT_EQ(test::RunInChild(
                      [&] {
                          vxPacker::build();
                          return outcome();
                      },
                      c.options),
                  c.outcome)
            << c.what;
    }
    EXPECT_EQ(scratch.readFile("readonly.vxpk"), "keep me");
    EXPECT_FALSE(scratch.item("locked/out.vxpk")->Exists());
    EXPECT_EQ(scratch.item("out.vxpk")->Length(), 65536u);
}

TEST_F(vxPackerTest, treeOfEveryKind_asUnprivilegedUser_givesTheRequiredRecords) {
    const std::string all = allByteValues();
    const std::string longName(255, 'n');
    scratch.writeFile("site/.hidden", "h");
    scratch.writeFile("site/_private/one", "1");
    scratch.writeFile("site/_private/two", "2");
    scratch.writeFile("site/a.b.txt", "dot");
    scratch.writeFile("site/a_b.txt", "under");
    scratch.writeFile("site/closed/inner.txt", "x");
    ::chmod(scratch.path("site/closed").c_str(), 0700);
    scratch.writeFile("site/deep/.git/config", "c");
    scratch.writeFile("site/deep/_x", "x");
    scratch.writeFile("site/deep/sub/.dot", ".");
    scratch.makeLink("site/deep/sub/back", "..");
    scratch.writeFile("site/deep/sub/bytes.bin", all);
    scratch.makeFolder("site/deep/sub/empty");
    scratch.writeFile("site/dossier \xc3\xa9/h\xc3\xa9llo.txt", "utf8");
    scratch.writeFile("site/empty.txt", "");
    scratch.makeFolder("site/emptyDir");
    scratch.writeFile("site/" + longName, "long");
    ::chmod(scratch.writeFile("site/secret.txt", "words").c_str(), 0600);
    scratch.makeLink("site/toBytes", "deep/sub/bytes.bin");
    vxPacker::name = "Caf\xc3\xa9";

    const std::string seen = test::RunInChild([&] {
        vxPacker::build();
        return outcome() + std::to_string(ui.backgroundTasks);
    });

    const std::vector<PackageRecord> expected = {
        {"a.b.txt", "", 1, 3, "dot"},
        {"a_b.txt", "", 1, 5, "under"},
        {"closed", "", 2, 0, ""},
        {"deep", "", 2, 0, ""},
        {"sub", "deep", 2, 0, ""},
        {"back", "deep:sub", 1, 0, ""},
        {"bytes.bin", "deep:sub", 1, 256, all},
        {"empty", "deep:sub", 2, 0, ""},
        {"dossier \xc3\xa9", "", 2, 0, ""},
        {"h\xc3\xa9llo.txt", "dossier \xc3\xa9", 1, 4, "utf8"},
        {"empty.txt", "", 1, 0, ""},
        {"emptyDir", "", 2, 0, ""},
        {longName, "", 1, 4, "long"},
        {"secret.txt", "", 1, 0, ""},
        {"toBytes", "", 1, 256, all},
    };
    std::string lines = header();
    for (const auto& record : expected) {
        lines += (record.type == 2 ? "Processing Folder: " : "Copying: ") + record.name + "\n";
    }
    EXPECT_EQ(seen, lines + "BUILD DONE...\n20");

    const auto package = test::DecodePackage(scratch.readFile("out.vxpk"));
    EXPECT_EQ(package.version, "V001");
    EXPECT_EQ(package.name, "Caf\xc3\xa9");
    EXPECT_EQ(package.uid, "demo1");
    EXPECT_EQ(package.folderName, "site");
    EXPECT_EQ(package.records, expected);
}

TEST(vxPacker, getRelativePath_givesTheParentWithColons) {
    struct Case {
        const char* root;
        const char* item;
        const char* parent;
    };
    const Case cases[] = {
        {"/Users/a/site", "/Users/a/site/index.html", ""},
        {"/Users/a/site", "/Users/a/site/css", ""},
        {"/Users/a/site", "/Users/a/site/css/a.css", "css"},
        {"/Users/a/site", "/Users/a/site/css/img", "css"},
        {"/Users/a/site", "/Users/a/site/css/img/logo.png", "css:img"},
        {"/Users/a/site/", "/Users/a/site/css/img/logo.png", "css:img"},
        {"/Users/a/site", "/other/place/x.txt", "other:place"},
        {"/Users/a/site", "/Users/a/site/a:b/c", "a:b"},
        {"/", "/etc/hosts", "etc"},
    };
    for (const Case& c : cases) {
        vxPacker::folder = New<FolderItem>(c.root, FolderItem::PathModeNative);
        const String parent =
            vxPacker::getRelativePath(New<FolderItem>(c.item, FolderItem::PathModeNative));
        EXPECT_EQ(parent.bytes(), c.parent) << c.item;
    }
    vxPacker::folder = nullptr;
}

TEST_F(vxPackerTest, targetInsideTheSource_isPackedAsAnOrdinaryFile) {
    scratch.writeFile("site/page.html", "page");
    vxPacker::target = scratch.item("site/out.vxpk");
    vxPacker::build();
    const auto package = test::DecodePackage(scratch.readFile("site/out.vxpk"));
    ASSERT_EQ(package.records.size(), 2u);
    EXPECT_EQ(package.records[0].name, "out.vxpk");
    EXPECT_EQ(package.records[1], (PackageRecord{"page.html", "", 1, 4, "page"}));
    EXPECT_EQ(log->lines.back(), "BUILD DONE...");
}

TEST_F(vxPackerTest, walkDeeperThanTheGuard_raisesStackOverflow) {
    std::string chain = scratch.makeFolder("site");
    for (int level = 0; level < 256; ++level) {
        chain += "/d";
        ASSERT_EQ(::mkdir(chain.c_str(), 0755), 0);
    }
    vxPacker::build();
    EXPECT_EQ(log->lines.back(), "BUILD DONE...");
    ASSERT_EQ(::mkdir((chain + "/d").c_str(), 0755), 0);
    // A folder object keeps the listing it read, so the deeper tree needs a new one.
    vxPacker::folder = scratch.item("site");
    EXPECT_THROW(vxPacker::build(), StackOverflowException);
}

}  // namespace
}  // namespace vx
