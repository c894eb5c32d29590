#include "runtime/files/FullCalls.h"

#include <algorithm>
#include <cerrno>

#include "runtime/files/SystemCalls.h"

namespace vx {
namespace {

// Calls move until done, each given what is left and where; a call's result
// is what the system call returned. EINTR is retried, 0 ends the loop with
// nothing more to move.
template <class Call>
FullResult repeat(uint64_t count, Call&& call) {
    FullResult result;
    while (result.bytes < count) {
        const ssize_t moved = call(result.bytes, count - result.bytes);
        if (moved < 0 && errno == EINTR) {
            continue;
        }
        if (moved <= 0) {
            result.error = moved < 0 ? errno : 0;
            break;
        }
        result.bytes += static_cast<uint64_t>(moved);
    }
    return result;
}

// A write that moved nothing would be asked again for ever.
FullResult nothingWrittenIsAnError(FullResult result, uint64_t count) {
    if (result.error == 0 && result.bytes < count) {
        result.error = EIO;
    }
    return result;
}

}  // namespace

FullResult readFullyAt(int fd, char* data, std::size_t count, uint64_t offset) {
    return repeat(count, [&](uint64_t done, uint64_t left) {
        return systemCalls.pread(fd, data + done, static_cast<std::size_t>(left),
                                 static_cast<off_t>(offset + done));
    });
}

FullResult readFully(int fd, char* data, std::size_t count) {
    return repeat(count, [&](uint64_t done, uint64_t left) {
        return systemCalls.read(fd, data + done, static_cast<std::size_t>(left));
    });
}

FullResult writeFullyAt(int fd, const char* data, std::size_t count, uint64_t offset,
                        std::size_t piece) {
    const auto write = [&](uint64_t done, uint64_t left) {
        const auto bytes = static_cast<std::size_t>(std::min<uint64_t>(left, piece));
        return systemCalls.pwrite(fd, data + done, bytes, static_cast<off_t>(offset + done));
    };
    return nothingWrittenIsAnError(repeat(count, write), count);
}

FullResult writeFully(int fd, const char* data, std::size_t count) {
    const auto write = [&](uint64_t done, uint64_t left) {
        return systemCalls.write(fd, data + done, static_cast<std::size_t>(left));
    };
    return nothingWrittenIsAnError(repeat(count, write), count);
}

FullResult copyInKernelFully(int in, uint64_t inOffset, int out, std::optional<uint64_t> outOffset,
                             uint64_t count, uint64_t block) {
    return repeat(count, [&](uint64_t done, uint64_t left) {
        auto from = static_cast<off_t>(inOffset + done);
        auto to = static_cast<off_t>(outOffset.value_or(0) + done);
        return systemCalls.copy_file_range(in, &from, out, outOffset ? &to : nullptr,
                                           static_cast<std::size_t>(std::min(left, block)), 0);
    });
}

bool kernelCopyUnsupported(int error) {
    return error == EXDEV || error == EINVAL || error == ENOSYS || error == EOPNOTSUPP;
}

bool kernelCopyDestinationFailed(int error) {
    return error == ENOSPC || error == EDQUOT || error == EFBIG || error == EROFS || error == EPERM;
}

}  // namespace vx
