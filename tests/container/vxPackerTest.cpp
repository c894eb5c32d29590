#include <gtest/gtest.h>
#include <sys/stat.h>

#include <array>
#include <filesystem>
#include <string>
#include <vector>

#include "PackageFixture.h"
#include "container/vxPacker.h"
#include "support/ChildProcess.h"

namespace vx {
namespace {

using namespace test;

class vxPackerTest : public PackageFixture {
protected:
    std::string header(const std::string& target = "out.vxpk") const {
        return "Build using file version 001\nSource: " + scratch.path("site") +
               "\nTarget: " + scratch.path(target) + "\n";
    }
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
    }
}

TEST_F(vxPackerTest, nilOwner_raisesAfterTheTargetIsDeleted) {
    scratch.makeFolder("site");
    scratch.writeFile("out.vxpk", "old");
    vxPacker::owner = nullptr;
    EXPECT_THROW(vxPacker::build(), NilObjectException);
    EXPECT_FALSE(scratch.item("out.vxpk")->Exists());
}

// A rebuild must replace the package, not add to it, and must list the
// source afresh instead of keeping what the first build saw.
TEST_F(vxPackerTest, secondBuild_replacesThePackageWithTheSourceAsItIsNow) {
    scratch.writeFile("site/a/b.txt", "bee");
    vxPacker::build();
    EXPECT_EQ(scratch.readFile("out.vxpk"),
              EncodePackage({FolderRecord("a"), FileRecord("b.txt", "bee", "a")}));
    scratch.writeFile("site/new.txt", "new");
    std::filesystem::remove_all(scratch.path("site/a"));
    vxPacker::build();
    EXPECT_EQ(scratch.readFile("out.vxpk"), EncodePackage({FileRecord("new.txt", "new")}));
}

TEST_F(vxPackerTest, fileSystemFailures_showTheirMessageAndKeepWhatWasWritten) {
    scratch.writeFile("site/big.bin", std::string(300000, 'b'));
    ::chmod(scratch.makeFolder("locked").c_str(), 0755);
    ::chmod(scratch.writeFile("readonly.vxpk", "keep me").c_str(), 0644);
    struct Case {
        std::string target;
        ChildOptions options;
        std::string outcome;
    };
    const Case cases[] = {
        {"readonly.vxpk", {}, "MsgBox Destination file exists and is not writable.\n"},
        {"locked/out.vxpk",
         {},
         header("locked/out.vxpk") + "MsgBox ERROR: Access dinied while creating destination.\n"},
        {"out.vxpk",
         {.unprivileged = false, .fileSizeLimit = 65536},
         header() + "Copying: big.bin\nMsgBox Error creating app file.\n"},
    };
    for (const Case& c : cases) {
        vxPacker::target = scratch.item(c.target);
        const auto run = [&] {
            vxPacker::build();
            return outcome();
        };
        EXPECT_EQ(RunInChild(run, c.options), c.outcome) << c.target;
    }
    EXPECT_EQ(scratch.readFile("readonly.vxpk"), "keep me");
    EXPECT_FALSE(scratch.item("locked/out.vxpk")->Exists());
    EXPECT_EQ(scratch.item("out.vxpk")->Length(), 65536u);
}

// Names, contents, hidden entries and folders of every sort are the round
// trip's; here go what only the packer sees: links, what nobody may read, the
// longest name.
TEST_F(vxPackerTest, treeOfEveryKind_asUnprivilegedUser_givesTheRequiredRecords) {
    const std::string all = ByteRange(0, 255);
    const std::string longName(255, 'n');
    scratch.writeFile("site/closed/inner.txt", "x");
    ::chmod(scratch.path("site/closed").c_str(), 0700);
    scratch.makeLink("site/deep/sub/back", "..");
    scratch.writeFile("site/deep/sub/bytes.bin", all);
    scratch.writeFile("site/" + longName, "long");
    ::chmod(scratch.writeFile("site/secret.txt", "words").c_str(), 0600);
    scratch.makeLink("site/toBytes", "deep/sub/bytes.bin");
    vxPacker::name = "Caf\xc3\xa9";

    const std::string seen = RunInChild([&] {
        vxPacker::build();
        return outcome();
    });

    const std::vector<PackageRecord> expected = {
        FolderRecord("closed"),
        FolderRecord("deep"),
        FolderRecord("sub", "deep"),
        FileRecord("back", "", "deep:sub"),
        FileRecord("bytes.bin", all, "deep:sub"),
        FileRecord(longName, "long"),
        FileRecord("secret.txt", ""),
        FileRecord("toBytes", all),
    };
    std::string lines = header();
    for (const auto& record : expected) {
        lines += (record.type == 2 ? "Processing Folder: " : "Copying: ") + record.name + "\n";
    }
    EXPECT_EQ(seen, lines + "BUILD DONE...\n");
    EXPECT_EQ(scratch.readFile("out.vxpk"), EncodePackage(expected, "Caf\xc3\xa9"));
}

TEST_F(vxPackerTest, getRelativePath_givesTheParentWithColons) {
    const std::vector<std::array<const char*, 3>> cases = {
        {"/Users/a/site", "/Users/a/site/css/img/logo.png", "css:img"},
        {"/Users/a/site/", "/Users/a/site/css/img/logo.png", "css:img"},
        {"/Users/a/site", "/other/place/x.txt", "other:place"},
        {"/Users/a/site", "/Users/a/site/a:b/c", "a:b"},
        {"/", "/etc/hosts", "etc"},
    };
    for (const auto& [root, item, parent] : cases) {
        vxPacker::folder = New<FolderItem>(root, FolderItem::PathModeNative);
        EXPECT_EQ(
            vxPacker::getRelativePath(New<FolderItem>(item, FolderItem::PathModeNative)).bytes(),
            parent)
            << item;
    }
}

// The package grows while it is walked, so only its record's head is known.
TEST_F(vxPackerTest, targetInsideTheSource_isPackedAsAnOrdinaryFile) {
    scratch.writeFile("site/page.html", "page");
    vxPacker::target = scratch.item("site/out.vxpk");
    vxPacker::build();
    const std::string bytes = scratch.readFile("site/out.vxpk");
    const std::string last = EncodeRecord(FileRecord("page.html", "page"));
    EXPECT_EQ(bytes.substr(EncodePackage({}).size(), 11), std::string("\x08out.vxpk\x00\x01", 11));
    ASSERT_GE(bytes.size(), last.size());
    EXPECT_EQ(bytes.substr(bytes.size() - last.size()), last);
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
