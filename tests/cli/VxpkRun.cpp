#include "VxpkRun.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace vx::test {
namespace {

std::string slurp(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << in.rdbuf();
    ::unlink(path.c_str());
    return bytes.str();
}

[[noreturn]] void execVxpk(const std::vector<std::string>& arguments, const std::string& folder,
                           const std::string& outPath, const std::string& errPath) {
    const int out = ::open(outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    const int err = ::open(errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    if (out < 0 || err < 0 || ::dup2(out, 1) < 0 || ::dup2(err, 2) < 0 ||
        ::chdir(folder.c_str()) != 0) {
        ::_exit(127);
    }
    std::vector<char*> argv{const_cast<char*>(VXPK_PATH)};
    for (const auto& argument : arguments) {
        argv.push_back(const_cast<char*>(argument.c_str()));
    }
    argv.push_back(nullptr);
    ::execv(VXPK_PATH, argv.data());
    ::_exit(127);
}

}  // namespace

VxpkResult RunVxpk(const std::vector<std::string>& arguments, const std::string& workingFolder) {
    // Beside the working folder, so that the run's own output files never
    // show up in the trees the tests compare.
    const std::string base = workingFolder + ".run";
    const pid_t child = ::fork();
    if (child == 0) {
        execVxpk(arguments, workingFolder, base + ".out", base + ".err");
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    VxpkResult result;
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    result.out = slurp(base + ".out");
    result.err = slurp(base + ".err");
    return result;
}

}  // namespace vx::test
