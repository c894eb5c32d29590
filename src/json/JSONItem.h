#pragma once

#include <cstdint>

#include "runtime/core/Object.h"
#include "runtime/core/Ref.h"
#include "runtime/text/String.h"
#include "runtime/values/Array.h"
#include "runtime/values/Dictionary.h"
#include "runtime/values/Variant.h"

namespace vx {

class MemoryBlock;

// One node of a JSON document, an object or an array: names or indices mapped
// to Variants, with a child node stored as an object Variant. The node turns
// into an array at its first write by index and never turns back.
//
// Every value lives in one Dictionary. In object state its keys are the names'
// bytes in hexadecimal, so that names compare byte for byte whatever their
// encoding; in array state they are Int64 indices from 0. Index operations on
// a non-empty object and the guarded name operations on an array raise
// JSONException 12 and 13.
class JSONItem : public Object {
public:
    // Nesting deeper than this many containers is refused with
    // StackOverflowException before any stack could run out; the serialiser
    // reports it as a circular reference, since a cycle is what reaches it.
    static constexpr int64_t MaxDepth = 10000;

    JSONItem();
    // Parses the text unless it is blank, in which case the item is empty.
    explicit JSONItem(const String& text);
    // Takes the document apart level by level, so that a deep one can't
    // exhaust the stack on its way out.
    ~JSONItem() override;
    JSONItem(const JSONItem&) = delete;
    JSONItem& operator=(const JSONItem&) = delete;

    // Fills a new item from a dictionary's String keys, values as they stand.
    void Operator_Convert(const Ref<Dictionary>& source);
    // Parses the text and takes over its values; the array flag and settings
    // of this item stay, except that text beginning with "[" sets the flag.
    void Load(const String& text);

    int64_t Count() const;
    bool IsArray() const { return _mIsArray; }
    // Empties the item; an array stays an array.
    void Clear();

    // Index operations.
    void Append(const Variant& value);
    // Shifts the values from index up by one place; there is no bounds check.
    void Insert(int64_t index, const Variant& value);
    // Shifts the values above index down and drops the last key; an index at
    // or past the end removes the last value.
    void Remove(int64_t index);
    Variant Value(int64_t index) const;
    // Stores under the index, whether or not it exists; arrays are kept as they are.
    void Value(int64_t index, const Variant& value);
    // The raw value; OutOfBoundsException for an absent index.
    Variant Operator_Subscript(int64_t index) const;
    // OutOfBoundsException unless index < Count.
    void Operator_Subscript(int64_t index, const Variant& value);
    // OutOfBoundsException when nothing is there, IllegalCastException when
    // what is there isn't a JSONItem.
    Ref<JSONItem> Child(int64_t index) const;
    void Child(int64_t index, const Ref<JSONItem>& value);

    // Name operations.
    Variant Value(const String& name) const;
    // Stores the value; an array is turned into a child item of its elements.
    void Value(const String& name, const Variant& value);
    Variant Lookup(const String& name, const Variant& defaultValue) const;
    Ref<JSONItem> Child(const String& name) const;
    void Child(const String& name, const Ref<JSONItem>& value);
    void Remove(const String& name);
    bool HasName(const Variant& name) const;
    // The name at a place, as raw bytes; empty for an index key.
    String Name(int64_t index) const;
    // The names in place order, as raw bytes; an array has none.
    Ref<Array<String>> Names() const;

    // The value under a key as stored: a hex-encoded name or an Int64 index.
    Variant InternalValue(const Variant& key) const;

    // The document as JSON text, shaped by this item's settings alone.
    String ToString() const;

    // Settings of the output, read only from the item that ToString is asked of.
    bool Compact = true;
    String DecimalFormat = "-0.0##############";
    bool EscapeSlashes = true;
    int64_t IndentSpacing = 2;
    // Names are written without quotes.
    bool _RenderAsJavascript = false;

private:
    friend class JSONParser;
    friend class JSONSerializer;

    // Guards of the index and the name operations.
    void requireArrayAccess(const char* message) const;
    void requireNameAccess() const;

    Variant Key(int64_t place) const;
    static String KeyEncode(const String& name);
    static String KeyDecode(const String& key);

    // The text of item under this item's settings; empty for nil.
    String Serialize(const JSONItem* item) const;

    // Keeps a copy of the text in _ParseBuffer and reads it into a new item.
    Ref<JSONItem> Parse(const String& text);

    Ref<Dictionary> _data;
    bool _mIsArray = false;
    // The text of the last Load; stays after parsing.
    Ref<MemoryBlock> _ParseBuffer;
};

}  // namespace vx
