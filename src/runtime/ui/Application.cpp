#include "runtime/ui/Application.h"

#include <QApplication>
#include <QMenuBar>
#include <algorithm>

#include "runtime/ui/MenuBar.h"
#include "runtime/ui/ScreenMenuBar.h"
#include "runtime/ui/UnhandledException.h"
#include "runtime/ui/Window.h"

namespace vx {

namespace {
Ref<Application> appObject;
}  // namespace

std::vector<Ref<MenuBar>> _MenuBarsInUse() {
    std::vector<Ref<MenuBar>> bars;
    const auto add = [&bars](const Ref<MenuBar>& bar) {
        if (bar && std::find(bars.begin(), bars.end(), bar) == bars.end()) {
            bars.push_back(bar);
        }
    };
    if (appObject) {
        add(appObject->MenuBar());
    }
    for (const Ref<Window>& window : _OpenWindows()) {
        add(window->MenuBar());
    }
    return bars;
}

void _UpdateMenuEnabling() {
    for (const Ref<MenuBar>& bar : _MenuBarsInUse()) {
        bar->_UpdateEnabled();
    }
}

Application::Application() = default;
Application::~Application() {
    // The bar outlives the application; the screen's menu bar goes with it.
    MenuBar(nullptr);
}

void Application::MenuBar(Ref<vx::MenuBar> bar) {
    if (menuBar_ && screenMenuBar_) {
        menuBar_->_Detach(screenMenuBar_.get());
    }
    menuBar_ = std::move(bar);
    if (!menuBar_) {
        return;
    }
    // A menu bar without a parent is the one the desktop shows when no
    // window is in front.
    if (_RunsWithoutWindows()) {
        if (!screenMenuBar_) {
            screenMenuBar_ = std::make_unique<QMenuBar>();
        }
        menuBar_->_AttachTo(screenMenuBar_.get());
    }
    menuBar_->_UpdateEnabled();
}

void Application::_AddMenuHandler(const String& itemName, MenuHandler handler) {
    menuHandlers_[itemName] = std::move(handler);
    _UpdateMenuEnabling();
}

bool Application::_HasMenuHandler(const String& itemName) const {
    return menuHandlers_.contains(itemName);
}

bool Application::_HandleMenuCommand(const String& itemName) {
    auto found = menuHandlers_.find(itemName);
    if (found == menuHandlers_.end()) {
        return false;
    }
    MenuHandler handler = found->second;
    bool handled = true;
    _CallFunctionWithExceptionHandling([&] { handled = handler(); });
    return handled;
}

void Application::_SetSupportsHiDPI(bool supported) {
    // Scaling for dense screens is always on in this toolkit; without support
    // the program asks to be drawn at one device pixel per point.
    if (!supported && QApplication::instance() == nullptr) {
        qputenv("QT_ENABLE_HIGHDPI_SCALING", "0");
    }
}

void _RuntimeRegisterAppObject(Ref<Application> app) {
    appObject = std::move(app);
}

Ref<Application> _GetAppObject() {
    return appObject;
}

void _CallFunctionWithExceptionHandling(const std::function<void()>& function) {
    try {
        function();
    } catch (const EndException&) {
    } catch (const ThreadEndException&) {
    } catch (const RuntimeException& failure) {
        Ref<Application> app = appObject;
        if (app && app->UnhandledException && app->UnhandledException(failure)) {
            return;
        }
        RuntimeUnhandledException(failure);
    }
}

}  // namespace vx
