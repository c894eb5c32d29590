#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace vx::engine {

// What kind of trouble ended an operation; the commands turn it into their
// exit status.
enum class FailureKind {
    // The package or the tree is not acceptable: invalid, unsafe or not
    // representable in the format.
    kUnacceptable,
    // A file that cannot be read or written.
    kSystem,
};

// Ends an operation with one line of diagnosis, "PATH: reason".
class EngineFailure : public std::runtime_error {
public:
    EngineFailure(FailureKind kind, const std::string& message);
    FailureKind kind;
};

// "PATH: reason", with the reason of the C library for errnoValue.
[[noreturn]] void failSystem(const std::string& path, int errnoValue);
[[noreturn]] void failUnacceptable(const std::string& path, const std::string& reason);
// The reason behind a file error number of the runtime's streams.
std::string describeFileError(int64_t errorNumber);

}  // namespace vx::engine
