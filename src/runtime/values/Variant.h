#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <variant>

#include "runtime/core/Object.h"
#include "runtime/core/Ref.h"
#include "runtime/text/String.h"
#include "runtime/text/Text.h"
#include "runtime/values/ArrayBase.h"
#include "runtime/values/Color.h"
#include "runtime/values/Currency.h"
#include "runtime/values/Ptr.h"

namespace vx {

// The numbers VarType gives. The JSON engine reads a value by testing them in a
// fixed order; the others only need to differ from those.
namespace VarTypes {
inline constexpr int32_t Nil = 0;
inline constexpr int32_t Int32 = 2;
inline constexpr int32_t Int64 = 3;
inline constexpr int32_t Single = 4;
inline constexpr int32_t Double = 5;
inline constexpr int32_t Currency = 6;
inline constexpr int32_t Date = 7;
inline constexpr int32_t String = 8;
inline constexpr int32_t Object = 9;
inline constexpr int32_t Boolean = 11;
// Only ever an element kind: an array of Variant.
inline constexpr int32_t Variant = 12;
inline constexpr int32_t Color = 16;
inline constexpr int32_t UInt32 = 19;
inline constexpr int32_t UInt64 = 21;
inline constexpr int32_t Ptr = 26;
inline constexpr int32_t Text = 37;
// A flag, tested as a bit: set on every array, beside the element's number.
inline constexpr int32_t Array = 4096;
}  // namespace VarTypes

// The dynamic value: nil, one scalar, an object or an array. A scalar is held
// by value and is never changed after it is made, so copying a Variant costs a
// few words and sharing one is free.
class Variant {
public:
    using Storage =
        std::variant<std::monostate, int32_t, int64_t, float, double, String, Ref<Object>, bool,
                     Color, Currency, Text, uint32_t, uint64_t, Ptr, Ref<ArrayBase>>;

    Variant() = default;
    Variant(std::nullptr_t) {}
    Variant(int32_t value) : storage_(value) {}
    Variant(int64_t value) : storage_(value) {}
    Variant(uint32_t value) : storage_(value) {}
    Variant(uint64_t value) : storage_(value) {}
    Variant(float value) : storage_(value) {}
    Variant(double value) : storage_(value) {}
    Variant(bool value) : storage_(value) {}
    Variant(const String& value) : storage_(value) {}
    Variant(const char* utf8Literal) : storage_(String(utf8Literal)) {}
    Variant(Color value) : storage_(value) {}
    Variant(Currency value) : storage_(value) {}
    Variant(const Text& value) : storage_(value) {}
    Variant(Ptr value) : storage_(value) {}
    // A nil object makes a nil Variant, as assigning Nil does.
    template <class T>
    requires std::derived_from<T, Object> Variant(const Ref<T>& object) {
        if (object) {
            storage_ = Ref<Object>(object);
        }
    }
    template <class T>
    requires std::derived_from<T, ArrayBase> Variant(const Ref<T>& array) {
        if (array) {
            storage_ = Ref<ArrayBase>(array);
        }
    }

    const Storage& storage() const { return storage_; }

    // Equal values hash equally, whatever kind holds them (Int32 1, Int64 1 and
    // Double 1.0 are one number), so that Dictionary can use it for its keys.
    int64_t Operator_Hash() const;

    // VariantCompare is 0.
    friend bool operator==(const Variant& a, const Variant& b);

private:
    Storage storage_;
};

// The kind's number; for an array the element's number with the 4096 bit set.
int32_t VarType(const Variant& value);
// The element's number of an array; TypeMismatchException for anything else.
int64_t VariantGetArrayElementType(const Variant& value);
// The array held, as an array of the element kind that code names (Boolean 16,
// Int64 11, Double 2, Single 1, String 3, object 4, Int32 0). An array of 32-bit
// integers passes as Int64 and comes back widened. A code that does not fit the
// array raises TypeMismatchException.
Ref<ArrayBase> VariantArrayAssignmentWithTypeCheck(int32_t elementCode, const Variant& value);

// 0 when equal. Nil equals only nil; the numbers of every integer and floating
// kind compare by value; Strings by their bytes, case-sensitively; objects and
// arrays by identity; other kinds only with their own kind. Values of
// different classes are never equal and sort by class.
int32_t VariantCompare(const Variant& left, const Variant& right);

inline Variant BooleanToVariant(bool value) {
    return Variant(value);
}
inline Variant ColorToVariant(Color value) {
    return Variant(value);
}
inline Variant CurrencyToVariant(Currency value) {
    return Variant(value);
}
inline Variant DoubleToVariant(double value) {
    return Variant(value);
}
inline Variant Int32ToVariant(int32_t value) {
    return Variant(value);
}
inline Variant Int64ToVariant(int64_t value) {
    return Variant(value);
}
inline Variant PtrToVariant(Ptr value) {
    return Variant(value);
}
inline Variant SingleToVariant(float value) {
    return Variant(value);
}
// An empty String gives a String Variant, not nil.
inline Variant StringToVariant(const String& value) {
    return Variant(value);
}
inline Variant TextToVariant(const Text& value) {
    return Variant(value);
}
inline Variant UInt32ToVariant(uint32_t value) {
    return Variant(value);
}
inline Variant UInt64ToVariant(uint64_t value) {
    return Variant(value);
}

// Each reads the value as the target type, if the kind held offers that target;
// otherwise TypeMismatchException. Nil reads as the target's empty value.
bool VariantToBoolean(const Variant& value);
Color VariantToColor(const Variant& value);
Currency VariantToCurrency(const Variant& value);
double VariantToDouble(const Variant& value);
int32_t VariantToInt32(const Variant& value);
int64_t VariantToInt64(const Variant& value);
Ptr VariantToPtr(const Variant& value);
float VariantToSingle(const Variant& value);
// A String held comes back itself, with its encoding tag. Every value has a
// text: a Date its SQL date and time, any other object and every array the
// empty String.
String VariantToString(const Variant& value);
Text VariantToText(const Variant& value);
uint32_t VariantToUInt32(const Variant& value);
uint64_t VariantToUInt64(const Variant& value);
// The object held; nil for nil, TypeMismatchException for a scalar or an array.
Ref<Object> VariantToObject(const Variant& value);

// With a mask, the value read as a Double and shaped by the mask, with "." as
// the decimal point in every locale; with an empty mask, its String form.
String Str(const Variant& value, const String& mask);

}  // namespace vx

template <>
struct std::hash<vx::Variant> {
    std::size_t operator()(const vx::Variant& value) const noexcept {
        return static_cast<std::size_t>(value.Operator_Hash());
    }
};
