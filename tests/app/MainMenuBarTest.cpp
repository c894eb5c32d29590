#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QMenu>
#include <QMenuBar>
#include <QTest>

#include "AppHarness.h"
#include "app/frmMain.h"
#include "runtime/ui/PushButton.h"
#include "runtime/ui/QuitMenuItem.h"
#include "runtime/ui/TextField.h"
#include "support/ToolkitEnvironment.h"

namespace vx {
namespace {

// One line per item as the user sees it: name, text, shortcut ("-" is a
// separator, whose text is a dash as well).
std::vector<std::string> Shown(const QList<QAction*>& actions) {
    std::vector<std::string> shown;
    for (const QAction* action : actions) {
        shown.push_back(QString("%1 %2 %3%4")
                            .arg(action->objectName(), action->text(),
                                 action->shortcut().toString(QKeySequence::PortableText),
                                 action->isSeparator() ? QString("separator") : QString())
                            .trimmed()
                            .toStdString());
    }
    return shown;
}

TEST(MainMenuBar, inTheWindow_showsFileAndEditExactly) {
    test::StartApplication();
    QMenuBar* bar = _OpenWindows().at(0)->_Widget()->findChild<QMenuBar*>();
    ASSERT_NE(bar, nullptr);

    using Items = std::vector<std::string>;
    EXPECT_EQ(Shown(bar->actions()), (Items{"FileMenu &File", "EditMenu &Edit"}));
    EXPECT_EQ(Shown(bar->actions().at(0)->menu()->actions()),
              (Items{"mnuNewBuild New Build... Ctrl+N", "mnuExtract Extract app file... Ctrl+E",
                     "FileQuit &Quit Ctrl+Q"}));
    EXPECT_EQ(Shown(bar->actions().at(1)->menu()->actions()),
              (Items{"EditUndo &Undo Ctrl+Z", "EditSeparator1 - separator", "EditCut Cu&t Ctrl+X",
                     "EditCopy &Copy Ctrl+C", "EditPaste &Paste Ctrl+V", "EditClear &Delete",
                     "EditSeparator2 - separator", "EditSelectAll Select &All Ctrl+A"}));
}

TEST(MainMenuBar, oneInstance_sharedByTheAppAndEveryWindow) {
    test::StartApplication();
    test::Choose("mnuNewBuild");
    Ref<MainMenuBar> bar = MainMenuBar::_Instance();
    EXPECT_EQ(_GetAppObject()->MenuBar(), bar);
    for (const Ref<Window>& window : _OpenWindows()) {
        EXPECT_EQ(window->MenuBar(), bar);
    }
    EXPECT_TRUE(RuntimeObjectIsa<QuitMenuItem>(bar->_Lookup("FileQuit")));
    EXPECT_FALSE(RuntimeObjectIsa<QuitMenuItem>(bar->_Lookup("mnuExtract")));
    EXPECT_EQ(bar->_Lookup("EditSelectall"), nullptr);
}

// The default window with a text field to edit and a button to take the
// focus away, as the wizard's fields and buttons do.
struct EditingWindow {
    Ref<Window> window;
    Ref<TextField> field = New<TextField>();
    Ref<PushButton> button = New<PushButton>();

    EditingWindow() {
        test::StartApplication();
        window = _OpenWindows().at(0);
        field->Name("txtName");
        window->_AddControl(field);
        field->Width(200);
        field->Height(22);
        button->Name("cmdNEXT");
        window->_AddControl(button);
        button->Top(100);
        button->Width(80);
        button->Height(22);
    }

    // What the Edit menu offers when it opens now.
    std::vector<bool> EditEnabled() const {
        Ref<MenuItem> menu = MainMenuBar::_Instance()->Child("EditMenu");
        emit menu->_Menu()->aboutToShow();
        std::vector<bool> enabled;
        for (const char* name :
             {"EditUndo", "EditCut", "EditCopy", "EditPaste", "EditClear", "EditSelectAll"}) {
            enabled.push_back(menu->Child(name)->Enabled());
        }
        return enabled;
    }
};

TEST(EditMenu, focusedField_itemsActOnItAndEnableWhereTheyCan) {
    EditingWindow w;
    ASSERT_TRUE(test::ShowActive(w.window->_Widget()));
    QApplication::clipboard()->clear();
    w.field->SetFocus();
    //                                    Undo   Cut    Copy   Paste  Delete SelectAll
    EXPECT_EQ(w.EditEnabled(), std::vector<bool>({false, false, false, false, false, false}));

    QTest::keyClicks(w.field->_Widget(), "hello");
    EXPECT_EQ(w.EditEnabled(), std::vector<bool>({true, false, false, false, false, true}));

    test::Choose("EditSelectAll");
    EXPECT_EQ(w.EditEnabled(), std::vector<bool>({true, true, true, false, true, true}));

    test::Choose("EditCopy");
    EXPECT_EQ(QApplication::clipboard()->text(), "hello");
    test::Choose("EditClear");
    EXPECT_EQ(w.field->Text(), "");
    test::Choose("EditPaste");
    test::Choose("EditPaste");
    EXPECT_EQ(w.field->Text(), "hellohello");
    test::Choose("EditUndo");
    EXPECT_EQ(w.field->Text(), "hello");
    test::Choose("EditSelectAll");
    test::Choose("EditCut");
    EXPECT_EQ(w.field->Text(), "");
    EXPECT_EQ(QApplication::clipboard()->text(), "hello");
}

TEST(EditMenu, focusElsewhereOrReadOnly_editItemsDisabledSaveCopyAndSelectAll) {
    EditingWindow w;
    ASSERT_TRUE(test::ShowActive(w.window->_Widget()));
    QApplication::clipboard()->setText("x");
    w.field->Text("text");
    w.button->SetFocus();

    EXPECT_EQ(w.EditEnabled(), std::vector<bool>(6, false));
    test::Choose("EditSelectAll");
    test::Choose("EditPaste");
    EXPECT_EQ(w.field->Text(), "text") << "the field without focus is left alone";
    for (const char* name : {"mnuNewBuild", "mnuExtract", "FileQuit"}) {
        EXPECT_TRUE(MainMenuBar::_Instance()->_Lookup(name)->Enabled()) << name;
    }

    // A read-only field with a selection offers only Copy and Select All.
    w.field->ReadOnly(true);
    w.field->SetFocus();
    w.field->SelectAll();
    EXPECT_EQ(w.EditEnabled(), std::vector<bool>({false, false, true, false, false, true}));
}

}  // namespace
}  // namespace vx
