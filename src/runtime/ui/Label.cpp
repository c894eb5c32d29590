#include "runtime/ui/Label.h"

#include <QLabel>

#include "runtime/ui/internal/QtText.h"

namespace vx {

namespace {
QLabel* Shown(const Label& label) {
    return static_cast<QLabel*>(label._Widget());
}
}  // namespace

Label::Label() : RectControl(new QLabel()) {
    Shown(*this)->setTextFormat(Qt::PlainText);
    TextAlign(kAlignLeft);
}

String Label::Text() const {
    return FromQString(Shown(*this)->text());
}

void Label::Text(const String& text) {
    Shown(*this)->setText(ToQString(text));
}

void Label::TextAlign(int64_t align) {
    textAlign_ = align;
    Qt::Alignment horizontal = Qt::AlignLeft;
    if (align == kAlignCenter) {
        horizontal = Qt::AlignHCenter;
    } else if (align == kAlignRight) {
        horizontal = Qt::AlignRight;
    }
    Shown(*this)->setAlignment(horizontal | Qt::AlignVCenter);
}

bool Label::Multiline() const {
    return Shown(*this)->wordWrap();
}

void Label::Multiline(bool multiline) {
    Shown(*this)->setWordWrap(multiline);
}

}  // namespace vx
