#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <type_traits>
#include <utility>
#include <vector>

#include "runtime/core/Ref.h"
#include "runtime/core/RuntimeException.h"
#include "runtime/values/ArrayBase.h"
#include "runtime/values/Variant.h"

namespace vx {

// The element codes of the second numbering, which CreateArray and
// VariantArrayAssignmentWithTypeCheck take.
namespace ArrayCodes {
inline constexpr int32_t Int32 = 0;
inline constexpr int32_t Single = 1;
inline constexpr int32_t Double = 2;
inline constexpr int32_t String = 3;
inline constexpr int32_t Object = 4;
inline constexpr int32_t Int64 = 11;
inline constexpr int32_t Boolean = 16;
}  // namespace ArrayCodes

// The VarType number of an element of type T.
template <class T>
struct ArrayElement;
template <>
struct ArrayElement<bool> : std::integral_constant<int32_t, VarTypes::Boolean> {};
template <>
struct ArrayElement<int32_t> : std::integral_constant<int32_t, VarTypes::Int32> {};
template <>
struct ArrayElement<int64_t> : std::integral_constant<int32_t, VarTypes::Int64> {};
template <>
struct ArrayElement<uint32_t> : std::integral_constant<int32_t, VarTypes::UInt32> {};
template <>
struct ArrayElement<uint64_t> : std::integral_constant<int32_t, VarTypes::UInt64> {};
template <>
struct ArrayElement<float> : std::integral_constant<int32_t, VarTypes::Single> {};
template <>
struct ArrayElement<double> : std::integral_constant<int32_t, VarTypes::Double> {};
template <>
struct ArrayElement<String> : std::integral_constant<int32_t, VarTypes::String> {};
template <>
struct ArrayElement<Color> : std::integral_constant<int32_t, VarTypes::Color> {};
template <>
struct ArrayElement<Currency> : std::integral_constant<int32_t, VarTypes::Currency> {};
template <>
struct ArrayElement<Text> : std::integral_constant<int32_t, VarTypes::Text> {};
template <>
struct ArrayElement<Ptr> : std::integral_constant<int32_t, VarTypes::Ptr> {};
template <>
struct ArrayElement<Variant> : std::integral_constant<int32_t, VarTypes::Variant> {};
template <class T>
requires std::derived_from<T, Object>
struct ArrayElement<Ref<T>> : std::integral_constant<int32_t, VarTypes::Object> {
};

// The one generic container: a one-dimensional array that counts from 0,
// shared by reference through Ref<Array<T>>. An index outside it raises
// OutOfBoundsException.
template <class T>
class Array final : public ArrayBase {
public:
    Array() = default;
    Array(std::initializer_list<T> items) : items_(items) {}
    explicit Array(std::vector<T> items) : items_(std::move(items)) {}

    int32_t ElementVarType() const override { return ArrayElement<T>::value; }
    int64_t Ubound() const override { return static_cast<int64_t>(items_.size()) - 1; }
    Variant ElementAt(int64_t index) const override { return Variant(Operator_Subscript(index)); }

    T Operator_Subscript(int64_t index) const { return items_[checked(index)]; }
    void Operator_Subscript(int64_t index, T value) { items_[checked(index)] = std::move(value); }
    T operator[](int64_t index) const { return Operator_Subscript(index); }

    void Append(T value) { items_.push_back(std::move(value)); }
    // Index may be one past the end, which appends.
    void Insert(int64_t index, T value) {
        if (index != Count()) {
            checked(index);
        }
        items_.insert(items_.begin() + index, std::move(value));
    }
    void Remove(int64_t index) { items_.erase(items_.begin() + checked(index)); }

    int64_t Count() const { return static_cast<int64_t>(items_.size()); }
    auto begin() const { return items_.begin(); }
    auto end() const { return items_.end(); }

private:
    std::ptrdiff_t checked(int64_t index) const {
        if (index < 0 || index >= Count()) {
            throw OutOfBoundsException();
        }
        return static_cast<std::ptrdiff_t>(index);
    }

    std::vector<T> items_;
};

// A new array of upperBound + 1 empty elements; -1 gives an empty array.
template <class T>
Ref<Array<T>> CreateArray(int64_t upperBound) {
    if (upperBound < -1) {
        throw OutOfBoundsException();
    }
    return New<Array<T>>(std::vector<T>(static_cast<std::size_t>(upperBound + 1)));
}

}  // namespace vx
