#include <gtest/gtest.h>

#include <string>

#include "engine/preview/ByteRange.h"

namespace vx::engine {
namespace {

using Kind = ByteRange::Kind;

struct RangeCase {
    std::string header;
    uint64_t size;
    Kind kind;
    uint64_t first;
    uint64_t length;
};

void PrintTo(const RangeCase& c, std::ostream* out) {
    *out << '"' << c.header << "\" of " << c.size;
}

class ByteRangeTest : public ::testing::TestWithParam<RangeCase> {};

TEST_P(ByteRangeTest, parse_answersAsTheServerMust) {
    const RangeCase& c = GetParam();
    const ByteRange range = ParseByteRange(c.header, c.size);
    EXPECT_EQ(range.kind, c.kind);
    if (c.kind == Kind::kPart) {
        EXPECT_EQ(range.first, c.first);
        EXPECT_EQ(range.length, c.length);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Headers, ByteRangeTest,
    ::testing::Values(RangeCase{"bytes=0-0", 10, Kind::kPart, 0, 1},
                      RangeCase{"bytes=2-4", 10, Kind::kPart, 2, 3},
                      RangeCase{"bytes=0-9", 10, Kind::kPart, 0, 10},
                      // The last position is cut to the end of the file.
                      RangeCase{"bytes=5-100", 10, Kind::kPart, 5, 5},
                      RangeCase{"bytes=5-99999999999999999999999", 10, Kind::kPart, 5, 5},
                      RangeCase{"bytes=5-", 10, Kind::kPart, 5, 5},
                      RangeCase{"bytes=9-", 10, Kind::kPart, 9, 1},
                      RangeCase{"bytes=-3", 10, Kind::kPart, 7, 3},
                      RangeCase{"bytes=-10", 10, Kind::kPart, 0, 10},
                      RangeCase{"bytes=-400", 10, Kind::kPart, 0, 10},
                      // Nothing at or past the end, no bytes at all, backwards, garbage.
                      RangeCase{"bytes=10-", 10, Kind::kUnsatisfiable, 0, 0},
                      RangeCase{"bytes=10-20", 10, Kind::kUnsatisfiable, 0, 0},
                      RangeCase{"bytes=99999999999999999999999-", 10, Kind::kUnsatisfiable, 0, 0},
                      RangeCase{"bytes=0-", 0, Kind::kUnsatisfiable, 0, 0},
                      RangeCase{"bytes=-5", 0, Kind::kUnsatisfiable, 0, 0},
                      RangeCase{"bytes=-0", 10, Kind::kUnsatisfiable, 0, 0},
                      RangeCase{"bytes=4-2", 10, Kind::kUnsatisfiable, 0, 0},
                      RangeCase{"bytes=-", 10, Kind::kUnsatisfiable, 0, 0},
                      RangeCase{"bytes=", 10, Kind::kUnsatisfiable, 0, 0},
                      RangeCase{"bytes=a-b", 10, Kind::kUnsatisfiable, 0, 0},
                      RangeCase{"bytes=1-2-3", 10, Kind::kUnsatisfiable, 0, 0},
                      RangeCase{"bytes= 1-2", 10, Kind::kUnsatisfiable, 0, 0},
                      RangeCase{"bytes=+1-2", 10, Kind::kUnsatisfiable, 0, 0},
                      // Several ranges, or another unit: the whole file.
                      RangeCase{"bytes=0-1,4-5", 10, Kind::kWhole, 0, 0},
                      RangeCase{"items=0-1", 10, Kind::kWhole, 0, 0},
                      RangeCase{"", 10, Kind::kWhole, 0, 0}));

}  // namespace
}  // namespace vx::engine
