#include "runtime/ui/TextField.h"

#include <QLineEdit>

#include "runtime/ui/internal/QtText.h"
#include "runtime/ui/internal/TextMask.h"

namespace vx {

namespace {
QLineEdit* Line(const TextField& field) {
    return static_cast<QLineEdit*>(field._Widget());
}
}  // namespace

TextField::TextField() : TextEdit(new QLineEdit()) {
    QObject::connect(Line(*this), &QLineEdit::textChanged, Line(*this),
                     [this] { TextChange.Raise(*this); });
}

String TextField::Text() const {
    return FromQString(Line(*this)->text());
}

void TextField::Text(const String& text) {
    Line(*this)->setText(ToQString(text));
}

void TextField::Mask(const String& mask) {
    mask_ = mask;
    QLineEdit* line = Line(*this);
    delete line->validator();
    line->setValidator(mask.isEmpty() ? nullptr : new TextMask(ToQString(mask), line));
}

void TextField::ApplyReadOnly() {
    Line(*this)->setReadOnly(ReadOnly());
}

void TextField::DeleteSelection() {
    Line(*this)->del();
}
void TextField::SelectAll() {
    Line(*this)->selectAll();
}

bool TextField::CanUndo() const {
    return !ReadOnly() && Line(*this)->isUndoAvailable();
}
bool TextField::HasSelection() const {
    return Line(*this)->hasSelectedText();
}

}  // namespace vx
