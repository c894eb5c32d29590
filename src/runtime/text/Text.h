#pragma once

#include "runtime/text/String.h"
#include "runtime/text/TextEncoding.h"

namespace vx {

// The newer text type: Unicode text held as UTF-8 bytes. In a Variant it is a
// kind of its own beside String, with fewer conversions.
class Text {
public:
    Text() = default;
    // Takes the bytes as UTF-8; the caller converts text of another encoding first.
    explicit Text(const String& utf8) : utf8_(utf8.withEncoding(Encodings::UTF8)) {}

    const String& ToString() const { return utf8_; }

    friend bool operator==(const Text& a, const Text& b) { return a.utf8_ == b.utf8_; }

private:
    String utf8_;
};

}  // namespace vx
