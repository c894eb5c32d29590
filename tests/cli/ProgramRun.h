#pragma once

#include <string>
#include <vector>

namespace vx::test {

// Runs the program argv[0], found on PATH, with standard output in the file
// outPath and standard error in errPath ("" leaves either as it is), and
// gives its exit status: -1 when it could not start or did not exit by itself.
int RunProgram(std::vector<std::string> argv, const std::string& outPath = "",
               const std::string& errPath = "");

// The bytes of the file at path, which is then removed: the output a run
// left behind.
std::string TakeFile(const std::string& path);

}  // namespace vx::test
