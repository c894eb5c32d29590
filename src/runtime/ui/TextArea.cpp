#include "runtime/ui/TextArea.h"

#include <QPlainTextEdit>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>

#include "runtime/text/TextEncoding.h"
#include "runtime/ui/internal/QtText.h"

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
    FlushAppends();
    return FromQString(Area(*this)->toPlainText());
}

void TextArea::Text(const String& text) {
    pendingAppends_.clear();
    linesInLastBlock_ = 0;
    Area(*this)->setPlainText(WithLineFeeds(text));
}

void TextArea::AppendText(const String& text) {
    QPlainTextEdit* area = Area(*this);
    if (pendingAppends_.empty()) {
        // Dropped with the widget; a control gone before its widget is no
        // longer found for it.
        QMetaObject::invokeMethod(
            area,
            [area] {
                if (auto* control = dynamic_cast<TextArea*>(Control::_FromWidget(area))) {
                    control->FlushAppends();
                }
            },
            Qt::QueuedConnection);
    }
    const TextEncoding* encoding = text.encoding();
    if (encoding == nullptr || encoding->scheme() == TextEncoding::Scheme::UTF8) {
        pendingAppends_ += text.bytes();
    } else {
        pendingAppends_ += ToQString(text).toStdString();
    }
}

void TextArea::FlushAppends() const {
    if (pendingAppends_.empty()) {
        return;
    }
    // Each paragraph of the toolkit's document is a block with its own record
    // and layout, which costs far more than the characters of a log line.
    // Appended lines are joined into blocks of many lines with line
    // separators instead; they look the same, wrap the same, and the
    // document's plain text (Text, Copy) gives them back as line feeds.
    QString appended = WithLineFeeds(String(std::move(pendingAppends_), Encodings::UTF8));
    pendingAppends_.clear();
    for (QChar& character : appended) {
        if (character == '\n' && ++linesInLastBlock_ < kLinesPerBlock) {
            character = QChar::LineSeparator;
        } else if (character == '\n') {
            linesInLastBlock_ = 0;
        }
    }
    QTextDocument* document = Area(*this)->document();
    QTextCursor end(document);
    end.movePosition(QTextCursor::End);
    // One edit, so that the view hears of it once, after the blocks are
    // counted: a block not laid out yet stands in the scroll range for as
    // many lines as it is given here, and a block of sixteen lines counted as
    // one would make the scroll bar lie about where the user is.
    end.beginEditBlock();
    const int firstChanged = end.blockNumber();
    end.insertText(appended);
    for (QTextBlock block = document->findBlockByNumber(firstChanged); block.isValid();
         block = block.next()) {
        block.setLineCount(static_cast<int>(block.text().count(QChar::LineSeparator)) + 1);
    }
    end.endEditBlock();
}

void TextArea::ApplyReadOnly() {
    QPlainTextEdit* area = Area(*this);
    area->setReadOnly(ReadOnly());
    // Nobody can undo in a field they cannot type in, and a log of many
    // thousand lines should not keep a history of each.
    area->setUndoRedoEnabled(!ReadOnly());
}

void TextArea::DeleteSelection() {
    Area(*this)->textCursor().removeSelectedText();
}
void TextArea::SelectAll() {
    FlushAppends();
    Area(*this)->selectAll();
}

bool TextArea::CanUndo() const {
    return !ReadOnly() && Area(*this)->document()->isUndoAvailable();
}
bool TextArea::HasSelection() const {
    return Area(*this)->textCursor().hasSelection();
}

}  // namespace vx
