#include <gtest/gtest.h>

#include <limits>
#include <set>
#include <vector>

#include "runtime/core/RuntimeException.h"
#include "runtime/values/Random.h"

namespace vx {

TEST(Random, inRange_staysWithinBothBoundsAndReachesThem) {
    Random random;
    std::set<int64_t> seen;
    for (int draw = 0; draw < 20000; ++draw) {
        const int64_t value = random.InRange(100, 400);
        ASSERT_GE(value, 100);
        ASSERT_LE(value, 400);
        seen.insert(value);
    }
    EXPECT_EQ(seen.size(), 301U);
    EXPECT_EQ(random.InRange(7, 7), 7);
    EXPECT_THROW(random.InRange(2, 1), InvalidArgumentException);
}

TEST(Random, seed_selfSeededGeneratorsDifferAndOneSeedRepeats) {
    const auto draws = [](Random& random) {
        std::vector<int64_t> values;
        for (int i = 0; i < 16; ++i) {
            values.push_back(random.InRange(0, 1000000));
        }
        return values;
    };
    Random first;
    Random second;
    EXPECT_NE(first.Seed(), second.Seed());
    EXPECT_NE(draws(first), draws(second));
    first.Seed(42);
    second.Seed(42);
    EXPECT_EQ(draws(first), draws(second));
}

}  // namespace vx
