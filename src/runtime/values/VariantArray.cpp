#include "runtime/values/Array.h"
#include "runtime/values/Variant.h"

namespace vx {
namespace {

const Ref<ArrayBase>& heldArray(const Variant& value) {
    const auto* array = std::get_if<Ref<ArrayBase>>(&value.storage());
    if (array == nullptr) {
        throw TypeMismatchException();
    }
    return *array;
}

// The element kind that each code of the second numbering reads.
int32_t elementKindOfCode(int32_t elementCode) {
    switch (elementCode) {
        case ArrayCodes::Int32:
            return VarTypes::Int32;
        case ArrayCodes::Single:
            return VarTypes::Single;
        case ArrayCodes::Double:
            return VarTypes::Double;
        case ArrayCodes::String:
            return VarTypes::String;
        case ArrayCodes::Object:
            return VarTypes::Object;
        case ArrayCodes::Int64:
            return VarTypes::Int64;
        case ArrayCodes::Boolean:
            return VarTypes::Boolean;
        default:
            throw TypeMismatchException();
    }
}

Ref<ArrayBase> widenedToInt64(const ArrayBase& narrow) {
    auto wide = New<Array<int64_t>>();
    for (int64_t index = 0; index <= narrow.Ubound(); ++index) {
        wide->Append(VariantToInt64(narrow.ElementAt(index)));
    }
    return wide;
}

}  // namespace

int64_t VariantGetArrayElementType(const Variant& value) {
    return heldArray(value)->ElementVarType();
}

Ref<ArrayBase> VariantArrayAssignmentWithTypeCheck(int32_t elementCode, const Variant& value) {
    const Ref<ArrayBase>& array = heldArray(value);
    const int32_t held = array->ElementVarType();
    if (held == elementKindOfCode(elementCode)) {
        return array;
    }
    // The default integer is as wide as Int64 here, so an array of it is read
    // through the Int64 code rather than as 32-bit values.
    if (elementCode == ArrayCodes::Int64 && held == VarTypes::Int32) {
        return widenedToInt64(*array);
    }
    throw TypeMismatchException();
}

}  // namespace vx
