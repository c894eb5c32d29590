#pragma once

#include "runtime/text/String.h"
#include "runtime/text/TextEncoding.h"

namespace vx {

// Reading, setting and converting the encoding tag of a String.

// The tag, or nil for raw bytes.
inline const TextEncoding* Encoding(const String& text) {
    return text.encoding();
}

// The same bytes, shared, under the new tag; no byte changes.
inline String DefineEncoding(const String& text, const TextEncoding* encoding) {
    return text.withEncoding(encoding);
}

// The text re-encoded from its tag into the given encoding, and tagged so.
//
// Raw bytes (a nil tag) are read as UTF-8, the encoding of all the program's
// own text. Converting to nil keeps the bytes and drops the tag. Nothing is
// ever refused: a byte that is invalid under the source tag is read as the
// ISO Latin-1 character of the same value (so ASCII-tagged bytes of 128 and
// above survive a round trip through UTF-8), and a character that the target
// cannot hold becomes "?". When no byte needs to change, the bytes are shared.
String ConvertEncoding(const String& text, const TextEncoding* encoding);

}  // namespace vx
