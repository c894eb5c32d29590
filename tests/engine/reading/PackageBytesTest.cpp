#include <fcntl.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <string>

#include "engine/core/OwnedDescriptor.h"
#include "engine/reading/PackageBytes.h"
#include "support/ScratchFolder.h"
#include "support/SystemCallFaults.h"

namespace vx::engine {
namespace {

class PackageBytesTest : public ::testing::Test {
protected:
    PackageBytesTest()
        : file_(::open(scratch_.writeFile("package", kBytes).c_str(), O_RDONLY | O_CLOEXEC)) {}
    int fd() const { return file_.fd(); }

    static constexpr std::string_view kBytes = "0123456789abcdefghij";

private:
    test::ScratchFolder scratch_;
    OwnedDescriptor file_;
};

TEST_F(PackageBytesTest, interruptedAndShortReads_areTakenUpUntilAllAreRead) {
    const test::SystemCallFaults faults({.interruptEvery = 2, .readAtMost = 3});
    std::string bytes = "left over";
    ASSERT_TRUE(ReadPackageBytes(fd(), 4, 11, bytes));
    EXPECT_EQ(bytes, kBytes.substr(4, 11));
    EXPECT_GT(faults.injected(), 0);
}

TEST_F(PackageBytesTest, failingOrEndingFile_isAFailedReadWithItsReason) {
    std::string bytes;
    errno = 0;
    EXPECT_FALSE(ReadPackageBytes(fd(), 15, 10, bytes));
    EXPECT_EQ(errno, EIO);

    const test::SystemCallFaults faults({.readFailsAt = 8});
    errno = 0;
    EXPECT_FALSE(ReadPackageBytes(fd(), 2, 10, bytes));
    EXPECT_EQ(errno, EIO);
    EXPECT_FALSE(ReadPackageBytes(-1, 0, 1, bytes));
}

TEST_F(PackageBytesTest, nothingAsked_readsNothing) {
    std::string bytes = "old";
    ASSERT_TRUE(ReadPackageBytes(-1, 0, 0, bytes));
    EXPECT_EQ(bytes, "");
}

}  // namespace
}  // namespace vx::engine
