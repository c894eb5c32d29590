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

// Exec keeps the signals that are ignored and the mask; vxpk gets what a
// command typed at a shell gets.
void restoreSignals() {
    for (const int signalNumber : {SIGINT, SIGTERM, SIGHUP}) {
        ::signal(signalNumber, SIG_DFL);
    }
    sigset_t none;
    sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
}

// Replaces the calling process with program, run in folder with the signals
// as a shell would give them and the standard streams as they are.
[[noreturn]] void execIn(const std::string& program, const std::vector<std::string>& arguments,
                         const std::string& folder) {
    restoreSignals();
    if (::chdir(folder.c_str()) != 0) {
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

// Where a child's standard streams go: a descriptor each for standard input
// and standard error, or -1 for the file named beside it; an empty name for
// standard input keeps the one the tests have.
struct ChildStreams {
    std::string inPath;
    std::string outPath;
    std::string errPath;
    int in = -1;
    int err = -1;
};

[[noreturn]] void execProgram(const std::string& program, const std::vector<std::string>& arguments,
                              const std::string& folder, ChildStreams streams) {
    const int out = ::open(streams.outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    if (streams.err < 0) {
        streams.err = ::open(streams.errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    }
    if (streams.in < 0) {
        streams.in = streams.inPath.empty() ? 0 : ::open(streams.inPath.c_str(), O_RDONLY);
    }
    if (out < 0 || streams.err < 0 || streams.in < 0 || ::dup2(streams.in, 0) < 0 ||
        ::dup2(out, 1) < 0 || ::dup2(streams.err, 2) < 0) {
        ::_exit(127);
    }
    execIn(program, arguments, folder);
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

}  // namespace

void ExecVxpk(const std::vector<std::string>& arguments, const std::string& workingFolder) {
    execIn(VXPK_PATH, arguments, workingFolder);
}

VxpkChild::VxpkChild(const std::vector<std::string>& arguments, const std::string& workingFolder,
                     int terminal)
    // Beside the working folder, so that the run's own output files never
    // show up in the trees the tests compare.
    : base_(workingFolder + ".run"), onTerminal_(terminal >= 0), pid_(::fork()) {
    if (pid_ == 0) {
        execProgram(VXPK_PATH, arguments, workingFolder,
                    {.inPath = "",
                     .outPath = base_ + ".out",
                     .errPath = base_ + ".err",
                     .in = -1,
                     .err = terminal});
    }
}

VxpkChild::VxpkChild(const std::string& program, const std::vector<std::string>& arguments,
                     const std::string& workingFolder, const std::string& input)
    : base_(workingFolder + ".run"), onTerminal_(false), pid_(-1) {
    std::ofstream(base_ + ".in", std::ios::binary) << input;
    pid_ = ::fork();
    if (pid_ == 0) {
        execProgram(program, arguments, workingFolder,
                    {.inPath = base_ + ".in",
                     .outPath = base_ + ".out",
                     .errPath = base_ + ".err",
                     .in = -1,
                     .err = -1});
    }
}

VxpkChild::~VxpkChild() {
    if (pid_ > 0) {
        ::kill(pid_, SIGKILL);
        wait();
    }
}

bool VxpkChild::running() const {
    siginfo_t info{};
    // WNOWAIT leaves an ended child to wait().
    return ::waitid(P_PID, static_cast<id_t>(pid_), &info, WEXITED | WNOHANG | WNOWAIT) == 0 &&
           info.si_pid == 0;
}

void VxpkChild::signal(int signalNumber) const {
    ::kill(pid_, signalNumber);
}

VxpkResult VxpkChild::wait() {
    VxpkResult result;
    int status = 0;
    // A child that could not be started, or did not exit, gives -1.
    if (pid_ > 0 && ::waitpid(pid_, &status, 0) == pid_ && WIFEXITED(status)) {
        result.exitCode = WEXITSTATUS(status);
    }
    pid_ = -1;
    result.out = TakeFile(base_ + ".out");
    if (!onTerminal_) {
        result.err = TakeFile(base_ + ".err");
    }
    ::unlink((base_ + ".in").c_str());
    return result;
}

VxpkResult RunVxpk(const std::vector<std::string>& arguments, const std::string& workingFolder,
                   ErrorTo errorTo) {
    if (errorTo == ErrorTo::File) {
        return VxpkChild(arguments, workingFolder).wait();
    }
    termios raw{};
    ::cfmakeraw(&raw);
    int controller = -1;
    int terminal = -1;
    if (::openpty(&controller, &terminal, nullptr, &raw, nullptr) != 0) {
        return {.exitCode = -1, .out = "", .err = "openpty failed"};
    }
    ::fcntl(controller, F_SETFD, FD_CLOEXEC);
    VxpkChild child(arguments, workingFolder, terminal);
    // Read while the child writes, so that it never waits on a full terminal.
    ::close(terminal);
    const std::string err = readTerminal(controller);
    ::close(controller);
    VxpkResult result = child.wait();
    result.err = err;
    return result;
}

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
        // The terminal becomes the child's controlling one, so that Ctrl-C
        // typed on it signals the child.
        ::setsid();
        ::ioctl(terminal, TIOCSCTTY, 0);
        execProgram(VXPK_PATH, arguments, workingFolder,
                    {.inPath = "",
                     .outPath = base + ".out",
                     .errPath = "",
                     .in = terminal,
                     .err = terminal});
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
    result.run.out = TakeFile(base + ".out");
    return result;
}

VxpkResult RunProgram(const std::string& program, const std::vector<std::string>& arguments,
                      const std::string& workingFolder, const std::string& input) {
    return VxpkChild(program, arguments, workingFolder, input).wait();
}

std::string TakeFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << in.rdbuf();
    ::unlink(path.c_str());
    return bytes.str();
}

}  // namespace vx::test
