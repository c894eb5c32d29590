#include "runtime/ui/TextEdit.h"

#include <QApplication>
#include <QClipboard>
#include <QMimeData>
#include <QWidget>

namespace vx {

namespace {
// Both toolkit widgets behind the text controls offer these commands as
// slots of the same names.
void Invoke(const TextEdit& edit, const char* command) {
    QMetaObject::invokeMethod(edit._Widget(), command, Qt::DirectConnection);
}
}  // namespace

void TextEdit::Undo() {
    Invoke(*this, "undo");
}
void TextEdit::Cut() {
    Invoke(*this, "cut");
}
void TextEdit::Copy() {
    Invoke(*this, "copy");
}
void TextEdit::Paste() {
    Invoke(*this, "paste");
}

void TextEdit::ReadOnly(bool readOnly) {
    readOnly_ = readOnly;
    ApplyReadOnly();
}

bool TextEdit::CanPaste() const {
    const QMimeData* data = QApplication::clipboard()->mimeData();
    return !readOnly_ && data != nullptr && data->hasText();
}

TextEdit* TextEdit::_Focused() {
    return dynamic_cast<TextEdit*>(Control::_FromWidget(QApplication::focusWidget()));
}

}  // namespace vx
