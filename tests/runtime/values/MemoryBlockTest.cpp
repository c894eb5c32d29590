#include <gtest/gtest.h>

#include <limits>
#include <tuple>

#include "runtime/core/RuntimeException.h"
#include "runtime/text/TextEncoding.h"
#include "runtime/values/MemoryBlock.h"

namespace vx {

TEST(MemoryBlock, resize_keepsTheFirstBytesAndZeroesTheRestOrRaisesBeyondMemory) {
    MemoryBlock block(0);
    block.Operator_Convert("abc");
    ASSERT_EQ(block.Size(), 3);
    block.Size(6);
    EXPECT_EQ(block.bytes(), std::string_view("abc\0\0\0", 6));
    block.Size(2);
    EXPECT_EQ(block.bytes(), "ab");
    EXPECT_THROW(block.Size(std::numeric_limits<int64_t>::max()), OutOfMemoryException);
    EXPECT_EQ(block.Size(), 2);
}

TEST(MemoryBlock, stringValue_readsAndWritesBytesAtAnOffset) {
    MemoryBlock block(8);
    block.StringValue(2, 3, String("xyz"));
    const String read = block.StringValue(2, 3, Encodings::ASCII);
    EXPECT_EQ(read.bytes(), "xyz");
    EXPECT_EQ(read.encoding(), Encodings::ASCII);
    EXPECT_EQ(block.StringValue(0, 0, nullptr).encoding(), nullptr);
    // A shorter String leaves zeros behind it; a longer one is cut.
    block.StringValue(4, 3, String("q"));
    block.StringValue(0, 2, String("12345"));
    EXPECT_EQ(block.bytes(), std::string_view("12xyq\0\0\0", 8));
}

TEST(MemoryBlock, rangeOutsideTheBlock_raisesOutOfBounds) {
    MemoryBlock block(4);
    const std::tuple<int64_t, int64_t> outside[] = {
        {-1, 1}, {0, 5}, {4, 1}, {5, 0}, {2, -1}, {1, std::numeric_limits<int64_t>::max()}};
    for (const auto& [offset, length] : outside) {
        SCOPED_TRACE(std::to_string(offset) + "," + std::to_string(length));
        EXPECT_THROW(block.StringValue(offset, length, nullptr), OutOfBoundsException);
        EXPECT_THROW(block.StringValue(offset, length, String("abcd")), OutOfBoundsException);
    }
    EXPECT_EQ(block.StringValue(4, 0, nullptr).byteLength(), 0U);
    EXPECT_THROW(MemoryBlock(-1), OutOfBoundsException);
}

}  // namespace vx
