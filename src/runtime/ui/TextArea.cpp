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

// The text's bytes as they are where they are UTF-8 already (no tag counts as
// UTF-8), converted otherwise.
void AppendUTF8(std::string& out, const String& text) {
    const TextEncoding* encoding = text.encoding();
    if (encoding == nullptr || encoding->scheme() == TextEncoding::Scheme::UTF8) {
        out += text.bytes();
    } else {
        out += ToQString(text).toStdString();
    }
}
}  // namespace

TextArea::TextArea() : TextEdit(new QPlainTextEdit()) {
    QPlainTextEdit* area = Area(*this);
    area->setLineWrapMode(QPlainTextEdit::WidgetWidth);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    area->setTabChangesFocus(true);
    QObject::connect(area, &QPlainTextEdit::textChanged, area, [this] {
        if (!changingWidget_) {
            editedByUser_ = true;
        }
    });
}

String TextArea::Text() const {
    TakeEditedText();
    return String(std::string(text_), Encodings::UTF8);
}

void TextArea::Text(const String& text) {
    text_.clear();
    AppendUTF8(text_, text);
    flushed_ = text_.size();
    editedByUser_ = false;
    linesInLastBlock_ = 0;
    changingWidget_ = true;
    Area(*this)->setPlainText(WithLineFeeds(text));
    changingWidget_ = false;
}

void TextArea::AppendText(const String& text) {
    TakeEditedText();
    QPlainTextEdit* area = Area(*this);
    if (flushed_ == text_.size()) {
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
    AppendUTF8(text_, text);
}

void TextArea::TakeEditedText() const {
    if (!editedByUser_) {
        return;
    }
    std::string waiting = text_.substr(flushed_);
    text_ = Area(*this)->toPlainText().toStdString();
    flushed_ = text_.size();
    text_ += waiting;
    editedByUser_ = false;
}

void TextArea::FlushAppends() const {
    if (flushed_ == text_.size()) {
        return;
    }
    TakeEditedText();
    // Each paragraph of the toolkit's document is a block with its own record
    // and layout, which costs far more than the characters of a log line.
    // Appended lines are joined into blocks of many lines with line
    // separators instead; they look the same, wrap the same, and the
    // document's plain text (Copy) gives them back as line feeds.
    QString appended =
        WithLineFeeds(String(std::string_view(text_).substr(flushed_), Encodings::UTF8));
    flushed_ = text_.size();
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
    changingWidget_ = true;
    end.beginEditBlock();
    const int firstChanged = end.blockNumber();
    end.insertText(appended);
    for (QTextBlock block = document->findBlockByNumber(firstChanged); block.isValid();
         block = block.next()) {
        block.setLineCount(static_cast<int>(block.text().count(QChar::LineSeparator)) + 1);
    }
    end.endEditBlock();
    changingWidget_ = false;
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
