#include "support/SystemCallFaults.h"

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <string_view>

namespace vx::test {
namespace {

// The substitutes are plain functions, so what they know lives here. The
// faults stay as they are while the substitutes are in place; the counts are
// shared by the threads that call them.
Faults active;
std::atomic<int> calls = 0;
std::atomic<int> injectedCount = 0;
std::atomic<int> copyCallCount = 0;
std::atomic<uint64_t> copied = 0;
std::atomic<uint64_t> readBytes = 0;
std::atomic<int> entriesGiven = 0;

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

// Where a call that takes no offset writes: the file's own position.
uint64_t offsetOr(const off_t* offset, int fd) {
    return static_cast<uint64_t>(offset != nullptr ? *offset : ::lseek(fd, 0, SEEK_CUR));
}

// Whether a call of kind call on path, or otherPath, fails outright; if so,
// errno says why.
bool failsOutright(FailingCall call, const char* path, const char* otherPath = nullptr) {
    const auto holds = [](const char* name) {
        return name != nullptr && std::string_view(name).find(active.callPath) != std::string::npos;
    };
    if (call != active.call ||
        !(holds(path) || holds(otherPath) || call == FailingCall::fallocate)) {
        return false;
    }
    ++injectedCount;
    errno = active.callFails;
    return true;
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

// What pwrite and write have in common: false when the write fails at once.
bool writeMayGoOn(std::size_t& count, uint64_t offset) {
    if (interrupted() || failsAtBound(count, offset, active.diskSpace, ENOSPC)) {
        return false;
    }
    injectedCount += limit(count, active.writeAtMost) ? 1 : 0;
    return true;
}

ssize_t faultyPwrite(int fd, const void* data, std::size_t count, off_t offset) {
    if (!writeMayGoOn(count, static_cast<uint64_t>(offset))) {
        return -1;
    }
    return kRealSystemCalls.pwrite(fd, data, count, offset);
}

ssize_t faultyWrite(int fd, const void* data, std::size_t count) {
    if (!writeMayGoOn(count, offsetOr(nullptr, fd))) {
        return -1;
    }
    return kRealSystemCalls.write(fd, data, count);
}

ssize_t faultyCopy(int in, off_t* inOffset, int out, off_t* outOffset, std::size_t count,
                   unsigned int flags) {
    ++copyCallCount;
    if (!writeMayGoOn(count, offsetOr(outOffset, out)) ||
        failsAtBound(count, offsetOr(inOffset, in), active.readFailsAt, EIO) ||
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

int faultyOpenat(int folder, const char* name, int flags, mode_t mode) {
    return failsOutright(FailingCall::openat, name)
               ? -1
               : kRealSystemCalls.openat(folder, name, flags, mode);
}

int faultyMkdirat(int folder, const char* name, mode_t mode) {
    return failsOutright(FailingCall::mkdirat, name) ? -1
                                                     : kRealSystemCalls.mkdirat(folder, name, mode);
}

int faultyRenameat(int fromFolder, const char* from, int toFolder, const char* to) {
    return failsOutright(FailingCall::renameat, from, to)
               ? -1
               : kRealSystemCalls.renameat(fromFolder, from, toFolder, to);
}

int faultyMkstemp(char* pattern) {
    return failsOutright(FailingCall::mkstemp, pattern) ? -1 : kRealSystemCalls.mkstemp(pattern);
}

char* faultyMkdtemp(char* pattern) {
    return failsOutright(FailingCall::mkdtemp, pattern) ? nullptr
                                                        : kRealSystemCalls.mkdtemp(pattern);
}

int faultyFallocate(int fd, int mode, off_t offset, off_t length) {
    return failsOutright(FailingCall::fallocate, nullptr)
               ? -1
               : kRealSystemCalls.fallocate(fd, mode, offset, length);
}

}  // namespace

SystemCallFaults::SystemCallFaults(const Faults& faults) : saved_(systemCalls) {
    active = faults;
    calls = injectedCount = copyCallCount = entriesGiven = 0;
    copied = readBytes = 0;
    systemCalls.pread = faultyPread;
    systemCalls.pwrite = faultyPwrite;
    systemCalls.write = faultyWrite;
    systemCalls.copy_file_range = faultyCopy;
    systemCalls.readdir = faultyReaddir;
    systemCalls.openat = faultyOpenat;
    systemCalls.mkdirat = faultyMkdirat;
    systemCalls.renameat = faultyRenameat;
    systemCalls.mkstemp = faultyMkstemp;
    systemCalls.mkdtemp = faultyMkdtemp;
    systemCalls.fallocate = faultyFallocate;
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
