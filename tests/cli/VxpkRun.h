#pragma once

#include <string>
#include <vector>

namespace vx::test {

// What one run of vxpk gave back.
struct VxpkResult {
    int exitCode = -1;
    std::string out;
    std::string err;
};

// Where the standard error of a run goes.
enum class ErrorTo { File, Terminal };

// Runs the vxpk built with the tests in the folder workingFolder, with
// standard output in a file and standard error in a file or, for a user's
// view, on a pseudo-terminal that passes the bytes as they are written.
// Replaces the calling process, a child just forked, with the vxpk built with
// the tests, run in workingFolder with its standard output and error as they
// are; ends it with status 127 when it cannot.
[[noreturn]] void ExecVxpk(const std::vector<std::string>& arguments,
                           const std::string& workingFolder);

VxpkResult RunVxpk(const std::vector<std::string>& arguments, const std::string& workingFolder,
                   ErrorTo errorTo = ErrorTo::File);

}  // namespace vx::test
