#pragma once

#include <cstdint>

// The fixed order in which the application comes up: file types, then the
// application object with its menu bar, then the menu handlers, then the
// toolkit and the first window, then the main loop.
namespace vx {

// The exit code of the process, kept by main.
inline int32_t exitCode = 0;

// The whole run from the exception helper to the end of the main loop. A
// failure that comes out of any step goes to the report of uncaught
// failures, and _Main returns normally.
void _Main();
void _EarlyStartup();
void _InitFileTypes();
void _NewAppInstance();
void _ApplicationAddMenuHandlers();
void _LateStartup();
void _MakeDefaultView();

}  // namespace vx
