#pragma once

#include <string>

#include "runtime/ui/TextEdit.h"

namespace vx {

// A multi-line text area. Text reads back exactly as it was assigned and
// appended, carriage returns and all, until the user edits it; the display
// shows carriage returns as line ends, and a text edited by the user reads
// back as the display has it, with line feeds.
class TextArea : public TextEdit {
public:
    TextArea();

    String Text() const override;
    void Text(const String& text) override;
    // Adds text at the end without touching what is there, so a log that grows
    // line by line costs the length of the line, not of the log. Appends made
    // one after another reach the widget together, the next time the toolkit
    // gets to run, so a long loop that logs every step pays for one insertion
    // per repaint rather than one per line. Text has them at once.
    void AppendText(const String& text);

    void DeleteSelection() override;
    void SelectAll() override;
    bool CanUndo() const override;
    bool HasSelection() const override;

private:
    void ApplyReadOnly() override;
    // Puts the appends that wait into the widget.
    void FlushAppends() const;
    // After the user's edit the widget has the text: takes it back from there,
    // with the appends that have not reached the widget yet.
    void TakeEditedText() const;

    // Appended lines per block of the toolkit's document. The block being
    // appended to is laid out again on every flush, and a block that scrolls
    // into view is laid out whole, so blocks stay small; a block per line
    // would cost a record of its own for every line.
    static constexpr int kLinesPerBlock = 16;

    // The text as assigned and appended, in UTF-8; the bytes from flushed_ on
    // wait to be turned into the toolkit's text, once per batch.
    mutable std::string text_;
    mutable std::size_t flushed_ = 0;
    // Set by any change of the widget's text that did not come from here.
    mutable bool editedByUser_ = false;
    mutable bool changingWidget_ = false;
    mutable int linesInLastBlock_ = 0;
};

}  // namespace vx
