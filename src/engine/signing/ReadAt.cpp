#include "engine/signing/ReadAt.h"

#include <cerrno>

#include "engine/core/EngineFailure.h"
#include "runtime/files/SystemCalls.h"

namespace vx::engine {

std::size_t ReadAt(int fd, const std::string& path, std::span<unsigned char> into,
                   uint64_t offset) {
    while (true) {
        const ssize_t got =
            systemCalls.pread(fd, into.data(), into.size(), static_cast<off_t>(offset));
        if (got >= 0) {
            return static_cast<std::size_t>(got);
        }
        if (errno != EINTR) {
            failSystem(path, errno);
        }
    }
}

}  // namespace vx::engine
