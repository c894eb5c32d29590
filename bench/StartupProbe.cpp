// The App Builder's start-up, exactly as its main runs it, with the probe
// that reports the first window.
#include "FirstWindowProbe.h"
#include "app/Startup.h"
#include "runtime/ui/RuntimeLifecycle.h"

int main() {
    InstallFirstWindowProbe();
    vx::_Main();
    vx::RuntimePerformFinalizers();
    return vx::RuntimeExit();
}
