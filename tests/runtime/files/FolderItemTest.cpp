#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iterator>
#include <set>
#include <string_view>
#include <tuple>
#include <utility>

#include "runtime/files/BinaryStream.h"
#include "runtime/files/FileErrorCode.h"
#include "runtime/files/FolderItem.h"
#include "runtime/files/SpecialFolder.h"
#include "support/ChildProcess.h"
#include "support/RecordingUIServices.h"
#include "support/ScratchFolder.h"
#include "support/SystemCallFaults.h"

namespace vx {
namespace {

using test::ScratchFolder;

Ref<FolderItem> itemAt(const std::string& path) {
    return New<FolderItem>(String(std::string_view(path), nullptr), FolderItem::PathModeNative);
}

TEST(FolderItem, constructAndChild_normalisePathsAndRefuseUnusableNames) {
    // given, its path, its name, its parent's path ("" for none)
    const std::array<std::string_view, 4> cases[] = {
        {"/a//b/", "/a/b", "b", "/a"}, {"//a///b//c", "/a/b/c", "c", "/a/b"},
        {"/a", "/a", "a", "/"},        {"/", "/", "", ""},
        {"///", "/", "", ""},
    };
    for (const auto& [given, path, name, parent] : cases) {
        const auto item = itemAt(std::string(given));
        EXPECT_EQ(item->NativePath().bytes(), path) << given;
        EXPECT_EQ(item->Name().bytes(), name) << given;
        EXPECT_EQ(item->Parent() ? item->Parent()->NativePath().bytes() : "", parent) << given;
    }
    EXPECT_THROW(FolderItem("/tmp", 0), UnsupportedFormatException);
    EXPECT_THROW(FolderItem(String(std::string_view("/a\0b", 4), nullptr), 3),
                 UnsupportedFormatException);
    const auto root = itemAt("/");
    using namespace std::string_view_literals;
    for (const std::string_view name : {""sv, "."sv, ".."sv, "a/b"sv, "a\0b"sv}) {
        EXPECT_EQ(root->Child(String(name, nullptr)), nullptr) << name;
    }
    EXPECT_EQ(root->Child("tmp")->NativePath().bytes(), "/tmp");
    EXPECT_EQ(itemAt("/tmp")->Child("x")->NativePath().bytes(), "/tmp/x");
}

TEST(FolderItem, itemOfFolder_isSortedByBytesAndKeptOnceRead) {
    ScratchFolder scratch;
    for (const char* name : {"b", "B", "_u", ".hidden", "a", "\xc3\xa9", "\x7f", "a.b", "a_b"}) {
        scratch.writeFile(name, "");
    }
    const auto folder = scratch.item();
    const std::vector<std::string> expected = {".hidden", "B", "_u",   "a",       "a.b",
                                               "a_b",     "b", "\x7f", "\xc3\xa9"};
    ASSERT_EQ(folder->Count(), static_cast<int64_t>(expected.size()));
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(folder->Item(static_cast<int64_t>(i) + 1)->Name().bytes(), expected[i]);
    }

    const String first = folder->Item(1)->NativePath();
    scratch.writeFile("0-new", "");
    EXPECT_EQ(folder->Count(), static_cast<int64_t>(expected.size()));
    EXPECT_EQ(folder->Item(1)->NativePath(), first);
    EXPECT_EQ(scratch.item()->Count(), static_cast<int64_t>(expected.size()) + 1);
    EXPECT_THROW(folder->Item(0), OutOfBoundsException);
    EXPECT_THROW(folder->Item(folder->Count() + 1), OutOfBoundsException);
}

TEST(FolderItem, itemsOfARenamedFolder_stayWithTheListedFolder) {
    ScratchFolder scratch;
    scratch.writeFile("before/file", "abc");
    const auto folder = scratch.item("before");
    ASSERT_EQ(folder->Count(), 1);
    ASSERT_EQ(::rename(scratch.path("before").c_str(), scratch.path("after").c_str()), 0);
    EXPECT_EQ(folder->Item(1)->Length(), 3u);
    EXPECT_FALSE(scratch.item("before/file")->Exists());
}

TEST(FolderItem, propertiesOfEachKind_answerAsAFileSystemSees) {
    ScratchFolder scratch;
    scratch.writeFile("file", "12345");
    scratch.makeFolder("empty");
    // name, exists, directory, length; none of them lists anything
    const std::tuple<const char*, bool, bool, uint64_t> cases[] = {
        {"file", true, false, 5},
        {"empty", true, true, 0},
        {"missing", false, false, 0},
        {"missing/deeper", false, false, 0},
    };
    for (const auto& [relative, exists, directory, length] : cases) {
        const auto item = scratch.item(relative);
        EXPECT_EQ(item->Exists(), exists) << relative;
        EXPECT_EQ(item->Directory(), directory) << relative;
        EXPECT_EQ(item->Length(), length) << relative;
        EXPECT_EQ(item->Count(), 0) << relative;
    }
}

TEST(FolderItem, createDeleteAndOpen_reportFailuresThroughLastErrorCodeOrNil) {
    ScratchFolder scratch;
    const auto folder = scratch.item("made");
    folder->CreateAsFolder();
    EXPECT_TRUE(folder->Directory());
    EXPECT_EQ(folder->LastErrorCode(), 0);
    folder->CreateAsFolder();
    EXPECT_EQ(folder->LastErrorCode(), FileInUseErrorCode);

    const auto orphan = scratch.item("missing/made");
    orphan->CreateAsFolder();
    EXPECT_EQ(orphan->LastErrorCode(), PlatformErrorCodeBase + ENOENT);

    scratch.writeFile("made/inside", "x");
    folder->Delete();
    EXPECT_EQ(folder->LastErrorCode(), PlatformErrorCodeBase + ENOTEMPTY);
    scratch.item("made/inside")->Delete();
    folder->Delete();
    EXPECT_EQ(folder->LastErrorCode(), 0);
    EXPECT_FALSE(folder->Exists());

    scratch.writeFile("target", "kept");
    const auto link = itemAt(scratch.makeLink("link", scratch.path("target")));
    link->Delete();
    EXPECT_FALSE(link->Exists());
    EXPECT_EQ(scratch.readFile("target"), "kept");

    const auto root = scratch.item();
    EXPECT_EQ(root->OpenAsBinaryFile(false), nullptr);
    EXPECT_EQ(root->LastErrorCode(), PlatformErrorCodeBase + EISDIR);
    const auto missing = scratch.item("missing");
    EXPECT_EQ(missing->OpenAsBinaryFile(true), nullptr);
    EXPECT_EQ(missing->LastErrorCode(), PlatformErrorCodeBase + ENOENT);
    EXPECT_EQ(scratch.item("no/such")->CreateBinaryFile("Any"), nullptr);
}

// Every path a depth-first walk reaches, as the packer would walk it.
void collect(const Ref<FolderItem>& folder, const std::string& prefix, std::set<std::string>& out) {
    for (int64_t i = 1; i <= folder->Count(); ++i) {
        const auto entry = folder->Item(i);
        const std::string path = prefix + std::string(entry->Name().bytes());
        out.insert(path + (entry->Directory() ? "/" : ""));
        if (entry->Directory()) {
            collect(entry, path + "/", out);
        }
    }
}

TEST(FolderItem, linksLeadingBackToAnAncestor_answerAsEmptyFiles) {
    ScratchFolder scratch;
    scratch.writeFile("a/file", "abc");
    scratch.makeFolder("b");
    scratch.makeLink("a/toFile", "file");
    scratch.makeLink("a/toB", "../b");
    scratch.makeLink("b/toA", "../a");
    scratch.makeLink("a/self", ".");
    scratch.makeLink("a/root", "/");

    std::set<std::string> reached;
    collect(scratch.item(), "", reached);
    const std::set<std::string> expected = {
        "a/", "a/file", "a/root",     "a/self",     "a/toB/",     "a/toB/toA", "a/toFile",
        "b/", "b/toA/", "b/toA/file", "b/toA/root", "b/toA/self", "b/toA/toB", "b/toA/toFile"};
    EXPECT_EQ(reached, expected);

    const auto loop = scratch.item("a/toB/toA");
    EXPECT_FALSE(loop->Directory());
    EXPECT_EQ(loop->Length(), 0u);
    EXPECT_EQ(loop->Count(), 0);
    EXPECT_EQ(scratch.item("a/toFile")->Length(), 3u);
}

TEST(FolderItem, walkOfManyFolders_keepsOnlyTheRootsDescriptorOpen) {
    ScratchFolder scratch;
    for (int i = 0; i < 60; ++i) {
        scratch.writeFile("tree/branch" + std::to_string(i) + "/leaf/file", "x");
    }
    const auto openDescriptors = [] {
        namespace fs = std::filesystem;
        return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
    };
    const auto root = scratch.item("tree");
    const auto before = openDescriptors();
    std::set<std::string> reached;
    collect(root, "", reached);
    EXPECT_EQ(reached.size(), 180u);
    EXPECT_LE(openDescriptors(), before + 1);
}

TEST(FolderItem, permissionsAsUnprivilegedUser_answerTheCurrentState) {
    ScratchFolder scratch;
    for (const auto& [name, mode] :
         {std::pair{"private", 0600}, {"public", 0644}, {"shared", 0666}}) {
        ::chmod(scratch.writeFile(name, "x").c_str(), mode);
    }
    scratch.writeFile("closed/inside", "x");
    ::chmod(scratch.path("closed").c_str(), 0700);

    const std::string answers = test::RunInChild([&] {
        std::string out;
        for (const char* name : {"private", "public", "shared"}) {
            const auto item = scratch.item(name);
            out += std::string(name) + (item->IsReadable() ? " r" : " -") +
                   (item->IsWriteable() ? "w " : "- ");
        }
        const auto closed = scratch.item("closed");
        const int64_t count = closed->Count();
        return out + "closed " + std::to_string(count) + " " +
               std::to_string(closed->LastErrorCode());
    });
    EXPECT_EQ(answers, "private -- public r- shared rw closed 0 102");
    EXPECT_EQ(scratch.item("closed")->Count(), 1);
}

TEST(FolderItem, listingThatFailsHalfWay_countsNoneUntilAskedAgain) {
    ScratchFolder scratch;
    for (const char* name : {"a", "b", "c"}) {
        scratch.writeFile(name, "x");
    }
    const auto folder = scratch.item();
    {
        test::SystemCallFaults injected({.listingFails = EIO, .listingEntriesBefore = 3});
        EXPECT_EQ(folder->Count(), 0);
        EXPECT_EQ(folder->LastErrorCode(), PlatformErrorCodeBase + EIO);
        EXPECT_EQ(injected.injected(), 1);
    }
    EXPECT_EQ(folder->Count(), 3);
}

TEST(FileErrorCode, platformErrors_mapToTheProgramsNumbers) {
    const std::pair<int, int64_t> table[] = {
        {0, 0},         {EACCES, 102}, {EPERM, 102},   {EROFS, 102},           {EBUSY, 104},
        {ETXTBSY, 104}, {EEXIST, 104}, {ENOENT, 1002}, {ENOSPC, 1000 + ENOSPC}};
    for (const auto& [error, code] : table) {
        EXPECT_EQ(FileErrorCode(error), code) << error;
    }
}

TEST(FolderItem, launch_reachesTheInstalledServices) {
    test::RecordingUIServices ui;
    {
        test::InstalledUIServices installed(ui);
        itemAt("/tmp/x")->Launch(true);
    }
    itemAt("/tmp/y")->Launch(false);
    ASSERT_EQ(ui.launchedPaths.size(), 1u);
    EXPECT_EQ(ui.launchedPaths[0].bytes(), "/tmp/x");
    EXPECT_TRUE(ui.launchActivations[0]);
}

// Without TMPDIR the folder is the user's own in the shared one: anything
// another user put under its usual name is passed by for a fresh name.
TEST(SpecialFolder, temporary_isTMPDIROrAFolderOfTheUsersOwn) {
    ScratchFolder scratch;
    const char* savedTMPDIR = std::getenv("TMPDIR");
    const std::string restoreTMPDIR = savedTMPDIR ? savedTMPDIR : "";
    const std::string savedShared = SpecialFolder::_SharedTemporary;
    ::setenv("TMPDIR", "/var/tmp/", 1);
    EXPECT_EQ(SpecialFolder::Temporary()->NativePath().bytes(), "/var/tmp");
    ::setenv("TMPDIR", "", 1);

    const std::string usual = "vantrelix-" + std::to_string(::geteuid());
    struct Case {
        const char* name;
        std::function<void(const std::string& shared)> plant;
        bool usualName;
    };
    const Case cases[] = {
        {"nothingThere", [](const std::string&) {}, true},
        {"ownOpenFolder",
         [&](const std::string& shared) { ::mkdir((shared + "/" + usual).c_str(), 0755); }, true},
        {"linkToOwnFolder",
         [&](const std::string& shared) {
             ::symlink(scratch.makeFolder("elsewhere").c_str(), (shared + "/" + usual).c_str());
         },
         false},
        // An unprivileged run can plant only a folder of its own.
        {"othersFolder",
         [&](const std::string& shared) {
             test::RunInChild(
                 [&] { return std::to_string(::mkdir((shared + "/" + usual).c_str(), 0700)); });
         },
         ::geteuid() != 0},
    };
    for (const Case& c : cases) {
        const std::string shared = scratch.makeFolder(c.name);
        ::chmod(shared.c_str(), 01777);
        c.plant(shared);
        SpecialFolder::_SharedTemporary = shared;

        const std::string chosen(SpecialFolder::Temporary()->NativePath().bytes());

        struct stat info {};
        ASSERT_EQ(::lstat(chosen.c_str(), &info), 0) << c.name;
        EXPECT_TRUE(S_ISDIR(info.st_mode)) << c.name;
        EXPECT_EQ(info.st_uid, ::geteuid()) << c.name;
        EXPECT_EQ(info.st_mode & 07777, 0700u) << c.name;
        EXPECT_EQ(chosen.rfind(shared + "/" + usual, 0), 0u) << c.name;
        EXPECT_EQ(chosen == shared + "/" + usual, c.usualName) << c.name;
        EXPECT_EQ(SpecialFolder::Temporary()->NativePath().bytes(), chosen) << "kept, " << c.name;
    }
    SpecialFolder::_SharedTemporary = savedShared;
    savedTMPDIR ? ::setenv("TMPDIR", restoreTMPDIR.c_str(), 1) : ::unsetenv("TMPDIR");
}

}  // namespace
}  // namespace vx
