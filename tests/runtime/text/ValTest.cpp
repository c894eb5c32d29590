#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <utility>

#include "runtime/text/Val.h"

namespace vx {

TEST(Val, headOfText_isReadAndTheRestIgnored) {
    constexpr double inf = std::numeric_limits<double>::infinity();
    const std::pair<const char*, double> cases[] = {
        {"800", 800},    {"-1.5e3", -1500}, {"2E-3", 0.002},   {"+7", 7},
        {".5", 0.5},     {"5.", 5},         {"  42abc", 42},   {"\t\r\n 3", 3},
        {"1,5", 1},      {"1e", 1},         {"1.5e3.7", 1500}, {"abc", 0},
        {"", 0},         {"-.e5", 0},       {"0x10", 0},       {"&h00E9", 233},
        {"&H00e9", 233}, {"&h00G1", 0},     {"&h", 0},         {"&o17", 15},
        {"&b101", 5},    {"&b102", 2},      {"&x1", 0},        {" &h10", 16},
        {"1e400", inf},  {"-1e400", -inf},  {"1e-400", 0},     {"0.0001e310", 1e306},
    };
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(Val(text), expected) << text;
    }
    EXPECT_EQ(Val("&hFFFFFFFFFFFFFFFF"), -1);
    EXPECT_EQ(Val("1e99999999999999999999"), inf);
    EXPECT_EQ(Val("1.7976931348623157e308"), std::numeric_limits<double>::max());
    EXPECT_EQ(Val(String("1" + std::string(400, '0'), nullptr)), inf);
}

}  // namespace vx
