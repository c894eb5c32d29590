#include "engine/comparison/ContentsCompare.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "engine/core/EngineFailure.h"
#include "runtime/files/FileErrorCode.h"
#include "runtime/files/SystemCalls.h"

namespace vx::engine {
namespace {

// Few calls for a large file, yet small beside what the command may use:
// both buffers together stay far below the memory of the records' index.
constexpr std::size_t kBlockBytes = std::size_t{256} << 10;

// Reads until count bytes or the end of the file, going on after a signal or
// a short read; the bytes read, or -1 with errno set.
ssize_t readFully(int fd, char* data, std::size_t count, uint64_t offset) {
    std::size_t got = 0;
    while (got < count) {
        const ssize_t read =
            systemCalls.pread(fd, data + got, count - got, static_cast<off_t>(offset + got));
        if (read < 0 && errno == EINTR) {
            continue;
        }
        if (read < 0) {
            return -1;
        }
        if (read == 0) {
            break;
        }
        got += static_cast<std::size_t>(read);
    }
    return static_cast<ssize_t>(got);
}

}  // namespace

ContentsCompare::ContentsCompare(Package before, Package after)
    : before_(std::move(before)), after_(std::move(after)), buffers_(2 * kBlockBytes) {}

bool ContentsCompare::same(uint64_t beforeOffset, uint64_t afterOffset, uint64_t length) {
    char* const beforeBlock = buffers_.data();
    char* const afterBlock = buffers_.data() + kBlockBytes;
    for (uint64_t done = 0; done < length;) {
        const auto count = static_cast<std::size_t>(std::min<uint64_t>(length - done, kBlockBytes));
        readBlock(before_, beforeBlock, count, beforeOffset + done);
        readBlock(after_, afterBlock, count, afterOffset + done);
        if (std::memcmp(beforeBlock, afterBlock, count) != 0) {
            return false;
        }
        done += count;
    }
    return true;
}

void ContentsCompare::readBlock(const Package& package, char* into, std::size_t count,
                                uint64_t offset) const {
    const ssize_t read = readFully(package.fd, into, count, offset);
    if (read < 0) {
        failSystem(package.path, errno);
    }
    // The walk found the package whole; one that is shorter now changed since.
    if (static_cast<std::size_t>(read) < count) {
        throw EngineFailure(FailureKind::kSystem,
                            package.path + ": " + describeFileError(EndOfStreamErrorCode));
    }
}

}  // namespace vx::engine
