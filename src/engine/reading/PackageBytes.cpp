#include "engine/reading/PackageBytes.h"

#include <cerrno>

#include "runtime/files/FullCalls.h"

namespace vx::engine {

bool ReadPackageBytes(int fd, uint64_t offset, std::size_t length, std::string& bytes) {
    bytes.resize(length);
    const FullResult read = readFullyAt(fd, bytes.data(), length, offset);
    if (read.bytes == length) {
        return true;
    }
    // Without an error, the package was cut short since it was checked.
    errno = read.error != 0 ? read.error : EIO;
    return false;
}

}  // namespace vx::engine
