#include <gtest/gtest.h>

#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <QTest>
#include <QTimer>
#include <functional>

#include "AppHarness.h"
#include "app/App.h"
#include "app/FileTypes.h"
#include "app/frmMain.h"
#include "runtime/ui/FileTypeRegistry.h"
#include "runtime/ui/RuntimeLifecycle.h"
#include "runtime/ui/ScreenMenuBar.h"
#include "runtime/ui/TextField.h"
#include "support/RecordingUIServices.h"
#include "support/ToolkitEnvironment.h"

namespace vx {
namespace {

TEST(Startup, earlyThenLate_typesAppAndHandlersComeBeforeTheDefaultWindow) {
    _EarlyStartup();

    EXPECT_TRUE(_IsFileTypeRegistered("Vantrelix App"));
    EXPECT_NE(App::_Instance(), nullptr);
    EXPECT_TRUE(_OpenWindows().empty());
    // With the app's handlers in place, both commands are ready before any window.
    EXPECT_TRUE(MainMenuBar::_Instance()->_Lookup("mnuNewBuild")->Enabled());
    EXPECT_TRUE(MainMenuBar::_Instance()->_Lookup("mnuExtract")->Enabled());

    // The default window opens afterwards, by its settings alone.
    _RunFrameworkInitialization(_LateStartup);

    ASSERT_EQ(_OpenWindows().size(), 1u);
    Ref<Window> window = _OpenWindows()[0];
    EXPECT_EQ(window->_ClassName(), "frmMain");
    EXPECT_EQ(frmMain::_ImplicitInstance(), window) << "the accessor finds the open one";
    EXPECT_TRUE(window->_Widget()->isVisible());
    EXPECT_EQ(window->Title(), "Build");
    EXPECT_EQ(window->Width(), 600);
    EXPECT_EQ(window->Height(), 600);
}

TEST(Startup, mainRunsToTheLoopAndQuit_finalizersTakeEverythingDown) {
    bool sawWindowInLoop = false;
    QTimer::singleShot(0, [&] {
        sawWindowInLoop = _GetImplicitWindow("frmMain") != nullptr &&
                          _GetImplicitWindow("frmMain")->_Widget()->isVisible();
        test::Choose("FileQuit");
    });

    _Main();
    RuntimePerformFinalizers();

    EXPECT_TRUE(sawWindowInLoop);
    EXPECT_TRUE(_OpenWindows().empty());
    EXPECT_EQ(_GetAppObject(), nullptr);
    EXPECT_FALSE(_IsFileTypeRegistered("Vantrelix App")) << "types go with their module";
    EXPECT_EQ(FileTypes::pvxpk, nullptr);
}

// Runs the main loop as the program does, ended from here after five
// seconds at the latest; true when it ended by itself before.
bool MainLoopEndsByItself() {
    bool timedOut = false;
    QTimer watchdog;
    watchdog.setSingleShot(true);
    QObject::connect(&watchdog, &QTimer::timeout, [&] {
        timedOut = true;
        QApplication::quit();
    });
    watchdog.start(5000);
    _RuntimeRun();
    return !timedOut;
}

TEST(Startup, lastWindowClosedInTheLoop_endsTheRun) {
    test::StartApplication();
    QObject scope;
    QTimer::singleShot(0, &scope, [] { _OpenWindows().at(0)->Close(); });

    EXPECT_TRUE(MainLoopEndsByItself());
}

TEST(Startup, whereTheMenuBarOutlivesWindows_theRunAndBothCommandsOutliveTheLastWindow) {
    _KeepRunningWithoutWindows(true);
    test::StartApplication();
    QObject scope;
    QTimer::singleShot(0, &scope, [] { _OpenWindows().at(0)->Close(); });
    // Later than a quit that the close might have asked for.
    std::vector<QString> offered;
    std::size_t windowsAfterNewBuild = 0;
    QTimer::singleShot(200, &scope, [&] {
        QMenu* file = App::_Instance()->_ScreenMenuBar()->actions().at(0)->menu();
        for (QAction* action : file->actions()) {
            offered.push_back(action->text());
        }
        file->actions().at(0)->trigger();
        windowsAfterNewBuild = _OpenWindows().size();
        test::Choose("FileQuit");
    });

    const bool ended = MainLoopEndsByItself();
    _KeepRunningWithoutWindows(false);

    EXPECT_TRUE(ended);
    EXPECT_EQ(offered, (std::vector<QString>{"New Build...", "Extract app file...", "&Quit"}));
    EXPECT_EQ(windowsAfterNewBuild, 1u);
}

// A control that fails when start-up asks what the Edit menu can do with it.
class FailingField : public TextField {
public:
    std::function<void()> fail;
    using TextField::Text;
    String Text() const override {
        if (fail) {
            fail();
        }
        return TextField::Text();
    }
};

// What a step of start-up raises ends in _Main: the two quiet ends go
// unreported, any other failure is reported.
TEST(Startup, failureDuringStartup_reportedUnlessAQuietEnd) {
    struct Case {
        std::function<void()> fail;
        const char* reported;  // nullptr: not reported
    };
    for (const Case& c : {Case{[] { throw EndException(); }, nullptr},
                          Case{[] { throw ThreadEndException(); }, nullptr},
                          Case{[] { throw NilObjectException(); }, "NilObjectException"}}) {
        MainMenuBar::_Instance();
        auto window = New<Window>();
        window->Visible(false);
        window->Constructor();
        auto field = New<FailingField>();
        field->Name("txtName");
        window->_AddControl(field);
        ASSERT_TRUE(test::ShowActive(window->_Widget()));
        field->SetFocus();
        test::ReportRecorder recorder;
        field->fail = c.fail;

        _Main();

        field->fail = nullptr;
        EXPECT_EQ(_GetAppObject(), nullptr) << "start-up ended at the menu bar";
        if (c.reported == nullptr) {
            EXPECT_TRUE(recorder.reports.empty());
        } else {
            ASSERT_EQ(recorder.reports.size(), 1u);
            EXPECT_EQ(recorder.reports[0].className, c.reported);
        }
        RuntimePerformFinalizers();
    }
}

TEST(Startup, failureInAHandler_reachesTheReportAndTheAppGoesOn) {
    test::StartApplication();
    test::ReportRecorder recorder;
    App::_Instance()->_AddMenuHandler("mnuExtract", []() -> bool {
        OutOfBoundsException failure;
        failure.Message = "index 7";
        throw failure;
    });

    test::Choose("mnuExtract");
    test::Choose("mnuNewBuild");

    ASSERT_EQ(recorder.reports.size(), 1u);
    EXPECT_EQ(recorder.reports[0].className, "OutOfBoundsException");
    EXPECT_EQ(recorder.reports[0].message, "index 7");
    EXPECT_EQ(_OpenWindows().size(), 2u) << "the next command still works";
}

TEST(FileMenu, newBuildByMenuOrShortcut_opensFreshWindowsAndBothCommandsOutliveThem) {
    test::StartApplication();
    Ref<Window> first = _OpenWindows().at(0);
    first->Title("changed by the user");
    ASSERT_TRUE(test::ShowActive(first->_Widget()));

    QTest::keyClick(first->_Widget(), Qt::Key_N, Qt::ControlModifier);
    test::Choose("mnuNewBuild");

    std::vector<Ref<Window>> windows = _OpenWindows();
    ASSERT_EQ(windows.size(), 3u);
    EXPECT_EQ(windows[0], first);
    EXPECT_EQ(first->Title(), "changed by the user");
    for (std::size_t i = 1; i < windows.size(); ++i) {
        EXPECT_NE(windows[i], first);
        EXPECT_EQ(windows[i]->Title(), "Build") << "a new window starts from its defaults";
        EXPECT_TRUE(windows[i]->_Widget()->isVisible());
    }

    // With every window closed both commands still work.
    for (const Ref<Window>& window : windows) {
        window->Close();
    }
    ASSERT_TRUE(_OpenWindows().empty());
    test::RecordingUIServices ui;
    test::InstalledUIServices installed(ui);
    test::Choose("mnuExtract");
    test::Choose("mnuNewBuild");
    EXPECT_EQ(ui.openRequests.size(), 1u) << "Extract still asks for a package";
    ASSERT_EQ(_OpenWindows().size(), 1u);
    EXPECT_TRUE(_OpenWindows()[0]->_Widget()->isVisible());
}

TEST(App, accessor_checksTheClassOfTheApplicationObject) {
    _RuntimeRegisterAppObject(New<Application>());
    EXPECT_THROW(App::_Instance(), IllegalCastException);
    _RuntimeRegisterAppObject(nullptr);
    EXPECT_EQ(App::_Instance(), nullptr);
}

}  // namespace
}  // namespace vx
