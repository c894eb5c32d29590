#pragma once

#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>

#include "runtime/text/String.h"

namespace vx {

// Hexadecimal text of numbers and of bytes; digits are upper case on the way
// out and either case on the way in.

// The digits of the number without prefix or leading zeros ("0" for zero); a
// negative number gives the sixteen digits of its 64-bit two's complement.
String Hex(int64_t value);
template <std::integral Integer>
String Hex(Integer value) {
    return Hex(static_cast<int64_t>(value));
}
// The digits of the integer part, cut toward zero and held to the range of
// Int64; NaN gives "0". The fraction plays no part: a time value changes its
// text once a second, which is all a folder name made from it needs.
String Hex(double value);

// Two digits for every byte, with a blank between the pairs when asked.
String EncodeHex(const String& bytes, bool withSpaces);
// The bytes back, without a tag. White space between the pairs is skipped;
// reading stops at the first other character that is not a digit, and a
// digit left without its partner at the end is dropped.
String DecodeHex(const String& text);
// The value of one hexadecimal digit of either case, or -1 for any other
// character.
int HexDigitValue(char c);
// DecodeHex appending to bytes, for callers that decode many short texts
// into one reused buffer.
void AppendDecodedHex(std::string_view text, std::string& bytes);

}  // namespace vx
