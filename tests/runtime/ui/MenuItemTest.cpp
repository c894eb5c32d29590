#include <gtest/gtest.h>

#include <QAction>
#include <QKeySequence>
#include <QMenu>

#include "runtime/ui/Application.h"
#include "runtime/ui/MenuBar.h"
#include "runtime/ui/QuitMenuItem.h"
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

struct ShortcutCase {
    const char* text;
    QKeySequence expected;
};

class ShortcutText : public ::testing::TestWithParam<ShortcutCase> {};

TEST_P(ShortcutText, assigned_becomesThePlatformsKeySequence) {
    auto item = Item("mnuItem", "Item", GetParam().text);
    EXPECT_EQ(item->_Action()->shortcut(), GetParam().expected);
    EXPECT_EQ(item->KeyboardShortcut(), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Shortcuts, ShortcutText,
    ::testing::Values(ShortcutCase{"Cmd+N", QKeySequence(Qt::CTRL | Qt::Key_N)},
                      ShortcutCase{"Cmd+Q", QKeySequence(Qt::CTRL | Qt::Key_Q)},
                      ShortcutCase{"Cmd+Shift+E", QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_E)},
                      ShortcutCase{"Option+A", QKeySequence(Qt::ALT | Qt::Key_A)},
                      ShortcutCase{"", QKeySequence()}));

TEST(MenuItem, textDash_makesASeparatorAndAmpersandAMnemonic) {
    EXPECT_TRUE(Item("EditSeparator1", "-")->_Action()->isSeparator());
    auto cut = Item("EditCut", "Cu&t");
    EXPECT_FALSE(cut->_Action()->isSeparator());
    EXPECT_EQ(cut->_Action()->text(), "Cu&t");
    EXPECT_EQ(cut->_Action()->objectName(), "EditCut");
}

TEST(MenuItem, lookup_findsByNameAnywhereBelowAndNothingElse) {
    auto bar = New<MenuBar>();
    bar->Append(Item("FileMenu", "&File"));
    bar->Child("FileMenu")->Append(Item("mnuNewBuild", "New Build..."));
    bar->Child("FileMenu")->Append(Item("mnuExtract", "Extract app file..."));

    EXPECT_EQ(bar->_Lookup("mnuExtract"), bar->Child("FileMenu")->Item(1));
    EXPECT_EQ(bar->_Lookup("FileMenu"), bar->Child("FileMenu"));
    EXPECT_EQ(bar->_Lookup("mnuextract"), nullptr) << "names are matched exactly";
    EXPECT_EQ(bar->Child("mnuExtract"), nullptr) << "Child looks one level down only";
    EXPECT_EQ(bar->Child("FileMenu")->_Menu()->actions().size(), 2);
}

TEST(MenuItem, appendedTwice_raisesMenuHasParent) {
    auto first = Item("FileMenu", "&File");
    auto second = Item("EditMenu", "&Edit");
    auto item = Item("mnuNewBuild", "New Build...");
    first->Append(item);
    EXPECT_THROW(second->Append(item), MenuHasParentException);
}

TEST(MenuItem, handlerBoundByName_enablesAndRunsTheItem) {
    auto app = New<Application>();
    _RuntimeRegisterAppObject(app);
    auto bar = New<MenuBar>();
    bar->Append(Item("FileMenu", "&File"));
    auto item = Item("mnuNewBuild", "New Build...");
    bar->Child("FileMenu")->Append(item);
    EXPECT_FALSE(item->Enabled()) << "no handler, nothing to do";

    int runs = 0;
    app->_AddMenuHandler("mnuNewBuild", [&] {
        ++runs;
        return true;
    });
    app->MenuBar(bar);
    EXPECT_TRUE(item->Enabled());
    item->_Action()->trigger();
    EXPECT_EQ(runs, 1);
    _RuntimeRegisterAppObject(nullptr);
}

TEST(QuitMenuItem, withoutHandler_isAlwaysEnabled) {
    auto quit = New<QuitMenuItem>();
    quit->Name("FileQuit");
    quit->_UpdateEnabled();
    EXPECT_TRUE(quit->Enabled());
}

}  // namespace
}  // namespace vx
