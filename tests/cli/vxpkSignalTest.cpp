#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <chrono>
#include <cstring>
#include <filesystem>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <thread>

#include "VxpkRun.h"
#include "container/PackageBytes.h"
#include "support/ScratchFolder.h"

namespace vx {
namespace {

using namespace test;

// Sparse, so that making it costs no disk, and large enough that vxpk is
// still at work when the signal comes, even on a fast machine; below the
// format's limit of 2 GiB a file.
constexpr off_t kLargeBytes = off_t{1900} << 20;
// The package that pack reserves whole at once, and what extraction writes
// before it stops, with room to spare.
constexpr unsigned long long kDiskNeeded = 4ULL << 30;
constexpr auto kPatience = std::chrono::seconds(60);

std::set<std::string> namesIn(const std::string& folder) {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        names.insert(entry.path().filename().string());
    }
    return names;
}

// The hidden temporary beside the destination named name: ".name.XXXXXX".
std::optional<std::string> temporaryOf(const std::string& folder, const std::string& name) {
    for (const auto& entry : namesIn(folder)) {
        if (entry.starts_with("." + name + ".")) {
            return folder + "/" + entry;
        }
    }
    return std::nullopt;
}

bool hasGrown(const std::string& file) {
    struct stat info;
    return ::stat(file.c_str(), &info) == 0 && info.st_size > 0;
}

void makeSparse(const std::string& path, off_t bytes) {
    const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    ASSERT_GE(fd, 0) << path;
    EXPECT_EQ(::ftruncate(fd, bytes), 0) << std::strerror(errno);
    ::close(fd);
}

class vxpkSignalTest : public ::testing::TestWithParam<int> {
protected:
    void SetUp() override {
        struct statvfs disk;
        ASSERT_EQ(::statvfs(scratch.path().c_str(), &disk), 0);
        if (static_cast<unsigned long long>(disk.f_bavail) * disk.f_frsize < kDiskNeeded) {
            GTEST_SKIP() << "needs 4 GiB free in " << scratch.path();
        }
    }

    // Waits until ready holds, vxpk still running, then signals it and gives
    // what it ended with.
    VxpkResult signalWhen(VxpkChild& child, const std::function<bool()>& ready) {
        const auto deadline = std::chrono::steady_clock::now() + kPatience;
        while (!ready()) {
            if (!child.running() || std::chrono::steady_clock::now() > deadline) {
                ADD_FAILURE() << "vxpk ended or stalled before it could be caught at work";
                return child.wait();
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        child.signal(GetParam());
        return child.wait();
    }

    ScratchFolder scratch;
};

TEST_P(vxpkSignalTest, packSignalledPartWay_endsWithTheSignalsStatusAndLeavesNothing) {
    scratch.writeFile("site/index.html", "<h1/>");
    makeSparse(scratch.makeFolder("site/media") + "/large", kLargeBytes);
    scratch.writeFile("site/zz.html", "after the large file");
    scratch.writeFile("out.vxpk", "older package");
    VxpkChild child({"pack", "site", "out.vxpk", "--name", "D", "--uid", "d"}, scratch.path());
    const VxpkResult result = signalWhen(child, [&] {
        const auto temporary = temporaryOf(scratch.path(), "out.vxpk");
        return temporary && hasGrown(*temporary);
    });
    EXPECT_EQ(result.exitCode, 128 + GetParam());
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(namesIn(scratch.path()), (std::set<std::string>{"out.vxpk", "site"}));
    EXPECT_EQ(scratch.readFile("out.vxpk"), "older package");
}

// A package of three large files, whose contents are holes.
void makeSparsePackage(const std::string& path) {
    const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    ASSERT_GE(fd, 0) << path;
    std::string head = EncodeHeader("V001", "D", "d", "site");
    off_t at = 0;
    for (const std::string name : {"a", "b", "c"}) {
        head += EncodeRecord({.name = name,
                              .parent = "",
                              .type = 1,
                              .length = static_cast<int32_t>(kLargeBytes),
                              .contents = ""});
        ASSERT_EQ(::pwrite(fd, head.data(), head.size(), at), static_cast<ssize_t>(head.size()));
        at += static_cast<off_t>(head.size()) + kLargeBytes;
        head.clear();
    }
    EXPECT_EQ(::ftruncate(fd, at), 0) << std::strerror(errno);
    ::close(fd);
}

TEST_P(vxpkSignalTest, extractSignalledPartWay_endsWithTheSignalsStatusAndLeavesNothing) {
    makeSparsePackage(scratch.path("large.vxpk"));
    VxpkChild child({"extract", "large.vxpk", "dest"}, scratch.path());
    const VxpkResult result = signalWhen(child, [&] {
        const auto temporary = temporaryOf(scratch.path(), "dest");
        return temporary && hasGrown(*temporary + "/a");
    });
    EXPECT_EQ(result.exitCode, 128 + GetParam());
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(namesIn(scratch.path()), std::set<std::string>{"large.vxpk"});
}

INSTANTIATE_TEST_SUITE_P(Signals, vxpkSignalTest, ::testing::Values(SIGINT, SIGTERM, SIGHUP),
                         [](const ::testing::TestParamInfo<int>& signal) {
                             return std::string(::sigabbrev_np(signal.param));
                         });

}  // namespace
}  // namespace vx
