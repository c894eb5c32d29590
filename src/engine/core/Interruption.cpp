#include "engine/core/Interruption.h"

#include <pthread.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <mutex>
#include <thread>
#include <utility>

namespace vx::engine {
namespace {

std::atomic<int> interruptingSignal{0};
// Guards the two below and is held while a signal is acted on, so that work
// begun, and an action let go, are seen as they are.
std::mutex watchMutex;
int activeWork = 0;
std::function<void()> interruptionAction;

// The three, less those the process was started with ignored: nohup leaves
// SIGHUP ignored, and a shell SIGINT for a background job, and they must stay
// so. Linux never discards a blocked signal, ignored or not, so one that is
// blocked and waited for would be heard after all.
sigset_t watchedSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signalNumber : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction current {};
        if (::sigaction(signalNumber, nullptr, &current) == 0 && current.sa_handler != SIG_IGN) {
            sigaddset(&signals, signalNumber);
        }
    }
    return signals;
}

void actOn(int signalNumber) {
    int expected = 0;
    interruptingSignal.compare_exchange_strong(expected, signalNumber);
    const std::lock_guard lock(watchMutex);
    if (interruptionAction) {
        interruptionAction();
    }
    if (activeWork == 0) {
        // Nothing half-written to remove: end as the default action would,
        // with the status a shell reports for it.
        ::_exit(128 + signalNumber);
    }
}

void watch(sigset_t signals) {
    while (true) {
        int signalNumber = 0;
        if (::sigwait(&signals, &signalNumber) == 0) {
            actOn(signalNumber);
        }
    }
}

}  // namespace

void WatchForInterruption() {
    const sigset_t signals = watchedSignals();
    ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    std::thread(watch, signals).detach();
}

InterruptibleWork::InterruptibleWork() {
    const std::lock_guard lock(watchMutex);
    ++activeWork;
}

InterruptibleWork::~InterruptibleWork() {
    const std::lock_guard lock(watchMutex);
    --activeWork;
}

InterruptionAction::InterruptionAction(std::function<void()> action) {
    const std::lock_guard lock(watchMutex);
    interruptionAction = std::move(action);
}

InterruptionAction::~InterruptionAction() {
    const std::lock_guard lock(watchMutex);
    interruptionAction = nullptr;
}

int InterruptingSignal() {
    return interruptingSignal.load();
}

void StopIfInterrupted() {
    if (const int signalNumber = interruptingSignal.load(std::memory_order_relaxed)) {
        throw Interrupted(signalNumber);
    }
}

}  // namespace vx::engine
