#include "runtime/ui/TextEdit.h"

#include <QApplication>
#include <QClipboard>
#include <QMimeData>

namespace vx {

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
