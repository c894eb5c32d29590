// The stream's system calls on its file, each retried when a signal
// interrupted it and repeated until it has done all that was asked.

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>

#include "runtime/files/BinaryStream.h"
#include "runtime/files/SystemCalls.h"

namespace vx {

bool BinaryStream::writeAt(const char* data, std::size_t count, uint64_t offset) {
    while (count > 0) {
        const ssize_t written = systemCalls.pwrite(fd_, data, count, static_cast<off_t>(offset));
        if (written < 0) {
            if (errno == EINTR) {
                continue;
            }
            return fail(errno);
        }
        data += written;
        count -= static_cast<std::size_t>(written);
        offset += static_cast<uint64_t>(written);
    }
    return true;
}

ssize_t BinaryStream::readAt(char* data, std::size_t count, uint64_t offset) {
    std::size_t got = 0;
    while (got < count) {
        const ssize_t read =
            systemCalls.pread(fd_, data + got, count - got, static_cast<off_t>(offset + got));
        if (read < 0) {
            if (errno == EINTR) {
                continue;
            }
            fail(errno);
            return -1;
        }
        if (read == 0) {
            break;
        }
        got += static_cast<std::size_t>(read);
    }
    return static_cast<ssize_t>(got);
}

bool BinaryStream::fileLength(uint64_t& length) {
    struct stat info;
    if (systemCalls.fstat(fd_, &info) != 0) {
        return fail(errno);
    }
    length = static_cast<uint64_t>(info.st_size);
    if (dirty_) {
        length = std::max<uint64_t>(length, bufferStart_ + bufferFill_);
    }
    return true;
}

}  // namespace vx
