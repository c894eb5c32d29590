#include "runtime/ui/RuntimeLifecycle.h"

#include <QApplication>
#include <QClipboard>
#include <QIcon>
#include <QTimer>
#include <QWidget>
#include <vector>

#include "runtime/ui/Application.h"
#ifdef VX_HAVE_FONTCONFIG
#include "runtime/ui/FontConfiguration.h"
#endif
#include "runtime/ui/MenuShortcuts.h"
#include "runtime/ui/ScreenMenuBar.h"
#include "runtime/ui/internal/DesktopUIServices.h"
#include "runtime/ui/internal/QtText.h"

namespace vx {

namespace {

// The toolkit takes the program's arguments by reference for its whole life;
// the system reads none, so it is given only a name.
int toolkitArgc = 1;
char toolkitName[] = "vantrelix-app-builder";
char* toolkitArgv[] = {toolkitName, nullptr};

// Made by _RuntimeInitExternalClasses and taken down only by RuntimeExit: a
// toolkit destroyed among the static objects at exit would outlive nothing
// safely.
QApplication* toolkit = nullptr;
DesktopUIServices* desktopServices = nullptr;
int32_t exitCode = 0;

std::vector<std::function<void()>>& Finalizers() {
    static std::vector<std::function<void()>> finalizers;
    return finalizers;
}

}  // namespace

void _RuntimeInitExternalClasses() {
    if (QApplication::instance() != nullptr) {
        return;
    }
#ifdef VX_HAVE_FONTCONFIG
    _LoadFontConfiguration();
#endif
    toolkit = new QApplication(toolkitArgc, toolkitArgv);
    _KeepRunningWithoutWindows(_MenuBarOutlivesWindows(FromQString(QApplication::platformName())));
    // What the Edit menu can do changes with the focus and the clipboard.
    QObject::connect(toolkit, &QApplication::focusChanged, toolkit, [] { _UpdateMenuEnabling(); });
    QObject::connect(QApplication::clipboard(), &QClipboard::dataChanged, toolkit,
                     [] { _UpdateMenuEnabling(); });
    _GiveMenuShortcutsPriority();
    desktopServices = new DesktopUIServices();
    InstallUIServices(desktopServices);
}

void _SetApplicationIdentity(const String& displayName, const String& iconResource,
                             const String& desktopEntry) {
    QApplication::setApplicationDisplayName(ToQString(displayName));
    QApplication::setDesktopFileName(ToQString(desktopEntry));
    // Drawing the icon is no reason to keep the first window waiting: it is
    // set once the main loop runs, and window frames take it up then.
    const QString icon = ":/" + ToQString(iconResource) + ".svg";
    QTimer::singleShot(0, QApplication::instance(),
                       [icon] { QApplication::setWindowIcon(QIcon(icon)); });
}

void _RunFrameworkInitialization(const std::function<void()>& lateStartup) {
    _RuntimeInitExternalClasses();
    lateStartup();
}

void _RuntimeRun() {
    exitCode = QApplication::exec();
}

void RuntimeAddFinalizer(std::function<void()> finalizer) {
    Finalizers().push_back(std::move(finalizer));
}

void RuntimePerformFinalizers() {
    // A finalizer may register another; it runs in the same pass.
    while (!Finalizers().empty()) {
        std::function<void()> last = std::move(Finalizers().back());
        Finalizers().pop_back();
        last();
    }
}

int32_t RuntimeExit() {
    InstallUIServices(nullptr);
    delete desktopServices;
    desktopServices = nullptr;
    delete toolkit;
    toolkit = nullptr;
    return exitCode;
}

}  // namespace vx
