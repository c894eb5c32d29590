#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "json/JSONStringBuffer.h"
#include "runtime/text/TextEncoding.h"

namespace vx {
namespace {

String bytesOf(std::size_t count, char c) {
    return String(std::string(count, c), Encodings::UTF8);
}

TEST(JSONStringBuffer, append_doublesCapacityUntilTheTextFits) {
    const std::tuple<std::size_t, std::size_t, std::size_t> cases[] = {
        {1024, 0, 1024}, {1024, 1, 2048}, {3000, 0, 4096}, {1000, 3000, 4096}, {5000, 5000, 16384},
    };
    for (const auto& [first, second, capacity] : cases) {
        JSONStringBuffer buffer(1024);
        buffer.Append(bytesOf(first, 'a'));
        buffer.Append(bytesOf(second, 'b'));
        EXPECT_EQ(buffer.data->Size(), static_cast<int64_t>(capacity)) << first << "+" << second;
        EXPECT_EQ(buffer.StringValue().bytes(), std::string(first, 'a') + std::string(second, 'b'));
    }
    // A store of nothing must still grow rather than double zero forever.
    JSONStringBuffer empty(String(""));
    empty.Append("hello");
    EXPECT_EQ(empty.StringValue(), String("hello"));
    // Without a store there is nothing to write to or read from.
    empty.data = nullptr;
    EXPECT_THROW(empty.Append("more"), NilObjectException);
    EXPECT_THROW(empty.StringValue(), NilObjectException);
}

TEST(JSONStringBuffer, len_countsCharactersUnderEachPiecesTag) {
    JSONStringBuffer buffer(16);
    buffer.Append("\xC3\xA9");
    const String first = buffer.StringValue();
    buffer.Append(String("\xC3\xA9", Encodings::ISOLatin1));
    EXPECT_EQ(buffer.Len(), 3U);
    EXPECT_EQ(buffer.binaryLength, 4U);
    EXPECT_EQ(first, String("\xC3\xA9"));
    EXPECT_EQ(first.encoding(), nullptr);
    EXPECT_EQ(JSONStringBuffer(String("\xC3\xA9t")).Len(), 2U);
    EXPECT_EQ(JSONStringBuffer::Operator_Convert("xyz")->Operator_Convert(), String("xyz"));
}

}  // namespace
}  // namespace vx
