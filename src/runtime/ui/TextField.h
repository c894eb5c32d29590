#pragma once

#include "runtime/ui/Event.h"
#include "runtime/ui/TextEdit.h"

namespace vx {

// A one-line text field. TextChange is raised after every change of the text,
// by the user or by an assignment to Text.
class TextField : public TextEdit {
public:
    TextField();

    String Text() const override;
    void Text(const String& text) override;
    // Limits what the user can type, one character class per place: "0" and
    // "9" a digit, "#" a digit or sign, "?" a letter, "A" and "a" a letter or
    // digit, "&" and "C" any character; anything else stands for itself. Text
    // assigned by code is kept as it is.
    String Mask() const { return mask_; }
    void Mask(const String& mask);

    void DeleteSelection() override;
    void SelectAll() override;
    bool CanUndo() const override;
    bool HasSelection() const override;

    Event<TextField&> TextChange;

private:
    void ApplyReadOnly() override;

    String mask_;
};

}  // namespace vx
