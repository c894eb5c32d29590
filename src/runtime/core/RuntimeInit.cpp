#include "runtime/core/RuntimeInit.h"

#include <csignal>

namespace vx {

void RuntimeInit() {
    std::signal(SIGXFSZ, SIG_IGN);
}

}  // namespace vx
