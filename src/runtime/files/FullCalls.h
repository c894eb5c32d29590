#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>

namespace vx {

// Reads, writes and kernel copies that are retried when a signal interrupts
// them and repeated until they have moved all that was asked, each through
// the SystemCalls table; the one place where these loops live.

// What a full call did: the bytes it moved, and the errno of the call that
// stopped it early (0 when none failed).
struct FullResult {
    uint64_t bytes = 0;
    int error = 0;
};

// count bytes at offset of fd into data; fewer only at the end of the file
// or on an error.
FullResult readFullyAt(int fd, char* data, std::size_t count, uint64_t offset);

// count bytes from fd's own position into data; fewer only at the end of
// the input or on an error. Reads on until then, so a pipe that hands its
// bytes over in pieces still fills data.
FullResult readFully(int fd, char* data, std::size_t count);

// count bytes of data at offset of fd, handing the kernel at most piece bytes
// a call. A call that writes nothing counts as EIO, as it would never end.
FullResult writeFullyAt(int fd, const char* data, std::size_t count, uint64_t offset,
                        std::size_t piece = std::numeric_limits<std::size_t>::max());

// count bytes of data at fd's own position, as a pipe or a file opened for
// appending takes them.
FullResult writeFully(int fd, const char* data, std::size_t count);

// count bytes from inOffset of in to out, at outOffset or, without one, at
// out's own position, inside the kernel in calls of at most block bytes;
// fewer when in ends first or on an error.
FullResult copyInKernelFully(int in, uint64_t inOffset, int out, std::optional<uint64_t> outOffset,
                             uint64_t count, uint64_t block);

// A failure of copy_file_range that only means "not between these two
// files": a copy through memory will do it.
bool kernelCopyUnsupported(int error);

// copy_file_range does not say which of its two files failed. These errors
// can only come from writing: a full disk or quota, a file grown past its
// limit, a destination that is read-only or immutable. Everything else, EIO
// above all, is taken as the source's.
bool kernelCopyDestinationFailed(int error);

}  // namespace vx
