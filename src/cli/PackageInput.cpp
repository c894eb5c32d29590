#include "cli/PackageInput.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "cli/CliFailure.h"
#include "container/PackageProblem.h"
#include "runtime/core/RuntimeException.h"

namespace vx::cli {

Ref<BinaryStream> openPackageStream(const std::string& path) {
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (fd < 0) {
        failSystem(path, errno);
    }
    auto stream = New<BinaryStream>(fd, false);
    struct stat info;
    if (::fstat(fd, &info) != 0) {
        failSystem(path, errno);
    }
    if (!S_ISREG(info.st_mode)) {
        failUnacceptable(path, "not a regular file");
    }
    stream->UseIOExceptions = true;
    return stream;
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
        throw CliFailure(kSystem, path + ": " + describeFileError(failure.ErrorNumber));
    }
}

}  // namespace vx::cli
