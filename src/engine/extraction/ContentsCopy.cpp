#include "engine/extraction/ContentsCopy.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <new>

#include "engine/core/Interruption.h"
#include "runtime/files/FullCalls.h"
#include "runtime/files/SystemCalls.h"

namespace vx::engine {
namespace {

// Direct writes want the buffer, the offset and the length on boundaries of
// the disk's blocks; a page is a multiple of every block size in use.
constexpr std::size_t kAlignment = 4096;
// Large enough that a large file takes few calls, small enough to leave the
// memory of the command flat.
constexpr std::size_t kBufferBytes = std::size_t{4} << 20;
// From this size on a file bypasses the page cache. Written through the cache
// each 4 KiB page of it is a new page to allocate and fill, which on virtual
// machines that hand free memory back to their host is most of the cost of an
// extraction; the disk takes such a file faster than the cache fills.
constexpr uint64_t kDirectFromBytes = uint64_t{8} << 20;

bool setDirect(int fd, bool direct) {
    const int flags = systemCalls.fcntl(fd, F_GETFL, 0);
    return flags >= 0 &&
           systemCalls.fcntl(fd, F_SETFL, direct ? flags | O_DIRECT : flags & ~O_DIRECT) == 0;
}

// Writes count bytes: whole blocks directly while direct holds, the rest, and
// everything once a direct write is refused, through the cache. 0, or the
// errno of the write that failed.
int writeAllowingDirect(int fd, const char* data, std::size_t count, bool& direct) {
    std::size_t done = 0;
    while (done < count) {
        const std::size_t piece = direct ? (count - done) / kAlignment * kAlignment : count - done;
        if (direct && (piece == 0 || done % kAlignment != 0)) {
            direct = false;
            if (!setDirect(fd, false)) {
                return errno;
            }
            continue;
        }
        const FullResult written = writeFully(fd, data + done, piece);
        done += static_cast<std::size_t>(written.bytes);
        if (written.error == EINVAL && direct) {
            direct = false;
            if (!setDirect(fd, false)) {
                return errno;
            }
            continue;
        }
        if (written.error != 0) {
            return written.error;
        }
    }
    return 0;
}

// The kernel copies between the two files without the bytes passing through
// this process: one call for a small file, and a call for every
// kDirectFromBytes of a large one that cannot be written directly, so that a
// signal is not held up for the whole file. False when it cannot copy between
// these two files, with offset and length left for the copy through memory.
bool copyInKernel(int package, uint64_t& offset, uint64_t& length, int out,
                  ContentsCopy::Outcome& outcome) {
    while (length > 0 && InterruptingSignal() == 0) {
        const uint64_t piece = std::min(length, kDirectFromBytes);
        const FullResult copied =
            copyInKernelFully(package, offset, out, std::nullopt, piece, piece);
        offset += copied.bytes;
        length -= copied.bytes;
        if (kernelCopyUnsupported(copied.error)) {
            return false;
        }
        if (copied.error != 0) {
            (kernelCopyDestinationFailed(copied.error) ? outcome.writeError : outcome.readError) =
                copied.error;
            return true;
        }
        if (copied.bytes < piece) {
            outcome.packageEnded = true;
            return true;
        }
    }
    return true;
}

}  // namespace

void ContentsCopy::Free::operator()(char* block) const {
    std::free(block);
}

ContentsCopy::ContentsCopy()
    : buffer_(static_cast<char*>(std::aligned_alloc(kAlignment, kBufferBytes))) {
    if (!buffer_) {
        throw std::bad_alloc();
    }
}

ContentsCopy::Outcome ContentsCopy::copy(int package, uint64_t offset, uint64_t length, int out) {
    Outcome outcome;
    // A file system that cannot write directly takes the file through the cache.
    bool direct = length >= kDirectFromBytes && setDirect(out, true);
    if (!direct && copyInKernel(package, offset, length, out, outcome)) {
        return outcome;
    }
    while (length > 0) {
        // Between blocks, so that a large file does not hold a signal up;
        // the caller stops the work once the file is closed.
        if (InterruptingSignal() != 0) {
            return outcome;
        }
        const auto wanted = static_cast<std::size_t>(std::min<uint64_t>(length, kBufferBytes));
        const FullResult read = readFullyAt(package, buffer_.get(), wanted, offset);
        if (read.error != 0) {
            outcome.readError = read.error;
            return outcome;
        }
        if (read.bytes < wanted) {
            outcome.packageEnded = true;
            return outcome;
        }
        outcome.writeError = writeAllowingDirect(out, buffer_.get(), wanted, direct);
        if (outcome.writeError != 0) {
            return outcome;
        }
        offset += wanted;
        length -= wanted;
    }
    return outcome;
}

}  // namespace vx::engine
