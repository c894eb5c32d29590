#include "engine/core/StandardStreams.h"

#include <unistd.h>

#include "engine/core/EngineFailure.h"
#include "runtime/files/FullCalls.h"
#include "runtime/files/SystemCalls.h"

namespace vx::engine {

void WriteStandardOutput(std::string_view bytes) {
    const FullResult written = writeFully(STDOUT_FILENO, bytes.data(), bytes.size());
    if (written.error != 0) {
        failSystem("standard output", written.error);
    }
}

bool StandardErrorIsTerminal() {
    return systemCalls.isatty(STDERR_FILENO) == 1;
}

}  // namespace vx::engine
