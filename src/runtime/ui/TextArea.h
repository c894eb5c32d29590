#pragma once

#include <string>

#include "runtime/ui/TextEdit.h"

namespace vx {

// A multi-line text area. Line ends read back as "\n"; carriage returns in an
// assigned text are shown as line ends too.
class TextArea : public TextEdit {
public:
    TextArea();

    String Text() const override;
    void Text(const String& text) override;
    // Adds text at the end without touching what is there, so a log that grows
    // line by line costs the length of the line, not of the log. Appends made
    // one after another reach the widget together, the next time the toolkit
    // gets to run, so a long loop that logs every step pays for one insertion
    // per repaint rather than one per line. Text reads them all at once.
    void AppendText(const String& text);

    void DeleteSelection() override;
    void SelectAll() override;
    bool CanUndo() const override;
    bool HasSelection() const override;

private:
    void ApplyReadOnly() override;
    // Puts the appends that wait into the widget.
    void FlushAppends() const;

    // Appended lines per block of the toolkit's document. The block being
    // appended to is laid out again on every flush, and a block that scrolls
    // into view is laid out whole, so blocks stay small; a block per line
    // would cost a record of its own for every line.
    static constexpr int kLinesPerBlock = 16;

    // UTF-8, turned into the toolkit's text once per batch.
    mutable std::string pendingAppends_;
    mutable int linesInLastBlock_ = 0;
};

}  // namespace vx
