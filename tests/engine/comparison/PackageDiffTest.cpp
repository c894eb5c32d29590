#include <gtest/gtest.h>
#include <stdio.h>

#include <string>
#include <vector>

#include "container/PackageBytes.h"
#include "engine/comparison/PackageDiff.h"
#include "engine/core/EngineFailure.h"
#include "runtime/files/SystemCalls.h"
#include "support/ScratchFolder.h"

namespace vx {
namespace {

using engine::FailureKind;
using engine::HeaderChange;
using engine::PathChange;
using engine::PathState;
using test::FileRecord;
using test::FolderRecord;
using test::PackageRecord;

// One side of a change, "-" where the path is not, "dir" for a folder, else
// the file's size.
std::string sideOf(const std::optional<PathState>& state) {
    if (!state) {
        return "-";
    }
    return state->isFolder ? "dir" : std::to_string(state->size);
}

std::string describe(const PathChange& change) {
    static const char* const kLetters[] = {"A", "D", "M", "T"};
    return std::string(kLetters[static_cast<int>(change.kind)]) + " " + change.path + " " +
           sideOf(change.before) + " " + sideOf(change.after);
}

class PackageDiffTest : public ::testing::Test {
protected:
    engine::PackageDifferences diff(const std::string& before, const std::string& after) {
        scratch.writeFile("before.vxpk", before);
        scratch.writeFile("after.vxpk", after);
        return engine::DiffPackages(scratch.path("before.vxpk"), scratch.path("after.vxpk"));
    }
    std::vector<std::string> pathChanges(const std::vector<PackageRecord>& before,
                                         const std::vector<PackageRecord>& after) {
        const auto differences = diff(test::EncodePackage(before), test::EncodePackage(after));
        EXPECT_TRUE(differences.header.empty());
        std::vector<std::string> lines;
        for (const auto& change : differences.paths) {
            lines.push_back(describe(change));
        }
        return lines;
    }

    test::ScratchFolder scratch;
};

TEST_F(PackageDiffTest, diff_treesThatDiffer_givesEachChangedPathSortedByItsBytes) {
    struct Case {
        const char* what;
        std::vector<PackageRecord> before;
        std::vector<PackageRecord> after;
        std::vector<std::string> changes;
    };
    const std::vector<Case> cases = {
        {"identical",
         {FileRecord("a", "1"), FolderRecord("d"), FileRecord("b", "22", "d")},
         {FileRecord("a", "1"), FolderRecord("d"), FileRecord("b", "22", "d")},
         {}},
        {"the same records in another order",
         {FileRecord("b", "2"), FileRecord("a", "1")},
         {FileRecord("a", "1"), FileRecord("b", "2")},
         {}},
        {"added, each path of a new folder",
         {FileRecord("a", "1")},
         {FileRecord("a", "1"), FolderRecord("e"), FileRecord("f", "xyz", "e")},
         {"A e - dir", "A e/f - 3"}},
        {"removed",
         {FolderRecord("d"), FileRecord("b", "22", "d")},
         {},
         {"D d dir -", "D d/b 2 -"}},
        {"same size, other bytes", {FileRecord("a", "abc")}, {FileRecord("a", "abd")}, {"M a 3 3"}},
        {"other size", {FileRecord("a", "abc")}, {FileRecord("a", "abcd")}, {"M a 3 4"}},
        {"emptied", {FileRecord("a", "x")}, {FileRecord("a", "")}, {"M a 1 0"}},
        {"file turned folder",
         {FileRecord("d", "x")},
         {FolderRecord("d"), FileRecord("y", "1", "d")},
         {"T d 1 dir", "A d/y - 1"}},
        {"folder turned file", {FolderRecord("d")}, {FileRecord("d", "")}, {"T d dir 0"}},
        // The same bytes at other offsets of their packages are the same file.
        {"moved in the package",
         {FileRecord("aa", "zzzz"), FileRecord("b", "same")},
         {FileRecord("b", "same")},
         {"D aa 4 -"}},
        {"sorted by bytes, not by tree",
         {},
         {FolderRecord("d"), FileRecord("a", "1", "d"), FileRecord("d-x", "1"),
          FileRecord("D", "")},
         {"A D - 0", "A d - dir", "A d-x - 1", "A d/a - 1"}},
    };
    for (const auto& [what, before, after, changes] : cases) {
        EXPECT_EQ(pathChanges(before, after), changes) << what;
    }
}

TEST_F(PackageDiffTest, diff_headerChanged_givesTheChangedFieldsInTheirOrder) {
    const std::string same = test::EncodePackage({FileRecord("a", "1")});
    const auto renamed =
        diff(same, test::EncodePackage({FileRecord("a", "1")}, "Demo 2", "demo1", "web"));
    ASSERT_EQ(renamed.header.size(), 2u);
    EXPECT_EQ(renamed.header[0].field, HeaderChange::Field::kName);
    EXPECT_EQ(renamed.header[0].before, String("Demo"));
    EXPECT_EQ(renamed.header[0].after, String("Demo 2"));
    EXPECT_EQ(renamed.header[1].field, HeaderChange::Field::kFolderName);
    EXPECT_EQ(renamed.header[1].before, String("site"));
    EXPECT_EQ(renamed.header[1].after, String("web"));
    EXPECT_TRUE(renamed.paths.empty());
    EXPECT_FALSE(renamed.none());

    const auto newUid = diff(same, test::EncodePackage({FileRecord("a", "1")}, "Demo", "demo2"));
    ASSERT_EQ(newUid.header.size(), 1u);
    EXPECT_EQ(newUid.header[0].field, HeaderChange::Field::kUid);
    EXPECT_TRUE(diff(same, same).none());
}

// The package at the after path is replaced by another just after it is
// opened: its contents must still come from the file that was walked.
TEST_F(PackageDiffTest, diff_packageReplacedOnceOpened_readsTheFileItWalked) {
    static std::string replacement;
    static std::string replaced;
    static SystemCalls real;
    replacement = scratch.writeFile("other.vxpk", test::EncodePackage({FileRecord("a", "2")}));
    replaced = scratch.writeFile("after.vxpk", test::EncodePackage({FileRecord("a", "1")}));
    scratch.writeFile("before.vxpk", test::EncodePackage({FileRecord("a", "1")}));
    real = systemCalls;
    systemCalls.openat = [](int folder, const char* name, int flags, mode_t mode) {
        const int fd = real.openat(folder, name, flags, mode);
        if (name == replaced) {
            ::rename(replacement.c_str(), replaced.c_str());
        }
        return fd;
    };
    const auto differences =
        engine::DiffPackages(scratch.path("before.vxpk"), scratch.path("after.vxpk"));
    systemCalls = real;
    EXPECT_TRUE(differences.none());
}

TEST_F(PackageDiffTest, diff_eitherPackageUnsoundOrMissing_failsNamingIt) {
    const std::string sound = test::EncodePackage({FileRecord("a", "1")});
    const std::string unsound = test::EncodePackage({FileRecord("a", "1", "d")});
    struct Case {
        std::string before;
        std::string after;
        std::string named;
    };
    for (const auto& [before, after, named] :
         std::vector<Case>{{unsound, sound, "before.vxpk"}, {sound, unsound, "after.vxpk"}}) {
        try {
            diff(before, after);
            ADD_FAILURE() << "no failure for " << named;
        } catch (const engine::EngineFailure& failure) {
            EXPECT_EQ(failure.kind, FailureKind::kUnacceptable);
            EXPECT_EQ(std::string(failure.what()).rfind(scratch.path(named) + ": record 1", 0), 0u)
                << failure.what();
        }
    }
    try {
        engine::DiffPackages(scratch.path("before.vxpk"), scratch.path("missing.vxpk"));
        ADD_FAILURE() << "no failure for a missing package";
    } catch (const engine::EngineFailure& failure) {
        EXPECT_EQ(failure.kind, FailureKind::kSystem);
        EXPECT_EQ(std::string(failure.what()),
                  scratch.path("missing.vxpk") + ": No such file or directory");
    }
}

}  // namespace
}  // namespace vx
