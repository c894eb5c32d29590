#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <vector>

#include "container/PackageFixture.h"
#include "engine/EngineSite.h"
#include "engine/extraction/ExtractPackage.h"

// Extracting under failing system calls: each failure ends it with the file
// and the reason and leaves neither the destination nor a temporary folder
// beside it; interrupted and short calls give the same tree.
namespace vx {
namespace {

using namespace test;

class ExtractPackageFaults : public EngineSite {
protected:
    ExtractPackageFaults() { pack("out.vxpk"); }
    void extract() {
        engine::NoProgress progress;
        engine::ExtractPackage(scratch.path("out.vxpk"), scratch.path("dest"), progress);
    }
};

TEST_F(ExtractPackageFaults, failingCallAtEachStep_endsWithItsReasonAndLeavesNothing) {
    auto at = entries("out.vxpk");
    const std::string noSpace = ": No space left on device";
    const std::string ioError = "{package}: Input/output error";
    const std::vector<FaultCase> cases = {
        {"reading the header", {.readFailsAt = 0}, {.message = ioError}},
        {"reading a record", {.readFailsAt = at["z.txt"].recordOffset + 1}, {.message = ioError}},
        {"reading contents copied in the kernel",
         {.readFailsAt = at["css/b.css"].contentsOffset + 100},
         {.message = ioError}},
        {"reading contents copied through memory",
         {.readFailsAt = at["zz.bin"].contentsOffset + (uint64_t{5} << 20)},
         {.message = ioError}},
        {"writing contents past the page cache",
         {.diskSpace = uint64_t{5} << 20},
         {.message = "{destination}/zz.bin" + noSpace}},
        {"writing contents in the kernel",
         {.diskSpace = 2000},
         {.message = "{destination}/css/b.css" + noSpace}},
        {"writing contents through the cache where the kernel cannot copy",
         {.diskSpace = 400, .copyFails = EXDEV},
         {.message = "{destination}/css/b.css" + noSpace}},
        {"making a folder",
         {.call = FailingCall::mkdirat, .callPath = "css", .callFails = ENOSPC},
         {.message = "{destination}/css" + noSpace}},
        {"making a file",
         {.call = FailingCall::openat, .callPath = "z.txt", .callFails = EACCES},
         {.message = "{destination}/z.txt: Permission denied"}},
        {"making the temporary folder",
         {.call = FailingCall::mkdtemp, .callPath = "dest", .callFails = EACCES},
         {.message = "{destination}: Permission denied"}},
        {"the final rename",
         {.call = FailingCall::renameat, .callPath = "dest", .callFails = EXDEV},
         {.message = "{destination}: Invalid cross-device link"}},
    };
    for (const auto& faultCase : cases) {
        runCase(faultCase, [&] { extract(); });
        EXPECT_EQ(namesInScratch(), (std::set<std::string>{"out.vxpk", "site"}));
    }
}

TEST_F(ExtractPackageFaults, interruptedAndShortCalls_giveTheSameTree) {
    const std::vector<FaultCase> cases = {
        {"interrupted", {.interruptEvery = 2}, {.fails = false}},
        {"short", {.writeAtMost = 1000, .readAtMost = 777}, {.fails = false}},
        {"short through memory", {.writeAtMost = 4095, .copyFails = EXDEV}, {.fails = false}},
    };
    for (const auto& faultCase : cases) {
        runCase(faultCase, [&] { extract(); });
        EXPECT_EQ(SnapshotTree(scratch.path("dest")), SnapshotTree(scratch.path("site")));
        std::filesystem::remove_all(scratch.path("dest"));
    }
}

}  // namespace
}  // namespace vx
