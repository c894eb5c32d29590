#include "json/JSONItem.h"

#include <utility>
#include <vector>

#include "json/JSONException.h"
#include "runtime/services/UIServices.h"
#include "runtime/text/EncodingConversion.h"
#include "runtime/text/Hex.h"
#include "runtime/text/TextEncoding.h"

namespace vx {
namespace {

// Both forms of the array guard's message are in use, the first one by most
// operations; callers depend on each as it stands.
constexpr const char* notAArray = "JSONItem is not a array";
constexpr const char* notAnArray = "JSONItem is not an array";

Variant indexKey(int64_t index) {
    return Variant(index);
}

// Strings leave the item as UTF-8: raw bytes are declared so, anything else
// is converted.
Variant readRule(const Variant& value) {
    if (VarType(value) != VarTypes::String) {
        return value;
    }
    const String text = VariantToString(value);
    if (text.encoding() == nullptr) {
        return Variant(DefineEncoding(text, Encodings::UTF8));
    }
    return Variant(ConvertEncoding(text, Encodings::UTF8));
}

// A stored value as a child item; a scalar can't be cast and nil stays nil.
Ref<JSONItem> asItem(const Variant& value) {
    if (VarType(value) == VarTypes::Nil) {
        return nullptr;
    }
    if (VarType(value) != VarTypes::Object) {
        throw IllegalCastException();
    }
    return RuntimeCheckCast<JSONItem>(VariantToObject(value));
}

// The element code under which an array of the given kind is read, or -1 for
// kinds that have no JSON form. A default integer array is read as Int64, so
// that no 32-bit integer comes out of the conversion.
int32_t arrayCodeFor(int64_t elementKind) {
    switch (elementKind) {
        case VarTypes::Boolean:
            return ArrayCodes::Boolean;
        case VarTypes::Int32:
        case VarTypes::Int64:
            return ArrayCodes::Int64;
        case VarTypes::Double:
            return ArrayCodes::Double;
        case VarTypes::Single:
            return ArrayCodes::Single;
        case VarTypes::String:
            return ArrayCodes::String;
        case VarTypes::Object:
            return ArrayCodes::Object;
        default:
            return -1;
    }
}

// A held child item that nothing but its parent's table refers to.
JSONItem* soleChildItem(const Variant& value) {
    const auto* object = std::get_if<Ref<Object>>(&value.storage());
    if (object == nullptr || object->shared().use_count() != 1) {
        return nullptr;
    }
    return dynamic_cast<JSONItem*>(object->get());
}

}  // namespace

JSONItem::JSONItem() : _data(New<Dictionary>(CreateArray<Ref<Pair>>(-1))) {}

JSONItem::~JSONItem() {
    if (!_data || _data.shared().use_count() != 1) {
        return;
    }
    // Each pass empties one table and keeps the tables of the children it
    // alone held, so every child dies with an empty table of its own.
    std::vector<Ref<Dictionary>> pending;
    pending.push_back(std::move(_data));
    while (!pending.empty()) {
        const Ref<Dictionary> table = std::move(pending.back());
        pending.pop_back();
        const Ref<Array<Variant>> values = table->Values();
        table->Clear();
        for (const Variant& value : *values) {
            JSONItem* child = soleChildItem(value);
            if (child != nullptr && child->_data && child->_data.shared().use_count() == 1) {
                pending.push_back(std::move(child->_data));
            }
        }
    }
}

void JSONItem::Operator_Convert(const Ref<Dictionary>& source) {
    _data = New<Dictionary>(CreateArray<Ref<Pair>>(-1));
    for (int64_t i = 0; i < source->Count(); ++i) {
        const String key = VariantToString(source->Key(i));
        _data->Value(KeyEncode(key), source->Value(Variant(key)));
        RuntimeBackgroundTask();
    }
}

int64_t JSONItem::Count() const {
    return _data->Count();
}

void JSONItem::Clear() {
    _data->Clear();
}

void JSONItem::requireArrayAccess(const char* message) const {
    if (Count() > 0 && !_mIsArray) {
        throw JSONException(message, 12, 0);
    }
}

void JSONItem::requireNameAccess() const {
    if (_mIsArray) {
        throw JSONException("JSONItem is an array", 13, 0);
    }
}

void JSONItem::Append(const Variant& value) {
    requireArrayAccess(notAArray);
    _data->Value(indexKey(Count()), value);
    _mIsArray = true;
}

void JSONItem::Insert(int64_t index, const Variant& value) {
    requireArrayAccess(notAArray);
    for (int64_t i = Count() - 1; i >= index; --i) {
        _data->Value(indexKey(i + 1), _data->Value(indexKey(i)));
        RuntimeBackgroundTask();
    }
    _data->Value(indexKey(index), value);
    _mIsArray = true;
}

void JSONItem::Remove(int64_t index) {
    requireArrayAccess(notAArray);
    const int64_t count = Count();
    for (int64_t i = index; i < count - 1; ++i) {
        _data->Value(indexKey(i), _data->Value(indexKey(i + 1)));
        RuntimeBackgroundTask();
    }
    _data->Remove(indexKey(count - 1));
}

Variant JSONItem::Value(int64_t index) const {
    requireArrayAccess(notAnArray);
    return readRule(_data->Value(indexKey(index)));
}

void JSONItem::Value(int64_t index, const Variant& value) {
    requireArrayAccess(notAnArray);
    _data->Value(indexKey(index), value);
    _mIsArray = true;
}

Variant JSONItem::Operator_Subscript(int64_t index) const {
    requireArrayAccess(notAArray);
    if (!_data->HasKey(indexKey(index))) {
        throw OutOfBoundsException();
    }
    return _data->Lookup(indexKey(index), Variant());
}

void JSONItem::Operator_Subscript(int64_t index, const Variant& value) {
    requireArrayAccess(notAArray);
    if (index >= Count()) {
        throw OutOfBoundsException();
    }
    _data->Value(indexKey(index), value);
    _mIsArray = true;
}

Ref<JSONItem> JSONItem::Child(int64_t index) const {
    Ref<JSONItem> child = asItem(_data->Lookup(indexKey(index), Variant()));
    if (!child) {
        throw OutOfBoundsException();
    }
    return child;
}

void JSONItem::Child(int64_t index, const Ref<JSONItem>& value) {
    requireArrayAccess(notAArray);
    _data->Value(indexKey(index), Variant(value));
    _mIsArray = true;
}

Variant JSONItem::Value(const String& name) const {
    requireNameAccess();
    return readRule(_data->Value(KeyEncode(name)));
}

void JSONItem::Value(const String& name, const Variant& value) {
    requireNameAccess();
    if ((VarType(value) & VarTypes::Array) == 0) {
        _data->Value(KeyEncode(name), value);
        return;
    }
    const int32_t code = arrayCodeFor(VariantGetArrayElementType(value));
    if (code < 0) {
        throw TypeMismatchException();
    }
    const Ref<ArrayBase> elements = VariantArrayAssignmentWithTypeCheck(code, value);
    auto child = New<JSONItem>();
    for (int64_t i = 0; i <= elements->Ubound(); ++i) {
        child->Append(elements->ElementAt(i));
        RuntimeBackgroundTask();
    }
    _data->Value(KeyEncode(name), Variant(child));
}

Variant JSONItem::Lookup(const String& name, const Variant& defaultValue) const {
    requireNameAccess();
    return readRule(_data->Lookup(KeyEncode(name), defaultValue));
}

Ref<JSONItem> JSONItem::Child(const String& name) const {
    return asItem(_data->Value(KeyEncode(name)));
}

void JSONItem::Child(const String& name, const Ref<JSONItem>& value) {
    _data->Value(KeyEncode(name), Variant(value));
}

void JSONItem::Remove(const String& name) {
    _data->Remove(KeyEncode(name));
}

bool JSONItem::HasName(const Variant& name) const {
    return _data->HasKey(KeyEncode(VariantToString(name)));
}

String JSONItem::Name(int64_t index) const {
    const Variant key = Key(index);
    if (VarType(key) != VarTypes::String) {
        return "";
    }
    return KeyDecode(VariantToString(key));
}

Ref<Array<String>> JSONItem::Names() const {
    auto names = CreateArray<String>(-1);
    for (int64_t place = 0; place < Count(); ++place) {
        const Variant key = Key(place);
        if (VarType(key) == VarTypes::String) {
            names->Append(KeyDecode(VariantToString(key)));
        }
        RuntimeBackgroundTask();
    }
    return names;
}

Variant JSONItem::InternalValue(const Variant& key) const {
    return _data->Value(key);
}

Variant JSONItem::Key(int64_t place) const {
    return _data->Key(place);
}

String JSONItem::KeyEncode(const String& name) {
    return EncodeHex(name, false);
}

String JSONItem::KeyDecode(const String& key) {
    return DecodeHex(key);
}

String JSONItem::ToString() const {
    return Serialize(this);
}

}  // namespace vx
