#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "engine/EngineSite.h"

// What the format cannot hold is refused before anything is written.
namespace vx {
namespace {

using namespace test;

using PackFolderTest = EngineSite;

TEST_F(PackFolderTest, treeTheFormatCannotHold_isRefusedAndNothingIsWritten) {
    struct Case {
        std::function<void()> make;
        std::string message;
    };
    const std::string folder100(100, 'f');
    const std::vector<Case> cases = {
        {[&] { ::truncate(scratch.writeFile("site/huge", "").c_str(), int64_t{1} << 31); },
         "huge: a file of 2 GiB or more"},
        {[&] {
             scratch.writeFile("site/" + folder100 + "/" + folder100 + "/" + folder100 + "/x", "");
         },
         folder100 + "/" + folder100 + "/" + folder100 +
             "/x: the parent path is longer than 255 bytes"},
        {[&] { scratch.makeFolder("site/a:b"); },
         "a:b: a folder name holding \":\", which reads as a separator"},
        {[&] { scratch.makeLink("site/sub/up", ".."); },
         "sub/up: a symlink that leads into a cycle"},
        {[&] { scratch.makeLink("site/loop", "loop"); }, "loop: a symlink that leads into a cycle"},
        {[&] { ::mkfifo(scratch.path("site/fifo").c_str(), 0644); },
         "fifo: neither a file nor a folder (a FIFO, socket or device)"},
    };
    scratch.writeFile("out.vxpk", "older package");
    for (const auto& [make, message] : cases) {
        SCOPED_TRACE(message);
        std::filesystem::remove_all(scratch.path("site"));
        scratch.writeFile("site/index.html", "<h1/>");
        make();
        try {
            pack("out.vxpk");
            ADD_FAILURE() << "packed";
        } catch (const engine::EngineFailure& failure) {
            EXPECT_EQ(failure.kind, engine::FailureKind::kUnacceptable);
            EXPECT_EQ(failure.what(), message);
        }
        EXPECT_EQ(scratch.readFile("out.vxpk"), "older package");
        EXPECT_EQ(namesInScratch(), (std::set<std::string>{"out.vxpk", "site"}));
    }
}

}  // namespace
}  // namespace vx
