#include "runtime/values/Collection.h"

#include "runtime/services/UIServices.h"

namespace vx {

void Collection::Add(const Variant& value, const String& key) {
    mItems->Insert(mItems->Ubound() + 1, New<Pair>(StringToVariant(key), value));
}

Variant Collection::Item(int64_t index) const {
    return mItems->Operator_Subscript(index - 1)->Right();
}

Variant Collection::Item(const String& key) const {
    const int64_t index = indexOf(key);
    return index < 0 ? Variant() : mItems->Operator_Subscript(index)->Right();
}

Variant Collection::Key(int64_t index) const {
    return mItems->Operator_Subscript(index - 1)->Left();
}

void Collection::Remove(int64_t index) {
    mItems->Remove(index - 1);
}

void Collection::Remove(const String& key) {
    const int64_t index = indexOf(key);
    if (index >= 0) {
        mItems->Remove(index);
    }
}

int64_t Collection::indexOf(const String& key) const {
    for (int64_t index = 0; index <= mItems->Ubound(); ++index) {
        if (RuntimeStringCompare(VariantToString(mItems->Operator_Subscript(index)->Left()), key) ==
            0) {
            return index;
        }
        // A long walk must not freeze the program.
        RuntimeBackgroundTask();
    }
    return -1;
}

}  // namespace vx
