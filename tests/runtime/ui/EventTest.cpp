#include <gtest/gtest.h>

#include <thread>

#include "runtime/ui/Application.h"
#include "runtime/ui/PushButton.h"
#include "runtime/ui/UITrap.h"
#include "support/ToolkitEnvironment.h"

namespace vx {
namespace {

struct RouteCase {
    const char* name;
    std::function<void()> raise;
    // What the report hears, or empty when the failure ends quietly.
    const char* reportedClass;
    const char* reportedMessage;
};

class UnhandledRoute : public ::testing::TestWithParam<RouteCase> {};

TEST_P(UnhandledRoute, handlerRaises_reportNamesClassAndMessage) {
    const RouteCase& c = GetParam();
    test::ReportRecorder recorder;
    auto button = New<PushButton>();
    int after = 0;
    button->Action.AddHandler([&](PushButton&) { c.raise(); });
    button->Action.AddHandler([&](PushButton&) { ++after; });

    button->Push();

    if (c.reportedClass == nullptr) {
        EXPECT_TRUE(recorder.reports.empty());
    } else {
        ASSERT_EQ(recorder.reports.size(), 1u);
        EXPECT_EQ(recorder.reports[0].className, c.reportedClass);
        EXPECT_EQ(recorder.reports[0].message, c.reportedMessage);
    }
    EXPECT_EQ(after, 1) << "the failure ends its own handler only";
}

INSTANTIATE_TEST_SUITE_P(
    Failures, UnhandledRoute,
    ::testing::Values(RouteCase{"nil", [] { throw NilObjectException(); }, "NilObjectException",
                                ""},
                      RouteCase{"io",
                                [] {
                                    IOException failure;
                                    failure.Message = "disk gone";
                                    throw failure;
                                },
                                "IOException", "disk gone"},
                      RouteCase{"end", [] { throw EndException(); }, nullptr, nullptr},
                      RouteCase{"threadEnd", [] { throw ThreadEndException(); }, nullptr, nullptr}),
    [](const auto& testCase) { return std::string(testCase.param.name); });

TEST(UnhandledRoute, applicationHandlesIt_noReport) {
    test::ReportRecorder recorder;
    auto app = New<Application>();
    int seen = 0;
    app->UnhandledException = [&](const RuntimeException&) { return ++seen, true; };
    _RuntimeRegisterAppObject(app);
    _CallFunctionWithExceptionHandling([] { throw OutOfBoundsException(); });
    app->UnhandledException = [&](const RuntimeException&) { return ++seen, false; };
    _CallFunctionWithExceptionHandling([] { throw OutOfBoundsException(); });
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

TEST(UITrap, otherThread_raisesOnlyOnceAnApplicationExists) {
    auto button = New<PushButton>();
    auto offMainThread = [&](auto action) {
        bool raised = false;
        String message;
        std::thread([&] {
            try {
                action();
            } catch (const ThreadAccessingUIException& failure) {
                raised = true;
                message = failure.Message;
            }
        }).join();
        return std::pair(raised, message);
    };

    EXPECT_FALSE(offMainThread([] { _UITrap(); }).first);

    _RuntimeRegisterAppObject(New<Application>());
    auto [raised, message] = offMainThread([&] { button->Left(5); });
    EXPECT_TRUE(raised);
    EXPECT_EQ(message,
              "A thread has attempted to manipulate a user interface element. This can only be "
              "done from the application's main thread.");
    EXPECT_NO_THROW(button->Left(5)) << "the main thread passes";
    _RuntimeRegisterAppObject(nullptr);
}

}  // namespace
}  // namespace vx
