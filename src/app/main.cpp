#include "app/Startup.h"
#include "runtime/core/RuntimeInit.h"
#include "runtime/ui/RuntimeLifecycle.h"

// The program reads no argument: it has no command line.
int main() {
    vx::RuntimeInit();
    vx::_Main();
    vx::RuntimePerformFinalizers();
    vx::exitCode = vx::RuntimeExit();
    return vx::exitCode;
}
