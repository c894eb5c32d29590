#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>

#include "runtime/files/SystemCalls.h"

namespace vx::test {

// The calls that a fault can make fail outright, whatever they are given.
enum class FailingCall { none, openat, mkdirat, renameat, mkstemp, mkdtemp, fallocate };

// The failures that the substitute calls make; the default makes none.
struct Faults {
    // Every n-th call of pread, pwrite, write and copy_file_range is
    // interrupted (EINTR) before it does anything; 0 for none.
    int interruptEvery = 0;
    // The most bytes one pwrite, write or copy_file_range, or one pread,
    // moves: a short write or read.
    std::size_t writeAtMost = std::numeric_limits<std::size_t>::max();
    std::size_t readAtMost = std::numeric_limits<std::size_t>::max();
    // A disk that holds no byte at this offset of any file or beyond: a write
    // reaching it is cut short there, and the next fails with ENOSPC.
    uint64_t diskSpace = std::numeric_limits<uint64_t>::max();
    // A read reaching this offset of any file is cut short there, and the
    // next fails with EIO; a kernel copy reads too.
    uint64_t readFailsAt = std::numeric_limits<uint64_t>::max();
    // copy_file_range fails with this errno once it has moved copyBefore
    // bytes in all; 0 for never.
    int copyFails = 0;
    uint64_t copyBefore = 0;
    // readdir fails with this errno after giving this many entries; 0 for never.
    int listingFails = 0;
    int listingEntriesBefore = 0;
    // Calls of this kind fail with callFails, without doing anything, when
    // one of their paths holds callPath; fallocate, which has no path, always.
    FailingCall call = FailingCall::none;
    std::string callPath = "";
    int callFails = 0;
};

// Puts substitutes for the file calls in the file layer's table for the life
// of the object, making the given faults on top of the real calls, and puts
// the real ones back afterwards. The substitutes may be called on several
// threads at once.
class SystemCallFaults {
public:
    explicit SystemCallFaults(const Faults& faults);
    ~SystemCallFaults();
    SystemCallFaults(const SystemCallFaults&) = delete;
    SystemCallFaults& operator=(const SystemCallFaults&) = delete;

    // How many calls a fault changed, so that a test can tell that it was met.
    int injected() const;
    int copyCalls() const;
    // The bytes that pread calls gave back.
    uint64_t bytesRead() const;

private:
    SystemCalls saved_;
};

}  // namespace vx::test
