#include <gtest/gtest.h>

#include <utility>

#include "json/JSONException.h"

namespace vx {
namespace {

TEST(JSONException, message_namesPositionsFromOneAndInfoUntrimmedUnlessBlank) {
    const std::pair<JSONException, const char*> cases[] = {
        {JSONException("Illegal Number Format", 3, -5), "Illegal Number Format"},
        {JSONException("Illegal Number Format", 3, 0), "Illegal Number Format"},
        {JSONException("Illegal Number Format", 3, 1), "Illegal Number Format at position 1"},
        {JSONException("Missing :", 5, 1234567), "Missing : at position 1234567"},
        {JSONException("Unrecognized Object", 11, String("")), "Unrecognized Object"},
        {JSONException("Unrecognized Object", 11, String(" \t ")), "Unrecognized Object"},
        {JSONException("Unrecognized Object", 11, String(" x ")), "Unrecognized Object:  x "},
    };
    for (const auto& [failure, message] : cases) {
        EXPECT_EQ(failure.Message, String(message)) << message;
        EXPECT_STREQ(static_cast<const RuntimeException&>(failure).what(), message);
    }
}

}  // namespace
}  // namespace vx
