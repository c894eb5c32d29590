#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <string_view>
#include <thread>

#include "runtime/ui/Application.h"
#include "runtime/ui/PushButton.h"
#include "runtime/ui/UITrap.h"
#include "runtime/ui/Window.h"
#include "support/ToolkitEnvironment.h"

namespace vx {
namespace {

template <class E>
std::function<void()> Raise(const char* message = "") {
    return [message] {
        E failure;
        failure.Message = message;
        throw failure;
    };
}

TEST(UnhandledRoute, handlerRaises_reportNamesClassAndMessageAndTheNextHandlerRuns) {
    struct Case {
        std::function<void()> raise;
        const char* reportedClass;  // nullptr: the failure ends quietly
        const char* reportedMessage;
    };
    for (const Case& c : {Case{Raise<NilObjectException>(), "NilObjectException", ""},
                          Case{Raise<IOException>("disk gone"), "IOException", "disk gone"},
                          Case{Raise<EndException>(), nullptr, nullptr},
                          Case{Raise<ThreadEndException>(), nullptr, nullptr}}) {
        test::ReportRecorder recorder;
        auto button = New<PushButton>();
        int after = 0;
        button->Action.AddHandler([&](PushButton&) { c.raise(); });
        button->Action.AddHandler([&](PushButton&) { ++after; });

        button->Push();

        EXPECT_EQ(after, 1) << "the failure ends its own handler only";
        if (c.reportedClass == nullptr) {
            EXPECT_TRUE(recorder.reports.empty());
        } else {
            ASSERT_EQ(recorder.reports.size(), 1u);
            EXPECT_EQ(recorder.reports[0].className, c.reportedClass);
            EXPECT_EQ(recorder.reports[0].message, c.reportedMessage);
        }
    }
}

TEST(UnhandledRoute, applicationHandlesIt_noReport) {
    test::ReportRecorder recorder;
    auto app = New<Application>();
    int seen = 0;
    _RuntimeRegisterAppObject(app);
    for (const bool handled : {true, false}) {
        app->UnhandledException = [&](const RuntimeException&) { return ++seen, handled; };
        _CallFunctionWithExceptionHandling(Raise<OutOfBoundsException>());
    }
    _RuntimeRegisterAppObject(nullptr);

    EXPECT_EQ(seen, 2);
    ASSERT_EQ(recorder.reports.size(), 1u) << "declined by the application, then reported";
    EXPECT_EQ(recorder.reports[0].className, "OutOfBoundsException");
}

TEST(UnhandledRoute, reportText_namesClassAndMessage) {
    TypeMismatchException failure;
    failure.Message = "not a number";
    const String text = UnhandledExceptionText(failure);
    EXPECT_NE(text.bytes().find("TypeMismatchException"), std::string_view::npos);
    EXPECT_NE(text.bytes().find("not a number"), std::string_view::npos);
}

// Whatever a window does on Open may rely on its controls having done theirs.
TEST(OpenEvent, controlsOpenBeforeTheirWindow) {
    class OpeningWindow : public Window {
    public:
        std::string order;

    protected:
        void CreateControls() override {
            auto button = New<PushButton>();
            button->Name("cmdHelp");
            button->Open.AddHandler([this](PushButton&) { order += "control "; });
            _AddControl(button);
            Open.AddHandler([this](Window&) { order += "window"; });
        }
    };
    auto window = New<OpeningWindow>();
    window->Visible(false);
    window->Constructor();
    EXPECT_EQ(window->order, "control window");
}

TEST(UITrap, otherThread_raisesOnlyOnceAnApplicationExists) {
    auto button = New<PushButton>();
    // The message of the failure raised on another thread, or "" for none.
    auto offMainThread = [&](auto action) {
        String message;
        std::thread([&] {
            try {
                action();
            } catch (const ThreadAccessingUIException& failure) {
                message = failure.Message;
            }
        }).join();
        return message;
    };

    EXPECT_EQ(offMainThread([] { _UITrap(); }), "");
    _RuntimeRegisterAppObject(New<Application>());
    EXPECT_EQ(offMainThread([&] { button->Left(5); }),
              "A thread has attempted to manipulate a user interface element. This can only be "
              "done from the application's main thread.");
    EXPECT_NO_THROW(button->Left(5)) << "the main thread passes";
    _RuntimeRegisterAppObject(nullptr);
}

}  // namespace
}  // namespace vx
