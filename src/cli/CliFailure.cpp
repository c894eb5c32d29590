#include "cli/CliFailure.h"

#include <cerrno>
#include <cstring>

#include "runtime/files/FileErrorCode.h"

namespace vx::cli {

CliFailure::CliFailure(ExitCode exitCode, const std::string& message)
    : std::runtime_error(message), code(exitCode) {}

void failSystem(const std::string& path, int errnoValue) {
    throw CliFailure(kSystem, path + ": " + std::strerror(errnoValue));
}

void failUnacceptable(const std::string& path, const std::string& reason) {
    throw CliFailure(kUnacceptable, path + ": " + reason);
}

std::string describeFileError(int64_t errorNumber) {
    if (errorNumber == AccessDeniedErrorCode) {
        return std::strerror(EACCES);
    }
    if (errorNumber == FileInUseErrorCode) {
        return "the file is in use";
    }
    if (errorNumber == EndOfStreamErrorCode) {
        return "the file ended early";
    }
    return std::strerror(static_cast<int>(errorNumber - PlatformErrorCodeBase));
}

}  // namespace vx::cli
