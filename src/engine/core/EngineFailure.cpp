#include "engine/core/EngineFailure.h"

#include <cerrno>
#include <cstring>

#include "runtime/files/FileErrorCode.h"

namespace vx::engine {

EngineFailure::EngineFailure(FailureKind failureKind, const std::string& message)
    : std::runtime_error(message), kind(failureKind) {}

void failSystem(const std::string& path, int errnoValue) {
    throw EngineFailure(FailureKind::kSystem, path + ": " + std::strerror(errnoValue));
}

void failUnacceptable(const std::string& path, const std::string& reason) {
    throw EngineFailure(FailureKind::kUnacceptable, path + ": " + reason);
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

}  // namespace vx::engine
