#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "engine/core/EngineFailure.h"
#include "engine/packing/ExcludeFile.h"
#include "support/ScratchFolder.h"

namespace vx::engine {
namespace {

using test::ScratchFolder;

TEST(ExcludeFileTest, readExcludeFile_givesOnePatternALineWithoutBlanksOrComments) {
    const ScratchFolder scratch;
    const std::vector<std::pair<std::string, std::vector<std::string>>> cases = {
        {"*.map\nbuild/\n", {"*.map", "build/"}},
        {"# generated\n\n*.map\n   \n\t\n#build/\n/docs\n", {"*.map", "/docs"}},
        // Windows line endings, and a last line without any.
        {"*.map\r\nbuild/\r\n/docs", {"*.map", "build/", "/docs"}},
        // Only a line that begins with "#" is a comment.
        {" # kept\na#b\n", {" # kept", "a#b"}},
        {"", {}},
    };
    for (const auto& [text, patterns] : cases) {
        EXPECT_EQ(readExcludeFile(scratch.writeFile("excludes", text)), patterns) << text;
    }
}

// A pipe has no length: its lines come only from reading to its end.
TEST(ExcludeFileTest, readExcludeFile_readsAPipeToItsEnd) {
    const ScratchFolder scratch;
    const std::string fifo = scratch.path("fifo");
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    std::thread writer([&] {
        std::ofstream(fifo) << "*.map\n" << std::string(70000, 'x') << "\n";
    });
    const auto patterns = readExcludeFile(fifo);
    writer.join();
    EXPECT_EQ(patterns, (std::vector<std::string>{"*.map", std::string(70000, 'x')}));
}

TEST(ExcludeFileTest, readExcludeFile_ofAFileThatCannotBeReadSaysWhichAndWhy) {
    const ScratchFolder scratch;
    const std::vector<std::pair<std::string, std::string>> cases = {
        {scratch.path("missing"), "No such file or directory"},
        {scratch.makeFolder("folder"), "Is a directory"},
        {"/dev/zero", "more than 1 MiB of patterns"},
    };
    for (const auto& [path, reason] : cases) {
        try {
            readExcludeFile(path);
            ADD_FAILURE() << path << " was read";
        } catch (const EngineFailure& failure) {
            EXPECT_EQ(failure.kind, FailureKind::kSystem);
            EXPECT_EQ(std::string(failure.what()), path + ": " + reason);
        }
    }
}

}  // namespace
}  // namespace vx::engine
