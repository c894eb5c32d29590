#pragma once

#include <cstdint>

namespace vx {

class Variant;

// What a Variant knows of an array whatever its element type: the kind of its
// elements, its upper bound, and each element boxed as its kind is boxed.
class ArrayBase {
public:
    ArrayBase() = default;
    ArrayBase(const ArrayBase&) = default;
    ArrayBase& operator=(const ArrayBase&) = default;
    virtual ~ArrayBase() = default;

    // The VarType number of one element, without the array flag.
    virtual int32_t ElementVarType() const = 0;
    // The highest index; -1 for an empty array.
    virtual int64_t Ubound() const = 0;
    // The element at index as a Variant; OutOfBoundsException outside 0 to Ubound.
    virtual Variant ElementAt(int64_t index) const = 0;
};

}  // namespace vx
