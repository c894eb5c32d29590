#include "app/Startup.h"

#include "app/App.h"
#include "app/FileTypes.h"
#include "app/MainMenuBar.h"
#include "app/frmMain.h"
#include "runtime/ui/RuntimeLifecycle.h"
#include "runtime/ui/UnhandledException.h"

namespace vx {

void _Main() {
    try {
        _EarlyStartup();
        _RunFrameworkInitialization(_LateStartup);
        _RuntimeRun();
    } catch (const EndException&) {
        // A quit in progress is no failure, and neither is a thread's end.
    } catch (const ThreadEndException&) {
    } catch (const RuntimeException& failure) {
        RuntimeUnhandledException(failure);
    }
}

void _EarlyStartup() {
    Application::_SetSupportsHiDPI(true);
    _RuntimeInitExternalClasses();
    _SetApplicationIdentity("Vantrelix App Builder", "icon_vxpk_file", "com.vantrelix.AppBuilder");
    _InitFileTypes();
    _NewAppInstance();
    _ApplicationAddMenuHandlers();
}

void _InitFileTypes() {
    FileTypes::_Initialize();
}

void _NewAppInstance() {
    auto app = New<App>();
    app->MenuBar(MainMenuBar::_Instance());
    _RuntimeRegisterAppObject(app);
    RuntimeAddFinalizer([] { _RuntimeRegisterAppObject(nullptr); });
}

void _ApplicationAddMenuHandlers() {
    Ref<App> app = App::_Instance();
    App* handlers = app.get();
    app->_AddMenuHandler("mnuNewBuild", [handlers] { return handlers->_mnuNewBuild_Action(); });
    app->_AddMenuHandler("mnuExtract", [handlers] { return handlers->_mnuExtract_Action(); });
}

void _LateStartup() {
    _MakeDefaultView();
}

void _MakeDefaultView() {
    (void)frmMain::_ImplicitInstance();
}

}  // namespace vx
