#include "runtime/ui/internal/TextMask.h"

namespace vx {

namespace {
bool Fits(QChar place, QChar c) {
    switch (place.unicode()) {
        case '0':
        case '9':
            return c.isDigit();
        case '#':
            return c.isDigit() || c == '+' || c == '-';
        case '?':
            return c.isLetter();
        case 'A':
        case 'a':
            return c.isLetterOrNumber();
        case '&':
        case 'C':
            return true;
        default:
            return c == place;
    }
}
}  // namespace

TextMask::TextMask(QString mask, QObject* parent) : QValidator(parent), mask_(std::move(mask)) {}

QValidator::State TextMask::validate(QString& input, int& /*position*/) const {
    if (input.size() > mask_.size()) {
        return Invalid;
    }
    for (qsizetype i = 0; i < input.size(); ++i) {
        if (!Fits(mask_[i], input[i])) {
            return Invalid;
        }
    }
    return Acceptable;
}

}  // namespace vx
