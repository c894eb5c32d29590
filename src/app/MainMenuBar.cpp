#include "app/MainMenuBar.h"

#include <optional>

#include "runtime/ui/QuitMenuItem.h"
#include "runtime/ui/RuntimeLifecycle.h"

namespace vx {

namespace {

struct ItemDescription {
    const char* name;
    const char* text;
    // Separators get no shortcut at all, not even an empty one.
    std::optional<const char*> shortcut;
};

template <class Item = MenuItem>
Ref<MenuItem> Make(const ItemDescription& description) {
    Ref<MenuItem> item = New<Item>();
    item->Constructor();
    item->Name(description.name);
    item->AutoEnable = true;
    item->Text(description.text);
    item->Visible(true);
    if (description.shortcut) {
        item->KeyboardShortcut(*description.shortcut);
    }
    return item;
}

}  // namespace

void MainMenuBar::Constructor() {
    Untitled0();
    Untitled1();
}

void MainMenuBar::Untitled0() {
    Append(Make({"FileMenu", "&File", ""}));
    Ref<MenuItem> menu = Child("FileMenu");
    menu->Append(Make({"mnuNewBuild", "New Build...", "Cmd+N"}));
    menu->Append(Make({"mnuExtract", "Extract app file...", "Cmd+E"}));
    menu->Append(Make<QuitMenuItem>({"FileQuit", "&Quit", "Cmd+Q"}));
}

void MainMenuBar::Untitled1() {
    Append(Make({"EditMenu", "&Edit", ""}));
    Ref<MenuItem> menu = Child("EditMenu");
    menu->Append(Make({"EditUndo", "&Undo", "Cmd+Z"}));
    menu->Append(Make({"EditSeparator1", "-", std::nullopt}));
    menu->Append(Make({"EditCut", "Cu&t", "Cmd+X"}));
    menu->Append(Make({"EditCopy", "&Copy", "Cmd+C"}));
    menu->Append(Make({"EditPaste", "&Paste", "Cmd+V"}));
    menu->Append(Make({"EditClear", "&Delete", ""}));
    menu->Append(Make({"EditSeparator2", "-", std::nullopt}));
    menu->Append(Make({"EditSelectAll", "Select &All", "Cmd+A"}));
}

Ref<MainMenuBar> MainMenuBar::_Instance() {
    if (!_implicitInstance) {
        _implicitInstance = New<MainMenuBar>();
        _implicitInstance->Constructor();
        RuntimeAddFinalizer([] { _implicitInstance = nullptr; });
    }
    return _implicitInstance;
}

}  // namespace vx
