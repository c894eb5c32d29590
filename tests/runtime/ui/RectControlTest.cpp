#include <gtest/gtest.h>

#include <QApplication>
#include <QTest>
#include <QWidget>

#include "runtime/ui/Label.h"
#include "runtime/ui/PagePanel.h"
#include "runtime/ui/PushButton.h"
#include "runtime/ui/TextField.h"
#include "runtime/ui/Window.h"
#include "support/ToolkitEnvironment.h"

namespace vx {
namespace {

// Where the control's widget really stands, in the coordinates of the
// window's content.
QRect Placed(const RectControl& control, const Window& window) {
    QWidget* widget = control._Widget();
    return {widget->mapTo(window._Content(), QPoint(0, 0)), widget->size()};
}

template <class C>
Ref<C> Add(Window& window, const char* name, int64_t left, int64_t top, int64_t width,
           int64_t height) {
    auto control = New<C>();
    control->Name(name);
    window._AddControl(control);
    control->Left(left);
    control->Top(top);
    control->Width(width);
    control->Height(height);
    return control;
}

Ref<Window> MakeWindow() {
    auto window = New<Window>();
    window->Width(600);
    window->Height(600);
    window->Visible(false);
    window->Constructor();
    return window;
}

struct LockCase {
    const char* name;
    bool left, top, right, bottom;
    QRect expected;  // after growing the window by 100 wide and 50 high
};

class LockBehaviour : public ::testing::TestWithParam<LockCase> {};

TEST_P(LockBehaviour, windowGrows_controlFollowsItsLocks) {
    const LockCase& c = GetParam();
    Ref<Window> window = MakeWindow();
    auto field = Add<TextField>(*window, "txtField", 100, 200, 150, 22);
    field->LockLeft(c.left);
    field->LockTop(c.top);
    field->LockRight(c.right);
    field->LockBottom(c.bottom);

    window->Width(700);
    window->Height(650);

    EXPECT_EQ(Placed(*field, *window), c.expected);
    EXPECT_EQ(QRect(static_cast<int>(field->Left()), static_cast<int>(field->Top()),
                    static_cast<int>(field->Width()), static_cast<int>(field->Height())),
              c.expected);

    // Shrinking back restores the frame exactly; nothing drifts.
    window->Width(600);
    window->Height(600);
    EXPECT_EQ(Placed(*field, *window), QRect(100, 200, 150, 22));
}

INSTANTIATE_TEST_SUITE_P(
    Locks, LockBehaviour,
    ::testing::Values(LockCase{"leftTop", true, true, false, false, QRect(100, 200, 150, 22)},
                      LockCase{"leftRight", true, true, true, false, QRect(100, 200, 250, 22)},
                      LockCase{"rightBottom", false, false, true, true, QRect(200, 250, 150, 22)},
                      LockCase{"allFour", true, true, true, true, QRect(100, 200, 250, 72)},
                      LockCase{"none", false, false, false, false, QRect(100, 200, 150, 22)}),
    [](const auto& testCase) { return std::string(testCase.param.name); });

TEST(RectControl, shownWindowResizedByUser_controlsFollowTheContent) {
    Ref<Window> window = MakeWindow();
    auto button = Add<PushButton>(*window, "cmdCorner", 470, 516, 80, 22);
    button->LockLeft(false);
    button->LockTop(false);
    button->LockRight(true);
    button->LockBottom(true);
    window->Show();

    QWidget* frame = window->_Widget();
    frame->resize(frame->width() + 30, frame->height() + 40);
    EXPECT_TRUE(QTest::qWaitFor([&] { return window->Width() == 630; }));

    EXPECT_EQ(window->Width(), 630);
    EXPECT_EQ(window->Height(), 640);
    EXPECT_EQ(Placed(*button, *window), QRect(500, 556, 80, 22));
}

// A panel at 20,20 as the wizard has it, with a control on each of two pages
// and one on the window itself.
struct PagedWindow {
    Ref<Window> window = MakeWindow();
    Ref<PagePanel> panel;
    Ref<TextField> onFirst;
    Ref<Label> onSecond;
    Ref<PushButton> onWindow;

    PagedWindow() {
        panel = Add<PagePanel>(*window, "PagePanel1", 20, 20, 560, 528);
        panel->PanelCount(4);
        panel->LockRight(true);
        panel->LockBottom(true);
        onFirst = OnPage<TextField>("txtPath", 1, 40, 258, 419, 22);
        onFirst->LockRight(true);
        onSecond = OnPage<Label>("lblMsg", 2, 48, 69, 501, 20);
        onWindow = Add<PushButton>(*window, "cmdHelp", 500, 560, 80, 32);
        panel->Value(0);
        window->Show();
    }

    template <class C>
    Ref<C> OnPage(const char* name, int64_t page, int64_t left, int64_t top, int64_t width,
                  int64_t height) {
        auto control = New<C>();
        control->Name(name);
        control->InitialParent("PagePanel1");
        control->TabPanelIndex(page);
        window->_AddControl(control);
        control->Left(left);
        control->Top(top);
        control->Width(width);
        control->Height(height);
        return control;
    }
};

TEST(PagePanel, controlOnPage_standsAtItsWindowCoordinates) {
    PagedWindow w;
    EXPECT_EQ(Placed(*w.onFirst, *w.window), QRect(40, 258, 419, 22));
    EXPECT_EQ(w.onFirst->_Widget()->parentWidget(), w.panel->_Page(0));

    // Locked right inside a panel that is locked right: both stretch together.
    w.window->Width(650);
    EXPECT_EQ(Placed(*w.onFirst, *w.window), QRect(40, 258, 469, 22));
}

TEST(PagePanel, valueAssigned_onlyThatPageAndTheWindowShow) {
    PagedWindow w;
    struct Expectation {
        int64_t page;
        bool first, second;
    };
    for (const Expectation e : {Expectation{0, true, false}, Expectation{1, false, true},
                                Expectation{2, false, false}, Expectation{0, true, false}}) {
        w.panel->Value(e.page);
        EXPECT_EQ(w.panel->Value(), e.page);
        EXPECT_EQ(w.onFirst->_Widget()->isVisible(), e.first) << "page " << e.page;
        EXPECT_EQ(w.onSecond->_Widget()->isVisible(), e.second) << "page " << e.page;
        EXPECT_TRUE(w.onWindow->_Widget()->isVisible()) << "page " << e.page;
        // A control on a hidden page keeps its own flag.
        EXPECT_TRUE(w.onFirst->Visible());
    }
}

TEST(PagePanel, valueOutsideThePages_raisesOutOfBoundsAndStays) {
    PagedWindow w;
    w.panel->Value(1);
    EXPECT_THROW(w.panel->Value(4), OutOfBoundsException);
    EXPECT_THROW(w.panel->Value(-1), OutOfBoundsException);
    EXPECT_EQ(w.panel->Value(), 1);
}

TEST(Window, tabIndex_ordersTheFocusWithinEachPage) {
    Ref<Window> window = MakeWindow();
    auto third = Add<TextField>(*window, "third", 0, 0, 10, 10);
    auto first = Add<TextField>(*window, "first", 0, 20, 10, 10);
    auto label = Add<Label>(*window, "label", 0, 40, 10, 10);
    auto second = Add<PushButton>(*window, "second", 0, 60, 10, 10);
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
    auto onSecondPage = w.OnPage<PushButton>("cmdBuild", 2, 470, 515, 80, 20);
    auto onFirstPage = w.OnPage<PushButton>("cmdNEXT", 1, 470, 516, 80, 22);
    int built = 0;
    int continued = 0;
    onSecondPage->Default(true);
    onFirstPage->Default(true);
    onSecondPage->Action.AddHandler([&](PushButton&) { ++built; });
    onFirstPage->Action.AddHandler([&](PushButton&) { ++continued; });
    ASSERT_TRUE(test::ShowActive(w.window->_Widget()));
    w.onFirst->SetFocus();

    QTest::keyClick(w.onFirst->_Widget(), Qt::Key_Return);
    EXPECT_EQ(continued, 1);
    EXPECT_EQ(built, 0);

    w.panel->Value(1);
    onSecondPage->Enabled(false);
    QTest::keyClick(w.window->_Content(), Qt::Key_Return);
    EXPECT_EQ(built, 0) << "a disabled default button is not pressed";
    onSecondPage->Enabled(true);
    QTest::keyClick(w.window->_Content(), Qt::Key_Return);
    EXPECT_EQ(built, 1);
    EXPECT_EQ(continued, 1);
}

TEST(Window, closedWindow_isNoLongerTheImplicitOne) {
    Ref<Window> first = MakeWindow();
    first->Show();
    EXPECT_EQ(_GetImplicitWindow("Window"), first);
    first->Close();
    EXPECT_EQ(_GetImplicitWindow("Window"), nullptr);
    EXPECT_TRUE(_OpenWindows().empty());
}

}  // namespace
}  // namespace vx
