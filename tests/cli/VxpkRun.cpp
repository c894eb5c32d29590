#include "VxpkRun.h"

#include <fcntl.h>
#include <pty.h>
#include <signal.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "ProgramRun.h"

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
    restoreSignals();
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

VxpkChild::VxpkChild(const std::vector<std::string>& arguments, const std::string& workingFolder,
                     int terminal)
    // Beside the working folder, so that the run's own output files never
    // show up in the trees the tests compare.
    : base_(workingFolder + ".run"), onTerminal_(terminal >= 0), pid_(::fork()) {
    if (pid_ == 0) {
        execVxpk(arguments, workingFolder, base_ + ".out", base_ + ".err", terminal);
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

}  // namespace vx::test
