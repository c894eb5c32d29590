#include "runtime/values/Variant.h"

#include <functional>
#include <string_view>

#include "runtime/core/Overloaded.h"
#include "runtime/values/Date.h"
#include "runtime/values/VariantNumber.h"

namespace vx {
namespace {

// Values of one class can be equal to each other; values of two classes never
// are. The integer and floating kinds make one class, so that a key read back
// as another width of number still finds its entry.
enum class ValueClass { Nil, Number, Boolean, String, Text, Color, Currency, Ptr, Object, Array };

ValueClass classOf(const Variant::Storage& storage) {
    return std::visit(Overloaded{
                          [](std::monostate) { return ValueClass::Nil; },
                          [](bool) { return ValueClass::Boolean; },
                          [](const String&) { return ValueClass::String; },
                          [](const Text&) { return ValueClass::Text; },
                          [](Color) { return ValueClass::Color; },
                          [](Currency) { return ValueClass::Currency; },
                          [](Ptr) { return ValueClass::Ptr; },
                          [](const Ref<Object>&) { return ValueClass::Object; },
                          [](const Ref<ArrayBase>&) { return ValueClass::Array; },
                          [](const auto&) { return ValueClass::Number; },
                      },
                      storage);
}

template <class T>
int32_t sign(const T& a, const T& b) {
    return a < b ? -1 : (a > b ? 1 : 0);
}

int32_t compareAddresses(const void* a, const void* b) {
    const std::less<const void*> before;
    return before(a, b) ? -1 : (before(b, a) ? 1 : 0);
}

// What a value of a non-numeric class is made of, for its hash.
uint64_t contentHash(const Variant::Storage& storage) {
    const auto address = [](const void* p) {
        return static_cast<uint64_t>(std::hash<const void*>()(p));
    };
    const auto bytes = [](std::string_view b) {
        return static_cast<uint64_t>(std::hash<std::string_view>()(b));
    };
    return std::visit(
        Overloaded{
            [](std::monostate) { return uint64_t{0}; },
            [](bool held) { return uint64_t{held}; },
            [&](const String& held) { return bytes(held.bytes()); },
            [&](const Text& held) { return bytes(held.ToString().bytes()); },
            [](Color held) { return uint64_t{held.packed()}; },
            [](Currency held) { return static_cast<uint64_t>(held.tenThousandths()); },
            [](Ptr held) { return static_cast<uint64_t>(held.Address); },
            [&](const Ref<Object>& held) { return address(held.get()); },
            [&](const Ref<ArrayBase>& held) { return address(held.get()); },
            [](const auto&) { return uint64_t{0}; },
        },
        storage);
}

}  // namespace

int64_t Variant::Operator_Hash() const {
    const ValueClass valueClass = classOf(storage_);
    const uint64_t content = valueClass == ValueClass::Number
                                 ? HashVariantNumber(*NumericKindValue(*this))
                                 : contentHash(storage_);
    return static_cast<int64_t>(content ^
                                (static_cast<uint64_t>(valueClass) * 0x9e3779b97f4a7c15ULL));
}

bool operator==(const Variant& a, const Variant& b) {
    return VariantCompare(a, b) == 0;
}

int32_t VariantCompare(const Variant& left, const Variant& right) {
    const ValueClass leftClass = classOf(left.storage());
    const ValueClass rightClass = classOf(right.storage());
    if (leftClass != rightClass) {
        return sign(leftClass, rightClass);
    }
    const auto& a = left.storage();
    const auto& b = right.storage();
    switch (leftClass) {
        case ValueClass::Nil:
            return 0;
        case ValueClass::Number:
            return CompareVariantNumbers(*NumericKindValue(left), *NumericKindValue(right));
        case ValueClass::Boolean:
            return sign(std::get<bool>(a), std::get<bool>(b));
        case ValueClass::String:
            return RuntimeStringCompare(std::get<String>(a), std::get<String>(b));
        case ValueClass::Text:
            return RuntimeStringCompare(std::get<Text>(a).ToString(), std::get<Text>(b).ToString());
        case ValueClass::Color:
            return sign(std::get<Color>(a).packed(), std::get<Color>(b).packed());
        case ValueClass::Currency:
            return sign(std::get<Currency>(a), std::get<Currency>(b));
        case ValueClass::Ptr:
            return sign(std::get<Ptr>(a).Address, std::get<Ptr>(b).Address);
        case ValueClass::Object:
            return compareAddresses(std::get<Ref<Object>>(a).get(), std::get<Ref<Object>>(b).get());
        case ValueClass::Array:
            return compareAddresses(std::get<Ref<ArrayBase>>(a).get(),
                                    std::get<Ref<ArrayBase>>(b).get());
    }
    return 0;
}

int32_t VarType(const Variant& value) {
    return std::visit(
        Overloaded{
            [](std::monostate) { return VarTypes::Nil; },
            [](int32_t) { return VarTypes::Int32; },
            [](int64_t) { return VarTypes::Int64; },
            [](float) { return VarTypes::Single; },
            [](double) { return VarTypes::Double; },
            [](const String&) { return VarTypes::String; },
            [](const Ref<Object>& held) {
                return RuntimeObjectIsa<Date>(held) ? VarTypes::Date : VarTypes::Object;
            },
            [](bool) { return VarTypes::Boolean; },
            [](Color) { return VarTypes::Color; },
            [](Currency) { return VarTypes::Currency; },
            [](const Text&) { return VarTypes::Text; },
            [](uint32_t) { return VarTypes::UInt32; },
            [](uint64_t) { return VarTypes::UInt64; },
            [](Ptr) { return VarTypes::Ptr; },
            [](const Ref<ArrayBase>& held) { return VarTypes::Array | held->ElementVarType(); },
        },
        value.storage());
}

}  // namespace vx
