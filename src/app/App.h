#pragma once

#include "runtime/ui/Application.h"

namespace vx {

// The application object: owns the two commands of the File menu that work
// with or without a window.
class App : public Application {
public:
    // The registered application object, checked to be an App.
    static Ref<App> _Instance();

    // "New Build...": a fresh wizard window, whatever else is open.
    bool _mnuNewBuild_Action();
    // "Extract app file...": unpacks a chosen package into a new temporary
    // folder and opens that folder for the user.
    bool _mnuExtract_Action();
};

}  // namespace vx
