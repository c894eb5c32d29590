#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "json/JSONException.h"

namespace vx {

// Runs the action and checks that it raises a JSONException with exactly this
// number and message.
inline void ExpectJSONFailure(const std::function<void()>& action, int64_t number,
                              const std::string& message) {
    try {
        action();
        ADD_FAILURE() << "no JSONException, expected " << number << " " << message;
    } catch (const JSONException& failure) {
        EXPECT_EQ(failure.ErrorNumber, number) << message;
        EXPECT_EQ(std::string(failure.Message.bytes()), message);
    }
}

}  // namespace vx
