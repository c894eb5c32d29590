#pragma once

// Reads the pieces of JSON text (blanks, strings, numbers, single bytes and
// fixed runs) straight from the bytes in one forward pass, raising the
// numbered JSONException of a lenient reader where a piece is malformed.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "runtime/text/String.h"
#include "runtime/values/Variant.h"

namespace vx {

class JSONScanner {
public:
    // What ParseGet and ParsePeek give at the end of the text.
    static constexpr int End = -1;

    // The text must outlive the scanner; nothing is copied.
    explicit JSONScanner(std::string_view text) : text_(text) {}

    // The byte offset from 0 of the next byte to read; errors name it.
    int64_t position() const { return static_cast<int64_t>(position_); }

    // The next byte, consumed, or End, where the position stays as it is.
    int ParseGet();
    int ParsePeek() const;
    // Up to count bytes, consumed; fewer, or none, near the end of the text.
    std::string_view ParseGet(std::size_t count);
    // Steps back over bytes read. A step after a read at the end goes back
    // all the same: the caller then reads the last byte a second time.
    void back(std::size_t count = 1) { position_ -= count; }

    // Only blank, tab, line feed and carriage return are skipped.
    void skipWhiteSpace();
    // A string in double quotes, escapes resolved, as bytes without an
    // encoding. The end of the text ends it as a closing quote would.
    String parseString();
    // A number starting at "-" or a digit: Int32 or Int64 when written
    // without a fraction or an exponent (by size), Double otherwise.
    Variant parseNumber();

    static bool IsDigit(int byte) { return byte >= '0' && byte <= '9'; }
    // Whether the token is the word, by the program's one string comparison:
    // the letters of the format follow whatever it decides about letter case.
    static bool IsWord(std::string_view token, std::string_view word) {
        return _CompareStringBytes(token, word) == 0;
    }

private:
    // Consumes digits and gives the first byte that isn't one, consumed too.
    int skipDigits();
    // The bytes up to the next double quote or backslash, consumed.
    std::string_view takePlainRun();
    // The character of an escape whose backslash has just been read.
    void appendEscaped(std::string& out);
    Variant integerValue(std::size_t start) const;
    Variant fractionValue(std::size_t start) const;

    std::string_view text_;
    std::size_t position_ = 0;
};

}  // namespace vx
