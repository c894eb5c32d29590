#pragma once

#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "runtime/core/Object.h"
#include "runtime/core/Ref.h"
#include "runtime/core/RuntimeException.h"
#include "runtime/text/String.h"

class QMenuBar;

namespace vx {

class MenuBar;

// The running program. The one object of the system's class derived from this
// is registered at start-up and reached through _GetAppObject; it owns the menu
// bar that stands when no window does, and the menu handlers bound by item name.
class Application : public Object {
public:
    using MenuHandler = std::function<bool()>;

    Application();
    ~Application() override;

    Ref<vx::MenuBar> MenuBar() const { return menuBar_; }
    void MenuBar(Ref<vx::MenuBar> bar);
    // The menu bar of no window that shows the application's menus where the
    // application runs without windows (_RunsWithoutWindows), else null.
    QMenuBar* _ScreenMenuBar() const { return screenMenuBar_.get(); }

    // Binds a handler to the menu item of that Name, anywhere in any menu bar.
    void _AddMenuHandler(const String& itemName, MenuHandler handler);
    bool _HasMenuHandler(const String& itemName) const;
    // Runs the handler bound to the name under the exception handling; false
    // when there is none or it declined the command.
    bool _HandleMenuCommand(const String& itemName);

    // Must be called before the toolkit comes up (_RuntimeInitExternalClasses).
    static void _SetSupportsHiDPI(bool supported);

    // Asked before the default report of an uncaught failure; true means the
    // application has dealt with it. Unset, every failure is reported.
    std::function<bool(const RuntimeException&)> UnhandledException;

private:
    Ref<vx::MenuBar> menuBar_;
    std::unique_ptr<QMenuBar> screenMenuBar_;
    std::map<String, MenuHandler> menuHandlers_;
};

// Makes the object the application of the process (nil forgets it).
void _RuntimeRegisterAppObject(Ref<Application> app);
Ref<Application> _GetAppObject();

// The menu bars of the application and of the open windows, each once.
std::vector<Ref<vx::MenuBar>> _MenuBarsInUse();
// Brings the enabled state of the items of every menu bar in use up to date,
// as the focus moves between controls.
void _UpdateMenuEnabling();

// Runs a handler as the toolkit runs every event: an EndException or a
// ThreadEndException ends it quietly, any other RuntimeException goes to the
// application's UnhandledException and then to the default report. Other
// exceptions are raised on.
void _CallFunctionWithExceptionHandling(const std::function<void()>& function);

}  // namespace vx
