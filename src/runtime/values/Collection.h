#pragma once

#include <cstdint>

#include "runtime/core/Object.h"
#include "runtime/text/String.h"
#include "runtime/values/Array.h"
#include "runtime/values/Pair.h"
#include "runtime/values/Variant.h"

namespace vx {

// An ordered list of values, each under an optional String key, counted from
// 1. Keys need not be unique: a lookup by key takes the first match, walking
// the cells one by one.
class Collection : public Object {
public:
    Collection() : mItems(CreateArray<Ref<Pair>>(-1)) {}

    // Appends a cell; nothing checks for a duplicate key.
    virtual void Add(const Variant& value, const String& key = "");
    virtual Variant Item(int64_t index) const;
    // The value of the first cell under key; nil if there is none.
    virtual Variant Item(const String& key) const;
    virtual Variant Key(int64_t index) const;
    // Later cells move down by one.
    virtual void Remove(int64_t index);
    // Removes the first cell under key; nothing happens if there is none.
    virtual void Remove(const String& key);

    int64_t Count() const { return mItems->Ubound() + 1; }

private:
    // The array index of the first cell under key, or -1.
    int64_t indexOf(const String& key) const;

    // Each cell holds its key on the left and its value on the right.
    Ref<Array<Ref<Pair>>> mItems;
};

}  // namespace vx
