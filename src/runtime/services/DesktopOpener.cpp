#include "runtime/services/DesktopOpener.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>

#include <cerrno>

#include "runtime/files/SystemCalls.h"

extern char** environ;

namespace vx {
namespace {

// The caller may have blocked signals for a thread of its own to take them,
// or ignore some; the launched programs must hear them all as usual. A shell
// would not do: it starts a background command with SIGINT and SIGQUIT
// ignored.
posix_spawnattr_t defaultSignals() {
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t none;
    sigemptyset(&none);
    posix_spawnattr_setsigmask(&attributes, &none);
    sigset_t all;
    sigfillset(&all);
    posix_spawnattr_setsigdefault(&attributes, &all);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    return attributes;
}

// A browser's chatter stays out of the caller's output.
posix_spawn_file_actions_t nullStreams() {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
    return actions;
}

}  // namespace

// setsid -f starts xdg-open in a session of its own and ends at once, so
// that xdg-open is adopted by init and nothing is left for the caller to
// reap but setsid itself.
bool OpenWithDesktop(const std::string& target) {
    char* argv[] = {const_cast<char*>("setsid"), const_cast<char*>("-f"),
                    const_cast<char*>("xdg-open"), const_cast<char*>(target.c_str()), nullptr};
    posix_spawnattr_t attributes = defaultSignals();
    posix_spawn_file_actions_t actions = nullStreams();
    pid_t launcher = 0;
    const int error =
        systemCalls.posix_spawnp(&launcher, "setsid", &actions, &attributes, argv, environ);
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
    if (error != 0) {
        errno = error;
        return false;
    }
    int status = 0;
    while (systemCalls.waitpid(launcher, &status, 0) < 0 && errno == EINTR) {
    }
    return true;
}

}  // namespace vx
