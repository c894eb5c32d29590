#include "support/ChildProcess.h"

#include <grp.h>
#include <pwd.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <exception>

#include "runtime/core/RuntimeInit.h"

namespace vx::test {
namespace {

bool dropPrivileges() {
    if (::geteuid() != 0) {
        return true;
    }
    const passwd* nobody = ::getpwnam("nobody");
    return nobody != nullptr && ::setgroups(0, nullptr) == 0 && ::setgid(nobody->pw_gid) == 0 &&
           ::setuid(nobody->pw_uid) == 0;
}

bool applyLimits(const ChildOptions& options) {
    if (!options.fileSizeLimit) {
        return true;
    }
    // As in the program itself: the limit must show as a failed write.
    RuntimeInit();
    const rlimit limit{*options.fileSizeLimit, *options.fileSizeLimit};
    return ::setrlimit(RLIMIT_FSIZE, &limit) == 0;
}

[[noreturn]] void runChild(int out, const std::function<std::string()>& body,
                           const ChildOptions& options) {
    std::string result;
    if (!applyLimits(options) || (options.unprivileged && !dropPrivileges())) {
        result = "cannot set up the child";
    } else {
        try {
            result = body();
        } catch (const std::exception& e) {
            result = std::string("exception: ") + e.what();
        }
    }
    for (std::size_t sent = 0; sent < result.size();) {
        const ssize_t n = ::write(out, result.data() + sent, result.size() - sent);
        if (n <= 0) {
            break;
        }
        sent += static_cast<std::size_t>(n);
    }
    ::_exit(0);
}

}  // namespace

std::string RunInChild(const std::function<std::string()>& body, const ChildOptions& options) {
    int pipeEnds[2];
    if (::pipe(pipeEnds) != 0) {
        return "cannot make a pipe";
    }
    const pid_t child = ::fork();
    if (child == 0) {
        ::close(pipeEnds[0]);
        runChild(pipeEnds[1], body, options);
    }
    ::close(pipeEnds[1]);
    std::string result;
    char buffer[4096];
    ssize_t n;
    while ((n = ::read(pipeEnds[0], buffer, sizeof buffer)) > 0) {
        result.append(buffer, static_cast<std::size_t>(n));
    }
    ::close(pipeEnds[0]);
    int status = 0;
    if (child < 0 || ::waitpid(child, &status, 0) != child || !WIFEXITED(status)) {
        return "child died";
    }
    return result;
}

}  // namespace vx::test
