#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <thread>

#include "engine/core/Interruption.h"

namespace vx::engine {
namespace {

// Each case runs in a child of its own, as the watcher takes the signals over
// for the whole process.
class InterruptionTest : public ::testing::TestWithParam<int> {
protected:
    static void SetUpTestSuite() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

// Waits, at most ten seconds, for the work to be asked to stop; the exit
// status says which signal it heard.
[[noreturn]] void workUntilInterrupted() {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (std::chrono::steady_clock::now() < deadline) {
        try {
            StopIfInterrupted();
        } catch (const Interrupted& interrupted) {
            std::_Exit(interrupted.signal);
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    std::_Exit(0);
}

TEST_P(InterruptionTest, signalOutsideWork_endsWithTheShellsStatus) {
    const int signalNumber = GetParam();
    EXPECT_EXIT(
        {
            WatchForInterruption();
            ::kill(::getpid(), signalNumber);
            std::this_thread::sleep_for(std::chrono::seconds(10));
            std::_Exit(0);
        },
        ::testing::ExitedWithCode(128 + signalNumber), "");
}

TEST_P(InterruptionTest, signalDuringWork_asksTheWorkToStop) {
    const int signalNumber = GetParam();
    EXPECT_EXIT(
        {
            WatchForInterruption();
            const InterruptibleWork work;
            ::kill(::getpid(), signalNumber);
            workUntilInterrupted();
        },
        ::testing::ExitedWithCode(signalNumber), "");
}

TEST_P(InterruptionTest, signalDuringWork_runsTheActionAndKeepsGoing) {
    const int signalNumber = GetParam();
    EXPECT_EXIT(
        {
            WatchForInterruption();
            const InterruptibleWork work;
            std::atomic<int> heard = 0;
            const InterruptionAction action([&] { heard = InterruptingSignal(); });
            ::kill(::getpid(), signalNumber);
            const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
            while (heard == 0 && std::chrono::steady_clock::now() < deadline) {
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
            std::_Exit(heard);
        },
        ::testing::ExitedWithCode(signalNumber), "");
}

TEST_P(InterruptionTest, signalIgnoredAtStart_staysIgnored) {
    const int signalNumber = GetParam();
    EXPECT_EXIT(
        {
            // As nohup starts a command, or a shell a background job.
            ::signal(signalNumber, SIG_IGN);
            WatchForInterruption();
            ::kill(::getpid(), signalNumber);
            // Time for the watcher to end the process, were it listening.
            std::this_thread::sleep_for(std::chrono::milliseconds(300));
            std::_Exit(InterruptingSignal());
        },
        ::testing::ExitedWithCode(0), "");
}

INSTANTIATE_TEST_SUITE_P(Signals, InterruptionTest, ::testing::Values(SIGINT, SIGTERM, SIGHUP));

TEST(InterruptionNoSignal, stopIfInterrupted_withoutASignal_goesOn) {
    EXPECT_EQ(InterruptingSignal(), 0);
    EXPECT_NO_THROW(StopIfInterrupted());
}

}  // namespace
}  // namespace vx::engine
