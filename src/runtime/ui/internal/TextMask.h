#pragma once

#include <QValidator>

namespace vx {

// Checks what the user types into a masked field, place by place: "0" and "9"
// take a digit, "#" a digit or a sign, "?" a letter, "A" and "a" a letter or
// digit, "&" and "C" anything; other characters of the mask stand for
// themselves. A text is never longer than the mask, but text set by the
// program is not checked at all, so it may be.
class TextMask : public QValidator {
public:
    TextMask(QString mask, QObject* parent);
    State validate(QString& input, int& position) const override;

private:
    QString mask_;
};

}  // namespace vx
