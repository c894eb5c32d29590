#pragma once

#include <sys/types.h>

#include "runtime/files/SystemCalls.h"

namespace vx::engine {

// The process's file mode mask. It can only be read by setting it, so it is
// set back at once; the engine asks for it only on its one thread of control.
inline mode_t CurrentUmask() {
    const mode_t mask = systemCalls.umask(0);
    systemCalls.umask(mask);
    return mask;
}

}  // namespace vx::engine
