#pragma once

#include "runtime/core/Object.h"
#include "runtime/core/Ref.h"
#include "runtime/text/String.h"

namespace vx {

class FolderItem;

// Base of the file dialogs: what the dialog says and which files it offers.
class FolderItemDialog : public Object {
public:
    String PromptText;
    String Title;
    // The names of registered file types joined by ";"; a word that names no
    // registered type is taken as an extension.
    String Filter;
};

// A modal dialog that chooses an existing file.
class OpenDialog : public FolderItemDialog {
public:
    void Constructor() {}
    // The chosen file, or nil when the user cancelled.
    Ref<FolderItem> ShowModal();
};

}  // namespace vx
