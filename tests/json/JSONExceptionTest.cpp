#include <gtest/gtest.h>

#include "json/JSONException.h"

namespace vx {
namespace {

struct PositionCase {
    int64_t position;
    const char* message;
};

TEST(JSONException, withPosition_namesOnlyPositionsFromOneInPlainDigits) {
    const PositionCase cases[] = {
        {-5, "Illegal Number Format"},
        {0, "Illegal Number Format"},
        {1, "Illegal Number Format at position 1"},
        {1234567, "Illegal Number Format at position 1234567"},
    };
    for (const auto& c : cases) {
        const JSONException failure("Illegal Number Format", 3, c.position);
        EXPECT_EQ(failure.Message, String(c.message)) << c.position;
        EXPECT_EQ(failure.ErrorNumber, 3);
    }
}

TEST(JSONException, withInfo_addsInfoUntrimmedUnlessBlank) {
    const struct {
        const char* info;
        const char* message;
    } cases[] = {
        {"", "Unrecognized Object"},
        {" \t ", "Unrecognized Object"},
        {"2024-01-02 03:04:05", "Unrecognized Object: 2024-01-02 03:04:05"},
        {" x ", "Unrecognized Object:  x "},
    };
    for (const auto& c : cases) {
        const JSONException failure("Unrecognized Object", 11, String(c.info));
        EXPECT_EQ(failure.Message, String(c.message)) << c.info;
        EXPECT_EQ(failure.ErrorNumber, 11);
    }
}

TEST(JSONException, caughtAsRuntimeException_whatGivesMessage) {
    try {
        throw JSONException("Missing :", 5, 7);
    } catch (const RuntimeException& failure) {
        EXPECT_STREQ(failure.what(), "Missing : at position 7");
        EXPECT_EQ(failure.ErrorNumber, 5);
    }
}

}  // namespace
}  // namespace vx
