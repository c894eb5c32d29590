#pragma once

#include "runtime/ui/RectControl.h"

namespace vx {

// Common base of the text controls: the whole text as a String tagged UTF-8,
// and the editing commands that the Edit menu reaches on the focused control.
class TextEdit : public RectControl {
public:
    virtual String Text() const = 0;
    virtual void Text(const String& text) = 0;
    bool ReadOnly() const { return readOnly_; }
    void ReadOnly(bool readOnly);

    void Undo();
    void Cut();
    void Copy();
    void Paste();
    virtual void DeleteSelection() = 0;
    virtual void SelectAll() = 0;

    virtual bool CanUndo() const = 0;
    virtual bool HasSelection() const = 0;
    bool CanCut() const { return !readOnly_ && HasSelection(); }
    bool CanCopy() const { return HasSelection(); }
    bool CanPaste() const;
    bool CanDelete() const { return CanCut(); }
    bool CanSelectAll() const { return !Text().isEmpty(); }

    // The text control that has the keyboard focus, or nil.
    static TextEdit* _Focused();

protected:
    using RectControl::RectControl;

private:
    virtual void ApplyReadOnly() = 0;

    bool readOnly_ = false;
};

}  // namespace vx
