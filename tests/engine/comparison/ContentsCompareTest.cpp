#include <fcntl.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <string>
#include <vector>

#include "engine/comparison/ContentsCompare.h"
#include "engine/core/EngineFailure.h"
#include "engine/core/OwnedDescriptor.h"
#include "support/ScratchFolder.h"
#include "support/SystemCallFaults.h"

namespace vx {
namespace {

using engine::ContentsCompare;
using engine::EngineFailure;
using engine::FailureKind;
using engine::OwnedDescriptor;

// Several blocks of the comparison, and not a whole number of them.
constexpr std::size_t kLength = (std::size_t{600} << 10) + 3;

std::string patternOf(std::size_t count) {
    std::string bytes(count, '\0');
    for (std::size_t i = 0; i < count; ++i) {
        bytes[i] = static_cast<char>(i * 7 + i / 251);
    }
    return bytes;
}

// Two runs of kLength bytes in two files, the second after a prefix so that
// the two offsets differ.
class ContentsCompareTest : public ::testing::Test {
protected:
    static constexpr uint64_t kAfterOffset = 5;

    // Writes before, and after behind a prefix, and compares the two runs.
    bool compare(const std::string& before, const std::string& after, uint64_t length = kLength) {
        scratch.writeFile("before", before);
        scratch.writeFile("after", "head:" + after);
        const OwnedDescriptor beforeFile(::open(scratch.path("before").c_str(), O_RDONLY));
        const OwnedDescriptor afterFile(::open(scratch.path("after").c_str(), O_RDONLY));
        ContentsCompare contents({"before.vxpk", beforeFile.fd()}, {"after.vxpk", afterFile.fd()});
        return contents.same(0, kAfterOffset, length);
    }

    test::ScratchFolder scratch;
    const std::string pattern = patternOf(kLength);
};

TEST_F(ContentsCompareTest, same_byteChangedAnywhere_isFoundOnlyWhereTheBytesDiffer) {
    // The first and last byte of the run and of a block in the middle, where
    // an error in the block arithmetic would look.
    const std::vector<std::size_t> changed = {0, (256 << 10) - 1, 256 << 10, kLength - 1};
    for (const std::size_t at : changed) {
        std::string after = pattern;
        after[at] = static_cast<char>(after[at] ^ 1);
        EXPECT_FALSE(compare(pattern, after)) << at;
    }
    EXPECT_TRUE(compare(pattern, pattern));
    EXPECT_TRUE(compare("", "", 0));
}

TEST_F(ContentsCompareTest, same_interruptedAndShortReads_stillReadsEveryByte) {
    std::string after = pattern;
    after[kLength - 1] = static_cast<char>(after[kLength - 1] ^ 1);
    for (const test::Faults& faults :
         {test::Faults{.interruptEvery = 2}, test::Faults{.readAtMost = 1000}}) {
        test::SystemCallFaults injected(faults);
        EXPECT_TRUE(compare(pattern, pattern));
        EXPECT_FALSE(compare(pattern, after));
        EXPECT_GT(injected.injected(), 0);
    }
}

TEST_F(ContentsCompareTest, same_readFails_endsWithTheSystemsReasonForThatPackage) {
    test::SystemCallFaults injected(test::Faults{.readFailsAt = 300 << 10});
    try {
        compare(pattern, pattern);
        FAIL() << "the failed read went unnoticed";
    } catch (const EngineFailure& failure) {
        EXPECT_EQ(failure.kind, FailureKind::kSystem);
        EXPECT_EQ(std::string(failure.what()), std::string("before.vxpk: ") + std::strerror(EIO));
    }
}

TEST_F(ContentsCompareTest, same_packageEndsBeforeTheRun_endsNamingThatPackage) {
    try {
        compare(pattern, pattern.substr(0, kLength - 1));
        FAIL() << "the missing byte went unnoticed";
    } catch (const EngineFailure& failure) {
        EXPECT_EQ(std::string(failure.what()), std::string("after.vxpk: ") + std::strerror(EIO));
    }
}

}  // namespace
}  // namespace vx
