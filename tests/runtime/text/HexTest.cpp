#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <numeric>
#include <string>
#include <utility>

#include "runtime/text/Hex.h"
#include "runtime/text/StringFunctions.h"
#include "runtime/text/TextEncoding.h"

namespace vx {

TEST(Hex, numbers_upperCaseWithoutLeadingZeros) {
    using I = std::numeric_limits<int64_t>;
    const std::pair<int64_t, const char*> integers[] = {
        {0, "0"},
        {255, "FF"},
        {0x1234ABCD, "1234ABCD"},
        {-1, "FFFFFFFFFFFFFFFF"},
        {I::min(), "8000000000000000"},
        {I::max(), "7FFFFFFFFFFFFFFF"},
    };
    for (const auto& [value, expected] : integers) {
        EXPECT_EQ(Hex(value).bytes(), expected);
    }
    EXPECT_EQ(Hex(25).bytes(), "19");  // an int picks the integer form
    // Doubles are cut towards zero and held to the range of Int64.
    const std::pair<double, const char*> doubles[] = {
        {3846526496.75, "E5455620"},
        {255.9, "FF"},
        {-1.5, "FFFFFFFFFFFFFFFF"},
        {-0.5, "0"},
        {1e300, "7FFFFFFFFFFFFFFF"},
        {-1e300, "8000000000000000"},
        {std::numeric_limits<double>::quiet_NaN(), "0"},
    };
    for (const auto& [value, expected] : doubles) {
        EXPECT_EQ(Hex(value).bytes(), expected) << value;
    }
}

TEST(EncodeHex, bytes_roundTripThroughDecodeHex) {
    std::string all(256, '\0');
    std::iota(all.begin(), all.end(), '\0');
    const String bytes(all, Encodings::ASCII);
    const String packed = EncodeHex(bytes, false);
    EXPECT_EQ(LenB(packed), 512);
    EXPECT_EQ(Mid(packed, 509).bytes(), "FEFF");
    EXPECT_EQ(DecodeHex(packed).bytes(), all);
    EXPECT_EQ(DecodeHex(packed).encoding(), nullptr);
    EXPECT_EQ(DecodeHex(EncodeHex(bytes, true)).bytes(), all);
    EXPECT_EQ(EncodeHex("ab", true).bytes(), "61 62");
    EXPECT_TRUE(EncodeHex(String(), false).isEmpty());
}

TEST(DecodeHex, badText_readsWhatItCan) {
    const std::pair<const char*, std::string> cases[] = {
        {"6a6B", "jk"}, {" 61\t62\n", "ab"}, {"61G62", "a"}, {"616", "a"}, {"6 1", ""}, {"", ""},
    };
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(DecodeHex(text).bytes(), expected) << text;
    }
}

}  // namespace vx
