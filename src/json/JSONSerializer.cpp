// The serialiser of JSONItem: walks a document with a stack of its own, so
// that the depth of a document costs heap, not call stack, and writes the
// text into one growing buffer.
#include <charconv>
#include <limits>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "json/JSONEscape.h"
#include "json/JSONException.h"
#include "json/JSONItem.h"
#include "runtime/services/UIServices.h"
#include "runtime/text/EncodingConversion.h"
#include "runtime/text/EndOfLine.h"
#include "runtime/text/Hex.h"
#include "runtime/text/NumberFormat.h"
#include "runtime/text/StringFunctions.h"
#include "runtime/text/TextEncoding.h"
#include "runtime/values/Collection.h"

namespace vx {

class JSONSerializer {
public:
    explicit JSONSerializer(const JSONItem& root)
        : compact_(root.Compact),
          decimalFormat_(root.DecimalFormat),
          escapeSlashes_(root.EscapeSlashes),
          indentSpacing_(root.IndentSpacing),
          renderAsJavascript_(root._RenderAsJavascript),
          lineEnd_(EndOfLine()->Operator_Convert()) {
        buffer_.reserve(1024);
    }

    String serialise(const JSONItem& item) {
        open(Frame::Kind::Item, &item, Variant(), 0);
        while (!stack_.empty()) {
            step();
        }
        return String(std::move(buffer_), Encodings::UTF8);
    }

private:
    // One container being written: where its walk stands and how deep it is.
    struct Frame {
        enum class Kind { Item, Dictionary, Collection };
        Kind kind;
        const Object* container;
        // Keeps a child alive while it is written; empty for the root.
        Variant holder;
        int64_t level;
        int64_t place = 0;
        bool nonEmpty = false;
        bool elementWritten = false;
    };

    static const JSONItem& item(const Frame& frame) {
        return *static_cast<const JSONItem*>(frame.container);
    }
    static const Dictionary& dictionary(const Frame& frame) {
        return *static_cast<const Dictionary*>(frame.container);
    }
    static const Collection& collection(const Frame& frame) {
        return *static_cast<const Collection*>(frame.container);
    }

    // Brackets follow what the container is at the moment they are written.
    static bool isArray(const Frame& frame) {
        switch (frame.kind) {
            case Frame::Kind::Item:
                return item(frame).IsArray();
            case Frame::Kind::Dictionary:
                return false;
            case Frame::Kind::Collection:
                return true;
        }
        return false;
    }

    static int64_t count(const Frame& frame) {
        switch (frame.kind) {
            case Frame::Kind::Item:
                return item(frame).Count();
            case Frame::Kind::Dictionary:
                return dictionary(frame).Count();
            case Frame::Kind::Collection:
                return collection(frame).Count();
        }
        return 0;
    }

    void open(Frame::Kind kind, const Object* container, Variant holder, int64_t level) {
        if (static_cast<int64_t>(stack_.size()) >= JSONItem::MaxDepth) {
            throw StackOverflowException();
        }
        stack_.push_back(Frame{kind, container, std::move(holder), level});
        Frame& frame = stack_.back();
        buffer_ += isArray(frame) ? '[' : '{';
        frame.nonEmpty = count(frame) > 0;
        if (frame.nonEmpty) {
            newLine();
        }
    }

    // Writes the next element of the innermost container, or closes it.
    void step() {
        Frame& frame = stack_.back();
        if (frame.elementWritten) {
            frame.elementWritten = false;
            if (frame.place < count(frame) - 1) {
                buffer_ += ',';
            }
            newLine();
            RuntimeBackgroundTask();
            ++frame.place;
        }
        if (!frame.nonEmpty || frame.place >= count(frame)) {
            if (frame.nonEmpty) {
                indentBuffer(frame.level);
            }
            buffer_ += isArray(frame) ? ']' : '}';
            stack_.pop_back();
            return;
        }
        const int64_t level = deeper(frame.level);
        indentBuffer(level);
        frame.elementWritten = true;
        writeElement(frame, level);
    }

    // Writes the name at the frame's place, if it has one, and its value.
    // Writing the value may open a container, which moves the stack's frames:
    // nothing may touch the frame after that.
    void writeElement(const Frame& frame, int64_t level) {
        switch (frame.kind) {
            case Frame::Kind::Collection:
                writeValue(collection(frame).Item(frame.place + 1), level);
                return;
            case Frame::Kind::Dictionary: {
                const String name = VariantToString(dictionary(frame).Key(frame.place));
                writeName(name);
                writeValue(dictionary(frame).Value(Variant(name)), level);
                return;
            }
            case Frame::Kind::Item: {
                const JSONItem& owner = item(frame);
                const auto [key, value] = owner._data->EntryAt(frame.place);
                if (!owner.IsArray()) {
                    writeItemName(key);
                }
                writeValue(value, level);
                return;
            }
        }
    }

    // A name of an item is stored as the hexadecimal of its bytes; decoding
    // it into a scratch buffer spares a String for every member.
    void writeItemName(const Variant& key) {
        const String* hex = std::get_if<String>(&key.storage());
        if (hex == nullptr) {
            writeName(JSONItem::KeyDecode(VariantToString(key)));
            return;
        }
        scratch_.clear();
        AppendDecodedHex(hex->bytes(), scratch_);
        openName();
        AppendEscapedJSON(scratch_, escapeSlashes_, buffer_);
        closeName();
    }

    void writeName(const String& name) {
        openName();
        _escape(name);
        closeName();
    }

    void openName() {
        if (!renderAsJavascript_) {
            buffer_ += '"';
        }
    }

    void closeName() {
        if (!renderAsJavascript_) {
            buffer_ += '"';
        }
        buffer_ += ':';
    }

    void writeValue(const Variant& value, int64_t level) {
        switch (VarType(value)) {
            case VarTypes::Nil:
                buffer_ += "null";
                return;
            case VarTypes::Boolean:
                buffer_ += VariantToBoolean(value) ? "true" : "false";
                return;
            case VarTypes::Int32:
            case VarTypes::Int64:
                writeInteger(VariantToInt64(value));
                return;
            case VarTypes::Single:
            case VarTypes::Double:
                writeFloating(value);
                return;
            case VarTypes::String:
                buffer_ += '"';
                _escape(std::get<String>(value.storage()));
                buffer_ += '"';
                return;
            case VarTypes::Object:
                writeObject(value, level);
                return;
            default:
                throw unrecognized(value);
        }
    }

    void writeObject(const Variant& value, int64_t level) {
        const Object* object = std::get<Ref<Object>>(value.storage()).get();
        if (dynamic_cast<const Collection*>(object) != nullptr) {
            open(Frame::Kind::Collection, object, value, level);
        } else if (dynamic_cast<const Dictionary*>(object) != nullptr) {
            open(Frame::Kind::Dictionary, object, value, level);
        } else if (dynamic_cast<const JSONItem*>(object) != nullptr) {
            open(Frame::Kind::Item, object, value, level);
        } else {
            throw unrecognized(value);
        }
    }

    static JSONException unrecognized(const Variant& value) {
        return JSONException("Unrecognized Object", 11, VariantToString(value));
    }

    void writeInteger(int64_t value) {
        char digits[24];
        const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
        buffer_.append(digits, end);
    }

    void writeFloating(const Variant& value) {
        const String text = decimalFormat_.isEmpty()
                                ? VariantToString(value)
                                : FormatNumber(VariantToDouble(value), decimalFormat_, false);
        buffer_ += text.bytes();
    }

    // Strings are written as UTF-8: raw bytes are taken to be UTF-8 already,
    // text in any other encoding is converted first.
    void _escape(const String& text) {
        if (text.encoding() == nullptr || text.encoding() == Encodings::UTF8) {
            AppendEscapedJSON(text.bytes(), escapeSlashes_, buffer_);
        } else {
            AppendEscapedJSON(ConvertEncoding(text, Encodings::UTF8).bytes(), escapeSlashes_,
                              buffer_);
        }
    }

    void newLine() {
        if (!compact_) {
            buffer_ += lineEnd_.bytes();
        }
    }

    // One level further in. An absurd spacing saturates instead of wrapping
    // round, so that it fails as the huge indent it asks for.
    int64_t deeper(int64_t level) const {
        int64_t next = 0;
        if (__builtin_add_overflow(level, indentSpacing_, &next)) {
            return indentSpacing_ > 0 ? std::numeric_limits<int64_t>::max()
                                      : std::numeric_limits<int64_t>::min();
        }
        return next;
    }

    // A count of 0 or below, which a negative spacing gives, indents nothing.
    void indentBuffer(int64_t count) {
        if (!compact_ && count > 0) {
            buffer_.append(static_cast<std::size_t>(count), ' ');
        }
    }

    const bool compact_;
    const String decimalFormat_;
    const bool escapeSlashes_;
    const int64_t indentSpacing_;
    const bool renderAsJavascript_;
    const String lineEnd_;
    std::string buffer_;
    std::vector<Frame> stack_;
    std::string scratch_;
};

String JSONItem::Serialize(const JSONItem* item) const {
    if (item == nullptr) {
        return "";
    }
    try {
        return JSONSerializer(*this).serialise(*item);
    } catch (const StackOverflowException&) {
        // Only a cycle, or a document that might as well be one, nests this deep.
        throw JSONException("Circular Reference Detected", 14, "");
    }
}

}  // namespace vx
