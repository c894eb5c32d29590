#pragma once

#include <cstdint>
#include <functional>

#include "runtime/text/String.h"

namespace vx {

// Brings the toolkit up (once): the application object of the toolkit, the
// real dialogs installed behind the toolkit-free seam, the report of uncaught
// failures. Everything that shows a window needs this first.
void _RuntimeInitExternalClasses();
// The name that titles the application's message boxes, the drawing stored
// with the application that stands for it in window frames, and the name of
// its installed desktop entry, by which the desktop matches its windows to
// the entry's icon and name.
void _SetApplicationIdentity(const String& displayName, const String& iconResource,
                             const String& desktopEntry);
// Calls the function once the toolkit is ready; it makes the first window.
void _RunFrameworkInitialization(const std::function<void()>& lateStartup);
// The main loop; returns when the application quits.
void _RuntimeRun();

// Registers a step of shutdown. They run in the reverse order of registration,
// so what was set up last is taken down first.
void RuntimeAddFinalizer(std::function<void()> finalizer);
void RuntimePerformFinalizers();
// Takes the toolkit down and gives the exit code of the main loop.
int32_t RuntimeExit();

}  // namespace vx
