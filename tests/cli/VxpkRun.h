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

// Runs the vxpk built with the tests, with standard output and standard error
// in files (so neither is a terminal), in the folder workingFolder.
VxpkResult RunVxpk(const std::vector<std::string>& arguments, const std::string& workingFolder);

}  // namespace vx::test
