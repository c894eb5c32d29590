#include "runtime/core/RuntimeException.h"

namespace vx {

ThreadAccessingUIException::ThreadAccessingUIException() {
    Message =
        "A thread has attempted to manipulate a user interface element. This can only be done "
        "from the application's main thread.";
}

}  // namespace vx
