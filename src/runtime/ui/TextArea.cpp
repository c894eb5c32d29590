#include "runtime/ui/TextArea.h"

#include <QPlainTextEdit>
#include <QTextCursor>
#include <QTextDocument>

#include "runtime/ui/QtText.h"

namespace vx {

namespace {
QPlainTextEdit* Area(const TextArea& area) {
    return static_cast<QPlainTextEdit*>(area._Widget());
}

// Carriage returns, alone or before a line feed, end lines as line feeds do.
QString WithLineFeeds(const String& text) {
    QString converted = ToQString(text);
    converted.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    converted.replace('\r', '\n');
    return converted;
}
}  // namespace

TextArea::TextArea() : TextEdit(new QPlainTextEdit()) {
    QPlainTextEdit* area = Area(*this);
    area->setLineWrapMode(QPlainTextEdit::WidgetWidth);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    area->setTabChangesFocus(true);
}

String TextArea::Text() const {
    return FromQString(Area(*this)->toPlainText());
}

void TextArea::Text(const String& text) {
    Area(*this)->setPlainText(WithLineFeeds(text));
}

void TextArea::AppendText(const String& text) {
    QPlainTextEdit* area = Area(*this);
    QTextCursor end(area->document());
    end.movePosition(QTextCursor::End);
    end.insertText(WithLineFeeds(text));
}

void TextArea::ApplyReadOnly() {
    QPlainTextEdit* area = Area(*this);
    area->setReadOnly(ReadOnly());
    // Nobody can undo in a field they cannot type in, and a log of many
    // thousand lines should not keep a history of each.
    area->setUndoRedoEnabled(!ReadOnly());
}

void TextArea::Undo() {
    Area(*this)->undo();
}
void TextArea::Cut() {
    Area(*this)->cut();
}
void TextArea::Copy() {
    Area(*this)->copy();
}
void TextArea::Paste() {
    Area(*this)->paste();
}
void TextArea::DeleteSelection() {
    Area(*this)->textCursor().removeSelectedText();
}
void TextArea::SelectAll() {
    Area(*this)->selectAll();
}

bool TextArea::CanUndo() const {
    return !ReadOnly() && Area(*this)->document()->isUndoAvailable();
}
bool TextArea::HasSelection() const {
    return Area(*this)->textCursor().hasSelection();
}

}  // namespace vx
