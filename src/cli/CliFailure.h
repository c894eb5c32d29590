#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace vx::cli {

// The exit status of vxpk, as --help, the man page and the README tell it.
enum ExitCode : int {
    kSuccess = 0,
    // The package or the tree is not acceptable: invalid, unsafe or not
    // representable in the format.
    kUnacceptable = 1,
    kUsage = 2,
    // A file that cannot be read or written.
    kSystem = 3,
};

// Ends a command with one line of diagnosis and an exit status; main prints
// it behind "vxpk: error: ".
class CliFailure : public std::runtime_error {
public:
    CliFailure(ExitCode code, const std::string& message);
    ExitCode code;
};

// "PATH: reason", with the reason of the C library for errnoValue.
[[noreturn]] void failSystem(const std::string& path, int errnoValue);
[[noreturn]] void failUnacceptable(const std::string& path, const std::string& reason);
// The reason behind a file error number of the runtime's streams.
std::string describeFileError(int64_t errorNumber);

}  // namespace vx::cli
