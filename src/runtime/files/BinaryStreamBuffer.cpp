// The stream's buffer: writes gather in it and reach the file in large
// blocks, and reads take what it holds before they go to the file.

#include <algorithm>
#include <cstring>

#include "runtime/files/BinaryStream.h"

namespace vx {

void BinaryStream::ensureBuffer() {
    if (!buffer_) {
        buffer_ = std::make_unique_for_overwrite<char[]>(kBufferSize);
    }
}

// Writes back what the buffer holds and empties it. A block that failed is
// dropped rather than retried: its failure has been reported once.
bool BinaryStream::flushBuffer() {
    const bool wasDirty = dirty_;
    const std::size_t fill = bufferFill_;
    dirty_ = false;
    bufferFill_ = 0;
    return !wasDirty || writeAt(buffer_.get(), fill, bufferStart_);
}

void BinaryStream::setReadAhead(std::size_t bytes) {
    readAhead_ = std::clamp<std::size_t>(bytes, 1, kBufferSize);
}

bool BinaryStream::bufferHolds(uint64_t position) const {
    return bufferFill_ > 0 && position >= bufferStart_ && position < bufferStart_ + bufferFill_;
}

bool BinaryStream::writeBytes(const char* data, std::size_t count) {
    if (fd_ < 0 || !writable_) {
        return fail(EBADF);
    }
    while (count > 0) {
        const bool appendsToBuffer = bufferFill_ > 0 && position_ >= bufferStart_ &&
                                     position_ <= bufferStart_ + bufferFill_ &&
                                     position_ - bufferStart_ < kBufferSize;
        if (!appendsToBuffer) {
            if (!flushBuffer()) {
                return false;
            }
            if (count >= kBufferSize) {
                if (!writeAt(data, count, position_)) {
                    return false;
                }
                position_ += count;
                return true;
            }
            ensureBuffer();
            bufferStart_ = position_;
        }
        const auto offset = static_cast<std::size_t>(position_ - bufferStart_);
        const std::size_t chunk = std::min(count, kBufferSize - offset);
        std::memcpy(buffer_.get() + offset, data, chunk);
        bufferFill_ = std::max(bufferFill_, offset + chunk);
        dirty_ = true;
        position_ += chunk;
        data += chunk;
        count -= chunk;
    }
    return true;
}

std::size_t BinaryStream::readBytes(char* data, std::size_t count) {
    if (fd_ < 0) {
        fail(EBADF);
        return 0;
    }
    std::size_t got = 0;
    while (got < count) {
        if (bufferHolds(position_)) {
            const auto offset = static_cast<std::size_t>(position_ - bufferStart_);
            const std::size_t chunk = std::min(count - got, bufferFill_ - offset);
            std::memcpy(data + got, buffer_.get() + offset, chunk);
            position_ += chunk;
            got += chunk;
            continue;
        }
        if (!flushBuffer()) {
            break;
        }
        const std::size_t wanted = count - got;
        if (wanted >= readAhead_) {
            const ssize_t read = readAt(data + got, wanted, position_);
            if (read > 0) {
                position_ += static_cast<uint64_t>(read);
                got += static_cast<std::size_t>(read);
            }
            break;
        }
        ensureBuffer();
        const ssize_t read = readAt(buffer_.get(), readAhead_, position_);
        if (read <= 0) {
            break;
        }
        bufferStart_ = position_;
        bufferFill_ = static_cast<std::size_t>(read);
    }
    return got;
}

}  // namespace vx
