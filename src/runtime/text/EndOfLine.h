#pragma once

#include <cstdint>

#include "runtime/core/Object.h"
#include "runtime/core/Ref.h"
#include "runtime/text/String.h"

namespace vx {

// The platform's line ending as an object that joins to Strings, so that
// `line + EndOfLine()` ends a line the way the platform does.
class EndOfLine : public Object {
public:
    // The endings of each platform. OSX and UNIX are the same line feed.
    static String Macintosh();
    static String OSX();
    static String UNIX();
    static String Windows();

    // The ending, then right.
    String Operator_Add(const String& right) const;
    // left, then the ending.
    String Operator_AddRight(const String& left) const;
    // As RuntimeStringCompare of the ending and other.
    int64_t Operator_Compare(const String& other) const;
    // This platform's ending, a line feed.
    String Operator_Convert() const;
};

// The one shared EndOfLine object. The function hides the class name on
// purpose, so that `EndOfLine()` reads as the value it is everywhere the
// program ends a line; name the class itself as `class EndOfLine`.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wshadow"
Ref<class EndOfLine> EndOfLine();
#pragma GCC diagnostic pop

String operator+(const String& left, const Ref<class EndOfLine>& ending);
String operator+(const Ref<class EndOfLine>& ending, const String& right);

}  // namespace vx
