#pragma once

#include "runtime/ui/MenuItem.h"

class QMenuBar;

namespace vx {

// The root of a menu tree. Its children are the menus across the top; the
// same bar may stand in any number of windows and in the application.
class MenuBar : public MenuItem {
public:
    // Shows the bar's menus in a toolkit menu bar, now and as they are appended.
    void _AttachTo(QMenuBar* bar);
    void _Detach(QMenuBar* bar);

private:
    friend class MenuItem;
    void _ChildAppended(const Ref<MenuItem>& child);

    std::vector<QMenuBar*> attached_;
};

}  // namespace vx
