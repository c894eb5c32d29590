#pragma once

#include "runtime/text/String.h"

namespace vx {

class TextEdit;

// The editing commands that the toolkit carries out itself on the focused
// text control, found by the standard names of the Edit menu's items
// ("EditCopy", "EditPaste", ...).
struct EditCommand {
    const char* itemName;
    bool (TextEdit::*canAct)() const;
    void (TextEdit::*act)();
};

// The command of that item name, or null.
const EditCommand* EditCommandNamed(const String& itemName);

}  // namespace vx
