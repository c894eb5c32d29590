#include "runtime/text/EndOfLine.h"

namespace vx {

String EndOfLine::Macintosh() {
    return "\r";
}

String EndOfLine::OSX() {
    return UNIX();
}

String EndOfLine::UNIX() {
    return "\n";
}

String EndOfLine::Windows() {
    return "\r\n";
}

String EndOfLine::Operator_Add(const String& right) const {
    return Operator_Convert() + right;
}

String EndOfLine::Operator_AddRight(const String& left) const {
    return left + Operator_Convert();
}

int64_t EndOfLine::Operator_Compare(const String& other) const {
    return RuntimeStringCompare(Operator_Convert(), other);
}

String EndOfLine::Operator_Convert() const {
    return UNIX();
}

Ref<class EndOfLine> EndOfLine() {
    static const Ref<class EndOfLine> shared = New<class EndOfLine>();
    return shared;
}

String operator+(const String& left, const Ref<class EndOfLine>& ending) {
    return ending->Operator_AddRight(left);
}

String operator+(const Ref<class EndOfLine>& ending, const String& right) {
    return ending->Operator_Add(right);
}

}  // namespace vx
