#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <string>
#include <vector>

#include "ExtractionFixture.h"
#include "PackageBytes.h"
#include "container/vxpkFile.h"
#include "runtime/TextEncoding.h"
#include "support/ChildProcess.h"

namespace vx {
namespace {

namespace fs = std::filesystem;
using test::EncodeHeader;
using test::EncodePackage;
using test::EncodeRecord;
using test::PackageRecord;
using test::Tree;

const char* const kExtractFailure = "Error: Unable to extract vxpk contents.";
const char* const kWriteFailure = "Unable to write document.";

std::string allByteValues(int first, int last) {
    std::string bytes;
    for (int b = first; b <= last; ++b) {
        bytes += static_cast<char>(b);
    }
    return bytes;
}

class vxpkFileTest : public test::ExtractionFixture {};

TEST_F(vxpkFileTest, headerFields_readBackByteForByteWithoutTag) {
    struct Case {
        std::string name, uid, folderName;
    };
    const std::vector<Case> cases = {
        {"Demo", "demo1", "site"},
        {"", "", ""},
        {std::string(255, 'n'), allByteValues(1, 255), "Caf\xC3\xA9 \xE2\x98\x95"},
        {allByteValues(0, 254), "a:b/c", allByteValues(128, 255)},
    };
    for (const auto& c : cases) {
        clearTemporary();
        const auto file = openPackage(EncodeHeader("V001", c.name, c.uid, c.folderName));
        ASSERT_NE(file, nullptr);
        EXPECT_EQ(file->version.bytes(), "V001");
        EXPECT_EQ(file->name.bytes(), c.name);
        EXPECT_EQ(file->uid.bytes(), c.uid);
        EXPECT_EQ(file->folderName.bytes(), c.folderName);
        for (const String* field : {&file->version, &file->name, &file->uid, &file->folderName}) {
            EXPECT_EQ(field->encoding(), nullptr);
        }
        EXPECT_EQ(file->items->Ubound(), -1);
        EXPECT_EQ(file->data->Ubound(), -1);
        EXPECT_EQ(file->fileSource->NativePath().bytes(), scratch.path("in.vxpk"));
        EXPECT_EQ(file->folder->NativePath().bytes(), extractionFolder());
        EXPECT_TRUE(test::SnapshotTree(extractionFolder()).empty());
    }
    EXPECT_TRUE(messages().empty());
}

TEST_F(vxpkFileTest, open_namesTheFolderAfterTheTimeInHexThenANumberFrom100To400) {
    const std::time_t before = std::time(nullptr);
    const auto file = openPackage(EncodePackage({}));
    const std::time_t after = std::time(nullptr);
    ASSERT_NE(file, nullptr);
    const std::string name = fs::path(extractionFolder()).filename().string();
    ASSERT_GT(name.size(), 3u);
    const std::string hexPart = name.substr(0, name.size() - 3);
    EXPECT_EQ(hexPart.find_first_not_of("0123456789ABCDEF"), std::string::npos) << name;
    const long long seconds = std::strtoll(hexPart.c_str(), nullptr, 16);
    EXPECT_GE(seconds, before);
    EXPECT_LE(seconds, after);
    const int number = std::stoi(name.substr(name.size() - 3));
    EXPECT_GE(number, 100);
    EXPECT_LE(number, 400);
}

TEST_F(vxpkFileTest, wrongVersion_givesNilSilentlyAndLeavesAnEmptyFolder) {
    const std::string rest = EncodeHeader("V001", "Demo", "demo1", "site").substr(5) +
                             EncodeRecord({"f", "", 1, 1, "x"});
    const std::vector<std::string> packages = {
        "",
        "\x04V002" + rest,
        "\x04v001" + rest,
        "\x05V0011" + rest,
        "\x03V00" + rest,
        "V001" + rest,
        "\x04V00",
    };
    for (const auto& bytes : packages) {
        clearTemporary();
        EXPECT_EQ(openPackage(bytes), nullptr) << bytes;
        EXPECT_TRUE(test::SnapshotTree(extractionFolder()).empty()) << bytes;
    }
    EXPECT_TRUE(messages().empty());
}

TEST_F(vxpkFileTest, records_recreateTheTreeAsTheFieldsSay) {
    struct Case {
        const char* what;
        std::vector<PackageRecord> records;
        bool extracted;
        std::vector<std::string> messages;
        Tree tree;
    };
    const PackageRecord folderD{"d", "", 2, 0, ""};
    const std::vector<Case> cases = {
        {"type 3 is a file",
         {{"a", "", 3, 3, "xyz"}, {"b", "", 1, 1, "q"}},
         true,
         {},
         {{"a", "=xyz"}, {"b", "=q"}}},
        {"type -1 is a file",
         {{"a", "", -1, 2, std::string("\x02\x00", 2)}, folderD},
         true,
         {},
         {{"a", std::string("=\x02\x00", 3)}, {"d", "/"}}},
        {"a folder's length skips nothing",
         {{"d", "", 2, 1000, ""}, {"f", "d", 1, 2, "hi"}},
         true,
         {},
         {{"d", "/"}, {"d/f", "=hi"}}},
        {"the shorter second record of a file cuts the first",
         {{"f", "", 1, 6, "longer"}, {"f", "", 1, 2, "ab"}},
         true,
         {},
         {{"f", "=ab"}}},
        {"a file before its folder", {{"f", "d", 1, 2, "hi"}, folderD}, false, {kWriteFailure}, {}},
        {"colons of the parent become folders",
         {{"a", "", 2, 0, ""}, {"b", "a", 2, 0, ""}, {"c", "a:b", 1, 1, "c"}},
         true,
         {},
         {{"a", "/"}, {"a/b", "/"}, {"a/b/c", "=c"}}},
        {"a folder recorded twice is filled once",
         {folderD, folderD, {"f", "d", 1, 1, "x"}},
         true,
         {},
         {{"d", "/"}, {"d/f", "=x"}}},
        {"a negative length reads nothing",
         {{"f", "", 1, -5, ""}, {"g", "", 1, 1, "z"}},
         true,
         {},
         {{"f", "="}, {"g", "=z"}}},
        {"a length beyond the end gives what there is",
         {{"f", "", 1, 0x7fffffff, "abc"}},
         true,
         {},
         {{"f", "=abc"}}},
        {"a .. in the parent is followed",
         {folderD, {"x", "d:..", 1, 1, "1"}},
         true,
         {},
         {{"d", "/"}, {"x", "=1"}}},
        {"a file where a folder is",
         {folderD, {"d", "", 1, 1, "x"}, {"g", "", 1, 1, "y"}},
         false,
         {kWriteFailure},
         {{"d", "/"}}},
        {"an empty name names the extraction folder itself",
         {{"", "", 1, 0, ""}},
         false,
         {kWriteFailure},
         {}},
    };
    for (const auto& c : cases) {
        clearTemporary();
        ui.messages.clear();
        const auto file = openPackage(EncodePackage(c.records));
        EXPECT_EQ(file != nullptr, c.extracted) << c.what;
        EXPECT_EQ(messages(), c.messages) << c.what;
        EXPECT_EQ(test::SnapshotTree(extractionFolder()), c.tree) << c.what;
    }
}

TEST_F(vxpkFileTest, failureAtTheTenthRecord_leavesNineItemsAndOneMessage) {
    std::vector<PackageRecord> records;
    Tree nine;
    for (int i = 1; i <= 9; ++i) {
        const std::string name = "f" + std::to_string(i);
        records.push_back({name, "", 1, 1, std::to_string(i)});
        nine[name] = "=" + std::to_string(i);
    }
    records.push_back({"g", "missing", 1, 1, "x"});
    records.push_back({"h", "", 1, 1, "x"});
    EXPECT_EQ(openPackage(EncodePackage(records)), nullptr);
    EXPECT_EQ(messages(), std::vector<std::string>{kWriteFailure});
    EXPECT_EQ(test::SnapshotTree(extractionFolder()), nine);
    EXPECT_EQ(ui.backgroundTasks, 9);
}

TEST_F(vxpkFileTest, dotDotInTheParent_leadsOutOfTheExtractionFolder) {
    const auto file = openPackage(EncodePackage({{"escaped", "..", 1, 2, "hi"}}));
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(scratch.readFile("tmp/escaped"), "hi");
}

TEST_F(vxpkFileTest, nulInAName_raisesPastTheCatchClauses) {
    const std::string bytes = EncodePackage({{std::string("a\0b", 3), "", 1, 1, "x"}});
    EXPECT_THROW(openPackage(bytes), UnsupportedFormatException);
}

// Every length of a small package, from nothing to the whole: each ends as
// the bytes up to the cut say, and never in anything else.
TEST_F(vxpkFileTest, packageCutShortAtEveryOffset_endsInTheOutcomeOfWhereItIsCut) {
    const std::vector<PackageRecord> records = {
        {"d", "", 2, 77, ""},
        {"a", "d", 1, 5, "12345"},
        {"b", "", 1, 3, "xyz"},
    };
    const std::vector<std::string> paths = {"d", "d/a", "b"};
    const std::string header = EncodeHeader("V001", "Demo", "demo1", "site");
    std::string whole = header;
    std::vector<std::size_t> starts, contentsStarts;
    for (const auto& record : records) {
        starts.push_back(whole.size());
        whole += EncodeRecord(record);
        contentsStarts.push_back(whole.size() - record.contents.size());
    }
    for (std::size_t cut = 0; cut <= whole.size(); ++cut) {
        clearTemporary();
        ui.messages.clear();
        const auto file = openPackage(whole.substr(0, cut));
        bool extracted = cut >= 5;
        std::vector<std::string> expectedMessages;
        Tree expected;
        for (std::size_t i = 0; i < records.size() && cut > starts[i]; ++i) {
            if (cut < contentsStarts[i]) {
                extracted = false;
                expectedMessages = {kExtractFailure};
                break;
            }
            expected[paths[i]] = records[i].type == 2
                                     ? "/"
                                     : "=" + records[i].contents.substr(0, cut - contentsStarts[i]);
        }
        EXPECT_EQ(file != nullptr, extracted) << "cut at " << cut;
        EXPECT_EQ(messages(), expectedMessages) << "cut at " << cut;
        EXPECT_EQ(test::SnapshotTree(extractionFolder()), expected) << "cut at " << cut;
    }
}

TEST_F(vxpkFileTest, unusableSource_reportsAndGivesNilAfterMakingTheFolder) {
    scratch.makeFolder("folder.vxpk");
    const std::vector<Ref<FolderItem>> sources = {nullptr, scratch.item("missing.vxpk"),
                                                  scratch.item("folder.vxpk")};
    for (const auto& source : sources) {
        clearTemporary();
        ui.messages.clear();
        EXPECT_EQ(vxpkFile::open(source), nullptr);
        EXPECT_EQ(messages(), std::vector<std::string>{kExtractFailure});
        EXPECT_TRUE(test::SnapshotTree(extractionFolder()).empty());
    }
}

TEST_F(vxpkFileTest, temporaryFolderMissing_saysItCannotExtract) {
    ::setenv("TMPDIR", scratch.path("no/such/folder").c_str(), 1);
    EXPECT_EQ(openPackage(EncodePackage({})), nullptr);
    EXPECT_EQ(messages(), std::vector<std::string>{"Unable to extract file..."});
}

TEST_F(vxpkFileTest, extractIntoNoFolder_givesFalseSilently) {
    scratch.writeFile("in.vxpk", EncodePackage({{"f", "", 1, 1, "x"}}));
    scratch.writeFile("plain", "x");
    auto file = New<vxpkFile>();
    file->fileSource = scratch.item("in.vxpk");
    for (const auto& destination :
         {Ref<FolderItem>(), scratch.item("plain"), scratch.item("none")}) {
        EXPECT_FALSE(file->extract(destination));
    }
    EXPECT_EQ(file->folder, nullptr);
    EXPECT_TRUE(messages().empty());
}

TEST_F(vxpkFileTest, secondExtract_overwritesWhatTheFirstWrote) {
    scratch.writeFile("in.vxpk", EncodePackage({{"f", "", 1, 3, "abc"}}));
    const std::string destination = scratch.makeFolder("out");
    auto file = New<vxpkFile>();
    file->fileSource = scratch.item("in.vxpk");
    ASSERT_TRUE(file->extract(scratch.item("out")));
    scratch.writeFile("out/f", "a much longer text");
    ASSERT_TRUE(file->extract(scratch.item("out")));
    EXPECT_EQ(scratch.readFile("out/f"), "abc");
}

// A file the system will not let grow fails to be written, which is not told;
// the records behind it must still be read from their own place.
TEST_F(vxpkFileTest, writeOfAFileFails_goesOnWithTheNextRecordInPlace) {
    // Larger than any buffer, so that the copy itself stops at the limit.
    const std::string big(300000, 'b');
    scratch.writeFile("in.vxpk",
                      EncodePackage({{"big", "", 1, 300000, big}, {"next", "", 1, 3, "xyz"}}));
    const std::string outcome = test::RunInChild(
        [&] {
            const auto file = vxpkFile::open(scratch.item("in.vxpk"));
            const std::string folder = extractionFolder();
            return std::string(file ? "extracted" : "nil") + " " +
                   std::to_string(fs::file_size(folder + "/big") < big.size()) + " " +
                   scratch.readFile(fs::relative(folder + "/next", scratch.path()).string()) + " " +
                   std::to_string(ui.messages.size());
        },
        {.unprivileged = false, .fileSizeLimit = 4096});
    EXPECT_EQ(outcome, "extracted 1 xyz 0");
}

}  // namespace
}  // namespace vx
