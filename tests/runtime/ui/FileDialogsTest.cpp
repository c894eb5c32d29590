#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QApplication>
#include <QFileDialog>
#include <QTest>
#include <QTimer>
#include <cstdlib>
#include <functional>
#include <utility>

#include "runtime/files/FolderItem.h"
#include "runtime/ui/FileTypeRegistry.h"
#include "runtime/ui/Window.h"
#include "runtime/ui/internal/DesktopUIServices.h"
#include "support/ScratchFolder.h"
#include "support/ToolkitEnvironment.h"

namespace vx {
namespace {

// Registers the types of the test and takes them out again afterwards.
class FileDialogs : public ::testing::Test {
protected:
    static constexpr std::pair<const char*, const char*> types[] = {
        {"Vantrelix App", ".vxpk"}, {"Any", ".*"}, {"Web Page", ".html;.htm"}};
    void SetUp() override {
        for (auto [name, extensions] : types) {
            RuntimeRegisterFileType(name, "", "", extensions, "");
        }
    }
    void TearDown() override {
        for (auto [name, extensions] : types) {
            RuntimeDeregisterFileType(name);
        }
    }
};

TEST_F(FileDialogs, filterOfTypeNames_givesNameFiltersOfTheirExtensions) {
    struct Case {
        const char* filter;
        const char* nameFilters;
        const char* suffix;
    };
    for (const Case& c : {
             Case{"Vantrelix App", "Vantrelix App (*.vxpk)", "vxpk"},
             Case{"Vantrelix App;Any", "Vantrelix App (*.vxpk);;Any (*)", "vxpk"},
             Case{"Any;Vantrelix App", "Any (*);;Vantrelix App (*.vxpk)", ""},
             Case{"Web Page", "Web Page (*.html *.htm)", "html"},
             // A word that names no type stands for an extension.
             Case{"vxpk", "vxpk (*.vxpk)", "vxpk"},
             Case{"", "", ""},
         }) {
        EXPECT_EQ(_DialogNameFilters(c.filter), c.nameFilters) << c.filter;
        EXPECT_EQ(_DialogDefaultSuffix(c.filter), c.suffix) << c.filter;
    }
}

// Answers the next modal file dialog as the test says, once it is up.
void AnswerNextDialog(std::function<void(QFileDialog&)> answer) {
    QTimer::singleShot(0, [answer = std::move(answer)] {
        auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        answer(*dialog);
    });
}

TEST_F(FileDialogs, saveDialog_offersTheTypeAndAddsItsExtension) {
    test::ScratchFolder scratch;
    DesktopUIServices services;
    QStringList filters;
    AnswerNextDialog([&](QFileDialog& dialog) {
        filters = dialog.nameFilters();
        dialog.setDirectory(QString::fromStdString(scratch.path()));
        dialog.selectFile("My App");
        QMetaObject::invokeMethod(&dialog, "accept");
    });

    Ref<FolderItem> chosen = services.GetSaveFolderItem("Vantrelix App", "My App.vxpk");

    EXPECT_EQ(filters, QStringList{"Vantrelix App (*.vxpk)"});
    ASSERT_NE(chosen, nullptr);
    EXPECT_EQ(chosen->NativePath().bytes(), scratch.path("My App.vxpk")) << "the suffix is added";
}

TEST_F(FileDialogs, cancelledDialogs_giveNil) {
    DesktopUIServices services;
    AnswerNextDialog([](QFileDialog& dialog) { dialog.reject(); });
    EXPECT_EQ(services.SelectFolder(), nullptr);
    AnswerNextDialog([](QFileDialog& dialog) { dialog.reject(); });
    EXPECT_EQ(services.GetSaveFolderItem("Vantrelix App", ".vxpk"), nullptr);
    QString title;
    AnswerNextDialog([&](QFileDialog& dialog) {
        title = dialog.windowTitle();
        dialog.reject();
    });
    EXPECT_EQ(services.ShowOpenDialog("Enter a filename", "Open App file", "vxpk"), nullptr);
    EXPECT_EQ(title, "Open App file");
}

TEST(DesktopUIServices, backgroundTask_letsEventsThroughAtMostEveryInterval) {
    DesktopUIServices services;
    int delivered = 0;
    const auto post = [&] {
        QMetaObject::invokeMethod(
            QApplication::instance(), [&] { ++delivered; }, Qt::QueuedConnection);
    };
    post();
    services.BackgroundTask();
    EXPECT_EQ(delivered, 1) << "the first yield lets the window repaint";

    post();
    services.BackgroundTask();
    EXPECT_EQ(delivered, 1) << "a yield right after the last costs nothing";

    QTest::qSleep(DesktopUIServices::kRepaintIntervalMs + 5);
    services.BackgroundTask();
    EXPECT_EQ(delivered, 2);
    QApplication::processEvents();
}

TEST(DesktopUIServices, windowClosedDuringALongLoop_closesWhenTheLoopEnds) {
    DesktopUIServices services;
    auto window = New<Window>();
    window->Constructor();
    QTest::qSleep(DesktopUIServices::kRepaintIntervalMs + 5);
    QMetaObject::invokeMethod(window->_Widget(), "close", Qt::QueuedConnection);

    services.BackgroundTask();
    EXPECT_TRUE(window->_Widget()->isVisible()) << "the loop still writes to this window";

    QApplication::processEvents();
    EXPECT_FALSE(window->_Widget()->isVisible());
    EXPECT_TRUE(_OpenWindows().empty());
}

// The App Builder opens an extracted folder with the launcher vxpk serve
// --open uses: xdg-open, here a stand-in first on PATH that notes its target.
TEST(DesktopUIServices, launch_opensTheItemWithXdgOpen) {
    test::ScratchFolder scratch;
    scratch.writeFile("bin/xdg-open",
                      "#!/bin/sh\nprintf '%s' \"$1\" > \"$0.new\"\nmv \"$0.new\" \"$0.got\"\n");
    ASSERT_EQ(::chmod(scratch.path("bin/xdg-open").c_str(), 0755), 0);
    const std::string path = std::getenv("PATH");
    ::setenv("PATH", (scratch.path("bin") + ":" + path).c_str(), 1);
    DesktopUIServices services;
    services.Launch(*scratch.item("extracted folder"), true);
    ::setenv("PATH", path.c_str(), 1);
    for (int tries = 0;
         tries < 200 && ::access(scratch.path("bin/xdg-open.got").c_str(), F_OK) != 0; ++tries) {
        QTest::qSleep(25);
    }
    EXPECT_EQ(scratch.readFile("bin/xdg-open.got"), scratch.path("extracted folder"));
}

}  // namespace
}  // namespace vx
