#pragma once

#include "runtime/ui/MenuItem.h"

namespace vx {

// A menu item that ends the program by its own action: every window is closed
// and the main loop left. No handler of the application is asked.
class QuitMenuItem : public MenuItem {
public:
    void _Choose() override;
    bool _CanAct() const override { return true; }
};

}  // namespace vx
