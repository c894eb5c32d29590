#include <gtest/gtest.h>

#include <QAction>
#include <QKeySequence>
#include <QMenu>

#include "runtime/ui/Application.h"
#include "runtime/ui/MenuBar.h"
#include "support/ToolkitEnvironment.h"

namespace vx {
namespace {

Ref<MenuItem> Item(const char* name, const char* text, const char* shortcut = "") {
    auto item = New<MenuItem>();
    item->Name(name);
    item->Text(text);
    item->KeyboardShortcut(shortcut);
    return item;
}

// The application's own menus show the plain Cmd shortcuts, separators and
// mnemonics; these are the other forms.
TEST(MenuItem, shortcutAssigned_becomesThePlatformsKeySequence) {
    for (const auto& [text, expected] :
         {std::pair{"Cmd+Shift+E", QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_E)},
          {"Option+A", QKeySequence(Qt::ALT | Qt::Key_A)},
          {"", QKeySequence()}}) {
        auto item = Item("mnuItem", "Item", text);
        EXPECT_EQ(item->_Action()->shortcut(), expected) << text;
        EXPECT_EQ(item->KeyboardShortcut(), text);
    }
}

// A bar with File > New Build, Extract.
Ref<MenuBar> FileBar() {
    auto bar = New<MenuBar>();
    bar->Append(Item("FileMenu", "&File"));
    bar->Child("FileMenu")->Append(Item("mnuNewBuild", "New Build..."));
    bar->Child("FileMenu")->Append(Item("mnuExtract", "Extract app file..."));
    return bar;
}

TEST(MenuItem, lookup_findsByNameAnywhereBelowButChildOnlyOneLevelDown) {
    auto bar = FileBar();
    EXPECT_EQ(bar->_Lookup("mnuExtract"), bar->Child("FileMenu")->Item(1));
    EXPECT_EQ(bar->_Lookup("FileMenu"), bar->Child("FileMenu"));
    EXPECT_EQ(bar->Child("mnuExtract"), nullptr);
}

TEST(MenuItem, appendedTwice_raisesMenuHasParent) {
    auto item = Item("mnuNewBuild", "New Build...");
    auto file = Item("FileMenu", "&File");
    file->Append(item);
    EXPECT_THROW(Item("EditMenu", "&Edit")->Append(item), MenuHasParentException);
}

TEST(MenuItem, handlerBoundByName_enablesAndRunsTheItem) {
    auto app = New<Application>();
    _RuntimeRegisterAppObject(app);
    auto bar = FileBar();
    Ref<MenuItem> item = bar->_Lookup("mnuNewBuild");
    EXPECT_FALSE(item->Enabled()) << "no handler, nothing to do";

    int runs = 0;
    app->_AddMenuHandler("mnuNewBuild", [&] { return ++runs, true; });
    app->MenuBar(bar);
    EXPECT_TRUE(item->Enabled());
    item->_Action()->trigger();
    EXPECT_EQ(runs, 1);
    _RuntimeRegisterAppObject(nullptr);
}

}  // namespace
}  // namespace vx
