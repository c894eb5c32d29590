#include "engine/core/TemporaryFile.h"

#include <fcntl.h>

#include <cerrno>
#include <filesystem>

#include "engine/core/CurrentUmask.h"
#include "engine/core/EngineFailure.h"
#include "runtime/files/SystemCalls.h"

namespace vx::engine {

TemporaryFile::TemporaryFile(const std::string& target) : target_(target) {
    const std::filesystem::path place(target);
    // Appended rather than "." + ...: GCC 12 at -O3 warns falsely
    // (-Wrestrict) on a literal inserted before a temporary string.
    path_ =
        (place.parent_path() / std::string(".").append(place.filename().string()).append(".XXXXXX"))
            .string();
    fd_ = systemCalls.mkstemp(path_.data());
    if (fd_ < 0) {
        failSystem(target, errno);
    }
}

TemporaryFile::~TemporaryFile() {
    if (fd_ >= 0) {
        systemCalls.close(fd_);
    }
    if (!committed_) {
        systemCalls.unlinkat(AT_FDCWD, path_.c_str(), 0);
    }
}

void TemporaryFile::close(unsigned mode) {
    // mkstemp makes the file private; the file gets the mode asked for.
    const bool modeSet = systemCalls.fchmod(fd_, mode & ~CurrentUmask()) == 0;
    const int modeError = errno;
    const int closed = systemCalls.close(fd_);
    fd_ = -1;
    if (!modeSet || closed != 0) {
        failSystem(target_, modeSet ? errno : modeError);
    }
}

void TemporaryFile::commit(unsigned mode) {
    close(mode);
    if (systemCalls.renameat(AT_FDCWD, path_.c_str(), AT_FDCWD, target_.c_str()) != 0) {
        failSystem(target_, errno);
    }
    committed_ = true;
}

void TemporaryFile::commitNew(unsigned mode) {
    close(mode);
    if (systemCalls.linkat(AT_FDCWD, path_.c_str(), AT_FDCWD, target_.c_str(), 0) != 0) {
        failSystem(target_, errno);
    }
    // The temporary name goes in the destructor.
}

}  // namespace vx::engine
