#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "runtime/text/TextEncoding.h"

namespace vx {

// Reads and writes single characters of a String's bytes under an encoding tag.
//
// Every string function steps through text with these, so that they all agree
// on what a character is. A nil tag, ASCII and ISO Latin-1 hold one character
// per byte, whatever the byte. UTF-8 and UTF-16 (big-endian) hold one code
// point per character; a UTF-16 surrogate pair is one character. Bad text
// never stops a reader: a byte that cannot start a character under its tag is
// one character of its own, whose code point is the byte's value, as if it
// were ISO Latin-1. An unpaired UTF-16 surrogate is one character holding the
// surrogate's value.
struct DecodedCharacter {
    char32_t codePoint = 0;
    std::size_t size = 0;  // bytes taken; 0 only at the end of the text
    bool valid = false;    // false for the stand-ins described above
};

// The character that starts at byte offset, or a zero-sized one at the end.
DecodedCharacter ReadCharacter(std::string_view bytes, std::size_t offset,
                               const TextEncoding* encoding);

// True when every character is one byte, so positions map to offsets directly.
bool HasSingleByteCharacters(const TextEncoding* encoding);

// The byte offset reached after count characters from offset; stops at the end.
std::size_t SkipCharacters(std::string_view bytes, std::size_t offset, int64_t count,
                           const TextEncoding* encoding);

// The number of characters in the bytes under the tag.
int64_t CountCharacters(std::string_view bytes, const TextEncoding* encoding);

// Appends the code point in the given encoding (a nil tag writes UTF-8).
// Returns false, and appends nothing, when the encoding cannot hold it.
// Surrogate code points are written as they are, so that each half of a pair
// that was read apart can be written apart.
bool AppendCharacter(std::string& out, char32_t codePoint, const TextEncoding* encoding);

// Blank, tab, line feed, vertical tab, form feed and carriage return.
bool IsWhiteSpace(char32_t codePoint);

}  // namespace vx
