#include "VxpkRun.h"

#include <fcntl.h>
#include <pty.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "ProgramRun.h"

namespace vx::test {
namespace {

// err is the descriptor for standard error, or -1 for the file errPath.
[[noreturn]] void execVxpk(const std::vector<std::string>& arguments, const std::string& folder,
                           const std::string& outPath, const std::string& errPath, int err) {
    const int out = ::open(outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    if (err < 0) {
        err = ::open(errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    }
    if (out < 0 || err < 0 || ::dup2(out, 1) < 0 || ::dup2(err, 2) < 0) {
        ::_exit(127);
    }
    ExecVxpk(arguments, folder);
}

// What the other end of the terminal reads until the last writer has gone.
std::string readTerminal(int terminal) {
    std::string bytes;
    char block[4096];
    while (true) {
        const ssize_t got = ::read(terminal, block, sizeof block);
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got <= 0) {
            return bytes;
        }
        bytes.append(block, static_cast<std::size_t>(got));
    }
}

}  // namespace

void ExecVxpk(const std::vector<std::string>& arguments, const std::string& workingFolder) {
    if (::chdir(workingFolder.c_str()) != 0) {
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

VxpkResult RunVxpk(const std::vector<std::string>& arguments, const std::string& workingFolder,
                   ErrorTo errorTo) {
    // Beside the working folder, so that the run's own output files never
    // show up in the trees the tests compare.
    const std::string base = workingFolder + ".run";
    int controller = -1;
    int terminal = -1;
    if (errorTo == ErrorTo::Terminal) {
        termios raw{};
        ::cfmakeraw(&raw);
        if (::openpty(&controller, &terminal, nullptr, &raw, nullptr) != 0) {
            return {.exitCode = -1, .out = "", .err = "openpty failed"};
        }
        ::fcntl(controller, F_SETFD, FD_CLOEXEC);
    }
    const pid_t child = ::fork();
    if (child == 0) {
        execVxpk(arguments, workingFolder, base + ".out", base + ".err", terminal);
    }
    VxpkResult result;
    if (terminal >= 0) {
        // Read while the child writes, so that it never waits on a full terminal.
        ::close(terminal);
        result.err = readTerminal(controller);
        ::close(controller);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    result.out = TakeFile(base + ".out");
    if (errorTo == ErrorTo::File) {
        result.err = TakeFile(base + ".err");
    }
    return result;
}

}  // namespace vx::test
