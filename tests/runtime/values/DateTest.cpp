#include <gtest/gtest.h>

#include <ctime>
#include <tuple>

#include "runtime/values/Date.h"

namespace vx {

TEST(Date, calendarFields_giveSecondsSince1970AndTheSameTextBack) {
    const std::tuple<int64_t, int64_t, int64_t, int64_t, int64_t, int64_t, double, double,
                     const char*>
        cases[] = {
            {1970, 1, 1, 0, 0, 0, 0, 0, "1970-01-01 00:00:00"},
            {2024, 2, 29, 13, 5, 9, 0, 1709211909, "2024-02-29 13:05:09"},
            {2024, 2, 29, 13, 5, 9, 2, 1709211909 - 7200, "2024-02-29 13:05:09"},
            {1969, 12, 31, 23, 59, 59, 0, -1, "1969-12-31 23:59:59"},
            {1904, 1, 1, 0, 0, 0, 0, -2082844800, "1904-01-01 00:00:00"},
            // Fields beyond their range carry into the next larger one.
            {2023, 13, 1, 0, 0, 0, 0, 1704067200, "2024-01-01 00:00:00"},
            {2024, 3, 0, 24, 0, 0, 0, 1709251200, "2024-03-01 00:00:00"},
        };
    for (const auto& [year, month, day, hour, minute, second, offset, totalSeconds, text] : cases) {
        SCOPED_TRACE(text);
        const Date date(year, month, day, hour, minute, second, offset);
        EXPECT_EQ(date.TotalSeconds(), totalSeconds);
        EXPECT_EQ(date.SQLDateTime(), String(text));
    }
}

TEST(Date, gmtOffset_movesTheFieldsButNotTheMoment) {
    Date date(2024, 1, 1, 0, 30, 0, 0);
    date.GMTOffset = -1;
    EXPECT_EQ(date.SQLDateTime(), String("2023-12-31 23:30:00"));
    EXPECT_EQ(date.TotalSeconds(), 1704069000);
}

TEST(Date, madeEmpty_holdsThePresentMoment) {
    const auto before = static_cast<double>(std::time(nullptr));
    const Date now;
    EXPECT_GE(now.TotalSeconds(), before);
    EXPECT_LT(now.TotalSeconds(), before + 5);
}

}  // namespace vx
