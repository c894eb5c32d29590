#include "engine/signing/PasswordPrompt.h"

#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string_view>

#include "engine/core/EngineFailure.h"
#include "engine/core/Interruption.h"
#include "runtime/files/FullCalls.h"
#include "runtime/files/SystemCalls.h"

namespace vx::engine {
namespace {

void Prompt(std::string_view text) {
    if (const FullResult written = writeFully(STDERR_FILENO, text.data(), text.size());
        written.error != 0) {
        failSystem("standard error", written.error);
    }
}

void RestoreEcho(const termios& saved) {
    systemCalls.tcsetattr(STDIN_FILENO, TCSAFLUSH, &saved);
    // The line end that the user typed unseen, so the next output starts a
    // new line.
    systemCalls.write(STDERR_FILENO, "\n", 1);
}

// Turns the terminal's echo off for its life. A signal while the password is
// typed ends the process, and the watcher gives the echo back first.
class EchoOff {
public:
    explicit EchoOff(const termios& saved)
        : saved_(saved), onSignal_([this] { RestoreEcho(saved_); }) {
        termios quiet = saved;
        quiet.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        systemCalls.tcsetattr(STDIN_FILENO, TCSAFLUSH, &quiet);
    }
    ~EchoOff() { RestoreEcho(saved_); }
    EchoOff(const EchoOff&) = delete;
    EchoOff& operator=(const EchoOff&) = delete;

private:
    const termios saved_;
    const InterruptionAction onSignal_;
};

// One byte at a time, so that nothing after the line is taken from a pipe.
SecretBytes ReadLine() {
    SecretBytes line(kPasswordMaxBytes + 1);
    std::size_t length = 0;
    bool ended = false;
    while (!ended && length < line.size()) {
        const ssize_t got = systemCalls.read(STDIN_FILENO, line.data() + length, 1);
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got < 0) {
            failSystem("standard input", errno);
        }
        if (got == 0 && length == 0) {
            failUnacceptable("standard input", "no password given");
        }
        ended = got == 0 || line.data()[length] == '\n';
        length += ended ? 0 : 1;
    }
    if (length > kPasswordMaxBytes) {
        failUnacceptable("standard input", "the password is longer than " +
                                               std::to_string(kPasswordMaxBytes) + " bytes");
    }
    line.shrink(
        static_cast<std::size_t>(std::find(line.data(), line.data() + length, '\r') - line.data()));
    return line;
}

// The echo goes off before the prompt shows, so that whatever is typed once
// it shows is never echoed, nor thrown away by the switch.
SecretBytes ReadUnseen(const termios& settings, std::string_view prompt) {
    const EchoOff echoOff(settings);
    Prompt(prompt);
    return ReadLine();
}

}  // namespace

SecretBytes ReadPassword(bool confirm) {
    termios settings{};
    if (systemCalls.tcgetattr(STDIN_FILENO, &settings) != 0) {
        return ReadLine();
    }
    SecretBytes password = ReadUnseen(settings, "Password: ");
    if (confirm && !SameSecret(password, ReadUnseen(settings, "Password (one more time): "))) {
        failUnacceptable("password", "the two passwords differ");
    }
    return password;
}

}  // namespace vx::engine
