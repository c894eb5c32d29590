#include <gtest/gtest.h>

#include <string>

#include "json/JSONStringBuffer.h"
#include "runtime/TextEncoding.h"

namespace vx {
namespace {

String bytesOf(std::size_t count, char c) {
    return String(std::string(count, c), Encodings::UTF8);
}

TEST(JSONStringBuffer, append_doublesCapacityUntilTheTextFits) {
    const struct {
        std::size_t first;
        std::size_t second;
        std::size_t capacity;
    } cases[] = {
        {1024, 0, 1024}, {1024, 1, 2048}, {3000, 0, 4096}, {1000, 3000, 4096}, {5000, 5000, 16384},
    };
    for (const auto& c : cases) {
        JSONStringBuffer buffer(1024);
        buffer.Append(bytesOf(c.first, 'a'));
        buffer.Append(bytesOf(c.second, 'b'));
        EXPECT_EQ(buffer.data.size(), c.capacity) << c.first << "+" << c.second;
        EXPECT_EQ(buffer.binaryLength, c.first + c.second);
        EXPECT_EQ(buffer.StringValue().bytes(),
                  std::string(c.first, 'a') + std::string(c.second, 'b'));
    }
}

TEST(JSONStringBuffer, len_countsCharactersUnderEachPiecesTag) {
    JSONStringBuffer buffer(1024);
    buffer.Append("\xC3\xA9");
    EXPECT_EQ(buffer.Len(), 1U);
    EXPECT_EQ(buffer.binaryLength, 2U);
    buffer.Append(String("\xC3\xA9", Encodings::ISOLatin1));
    EXPECT_EQ(buffer.Len(), 3U);
    EXPECT_EQ(buffer.binaryLength, 4U);
}

TEST(JSONStringBuffer, stringValue_hasNoEncodingAndLeavesBufferUsable) {
    JSONStringBuffer buffer(16);
    EXPECT_TRUE(buffer.StringValue().isEmpty());
    buffer.Append("ab");
    const String first = buffer.StringValue();
    buffer.Append(String("c", Encodings::ASCII));
    EXPECT_EQ(first, String("ab"));
    EXPECT_EQ(first.encoding(), nullptr);
    EXPECT_EQ(buffer.Operator_Convert(), String("abc"));
}

TEST(JSONStringBuffer, madeFromText_holdsItInAStoreOfItsSize) {
    const JSONStringBuffer buffer(String("\xC3\xA9t\xC3\xA9"));
    EXPECT_EQ(buffer.data.size(), 5U);
    EXPECT_EQ(buffer.Len(), 3U);
    EXPECT_EQ(buffer.StringValue(), String("\xC3\xA9t\xC3\xA9"));
}

TEST(JSONStringBuffer, convertedFromText_startsWithTheUsualStore) {
    const auto buffer = JSONStringBuffer::Operator_Convert("xyz");
    EXPECT_EQ(buffer->data.size(), 1024U);
    EXPECT_EQ(buffer->StringValue(), String("xyz"));
}

TEST(JSONStringBuffer, emptyStore_growsToTheFirstPiece) {
    JSONStringBuffer buffer(String(""));
    EXPECT_EQ(buffer.data.size(), 0U);
    buffer.Append("hello");
    EXPECT_GE(buffer.data.size(), 5U);
    EXPECT_EQ(buffer.StringValue(), String("hello"));
}

}  // namespace
}  // namespace vx
