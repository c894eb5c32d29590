#pragma once

#include "runtime/ui/Window.h"

namespace vx {

// The wizard window in which a developer describes a web app and builds its
// package.
class frmMain : public Window {
public:
    // The window that the code reaches by the class's own name: the open one
    // of this class, or a new one.
    static Ref<frmMain> _ImplicitInstance();

protected:
    void Layout() override;
};

}  // namespace vx
