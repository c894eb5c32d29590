#pragma once

#include <cstdint>

#include "runtime/text/String.h"

namespace vx {

// Measuring, slicing, searching and trimming Strings, character by character
// under their encoding tag; positions count from 1 and no function raises on
// bad text or on a position out of range.
//
// Results keep the tag of the String they came from. A result that is the
// whole String shares its bytes instead of copying them.

// Characters: code points under UTF-8 and UTF-16, bytes under ASCII, ISO
// Latin-1 or no tag. Takes no time for single-byte tags, so that a file's
// whole content tagged ASCII can be measured freely.
int64_t Len(const String& text);
int64_t LenB(const String& text);

// The first count characters; empty for a count of 0 or less.
String Left(const String& text, int64_t count);
// The last count characters; empty for a count of 0 or less.
String Right(const String& text, int64_t count);
// Everything from the character at start; a start below 1 is taken as 1.
String Mid(const String& text, int64_t start);
// At most length characters from start; a start below 1 is taken as 1.
String Mid(const String& text, int64_t start, int64_t length);

// Without white space (blank, tab and line ends) at either end.
String Trim(const String& text);

// The search compares bytes exactly, letter case included; an empty oldText
// matches nothing. Replace changes the first occurrence only; ReplaceAll
// every one, left to right, without overlaps and without looking again into
// what it put in.
String Replace(const String& text, const String& oldText, const String& newText);
String ReplaceAll(const String& text, const String& oldText, const String& newText);

// The code point of the first character under the tag; 0 for the empty String.
int64_t Asc(const String& text);
// The one character, UTF-8 encoded and tagged; empty past the last code point.
String Chr(int64_t codePoint);
// The one byte, with no tag; empty for a value outside 0 to 255.
String ChrB(int64_t byteValue);

}  // namespace vx
