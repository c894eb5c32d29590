#include "engine/reading/PackageInput.h"

#include <fcntl.h>

#include <cerrno>

#include "container/PackageProblem.h"
#include "engine/core/EngineFailure.h"
#include "runtime/core/RuntimeException.h"
#include "runtime/files/SystemCalls.h"

namespace vx::engine {

int openPackageFile(const std::string& path) {
    const int fd = systemCalls.openat(AT_FDCWD, path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK, 0);
    if (fd < 0) {
        failSystem(path, errno);
    }
    struct stat info;
    const int error = systemCalls.fstat(fd, &info) != 0 ? errno : 0;
    if (error != 0 || !S_ISREG(info.st_mode)) {
        systemCalls.close(fd);
        if (error != 0) {
            failSystem(path, error);
        }
        failUnacceptable(path, "not a regular file");
    }
    return fd;
}

namespace {

// The stream owns fd.
Ref<BinaryStream> streamOf(int fd) {
    auto stream = New<BinaryStream>(fd, false);
    stream->UseIOExceptions = true;
    return stream;
}

}  // namespace

Ref<BinaryStream> openPackageStream(const std::string& path) {
    return streamOf(openPackageFile(path));
}

Ref<BinaryStream> secondStreamOf(int fd, const std::string& path) {
    const int copy = systemCalls.fcntl(fd, F_DUPFD_CLOEXEC, 0);
    if (copy < 0) {
        failSystem(path, errno);
    }
    return streamOf(copy);
}

vxpkRecordReader openPackage(const std::string& path) {
    const Ref<BinaryStream> stream = openPackageStream(path);
    return withPackage(path, [&] { return vxpkRecordReader(stream); });
}

void failPackage(const std::string& path) {
    try {
        throw;
    } catch (const PackageProblem& problem) {
        failUnacceptable(path, problem.where());
    } catch (const IOException& failure) {
        throw EngineFailure(FailureKind::kSystem,
                            path + ": " + describeFileError(failure.ErrorNumber));
    }
}

}  // namespace vx::engine
