#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "VxpkRun.h"
#include "container/PackageBytes.h"
#include "support/ScratchFolder.h"

namespace vx {
namespace {

using namespace test;

class vxpkPackageCheckTest : public ::testing::Test {
protected:
    VxpkResult run(const std::vector<std::string>& arguments) {
        return RunVxpk(arguments, scratch.path("w"));
    }
    // The names in the working folder and in the scratch folder above it.
    std::vector<std::string> everythingOnDisk() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(scratch.path())) {
            names.push_back(entry.path().string());
        }
        return names;
    }

    ScratchFolder scratch;
};

TEST_F(vxpkPackageCheckTest, damagedPackage_isDiagnosedByVerifyAndRefusedByExtract) {
    struct Case {
        std::vector<PackageRecord> records;
        std::string diagnosis;
    };
    // Where valid records come first, the refusal must undo what they made.
    const std::vector<Case> cases = {
        {{FileRecord("a", "x", "d")},
         "record 1 at byte 23: the parent folder \"d\" is not recorded before this item"},
        {{FolderRecord("d"), FileRecord("a", "1", "d"), FileRecord("a", "2", "d")},
         "record 3 at byte 39: the path \"d/a\" is recorded twice"},
        {{FileRecord("f", "1"), FileRecord("a", "2", "f")},
         "record 2 at byte 32: the parent \"f\" is a file"},
        {{FileRecord("..", "x")}, "record 1 at byte 21: the name \"..\" leads out of its folder"},
        {{FolderRecord("d"), FileRecord("x", "1", "d:..:..")},
         "record 2 at byte 31: the parent \"d:..:..\" has a component that leads out of its "
         "folder"},
        {{FileRecord("x", "1", "/etc")},
         "record 1 at byte 23: the parent \"/etc\" has a component that holds \"/\""},
        {{FileRecord("../../x", "1")}, "record 1 at byte 21: the name \"../../x\" holds \"/\""},
        {{FileRecord(std::string("a\0b", 3), "1")},
         "record 1 at byte 21: the name \"a\\x00b\" holds a NUL byte"},
        {{FileRecord("", "1")}, "record 1 at byte 21: the name \"\" is empty"},
        {{{"x", "", 1, 100, "short"}},
         "record 1 at byte 25: the length 100 runs past the end of the file (5 bytes left)"},
        {{{"x", "", 1, -5, ""}}, "record 1 at byte 25: negative length -5"},
        {{{"x", "", 0, 0, ""}}, "record 1 at byte 24: type 0 is neither 1 (file) nor 2 (folder)"},
    };
    scratch.makeFolder("w");
    for (const auto& [records, diagnosis] : cases) {
        scratch.writeFile("w/in.vxpk", EncodePackage(records));
        const std::vector<std::string> before = everythingOnDisk();

        const auto verified = run({"verify", "in.vxpk"});
        EXPECT_EQ(verified.exitCode, 1);
        EXPECT_EQ(verified.err, "vxpk: error: in.vxpk: " + diagnosis + "\n");
        const auto extracted = run({"extract", "in.vxpk", "dest"});
        EXPECT_EQ(extracted.exitCode, 1);
        EXPECT_EQ(extracted.err, "vxpk: error: in.vxpk: " + diagnosis + "\n");
        EXPECT_EQ(everythingOnDisk(), before);
    }
}

TEST_F(vxpkPackageCheckTest, extract_needsAMissingOrEmptyDestination) {
    scratch.writeFile("w/in.vxpk", EncodePackage({FileRecord("a", "1")}));
    scratch.writeFile("w/full/x", "");
    scratch.makeFolder("w/empty");
    scratch.makeLink("w/link", "empty");
    const std::vector<std::pair<std::string, int>> cases = {
        {"full", 1}, {"link", 1}, {"in.vxpk", 1}, {"no/parent", 3}, {"empty", 0}, {"new", 0}};
    for (const auto& [destination, exitCode] : cases) {
        EXPECT_EQ(run({"extract", "in.vxpk", destination}).exitCode, exitCode) << destination;
    }
    EXPECT_EQ(scratch.readFile("w/empty/a"), "1");
    EXPECT_EQ(scratch.readFile("w/new/a"), "1");
    EXPECT_FALSE(std::filesystem::exists(scratch.path("w/empty/x")));
}

TEST_F(vxpkPackageCheckTest, json_givesTheHeaderItemsAndVerdict) {
    scratch.writeFile("w/in.vxpk", EncodePackage({FolderRecord("d"), FileRecord("a", "xy", "d")}));
    EXPECT_EQ(run({"list", "--json", "in.vxpk"}).out,
              "{\"version\":\"V001\",\"name\":\"Demo\",\"uid\":\"demo1\",\"folderName\":\"site\","
              "\"items\":[{\"path\":\"d/\",\"type\":\"folder\",\"size\":0,\"offset\":21},"
              "{\"path\":\"d/a\",\"type\":\"file\",\"size\":2,\"offset\":29}]}\n");
    scratch.writeFile("w/empty.vxpk", EncodePackage({}));
    EXPECT_EQ(run({"list", "--json", "empty.vxpk"}).out,
              "{\"version\":\"V001\",\"name\":\"Demo\",\"uid\":\"demo1\",\"folderName\":"
              "\"site\",\"items\":[]}\n");
    EXPECT_EQ(run({"info", "in.vxpk"}).out,
              "version: V001\nname: Demo\nuid: demo1\nfolder name: site\nfiles: 1\nfolders: 1\n"
              "content bytes: 2\npackage bytes: 40\n"
              "sha256: 052c1d460db27e1953c8f3677952f5016ba9920408558f02ff199fed4bc420f0\n");
    scratch.writeFile("w/bad.vxpk", EncodePackage({FileRecord("a", "1", "d")}));
    const auto verdict = run({"verify", "--json", "bad.vxpk"});
    EXPECT_EQ(verdict.exitCode, 1);
    EXPECT_EQ(verdict.out,
              "{\"sound\":false,\"record\":1,\"offset\":23,\"problem\":\"the parent folder "
              "\\\"d\\\" is not recorded before this item\"}\n");
}

// Output that never reached its reader is a failure, whatever printed it.
TEST_F(vxpkPackageCheckTest, standardOutputThatCannotBeWritten_isASystemError) {
    scratch.writeFile("w/in.vxpk", EncodePackage({FileRecord("a", "xy")}));
    scratch.writeFile("w/other.vxpk", EncodePackage({FileRecord("a", "z")}));
    const std::vector<std::pair<std::vector<std::string>, int>> cases = {
        {{"list", "in.vxpk"}, 3},
        {{"info", "in.vxpk"}, 3},
        {{"verify", "in.vxpk"}, 3},
        {{"cat", "in.vxpk", "a"}, 3},
        {{"diff", "in.vxpk", "other.vxpk"}, 2},
        {{"--help"}, 3},
    };
    for (const auto& [arguments, exitCode] : cases) {
        std::vector<std::string> shell = {"-c", "exec \"$0\" \"$@\" > /dev/full", VXPK_PATH};
        shell.insert(shell.end(), arguments.begin(), arguments.end());
        const auto result = RunProgram("sh", shell, scratch.path("w"));
        EXPECT_EQ(result.exitCode, exitCode) << arguments[0];
        EXPECT_EQ(result.err, "vxpk: error: standard output: No space left on device\n")
            << arguments[0];
    }
}

}  // namespace
}  // namespace vx
