#include "engine/core/ReadUpTo.h"

#include <fcntl.h>

#include <cerrno>

#include "engine/core/EngineFailure.h"
#include "engine/core/OwnedDescriptor.h"
#include "runtime/files/FullCalls.h"

namespace vx::engine {

std::size_t ReadUpTo(const std::string& path, char* data, std::size_t capacity) {
    const OwnedDescriptor file(systemCalls.openat(AT_FDCWD, path.c_str(), O_RDONLY | O_CLOEXEC, 0));
    if (file.fd() < 0) {
        failSystem(path, errno);
    }
    const FullResult read = readFully(file.fd(), data, capacity);
    if (read.error != 0) {
        failSystem(path, read.error);
    }
    return static_cast<std::size_t>(read.bytes);
}

}  // namespace vx::engine
