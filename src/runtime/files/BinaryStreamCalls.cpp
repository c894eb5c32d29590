// The stream's system calls on its file, each retried when a signal
// interrupted it and repeated until it has done all that was asked, as the
// full calls do.

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>

#include "runtime/files/BinaryStream.h"
#include "runtime/files/FullCalls.h"
#include "runtime/files/SystemCalls.h"

namespace vx {

bool BinaryStream::writeAt(const char* data, std::size_t count, uint64_t offset) {
    const FullResult written = writeFullyAt(fd_, data, count, offset);
    return written.error == 0 || fail(written.error);
}

ssize_t BinaryStream::readAt(char* data, std::size_t count, uint64_t offset) {
    const FullResult read = readFullyAt(fd_, data, count, offset);
    if (read.error != 0) {
        fail(read.error);
        return -1;
    }
    return static_cast<ssize_t>(read.bytes);
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
