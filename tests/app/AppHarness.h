#pragma once

#include <QAction>
#include <QMenu>

#include "app/MainMenuBar.h"
#include "app/Startup.h"
#include "runtime/ui/RuntimeLifecycle.h"
#include "runtime/ui/Window.h"

namespace vx::test {

// Brings the application up as the executable does, short of the main loop.
inline void StartApplication() {
    _EarlyStartup();
    _RunFrameworkInitialization(_LateStartup);
}

// Chooses the menu item as the user would: opens its menu, which brings the
// enabled state up to date, and triggers its toolkit action.
inline void Choose(const char* itemName) {
    Ref<MenuItem> item = MainMenuBar::_Instance()->_Lookup(itemName);
    emit item->_Parent()->_Menu()->aboutToShow();
    item->_Action()->trigger();
}

}  // namespace vx::test
