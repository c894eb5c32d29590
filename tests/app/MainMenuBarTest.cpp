#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QMenu>
#include <QMenuBar>
#include <QTest>
#include <QTimer>
#include <string>
#include <vector>

#include "AppHarness.h"
#include "app/frmMain.h"
#include "runtime/ui/QuitMenuItem.h"
#include "support/RecordingUIServices.h"
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

TEST(MainMenuBar, inEveryWindow_oneBarShowsFileAndEditExactly) {
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

    // One bar, shared by the app and every window, looked up by exact name.
    test::Choose("mnuNewBuild");
    Ref<MainMenuBar> shared = MainMenuBar::_Instance();
    EXPECT_EQ(_GetAppObject()->MenuBar(), shared);
    for (const Ref<Window>& window : _OpenWindows()) {
        EXPECT_EQ(window->MenuBar(), shared);
    }
    EXPECT_TRUE(RuntimeObjectIsa<QuitMenuItem>(shared->_Lookup("FileQuit")));
    EXPECT_FALSE(RuntimeObjectIsa<QuitMenuItem>(shared->_Lookup("mnuExtract")));
    EXPECT_EQ(shared->_Lookup("EditSelectall"), nullptr);
}

// What the Edit menu offers when it opens now.
std::vector<bool> EditEnabled() {
    Ref<MenuItem> menu = MainMenuBar::_Instance()->Child("EditMenu");
    emit menu->_Menu()->aboutToShow();
    std::vector<bool> enabled;
    for (const char* name :
         {"EditUndo", "EditCut", "EditCopy", "EditPaste", "EditClear", "EditSelectAll"}) {
        enabled.push_back(menu->Child(name)->Enabled());
    }
    return enabled;
}

TEST(EditMenu, focusOnAFieldOrElsewhere_itemsActOnTheFieldAndEnableWhereTheyCan) {
    test::StartApplication();
    Ref<frmMain> w = frmMain::_ImplicitInstance();
    ASSERT_TRUE(test::ShowActive(w->_Widget()));
    w->txtName()->Text("");
    QApplication::clipboard()->clear();
    w->txtName()->SetFocus();
    //                                    Undo   Cut    Copy   Paste  Delete SelectAll
    EXPECT_EQ(EditEnabled(), std::vector<bool>({false, false, false, false, false, false}));

    QTest::keyClicks(w->txtName()->_Widget(), "hello");
    EXPECT_EQ(EditEnabled(), std::vector<bool>({true, false, false, false, false, true}));

    test::Choose("EditSelectAll");
    EXPECT_EQ(EditEnabled(), std::vector<bool>({true, true, true, false, true, true}));

    test::Choose("EditCopy");
    EXPECT_EQ(QApplication::clipboard()->text(), "hello");
    test::Choose("EditClear");
    EXPECT_EQ(w->txtName()->Text(), "");
    test::Choose("EditPaste");
    test::Choose("EditPaste");
    EXPECT_EQ(w->txtName()->Text(), "hellohello");
    test::Choose("EditUndo");
    EXPECT_EQ(w->txtName()->Text(), "hello");
    test::Choose("EditSelectAll");
    test::Choose("EditCut");
    EXPECT_EQ(w->txtName()->Text(), "");
    EXPECT_EQ(QApplication::clipboard()->text(), "hello");

    // With the focus on a button the edit items are off and leave the field alone.
    w->txtName()->Text("text");
    w->cmdNEXT()->SetFocus();
    EXPECT_EQ(EditEnabled(), std::vector<bool>(6, false));
    test::Choose("EditSelectAll");
    test::Choose("EditPaste");
    EXPECT_EQ(w->txtName()->Text(), "text");
    for (const char* name : {"mnuNewBuild", "mnuExtract", "FileQuit"}) {
        EXPECT_TRUE(MainMenuBar::_Instance()->_Lookup(name)->Enabled()) << name;
    }

    // A read-only field with a selection offers only Copy and Select All,
    // though the clipboard holds text.
    w->txtName()->ReadOnly(true);
    w->txtName()->SetFocus();
    w->txtName()->SelectAll();
    EXPECT_EQ(EditEnabled(), std::vector<bool>({false, false, true, false, false, true}));
}

// Keys pressed in a focused text field while the main loop runs: a text field
// would take Ctrl+E and the editing keys for itself, yet each shortcut reaches
// its menu item, the Edit items acting on the field, and Ctrl+Q ends the loop.
TEST(MenuShortcuts, pressedInAFocusedField_reachTheirMenuItems) {
    test::StartApplication();
    test::RecordingUIServices ui;
    test::InstalledUIServices installed(ui);
    std::vector<std::string> chosen;
    for (const char* name : {"mnuNewBuild", "mnuExtract", "FileQuit", "EditUndo", "EditCut",
                             "EditCopy", "EditPaste", "EditSelectAll"}) {
        QObject::connect(MainMenuBar::_Instance()->_Lookup(name)->_Action(), &QAction::triggered,
                         [&chosen, name] { chosen.emplace_back(name); });
    }
    Ref<frmMain> first = frmMain::_ImplicitInstance();
    std::string fieldAfterEditing;
    std::size_t windowsAfterCtrlN = 0;
    const auto press = [](Qt::Key key) {
        QTest::keyClick(QApplication::focusWidget(), key, Qt::ControlModifier);
    };
    QTimer::singleShot(0, [&] {
        ASSERT_TRUE(test::ShowActive(first->_Widget()));
        first->txtName()->Text("");
        first->txtName()->SetFocus();
        QTest::keyClicks(QApplication::focusWidget(), "hello");
        for (const Qt::Key key : {Qt::Key_A, Qt::Key_C, Qt::Key_X, Qt::Key_V, Qt::Key_Z}) {
            press(key);
        }
        fieldAfterEditing = first->txtName()->Text().c_str();
        press(Qt::Key_E);
        press(Qt::Key_N);
        windowsAfterCtrlN = _OpenWindows().size();
        Ref<Window> second = _OpenWindows().back();
        ASSERT_TRUE(test::ShowActive(second->_Widget()));
        RuntimeCheckCast<frmMain>(second)->txtTitle()->SetFocus();
        press(Qt::Key_Q);
    });
    // Should Ctrl+Q not arrive, the test fails instead of waiting forever.
    QTimer giveUp;
    giveUp.setSingleShot(true);
    QObject::connect(&giveUp, &QTimer::timeout, [] { QApplication::quit(); });
    giveUp.start(20000);

    _RuntimeRun();

    EXPECT_EQ(chosen,
              (std::vector<std::string>{"EditSelectAll", "EditCopy", "EditCut", "EditPaste",
                                        "EditUndo", "mnuExtract", "mnuNewBuild", "FileQuit"}));
    EXPECT_EQ(QApplication::clipboard()->text(), "hello");
    EXPECT_EQ(fieldAfterEditing, "") << "the paste undone";
    EXPECT_EQ(ui.openRequests.size(), 1u);
    EXPECT_EQ(windowsAfterCtrlN, 2u);
    EXPECT_FALSE(first->_Widget()->isVisible()) << "quit closed the windows";
}

}  // namespace
}  // namespace vx
