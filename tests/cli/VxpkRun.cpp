#include "VxpkRun.h"

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
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

// Where a run's files lie: beside the working folder, so that they never
// show up in the trees the tests compare.
struct RunFiles {
    std::string in;
    std::string out;
    std::string err;
};

// err is the descriptor for standard error, or -1 for the file files.err;
// in that for standard input, or -1 for files.in, or for standard input as
// it is when that is empty.
[[noreturn]] void execProgram(const std::string& program, const std::vector<std::string>& arguments,
                              const std::string& folder, const RunFiles& files, int err,
                              int in = -1) {
    const int out = ::open(files.out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    if (err < 0) {
        err = ::open(files.err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    }
    if (in < 0) {
        in = files.in.empty() ? 0 : ::open(files.in.c_str(), O_RDONLY);
    }
    if (out < 0 || err < 0 || in < 0 || ::dup2(in, 0) < 0 || ::dup2(out, 1) < 0 ||
        ::dup2(err, 2) < 0 || ::chdir(folder.c_str()) != 0) {
        ::_exit(127);
    }
    std::vector<char*> argv{const_cast<char*>(program.c_str())};
    for (const auto& argument : arguments) {
        argv.push_back(const_cast<char*>(argument.c_str()));
    }
    argv.push_back(nullptr);
    ::execvp(program.c_str(), argv.data());
    ::_exit(127);
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

// Reads the terminal into shown until text has shown after from; false when
// it closes or ten seconds pass first.
bool awaitText(int controller, std::string& shown, std::size_t from, const std::string& text) {
    while (shown.find(text, from) == std::string::npos) {
        pollfd ready{.fd = controller, .events = POLLIN, .revents = 0};
        char block[256];
        const ssize_t got =
            ::poll(&ready, 1, 10000) > 0 ? ::read(controller, block, sizeof block) : 0;
        if (got <= 0) {
            return false;
        }
        shown.append(block, static_cast<std::size_t>(got));
    }
    return true;
}

// Answers each prompt with its reply once it has shown; false where one
// never came.
bool converse(int controller, const std::vector<std::pair<std::string, std::string>>& dialogue,
              std::string& shown) {
    std::size_t from = 0;
    for (const auto& [prompt, reply] : dialogue) {
        if (!awaitText(controller, shown, from, prompt) ||
            ::write(controller, reply.data(), reply.size()) != static_cast<ssize_t>(reply.size())) {
            return false;
        }
        from = shown.find(prompt, from) + prompt.size();
    }
    return true;
}

// Reads what the terminal shows until the child has ended and nothing is
// left; the child's status. The caller holds the terminal open, so its end
// never reads as the end of the file.
int drainUntilExit(int controller, pid_t child, std::string& shown) {
    int status = 0;
    bool ended = false;
    while (true) {
        ended = ended || ::waitpid(child, &status, WNOHANG) == child;
        pollfd ready{.fd = controller, .events = POLLIN, .revents = 0};
        char block[256];
        const ssize_t got =
            ::poll(&ready, 1, ended ? 0 : 100) > 0 ? ::read(controller, block, sizeof block) : 0;
        if (got <= 0 && ended) {
            return status;
        }
        shown.append(block, static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
    }
}

// input null leaves standard input as it is.
VxpkResult Run(const std::string& program, const std::vector<std::string>& arguments,
               const std::string& workingFolder, const std::string* input, ErrorTo errorTo) {
    const std::string base = workingFolder + ".run";
    const RunFiles files{
        .in = input != nullptr ? base + ".in" : "", .out = base + ".out", .err = base + ".err"};
    if (input != nullptr) {
        std::ofstream(files.in, std::ios::binary) << *input;
    }
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
        execProgram(program, arguments, workingFolder, files, terminal);
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
    result.out = slurp(files.out);
    if (errorTo == ErrorTo::File) {
        result.err = slurp(files.err);
    }
    if (input != nullptr) {
        ::unlink(files.in.c_str());
    }
    return result;
}

}  // namespace

TerminalRun RunVxpkOnTerminal(const std::vector<std::string>& arguments,
                              const std::string& workingFolder,
                              const std::vector<std::pair<std::string, std::string>>& dialogue) {
    const std::string base = workingFolder + ".run";
    int controller = -1;
    int terminal = -1;
    if (::openpty(&controller, &terminal, nullptr, nullptr, nullptr) != 0) {
        return {.run = {.exitCode = -1, .out = "", .err = "openpty failed"}, .echoAfter = false};
    }
    ::fcntl(controller, F_SETFD, FD_CLOEXEC);
    const pid_t child = ::fork();
    if (child == 0) {
        ::setsid();
        ::ioctl(terminal, TIOCSCTTY, 0);
        execProgram(VXPK_PATH, arguments, workingFolder,
                    {.in = "", .out = base + ".out", .err = ""}, terminal, terminal);
    }
    TerminalRun result;
    const bool answered = converse(controller, dialogue, result.run.err);
    if (!answered) {
        ::kill(child, SIGKILL);
    }
    const int status = drainUntilExit(controller, child, result.run.err);
    termios settings{};
    result.echoAfter = ::tcgetattr(terminal, &settings) == 0 && (settings.c_lflag & ECHO) != 0;
    ::close(terminal);
    ::close(controller);
    result.run.exitCode = answered && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    result.run.out = slurp(base + ".out");
    return result;
}

VxpkResult RunVxpk(const std::vector<std::string>& arguments, const std::string& workingFolder,
                   ErrorTo errorTo) {
    return Run(VXPK_PATH, arguments, workingFolder, nullptr, errorTo);
}

VxpkResult RunProgram(const std::string& program, const std::vector<std::string>& arguments,
                      const std::string& workingFolder, const std::string& input, ErrorTo errorTo) {
    return Run(program, arguments, workingFolder, &input, errorTo);
}

}  // namespace vx::test
