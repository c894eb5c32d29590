#pragma once

#include "runtime/ui/MenuBar.h"

namespace vx {

// The application's one menu bar, with the File and Edit menus. The same
// object stands in the application and in every window, so its File commands
// work whether a window is open or not.
class MainMenuBar : public MenuBar {
public:
    // Builds the File menu, then the Edit menu.
    void Constructor();
    // The one instance, made on first use and kept until shutdown.
    static Ref<MainMenuBar> _Instance();

private:
    void Untitled0();
    void Untitled1();

    static inline Ref<MainMenuBar> _implicitInstance;
};

}  // namespace vx
