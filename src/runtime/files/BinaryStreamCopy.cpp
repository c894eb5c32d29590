// Copying from one stream to another: inside the kernel where it can, through
// the buffer where it cannot, in bounded blocks either way.

#include <algorithm>
#include <cerrno>

#include "runtime/files/BinaryStream.h"
#include "runtime/files/FullCalls.h"
#include "runtime/files/SystemCalls.h"

namespace vx {
namespace {

// One kernel copy at a time moves at most this much, so a huge file is
// copied in a loop rather than in one call that cannot be interrupted.
constexpr std::size_t kKernelCopyBlock = std::size_t{64} << 20;

}  // namespace

// The kernel copies between the two files without the data passing through
// this process. Leaves remaining as it is when the kernel cannot copy between
// these files, for the buffered copy to finish.
BinaryStream::CopyFailure BinaryStream::copyInKernel(BinaryStream& source, uint64_t& remaining) {
    if (!flushBuffer()) {
        return CopyFailure::Destination;
    }
    const FullResult copied = copyInKernelFully(source.fd_, source.position_, fd_, position_,
                                                remaining, kKernelCopyBlock);
    source.position_ += copied.bytes;
    position_ += copied.bytes;
    remaining -= copied.bytes;
    if (copied.error == 0 || kernelCopyUnsupported(copied.error)) {
        return CopyFailure::None;
    }
    fail(copied.error);
    // Should a disk that fails while writing be taken for the source, that
    // costs bytes of a build that has failed anyway; the other way round
    // would leave part of an unreadable file in the package.
    return kernelCopyDestinationFailed(copied.error) ? CopyFailure::Destination
                                                     : CopyFailure::Source;
}

// Reads the source straight into the free end of this stream's buffer, so a
// small file costs one read and no write of its own.
BinaryStream::CopyFailure BinaryStream::copyThroughBuffer(BinaryStream& source,
                                                          uint64_t& remaining) {
    while (remaining > 0) {
        const bool appendsToBuffer =
            bufferFill_ > 0 && position_ == bufferStart_ + bufferFill_ && bufferFill_ < kBufferSize;
        if (!appendsToBuffer) {
            if (!flushBuffer()) {
                return CopyFailure::Destination;
            }
            ensureBuffer();
            bufferStart_ = position_;
        }
        const auto block =
            static_cast<std::size_t>(std::min<uint64_t>(remaining, kBufferSize - bufferFill_));
        const ssize_t read = source.readAt(buffer_.get() + bufferFill_, block, source.position_);
        if (read < 0) {
            lastErrorCode_ = source.lastErrorCode_;
            return CopyFailure::Source;
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
    return CopyFailure::None;
}

// Takes the bytes that the source has already read ahead from its buffer, so
// that a run of short copies between small reads, as a package of many small
// files asks for, reads each block of the source file once.
BinaryStream::CopyFailure BinaryStream::copyFromSourceBuffer(BinaryStream& source,
                                                             uint64_t& remaining) {
    if (&source == this || source.dirty_ || !source.bufferHolds(source.position_)) {
        return CopyFailure::None;
    }
    const auto offset = static_cast<std::size_t>(source.position_ - source.bufferStart_);
    const auto chunk =
        static_cast<std::size_t>(std::min<uint64_t>(remaining, source.bufferFill_ - offset));
    if (!writeBytes(source.buffer_.get() + offset, chunk)) {
        return CopyFailure::Destination;
    }
    source.position_ += chunk;
    remaining -= chunk;
    return CopyFailure::None;
}

// Takes back what a copy wrote from start on, from the buffer and from the
// file, which then ends at start. Only a copy whose source failed comes here,
// so the copy that succeeds makes no call for it. Should the truncation fail
// as well, the source's failure is still the one told, being the cause.
void BinaryStream::takeBackCopy(uint64_t start) {
    if (position_ == start) {
        return;
    }
    if (bufferFill_ > 0 && bufferStart_ + bufferFill_ > start) {
        bufferFill_ = bufferStart_ < start ? static_cast<std::size_t>(start - bufferStart_) : 0;
        dirty_ = dirty_ && bufferFill_ > 0;
    }
    position_ = start;
    systemCalls.ftruncate(fd_, static_cast<off_t>(start));
}

void BinaryStream::CopyFrom(BinaryStream& source, uint64_t count) {
    beginOperation();
    const uint64_t start = position_;
    uint64_t remaining = count;
    CopyFailure failure =
        (fd_ >= 0 && writable_) || fail(EBADF) ? CopyFailure::None : CopyFailure::Destination;
    if (failure == CopyFailure::None) {
        failure = copyFromSourceBuffer(source, remaining);
    }
    // The source's position is the truth; what its buffer holds must be on
    // disk before the copy reads the file directly.
    if (failure == CopyFailure::None && remaining > 0 && !source.flushBuffer()) {
        lastErrorCode_ = source.lastErrorCode_;
        failure = CopyFailure::Source;
    }
    if (failure == CopyFailure::None && remaining >= kBufferSize) {
        failure = copyInKernel(source, remaining);
    }
    if (failure == CopyFailure::None && remaining > 0) {
        failure = copyThroughBuffer(source, remaining);
    }
    if (failure == CopyFailure::Source) {
        takeBackCopy(start);
    }
    CheckForError();
}

}  // namespace vx
