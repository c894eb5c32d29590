#include "ServeProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <sstream>

#include "VxpkRun.h"

namespace vx::test {
namespace {

[[noreturn]] void execServe(const std::vector<std::string>& arguments, const std::string& folder,
                            int out, const std::string& errPath) {
    const int err = ::open(errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    if (err < 0 || ::dup2(out, 1) < 0 || ::dup2(err, 2) < 0) {
        ::_exit(127);
    }
    ExecVxpk(arguments, folder);
}

// The first line the child writes, waiting at most ten seconds for it.
std::string firstLine(int in) {
    std::string line;
    char c = 0;
    pollfd ready{.fd = in, .events = POLLIN, .revents = 0};
    while (::poll(&ready, 1, 10000) > 0 && ::read(in, &c, 1) == 1 && c != '\n') {
        line += c;
    }
    return c == '\n' ? line : std::string();
}

int exitStatus(int status) {
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace

ServeProcess::ServeProcess(const std::vector<std::string>& arguments,
                           const std::string& workingFolder)
    : errPath_(workingFolder + ".serve.err") {
    int pipeEnds[2];
    if (::pipe2(pipeEnds, O_CLOEXEC) != 0) {
        return;
    }
    child_ = ::fork();
    if (child_ == 0) {
        execServe(arguments, workingFolder, pipeEnds[1], errPath_);
    }
    ::close(pipeEnds[1]);
    url_ = firstLine(pipeEnds[0]);
    ::close(pipeEnds[0]);
}

ServeProcess::~ServeProcess() {
    if (child_ > 0) {
        stop(SIGKILL);
    }
    ::unlink(errPath_.c_str());
}

int ServeProcess::port() const {
    const size_t colon = url_.rfind(':');
    return colon == std::string::npos ? -1 : std::atoi(url_.c_str() + colon + 1);
}

int ServeProcess::stop(int signalNumber) {
    if (child_ <= 0) {
        return -1;
    }
    ::kill(child_, signalNumber);
    return wait();
}

int ServeProcess::wait() {
    int status = 0;
    for (int tries = 0; tries < 1000; ++tries) {
        if (::waitpid(child_, &status, WNOHANG) == child_) {
            child_ = -1;
            return exitStatus(status);
        }
        ::usleep(10000);
    }
    ::kill(child_, SIGKILL);
    ::waitpid(child_, &status, 0);
    child_ = -1;
    return -1;
}

bool ServeProcess::logs(const std::string& text) const {
    for (int tries = 0; tries < 1000; ++tries) {
        if (errors().find(text) != std::string::npos) {
            return true;
        }
        ::usleep(10000);
    }
    return false;
}

std::string ServeProcess::errors() const {
    std::ifstream in(errPath_, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

}  // namespace vx::test
