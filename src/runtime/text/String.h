#pragma once

#include <compare>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace vx {

class TextEncoding;

// The system's string: immutable bytes shared by reference, plus an encoding
// tag that says how to read them and is not part of them. Copying a String
// copies a pointer, never the bytes. The nil String and "" are one value.
class String {
public:
    String() = default;
    // A literal of the program; literals are UTF-8.
    String(const char* utf8Literal);
    String(std::string_view bytes, const TextEncoding* encoding);
    String(const char* bytes, const TextEncoding* encoding)
        : String(std::string_view(bytes), encoding) {}
    String(std::string&& bytes, const TextEncoding* encoding);

    std::string_view bytes() const {
        return bytes_ ? std::string_view(*bytes_) : std::string_view();
    }
    const char* c_str() const { return bytes_ ? bytes_->c_str() : ""; }
    std::size_t byteLength() const { return bytes_ ? bytes_->size() : 0; }
    bool isEmpty() const { return byteLength() == 0; }
    const TextEncoding* encoding() const { return encoding_; }
    // The same bytes, shared, under another tag.
    String withEncoding(const TextEncoding* encoding) const {
        String tagged = *this;
        tagged.encoding_ = encoding;
        return tagged;
    }

    // Equality and order are those of the bytes alone; the tag plays no part.
    friend bool operator==(const String& a, const String& b) { return a.bytes() == b.bytes(); }
    friend std::strong_ordering operator<=>(const String& a, const String& b) {
        return a.bytes() <=> b.bytes();
    }

private:
    std::shared_ptr<const std::string> bytes_;
    const TextEncoding* encoding_ = nullptr;
};

// Concatenation, left then right: every `+` of the program. The result keeps
// the left side's tag, or the right side's when the left has none.
String RuntimeAddString(const String& left, const String& right);
inline String operator+(const String& left, const String& right) {
    return RuntimeAddString(left, right);
}

// 0 when equal, negative when left sorts first, positive when right does.
// Bytes are compared exactly; nil stands for the empty String.
int32_t RuntimeStringCompare(const String& left, const String& right);
// The rule of RuntimeStringCompare over bytes in place, for readers that walk
// a buffer without making a String of every token. A name of its own, so that
// two literals given to RuntimeStringCompare are Strings, not views.
int32_t _CompareStringBytes(std::string_view left, std::string_view right);

}  // namespace vx

template <>
struct std::hash<vx::String> {
    std::size_t operator()(const vx::String& s) const noexcept {
        return std::hash<std::string_view>()(s.bytes());
    }
};
