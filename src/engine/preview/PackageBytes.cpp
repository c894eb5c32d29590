#include "engine/preview/PackageBytes.h"

#include <cerrno>

#include "runtime/files/SystemCalls.h"

namespace vx::engine {

bool ReadPackageBytes(int fd, uint64_t offset, std::size_t length, std::string& bytes) {
    bytes.resize(length);
    std::size_t done = 0;
    while (done < length) {
        const ssize_t got = systemCalls.pread(fd, bytes.data() + done, length - done,
                                              static_cast<off_t>(offset + done));
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got <= 0) {
            // The package was cut short since it was checked.
            errno = got == 0 ? EIO : errno;
            return false;
        }
        done += static_cast<std::size_t>(got);
    }
    return true;
}

}  // namespace vx::engine
