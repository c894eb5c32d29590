#include "runtime/services/DesktopOpener.h"

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>

#include <cerrno>

#include "runtime/files/SystemCalls.h"

extern char** environ;

namespace vx {
namespace {

// A shell that starts xdg-open in the background and ends at once, so that
// xdg-open is adopted by init and nothing is left for the caller to reap.
// The target is the shell's first argument, never part of its script.
constexpr const char* kDetach = "xdg-open \"$1\" </dev/null >/dev/null 2>&1 &";

// The caller may have blocked signals for a thread of its own to take them;
// the launched programs must hear them as usual.
posix_spawnattr_t unblockedSignals() {
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t none;
    sigemptyset(&none);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
    return attributes;
}

}  // namespace

bool OpenWithDesktop(const std::string& target) {
    char* argv[] = {const_cast<char*>("sh"),           const_cast<char*>("-c"),
                    const_cast<char*>(kDetach),        const_cast<char*>("sh"),
                    const_cast<char*>(target.c_str()), nullptr};
    posix_spawnattr_t attributes = unblockedSignals();
    pid_t shell = 0;
    const int error = systemCalls.posix_spawnp(&shell, "sh", nullptr, &attributes, argv, environ);
    posix_spawnattr_destroy(&attributes);
    if (error != 0) {
        errno = error;
        return false;
    }
    int status = 0;
    while (systemCalls.waitpid(shell, &status, 0) < 0 && errno == EINTR) {
    }
    return true;
}

}  // namespace vx
