// Copying from one stream to another: inside the kernel where it can, through
// the buffer where it cannot, in bounded blocks either way.

#include <algorithm>
#include <cerrno>

#include "runtime/files/BinaryStream.h"
#include "runtime/files/SystemCalls.h"

namespace vx {
namespace {

// One kernel copy at a time moves at most this much, so a huge file is
// copied in a loop rather than in one call that cannot be interrupted.
constexpr std::size_t kKernelCopyBlock = std::size_t{64} << 20;

// Failures of copy_file_range that only mean "not between these two files":
// the plain copy through the buffer takes over.
bool kernelCopyUnsupported(int error) {
    return error == EXDEV || error == EINVAL || error == ENOSYS || error == EOPNOTSUPP;
}

}  // namespace

// The kernel copies between the two files without the data passing through
// this process. Leaves remaining as it is when the kernel cannot copy between
// these files, for the buffered copy to finish.
bool BinaryStream::copyInKernel(BinaryStream& source, uint64_t& remaining) {
    if (!flushBuffer()) {
        return false;
    }
    auto in = static_cast<off_t>(source.position_);
    auto out = static_cast<off_t>(position_);
    bool copied = true;
    while (remaining > 0) {
        const auto block =
            static_cast<std::size_t>(std::min<uint64_t>(remaining, kKernelCopyBlock));
        const ssize_t moved = systemCalls.copy_file_range(source.fd_, &in, fd_, &out, block, 0);
        if (moved < 0 && errno == EINTR) {
            continue;
        }
        if (moved < 0) {
            copied = kernelCopyUnsupported(errno) || fail(errno);
            break;
        }
        if (moved == 0) {
            break;
        }
        remaining -= static_cast<uint64_t>(moved);
    }
    source.position_ = static_cast<uint64_t>(in);
    position_ = static_cast<uint64_t>(out);
    return copied;
}

// Reads the source straight into the free end of this stream's buffer, so a
// small file costs one read and no write of its own.
bool BinaryStream::copyThroughBuffer(BinaryStream& source, uint64_t& remaining) {
    while (remaining > 0) {
        const bool appendsToBuffer =
            bufferFill_ > 0 && position_ == bufferStart_ + bufferFill_ && bufferFill_ < kBufferSize;
        if (!appendsToBuffer) {
            if (!flushBuffer()) {
                return false;
            }
            ensureBuffer();
            bufferStart_ = position_;
        }
        const auto block =
            static_cast<std::size_t>(std::min<uint64_t>(remaining, kBufferSize - bufferFill_));
        const ssize_t read = source.readAt(buffer_.get() + bufferFill_, block, source.position_);
        if (read < 0) {
            lastErrorCode_ = source.lastErrorCode_;
            return false;
        }
        if (read == 0) {
            break;
        }
        bufferFill_ += static_cast<std::size_t>(read);
        dirty_ = true;
        position_ += static_cast<uint64_t>(read);
        source.position_ += static_cast<uint64_t>(read);
        remaining -= static_cast<uint64_t>(read);
    }
    return true;
}

// Takes the bytes that the source has already read ahead from its buffer, so
// that a run of short copies between small reads, as a package of many small
// files asks for, reads each block of the source file once.
bool BinaryStream::copyFromSourceBuffer(BinaryStream& source, uint64_t& remaining) {
    if (&source == this || source.dirty_ || !source.bufferHolds(source.position_)) {
        return true;
    }
    const auto offset = static_cast<std::size_t>(source.position_ - source.bufferStart_);
    const auto chunk =
        static_cast<std::size_t>(std::min<uint64_t>(remaining, source.bufferFill_ - offset));
    if (!writeBytes(source.buffer_.get() + offset, chunk)) {
        return false;
    }
    source.position_ += chunk;
    remaining -= chunk;
    return true;
}

void BinaryStream::CopyFrom(BinaryStream& source, uint64_t count) {
    beginOperation();
    bool copying = (fd_ >= 0 && writable_) || fail(EBADF);
    uint64_t remaining = count;
    if (copying) {
        copying = copyFromSourceBuffer(source, remaining);
    }
    if (remaining == 0) {
        CheckForError();
        return;
    }
    // The source's position is the truth; what its buffer holds must be on
    // disk before the copy reads the file directly.
    if (copying && !source.flushBuffer()) {
        lastErrorCode_ = source.lastErrorCode_;
        copying = false;
    }
    if (copying && remaining >= kBufferSize) {
        copying = copyInKernel(source, remaining);
    }
    if (copying) {
        copyThroughBuffer(source, remaining);
    }
    CheckForError();
}

}  // namespace vx
