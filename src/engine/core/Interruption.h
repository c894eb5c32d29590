#pragma once

#include <exception>
#include <functional>

namespace vx::engine {

// Takes SIGINT, SIGTERM and SIGHUP over for the whole process: they are
// blocked in the calling thread, and so in every thread it starts later, and
// one thread of their own waits for them. Outside InterruptibleWork such a
// signal ends the process at once with status 128 + its number, as the
// default action would; inside, it asks the work to stop so that whatever was
// half-written can be removed on the way out. Call once, first thing in main,
// before any other thread is started.
void WatchForInterruption();

// While one lives, a signal stops the work at its next StopIfInterrupted
// instead of ending the process. Made before the first file is written and
// kept until the last is in place.
class InterruptibleWork {
public:
    InterruptibleWork();
    ~InterruptibleWork();
    InterruptibleWork(const InterruptibleWork&) = delete;
    InterruptibleWork& operator=(const InterruptibleWork&) = delete;
};

// While one lives, a signal also runs its action, on the thread that waits
// for signals: a server stops listening, a terminal gets its echo back.
class InterruptionAction {
public:
    explicit InterruptionAction(std::function<void()> action);
    ~InterruptionAction();
    InterruptionAction(const InterruptionAction&) = delete;
    InterruptionAction& operator=(const InterruptionAction&) = delete;
};

// Raised by StopIfInterrupted; unwinding removes what was half-written.
class Interrupted : public std::exception {
public:
    explicit Interrupted(int signalNumber) : signal(signalNumber) {}
    const char* what() const noexcept override { return "interrupted by a signal"; }
    int signal;
};

// The signal that asked the process to stop, 0 while none did.
int InterruptingSignal();
// Raises Interrupted once a signal asked the work to stop; long loops call it
// between steps, so the work ends as soon as the step in flight allows.
void StopIfInterrupted();

}  // namespace vx::engine
