#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

#include "runtime/Hex.h"
#include "runtime/StringFunctions.h"
#include "runtime/TextEncoding.h"

namespace vx {
namespace {

TEST(Hex, numbers_upperCaseWithoutLeadingZeros) {
    const struct {
        int64_t value;
        const char* expected;
    } integers[] = {
        {0, "0"},
        {255, "FF"},
        {0x1234ABCD, "1234ABCD"},
        {-1, "FFFFFFFFFFFFFFFF"},
        {std::numeric_limits<int64_t>::min(), "8000000000000000"},
        {std::numeric_limits<int64_t>::max(), "7FFFFFFFFFFFFFFF"},
    };
    for (const auto& c : integers) {
        EXPECT_EQ(Hex(c.value).bytes(), c.expected);
    }
    EXPECT_EQ(Hex(25).bytes(), "19");  // an int picks the integer form

    const struct {
        double value;
        const char* expected;
    } doubles[] = {
        {3846526496.75, "E5455620"},
        {255.9, "FF"},
        {-1.5, "FFFFFFFFFFFFFFFF"},
        {-0.5, "0"},
        {1e300, "7FFFFFFFFFFFFFFF"},
        {-1e300, "8000000000000000"},
        {std::numeric_limits<double>::quiet_NaN(), "0"},
    };
    for (const auto& c : doubles) {
        EXPECT_EQ(Hex(c.value).bytes(), c.expected) << c.value;
    }
}

TEST(EncodeHex, bytes_roundTripThroughDecodeHex) {
    std::string all(256, '\0');
    for (std::size_t i = 0; i < all.size(); ++i) {
        all[i] = static_cast<char>(i);
    }
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
    const struct {
        const char* text;
        std::string expected;
    } cases[] = {
        {"6a6B", "jk"}, {" 61\t62\n", "ab"}, {"61G62", "a"}, {"616", "a"}, {"6 1", ""}, {"", ""},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(DecodeHex(c.text).bytes(), c.expected) << c.text;
    }
}

}  // namespace
}  // namespace vx
