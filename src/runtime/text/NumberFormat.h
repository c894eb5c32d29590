#pragma once

#include <cstdint>

#include "runtime/text/String.h"

namespace vx {

// Turns numbers into text, either in their plain form or shaped by a mask.
//
// A mask is made of digit places and literal text:
//   "0"  a digit that is always shown, a zero if need be;
//   "#"  a digit that is shown only when it is significant;
//   "."  the decimal point, shown only when a digit follows it;
//   "-"  before the first digit place: where a negative value's minus goes.
// Any other character before or after the run of digit places is copied as it
// stands. The value is rounded, half away from zero, to as many decimal
// places as the mask has; the integer part is always shown in full and never
// grouped. A negative value whose mask has no "-" still gets its minus in
// front of the digits, and a value that rounds to zero never gets one.
// Rounding works on the shortest decimal that reads back as the same Double,
// so 0.1 + 0.2 is 0.30000000000000004 and 1234567.891 keeps its three
// decimals however many places the mask allows.
// A mask without digit places (the empty mask included) takes the plain form
// of the value, which is that shortest decimal, in exponent form when that is
// shorter ("1e+21"). Infinities and NaN give "inf", "-inf" and "nan".
//
// With useLocale, the decimal point is the one of the process's numeric
// locale; without, it is always ".", so that the text can be read back by
// machines whatever the user's settings.
String FormatNumber(double value, const String& mask, bool useLocale);

// An integer as text: with an empty mask its plain decimal digits with a "-"
// for negative numbers; otherwise the number as a Double through the mask,
// with "." as the decimal point in every locale.
String Str(int64_t value, const String& mask);
// A floating value would silently lose its fraction through the integer form;
// it goes through the Variant form instead: Str(Variant(x), mask).
String Str(double value, const String& mask) = delete;
String Str(float value, const String& mask) = delete;

// The value through the mask with the user's decimal point.
String Format(double value, const String& mask);

}  // namespace vx
