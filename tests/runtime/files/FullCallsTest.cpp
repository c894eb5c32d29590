#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <vector>

#include "runtime/files/FullCalls.h"
#include "support/ScratchFolder.h"
#include "support/SystemCallFaults.h"

// The full calls under every fault: what they moved and the errno that
// stopped them, which their callers take for a whole result.
namespace vx {
namespace {

using test::Faults;
using test::ScratchFolder;
using test::SystemCallFaults;

std::string patternOf(std::size_t count) {
    std::string bytes(count, '\0');
    for (std::size_t i = 0; i < count; ++i) {
        bytes[i] = static_cast<char>(i * 13 % 253);
    }
    return bytes;
}

const std::string kBytes = patternOf(100000);

class FullCallsTest : public ::testing::Test {
protected:
    FullCallsTest()
        : source_(::open(scratch.writeFile("source", kBytes).c_str(), O_RDONLY | O_CLOEXEC)),
          out_(::open(scratch.path("out").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644)) {}
    ~FullCallsTest() override {
        ::close(source_);
        ::close(out_);
    }

    ScratchFolder scratch;
    const int source_;
    const int out_;
};

struct Case {
    std::string name;
    Faults faults;
    // What each call moves and the error it ends with.
    uint64_t bytes;
    int error;
};

TEST_F(FullCallsTest, eachCallUnderFaults_movesAllOrTellsHowFarAndWhy) {
    const std::vector<Case> cases = {
        {"no fault", {}, kBytes.size(), 0},
        {"interrupted", {.interruptEvery = 2}, kBytes.size(), 0},
        {"short", {.writeAtMost = 999, .readAtMost = 777}, kBytes.size(), 0},
        {"disk full", {.diskSpace = 60000}, 60000, ENOSPC},
        {"read fails", {.readFailsAt = 70000}, 70000, EIO},
    };
    for (const auto& [name, faults, bytes, error] : cases) {
        SCOPED_TRACE(name);
        ASSERT_EQ(::ftruncate(out_, 0), 0);
        std::string back(kBytes.size(), '\0');
        const SystemCallFaults injected(faults);
        const bool writes = faults.readFailsAt == Faults().readFailsAt;
        const FullResult result = writes ? writeFullyAt(out_, kBytes.data(), kBytes.size(), 0, 4096)
                                         : readFullyAt(source_, back.data(), back.size(), 0);
        EXPECT_EQ(result.bytes, bytes);
        EXPECT_EQ(result.error, error);
        const FullResult read = readFullyAt(writes ? out_ : source_, back.data(), bytes, 0);
        EXPECT_EQ(read.bytes, bytes);
        EXPECT_EQ(back.substr(0, bytes), kBytes.substr(0, bytes));
    }
}

TEST_F(FullCallsTest, kernelCopyBetweenFilesItCannotJoin_tellsHowFarItGotForTheCopyThroughMemory) {
    const std::vector<Case> cases = {
        {"whole", {.interruptEvery = 3, .writeAtMost = 7000}, kBytes.size(), 0},
        {"refused at once", {.copyFails = EXDEV}, 0, EXDEV},
        {"refused part way", {.copyFails = EOPNOTSUPP, .copyBefore = 30000}, 30000, EOPNOTSUPP},
        {"disk full", {.diskSpace = 50000}, 50000, ENOSPC},
    };
    for (const auto& [name, faults, bytes, error] : cases) {
        SCOPED_TRACE(name);
        ASSERT_EQ(::ftruncate(out_, 0), 0);
        ASSERT_EQ(::lseek(out_, 0, SEEK_SET), 0);
        const SystemCallFaults injected(faults);
        // At the file's own position, which the copy moves on.
        const FullResult copied =
            copyInKernelFully(source_, 0, out_, std::nullopt, kBytes.size(), 16384);
        EXPECT_EQ(copied.bytes, bytes);
        EXPECT_EQ(copied.error, error);
        EXPECT_EQ(::lseek(out_, 0, SEEK_CUR), static_cast<off_t>(bytes));
        EXPECT_EQ(kernelCopyUnsupported(copied.error), error == EXDEV || error == EOPNOTSUPP);
        EXPECT_EQ(kernelCopyDestinationFailed(copied.error), error == ENOSPC);
    }
    EXPECT_EQ(scratch.readFile("out"), kBytes.substr(0, 50000));
}

TEST_F(FullCallsTest, writeAtItsPosition_appendsAfterWhatIsThere) {
    ASSERT_EQ(::write(out_, "head", 4), 4);
    {
        const SystemCallFaults injected({.interruptEvery = 2, .writeAtMost = 1000});
        const FullResult written = writeFully(out_, kBytes.data(), kBytes.size());
        EXPECT_EQ(written.bytes, kBytes.size());
        EXPECT_EQ(written.error, 0);
    }
    EXPECT_EQ(scratch.readFile("out"), "head" + kBytes);
}

}  // namespace
}  // namespace vx
