#pragma once

#include "runtime/text/String.h"

namespace vx {

// Reads the number at the head of a String and ignores whatever follows it.
//
// White space may come first. Then either a decimal number (an optional "+"
// or "-", digits with an optional fraction, an optional exponent with "e" or
// "E") or, after "&h", "&o" or "&b", the digits of a hexadecimal, octal or
// binary number, which are taken as the bits of an Int64 (so "&hFFFFFFFFFFFFFFFF"
// is -1). The decimal point is always ".", whatever the user's locale.
// Text with no number at its head gives 0; a number too large for a Double
// gives an infinity, one too small 0. Never raises.
double Val(const String& text);

}  // namespace vx
