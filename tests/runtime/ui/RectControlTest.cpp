#include <gtest/gtest.h>

#include <QApplication>
#include <QTest>
#include <QWidget>
#include <string>
#include <string_view>

#include "WindowHarness.h"
#include "runtime/ui/Label.h"
#include "runtime/ui/PagePanel.h"
#include "runtime/ui/PushButton.h"
#include "runtime/ui/TextField.h"
#include "support/ToolkitEnvironment.h"

namespace vx {
namespace {

// Where the control's widget really stands, in the window content's coordinates.
QRect Placed(const RectControl& control, const Window& window) {
    QWidget* widget = control._Widget();
    return {widget->mapTo(window._Content(), QPoint(0, 0)), widget->size()};
}

// Locks from letters: L, T, R and B.
void Lock(RectControl& control, std::string_view sides) {
    control.LockLeft(sides.find('L') != sides.npos);
    control.LockTop(sides.find('T') != sides.npos);
    control.LockRight(sides.find('R') != sides.npos);
    control.LockBottom(sides.find('B') != sides.npos);
}

TEST(RectControl, windowGrows_controlFollowsItsLocksAndShrinkingRestoresIt) {
    const QRect start(100, 200, 150, 22);
    struct Case {
        const char* locks;
        QRect expected;  // after growing the window by 100 wide and 50 high
    };
    for (const Case& c : {Case{"LT", start}, Case{"LTR", QRect(100, 200, 250, 22)},
                          Case{"RB", QRect(200, 250, 150, 22)},
                          Case{"LTRB", QRect(100, 200, 250, 72)}, Case{"", start}}) {
        Ref<Window> window = test::HiddenWindow();
        auto field = test::AddControl<TextField>(*window, "txtField", start);
        Lock(*field, c.locks);
        window->Width(700);
        window->Height(650);
        const RectControl::Rect frame = field->Frame();
        EXPECT_EQ(QRect(frame.left, frame.top, frame.width, frame.height), c.expected) << c.locks;
        EXPECT_EQ(Placed(*field, *window), c.expected) << c.locks;
        window->Width(600);
        window->Height(600);
        EXPECT_EQ(Placed(*field, *window), start) << c.locks << ": nothing drifts";
    }
}

TEST(RectControl, shownWindowResizedByUser_controlsFollowTheContent) {
    Ref<Window> window = test::HiddenWindow();
    auto button = test::AddControl<PushButton>(*window, "cmdCorner", {470, 516, 80, 22});
    Lock(*button, "RB");
    window->Show();

    QWidget* frame = window->_Widget();
    frame->resize(frame->width() + 30, frame->height() + 40);
    EXPECT_TRUE(QTest::qWaitFor([&] { return window->Width() == 630; }));

    EXPECT_EQ(window->Height(), 640);
    EXPECT_EQ(Placed(*button, *window), QRect(500, 556, 80, 22));
}

// A panel at 20,20 as the wizard has it, with a control on each of two pages
// and one on the window itself.
struct PagedWindow {
    Ref<Window> window = test::HiddenWindow();
    Ref<PagePanel> panel = test::AddControl<PagePanel>(*window, "PagePanel1", {20, 20, 560, 528});
    Ref<TextField> onFirst;
    Ref<Label> onSecond;
    Ref<PushButton> onWindow;

    PagedWindow() {
        panel->PanelCount(4);
        Lock(*panel, "LTRB");
        onFirst = test::AddControl<TextField>(*window, "txtPath", {40, 258, 419, 22}, 1);
        Lock(*onFirst, "LTR");
        onSecond = test::AddControl<Label>(*window, "lblMsg", {48, 69, 501, 20}, 2);
        onWindow = test::AddControl<PushButton>(*window, "cmdHelp", {500, 560, 80, 32});
        panel->Value(0);
        window->Show();
    }
};

TEST(PagePanel, valueAssigned_onlyThatPageAndTheWindowShowAndOutsideValuesRaise) {
    PagedWindow w;
    EXPECT_EQ(Placed(*w.onFirst, *w.window), QRect(40, 258, 419, 22));
    struct Expectation {
        int64_t page;
        bool first, second;
    };
    for (const Expectation e : {Expectation{0, true, false}, Expectation{1, false, true},
                                Expectation{2, false, false}, Expectation{0, true, false}}) {
        w.panel->Value(e.page);
        EXPECT_EQ(w.onFirst->_Widget()->isVisible(), e.first) << "page " << e.page;
        EXPECT_EQ(w.onSecond->_Widget()->isVisible(), e.second) << "page " << e.page;
        EXPECT_TRUE(w.onWindow->_Widget()->isVisible()) << "page " << e.page;
        EXPECT_TRUE(w.onFirst->Visible()) << "a control on a hidden page keeps its own flag";
    }
    w.panel->Value(1);
    EXPECT_THROW(w.panel->Value(4), OutOfBoundsException);
    EXPECT_THROW(w.panel->Value(-1), OutOfBoundsException);
    EXPECT_EQ(w.panel->Value(), 1);
    // Locked right inside a panel that is locked right: both stretch together.
    w.window->Width(650);
    EXPECT_EQ(Placed(*w.onFirst, *w.window), QRect(40, 258, 469, 22));
}

TEST(Window, tabIndex_ordersTheFocusWithinEachPage) {
    Ref<Window> window = test::HiddenWindow();
    auto third = test::AddControl<TextField>(*window, "third", {0, 0, 10, 10});
    auto first = test::AddControl<TextField>(*window, "first", {0, 20, 10, 10});
    auto label = test::AddControl<Label>(*window, "label", {0, 40, 10, 10});
    auto second = test::AddControl<PushButton>(*window, "second", {0, 60, 10, 10});
    third->TabIndex(3);
    first->TabIndex(1);
    label->TabIndex(2);
    second->TabIndex(2);

    ASSERT_TRUE(test::ShowActive(window->_Widget()));
    first->SetFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), second->_Widget());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), third->_Widget()) << "the label takes no focus";
}

TEST(Window, returnKey_pressesTheVisibleEnabledDefaultButton) {
    PagedWindow w;
    auto onSecondPage = test::AddControl<PushButton>(*w.window, "cmdBuild", {470, 515, 80, 20}, 2);
    auto onFirstPage = test::AddControl<PushButton>(*w.window, "cmdNEXT", {470, 516, 80, 22}, 1);
    std::string pressed;
    for (const Ref<PushButton>& button : {onSecondPage, onFirstPage}) {
        button->Default(true);
        button->Action.AddHandler([&](PushButton& b) { pressed += b.Name().bytes(); });
    }
    ASSERT_TRUE(test::ShowActive(w.window->_Widget()));
    w.onFirst->SetFocus();
    QTest::keyClick(w.onFirst->_Widget(), Qt::Key_Return);
    w.panel->Value(1);
    onSecondPage->Enabled(false);
    QTest::keyClick(w.window->_Content(), Qt::Key_Return);
    EXPECT_EQ(pressed, "cmdNEXT") << "only the shown button, and a disabled one not at all";
    onSecondPage->Enabled(true);
    QTest::keyClick(w.window->_Content(), Qt::Key_Return);
    EXPECT_EQ(pressed, "cmdNEXTcmdBuild");
}

TEST(Window, closedWindow_isNoLongerTheImplicitOne) {
    Ref<Window> first = test::HiddenWindow();
    first->Show();
    EXPECT_EQ(_GetImplicitWindow("Window"), first);
    first->Close();
    EXPECT_EQ(_GetImplicitWindow("Window"), nullptr);
    EXPECT_TRUE(_OpenWindows().empty());
}

}  // namespace
}  // namespace vx
