#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <string>
#include <vector>

#include "PackageFixture.h"
#include "container/vxPacker.h"
#include "container/vxpkFile.h"
#include "runtime/files/SpecialFolder.h"
#include "support/ChildProcess.h"

namespace vx {
namespace {

namespace fs = std::filesystem;
using namespace test;

const std::string kExtractFailure = "MsgBox Error: Unable to extract vxpk contents.\n";
const std::string kWriteFailure = "MsgBox Unable to write document.\n";

using vxpkFileTest = PackageFixture;

// The extraction folder is named after the time in upper-case hex and a
// number from 100 to 400; the time has fractions of a second, so the name's
// second may be the one after.
TEST_F(vxpkFileTest, headerFields_readBackByteForByteWithoutTagIntoANewFolder) {
    const std::array<std::string, 3> cases[] = {
        {"", "", ""},
        {std::string(255, 'n'), ByteRange(1, 255), "Caf\xC3\xA9 \xE2\x98\x95"},
        {ByteRange(0, 254), "a:b/c", ByteRange(128, 255)},
    };
    for (const auto& [name, uid, folderName] : cases) {
        clearTemporary();
        const std::time_t before = std::time(nullptr);
        const auto file = openPackage(EncodePackage({}, name, uid, folderName));
        ASSERT_NE(file, nullptr);
        const std::pair<const String&, std::string> fields[] = {{file->version, "V001"},
                                                                {file->name, name},
                                                                {file->uid, uid},
                                                                {file->folderName, folderName}};
        for (const auto& [field, bytes] : fields) {
            EXPECT_EQ(field.bytes(), bytes);
            EXPECT_EQ(field.encoding(), nullptr);
        }
        const std::string folder = extractionFolder();
        EXPECT_EQ(file->folder->NativePath().bytes(), folder);
        EXPECT_TRUE(SnapshotTree(folder).empty());
        const std::string hex = fs::path(folder).filename().string();
        const long long seconds = std::stoll(hex.substr(0, hex.size() - 3), nullptr, 16);
        const int number = std::stoi(hex.substr(hex.size() - 3));
        EXPECT_TRUE(hex.find_first_not_of("0123456789ABCDEF") == std::string::npos &&
                    before <= seconds && seconds <= std::time(nullptr) + 1 && 100 <= number &&
                    number <= 400)
            << hex;
    }
    EXPECT_EQ(outcome(), "");
}

TEST_F(vxpkFileTest, wrongVersion_givesNilSilentlyAndLeavesAnEmptyFolder) {
    const std::string rest = EncodePackage({FileRecord("f", "x")}).substr(5);
    for (const std::string& bytes : {"\x04V002" + rest, "\x04v001" + rest, "\x05V0011" + rest,
                                     "\x03V00" + rest, "V001" + rest}) {
        clearTemporary();
        EXPECT_EQ(openPackage(bytes), nullptr) << bytes;
        EXPECT_EQ(outcome(), "") << bytes;
        EXPECT_TRUE(SnapshotTree(extractionFolder()).empty()) << bytes;
    }
}

TEST_F(vxpkFileTest, records_recreateTheTreeAsTheFieldsSay) {
    struct Case {
        const char* what;
        std::vector<PackageRecord> records;
        Tree tree;
        bool fails = false;
    };
    const auto d = FolderRecord("d");
    const std::vector<Case> cases = {
        {"types other than 2 are files",
         {{"a", "", 3, 1, "x"}, {"b", "", -1, 2, std::string("\x02\x00", 2)}, d},
         {{"a", "=x"}, {"b", std::string("=\x02\x00", 3)}, {"d", "/"}}},
        {"a folder's length skips nothing",
         {{"d", "", 2, 1000, ""}, FileRecord("f", "hi", "d")},
         {{"d", "/"}, {"d/f", "=hi"}}},
        {"the shorter second record of a file cuts the first",
         {FileRecord("f", "longer"), FileRecord("f", "ab")},
         {{"f", "=ab"}}},
        {"colons of the parent become folders, a folder twice is made once",
         {FolderRecord("a"), FolderRecord("a"), FolderRecord("b", "a"),
          FileRecord("c", "c", "a:b")},
         {{"a", "/"}, {"a/b", "/"}, {"a/b/c", "=c"}}},
        {"a negative length reads nothing",
         {{"f", "", 1, -5, ""}, FileRecord("g", "z")},
         {{"f", "="}, {"g", "=z"}}},
        {"a length beyond the end gives what there is",
         {{"f", "", 1, 0x7fffffff, "abc"}},
         {{"f", "=abc"}}},
        {"bytes that are no UTF-8 pass, and a name keeps its colon",
         {FolderRecord("\xff"), FileRecord("\x80:b", "z", "\xff")},
         {{"\xff", "/"}, {"\xff/\x80:b", "=z"}}},
        {"a file before its folder fails, and nothing behind it is made",
         {FileRecord("e", "1"), FileRecord("f", "hi", "d"), d},
         {{"e", "=1"}},
         true},
        {"a file where a folder is fails",
         {d, FileRecord("d", "x"), FileRecord("g", "y")},
         {{"d", "/"}},
         true},
        {"an empty name names the extraction folder itself", {FileRecord("", "")}, {}, true},
    };
    for (const auto& c : cases) {
        clearTemporary();
        const auto file = openPackage(EncodePackage(c.records));
        EXPECT_EQ(file == nullptr, c.fails) << c.what;
        EXPECT_EQ(outcome(), c.fails ? kWriteFailure : "") << c.what;
        EXPECT_EQ(SnapshotTree(extractionFolder()), c.tree) << c.what;
    }
}

TEST_F(vxpkFileTest, oddNames_leadOutOfTheFolderOrRaisePastTheCatchClauses) {
    ASSERT_NE(openPackage(EncodePackage({FileRecord("escaped", "hi", "..")})), nullptr);
    EXPECT_EQ(scratch.readFile("tmp/escaped"), "hi");
    EXPECT_THROW(openPackage(EncodePackage({FileRecord(std::string("a\0b", 3), "x")})),
                 UnsupportedFormatException);
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
    std::string whole = EncodePackage({});
    std::vector<std::size_t> starts, contentsStarts;
    for (const auto& record : records) {
        starts.push_back(whole.size());
        whole += EncodeRecord(record);
        contentsStarts.push_back(whole.size() - record.contents.size());
    }
    for (std::size_t cut = 0; cut <= whole.size(); ++cut) {
        clearTemporary();
        const auto file = openPackage(whole.substr(0, cut));
        Tree expected;
        bool cutInAField = false;
        for (std::size_t i = 0; i < records.size() && cut > starts[i] && !cutInAField; ++i) {
            cutInAField = cut < contentsStarts[i];
            if (!cutInAField) {
                // Appended rather than "=" + ...: GCC 12 at -O3 warns falsely
                // (-Wrestrict) on a literal inserted before a temporary string.
                expected[paths[i]] =
                    records[i].type == 2
                        ? "/"
                        : std::string("=").append(records[i].contents, 0, cut - contentsStarts[i]);
            }
        }
        EXPECT_EQ(file != nullptr, cut >= 5 && !cutInAField) << "cut at " << cut;
        EXPECT_EQ(outcome(), cutInAField ? kExtractFailure : "") << "cut at " << cut;
        EXPECT_EQ(SnapshotTree(extractionFolder()), expected) << "cut at " << cut;
    }
}

TEST_F(vxpkFileTest, unusableSourceOrTemporaryFolder_reportsAndGivesNil) {
    scratch.makeFolder("folder.vxpk");
    for (const auto& source :
         {Ref<FolderItem>(), scratch.item("missing.vxpk"), scratch.item("folder.vxpk")}) {
        clearTemporary();
        EXPECT_EQ(vxpkFile::open(source), nullptr);
        EXPECT_EQ(outcome(), kExtractFailure);
        EXPECT_TRUE(SnapshotTree(extractionFolder()).empty());
    }
    clearTemporary();
    ::setenv("TMPDIR", scratch.path("no/such/folder").c_str(), 1);
    EXPECT_EQ(openPackage(EncodePackage({})), nullptr);
    EXPECT_EQ(outcome(), "MsgBox Unable to extract file...\n");
}

TEST_F(vxpkFileTest, extract_failsSilentlyWithoutAFolderAndOverwritesWhatWasThere) {
    scratch.writeFile("in.vxpk", EncodePackage({FileRecord("f", "abc")}));
    scratch.writeFile("plain", "x");
    scratch.writeFile("out/f", "a much longer text");
    auto file = New<vxpkFile>();
    file->fileSource = scratch.item("in.vxpk");
    for (const auto& destination :
         {Ref<FolderItem>(), scratch.item("plain"), scratch.item("none")}) {
        EXPECT_FALSE(file->extract(destination));
    }
    EXPECT_EQ(file->folder, nullptr);
    EXPECT_EQ(outcome(), "");
    ASSERT_TRUE(file->extract(scratch.item("out")));
    EXPECT_EQ(scratch.readFile("out/f"), "abc");
}

// A file the system will not let grow fails to be written, which is not told;
// the records behind it must still be read from their own place.
TEST_F(vxpkFileTest, writeOfAFileFails_goesOnWithTheNextRecordInPlace) {
    // Larger than any buffer, so that the copy itself stops at the limit.
    const std::string big(300000, 'b');
    scratch.writeFile("in.vxpk",
                      EncodePackage({FileRecord("big", big), FileRecord("next", "xyz")}));
    const std::string outcome = RunInChild(
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

// Packs the folder site and opens the package again as the tree grows: the
// extraction must equal the source less its hidden entries.
TEST_F(vxpkFileTest, packedTree_extractsToTheSameTreeLessHiddenEntries) {
    const auto expectRoundTrip = [&](const char* stage) {
        clearTemporary();
        vxPacker::build();
        vxPacker::bs = nullptr;
        log->lines.clear();
        ASSERT_NE(vxpkFile::open(scratch.item("out.vxpk")), nullptr) << stage;
        EXPECT_EQ(SnapshotTree(extractionFolder()), SnapshotTree(scratch.path("site"), true))
            << stage;
        EXPECT_EQ(outcome(), "") << stage;
    };
    scratch.makeFolder("site");
    expectRoundTrip("empty");
    scratch.writeFile("site/.DS_Store", "x");
    scratch.writeFile("site/_build/out.js", "y");
    scratch.makeFolder("site/.git/objects");
    expectRoundTrip("hidden only");
    // Each level holds a file and a folder named after one kind of name, hidden
    // ones among them, and files of sizes on both sides of the buffers.
    const char* const names[] = {"index.html",
                                 "a_b",
                                 "x.",
                                 "y_",
                                 "Caf\xC3\xA9",
                                 "\xE6\x97\xA5\xE6\x9C\xAC",
                                 "\xF0\x9F\x98\x80",
                                 "v1.2.3",
                                 ".hidden",
                                 "_private",
                                 "name with blanks"};
    const std::size_t sizes[] = {0, 1, 255, 4096, 131072, 200001};
    std::string level = "site";
    for (std::size_t i = 0; i < std::size(names); ++i) {
        std::string bytes(sizes[i % std::size(sizes)], '\0');
        for (std::size_t b = 0; b < bytes.size(); ++b) {
            bytes[b] = static_cast<char>(b * 131 + i);
        }
        scratch.writeFile(level + "/" + names[i], bytes);
        scratch.writeFile(level + "/" + names[i] + "d/leaf", names[i]);
        level += "/L" + std::to_string(i);
    }
    // A hundred levels: the parent field of the deepest file is 199 bytes.
    std::string deep = "site";
    for (int i = 0; i < 100; ++i) {
        deep += "/d";
    }
    scratch.writeFile(deep + "/bottom", "deep");
    scratch.writeFile("site/large", std::string(3 << 20, 'L') + ByteRange(0, 255));
    expectRoundTrip("every kind");
}

// Another user plants a link to a folder of theirs under every name that the
// next extractions could take, and under the user's usual folder name, in the
// shared temporary folder. With TMPDIR unset they receive nothing.
TEST_F(vxpkFileTest, squattersLinksInTheSharedFolder_doNotRedirectTheExtraction) {
    const std::string shared = scratch.makeFolder("shared");
    const std::string theirs = scratch.makeFolder("theirs");
    ::chmod(shared.c_str(), 01777);
    ::chmod(theirs.c_str(), 0777);
    const std::string usual = "vantrelix-" + std::to_string(::geteuid());
    const std::time_t now = std::time(nullptr);
    const std::string planted = RunInChild([&] {
        int links = ::symlink(theirs.c_str(), (shared + "/" + usual).c_str()) == 0;
        for (std::time_t second = now; second <= now + 2; ++second) {
            for (int number = 100; number <= 400; ++number) {
                char name[32];
                std::snprintf(name, sizeof name, "%llX%d", static_cast<long long>(second), number);
                links += ::symlink(theirs.c_str(), (shared + "/" + name).c_str()) == 0;
            }
        }
        return std::to_string(links);
    });
    ASSERT_EQ(planted, std::to_string(1 + 3 * 301));
    scratch.writeFile("in.vxpk", EncodePackage({FileRecord("secret", "s")}));
    const std::string savedShared = SpecialFolder::_SharedTemporary;
    SpecialFolder::_SharedTemporary = shared;
    ::unsetenv("TMPDIR");

    const auto file = vxpkFile::open(scratch.item("in.vxpk"));

    SpecialFolder::_SharedTemporary = savedShared;
    ASSERT_NE(file, nullptr);
    EXPECT_TRUE(fs::is_empty(theirs));
    const fs::path folder(std::string(file->folder->NativePath().bytes()));
    EXPECT_EQ(fs::canonical(folder), folder) << "no link on the way";
    EXPECT_EQ(folder.parent_path().parent_path(), fs::path(shared));
    EXPECT_EQ(scratch.readFile(fs::relative(folder / "secret", scratch.path()).string()), "s");
}

}  // namespace
}  // namespace vx
