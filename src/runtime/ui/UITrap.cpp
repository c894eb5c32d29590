#include "runtime/ui/UITrap.h"

#include <thread>

#include "runtime/core/RuntimeException.h"
#include "runtime/ui/Application.h"

namespace vx {

namespace {
// Static initialisation runs on the thread that later enters main.
const std::thread::id mainThread = std::this_thread::get_id();
}  // namespace

void _UITrap() {
    if (!_GetAppObject()) {
        return;
    }
    if (std::this_thread::get_id() != mainThread) {
        throw ThreadAccessingUIException();
    }
}

}  // namespace vx
