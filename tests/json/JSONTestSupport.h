#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <string>

#include "json/JSONException.h"
#include "json/JSONItem.h"

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

inline Ref<JSONItem> arrayOf(std::initializer_list<Variant> values) {
    auto item = New<JSONItem>();
    for (const Variant& value : values) {
        item->Append(value);
    }
    return item;
}

inline std::string textOf(const JSONItem& item) {
    return std::string(item.ToString().bytes());
}

// depth copies of open, then inner, then depth copies of close.
inline std::string nested(int64_t depth, const std::string& open, const std::string& inner,
                          const std::string& close) {
    std::string head;
    std::string tail;
    for (int64_t i = 0; i < depth; ++i) {
        head += open;
        tail += close;
    }
    return head + inner + tail;
}

// A chain of depth items, each an array holding the next, or an object
// holding it under "k".
inline Ref<JSONItem> chain(int64_t depth, bool arrays) {
    auto root = New<JSONItem>();
    Ref<JSONItem> tail = root;
    for (int64_t i = 1; i < depth; ++i) {
        auto next = New<JSONItem>();
        arrays ? tail->Append(Variant(next)) : tail->Child("k", next);
        tail = next;
    }
    return root;
}

}  // namespace vx
