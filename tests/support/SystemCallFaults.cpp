#include "support/SystemCallFaults.h"

#include <cerrno>

namespace vx::test {
namespace {

// The substitutes are plain functions, so what they know lives here.
Faults active;
int calls = 0;
int injectedCount = 0;
int copyCallCount = 0;
uint64_t copied = 0;
uint64_t readBytes = 0;
int entriesGiven = 0;

bool interrupted() {
    if (active.interruptEvery > 0 && ++calls % active.interruptEvery == 0) {
        ++injectedCount;
        errno = EINTR;
        return true;
    }
    return false;
}

// Cuts count to limit and tells whether that changed anything.
bool limit(std::size_t& count, uint64_t most) {
    if (count <= most) {
        return false;
    }
    count = static_cast<std::size_t>(most);
    return true;
}

// A fault met at offset: failing with error when there is nothing left
// before the bound, otherwise cutting count down to it.
bool failsAtBound(std::size_t& count, uint64_t offset, uint64_t bound, int error) {
    if (offset >= bound) {
        ++injectedCount;
        errno = error;
        return true;
    }
    injectedCount += limit(count, bound - offset) ? 1 : 0;
    return false;
}

ssize_t faultyPread(int fd, void* data, std::size_t count, off_t offset) {
    if (interrupted() ||
        failsAtBound(count, static_cast<uint64_t>(offset), active.readFailsAt, EIO)) {
        return -1;
    }
    injectedCount += limit(count, active.readAtMost) ? 1 : 0;
    const ssize_t read = kRealSystemCalls.pread(fd, data, count, offset);
    readBytes += read > 0 ? static_cast<uint64_t>(read) : 0;
    return read;
}

ssize_t faultyPwrite(int fd, const void* data, std::size_t count, off_t offset) {
    if (interrupted() ||
        failsAtBound(count, static_cast<uint64_t>(offset), active.diskSpace, ENOSPC)) {
        return -1;
    }
    injectedCount += limit(count, active.writeAtMost) ? 1 : 0;
    return kRealSystemCalls.pwrite(fd, data, count, offset);
}

ssize_t faultyCopy(int in, off_t* inOffset, int out, off_t* outOffset, std::size_t count,
                   unsigned int flags) {
    ++copyCallCount;
    if (interrupted() ||
        failsAtBound(count, static_cast<uint64_t>(*outOffset), active.diskSpace, ENOSPC) ||
        (active.copyFails != 0 &&
         failsAtBound(count, copied, active.copyBefore, active.copyFails))) {
        return -1;
    }
    const ssize_t moved =
        kRealSystemCalls.copy_file_range(in, inOffset, out, outOffset, count, flags);
    copied += moved > 0 ? static_cast<uint64_t>(moved) : 0;
    return moved;
}

dirent* faultyReaddir(DIR* folder) {
    if (active.listingFails != 0 && entriesGiven++ >= active.listingEntriesBefore) {
        ++injectedCount;
        errno = active.listingFails;
        return nullptr;
    }
    return kRealSystemCalls.readdir(folder);
}

}  // namespace

SystemCallFaults::SystemCallFaults(const Faults& faults) : saved_(systemCalls) {
    active = faults;
    calls = injectedCount = copyCallCount = entriesGiven = 0;
    copied = readBytes = 0;
    systemCalls.pread = faultyPread;
    systemCalls.pwrite = faultyPwrite;
    systemCalls.copy_file_range = faultyCopy;
    systemCalls.readdir = faultyReaddir;
}

SystemCallFaults::~SystemCallFaults() {
    systemCalls = saved_;
}

int SystemCallFaults::injected() const {
    return injectedCount;
}

int SystemCallFaults::copyCalls() const {
    return copyCallCount;
}

uint64_t SystemCallFaults::bytesRead() const {
    return readBytes;
}

}  // namespace vx::test
