#pragma once

#include "runtime/core/Object.h"
#include "runtime/values/Variant.h"

namespace vx {

// Two Variants fixed when the pair is made: a Dictionary's first contents and
// the cell of a Collection.
class Pair : public Object {
public:
    Pair(const Variant& left, const Variant& right) : mLeft(left), mRight(right) {}

    const Variant& Left() const { return mLeft; }
    const Variant& Right() const { return mRight; }

private:
    Variant mLeft;
    Variant mRight;
};

}  // namespace vx
