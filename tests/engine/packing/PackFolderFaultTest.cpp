#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <vector>

#include "engine/EngineSite.h"

// Packing under failing system calls: each failure ends it with the item and
// the reason, the older package stays as it was and no temporary file stays
// beside it; interrupted and short calls change no byte.
namespace vx {
namespace {

using namespace test;
using engine::FailureKind;

using PackFolderFaults = EngineSite;

TEST_F(PackFolderFaults, failingCallAtEachStep_endsWithItsReasonAndLeavesTheOlderPackage) {
    pack("ref.vxpk");
    auto at = entries("ref.vxpk");
    std::filesystem::remove(scratch.path("ref.vxpk"));
    const std::string noSpace = ": No space left on device";
    const std::vector<FaultCase> cases = {
        {"header", {.diskSpace = 0}, {.message = "{package}" + noSpace}},
        {"record of a small file",
         {.diskSpace = at["css/b.css"].recordOffset + 3},
         {.message = "css/b.css into {package}" + noSpace}},
        {"contents of a small file",
         {.diskSpace = at["z.txt"].contentsOffset + 10},
         {.message = "z.txt into {package}" + noSpace}},
        {"record of a large file",
         {.diskSpace = at["zz.bin"].recordOffset + 1},
         {.message = "zz.bin into {package}" + noSpace}},
        {"contents of a large file, in its second part",
         {.diskSpace = at["zz.bin"].contentsOffset + (uint64_t{5} << 20)},
         {.message = "zz.bin into {package}" + noSpace}},
        {"reading a large file",
         {.readFailsAt = uint64_t{5} << 20},
         {.message = "zz.bin: Input/output error"}},
        {"reading every file", {.readFailsAt = 100}, {.message = "a.txt: Input/output error"}},
        {"opening a file",
         {.call = FailingCall::openat, .callPath = "z.txt", .callFails = EACCES},
         {.message = "z.txt: Permission denied"}},
        {"opening a folder",
         {.call = FailingCall::openat, .callPath = "css", .callFails = EMFILE},
         {.message = "css: Too many open files"}},
        {"listing the source",
         {.listingFails = EIO, .listingEntriesBefore = 2},
         {.message = "{source}: Input/output error"}},
        {"reserving the package's space",
         {.call = FailingCall::fallocate, .callFails = ENOSPC},
         {.message = "{package}" + noSpace}},
        {"making the temporary package",
         {.call = FailingCall::mkstemp, .callPath = "out.vxpk", .callFails = EACCES},
         {.message = "{package}: Permission denied"}},
        {"the final rename",
         {.call = FailingCall::renameat, .callPath = "out.vxpk", .callFails = EXDEV},
         {.message = "{package}: Invalid cross-device link"}},
    };
    scratch.writeFile("out.vxpk", "older package");
    for (const auto& faultCase : cases) {
        runCase(faultCase, [&] { pack("out.vxpk"); });
        EXPECT_EQ(namesInScratch(), (std::set<std::string>{"out.vxpk", "site"}));
        EXPECT_EQ(scratch.readFile("out.vxpk"), "older package");
    }
}

TEST_F(PackFolderFaults, interruptedAndShortCalls_giveTheSamePackage) {
    pack("ref.vxpk");
    const std::string reference = scratch.readFile("ref.vxpk");
    const std::vector<FaultCase> cases = {
        {"interrupted", {.interruptEvery = 2}, {.fails = false}},
        {"short", {.writeAtMost = 1000, .readAtMost = 777}, {.fails = false}},
        {"both, in pieces of no block size",
         {.interruptEvery = 3, .writeAtMost = 65535, .readAtMost = 4095},
         {.fails = false}},
    };
    for (const auto& faultCase : cases) {
        runCase(faultCase, [&] { pack("out.vxpk"); });
        EXPECT_EQ(scratch.readFile("out.vxpk"), reference);
        EXPECT_EQ(namesInScratch(), (std::set<std::string>{"out.vxpk", "ref.vxpk", "site"}));
    }
}

}  // namespace
}  // namespace vx
