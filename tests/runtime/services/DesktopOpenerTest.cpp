#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string>

#include "runtime/files/SystemCalls.h"
#include "runtime/services/DesktopOpener.h"
#include "support/ScratchFolder.h"

namespace vx {
namespace {

// A stand-in xdg-open first on PATH that writes its argument, and the signals
// blocked and ignored in it, beside itself.
class DesktopOpenerTest : public ::testing::Test {
protected:
    void SetUp() override {
        scratch_.writeFile(
            "bin/xdg-open",
            "#!/bin/sh\n"
            "grep -E 'SigBlk|SigIgn' /proc/self/status > \"$(dirname \"$0\")/signals\"\n"
            "printf '%s' \"$1\" > \"$(dirname \"$0\")/opened.new\"\n"
            "mv \"$(dirname \"$0\")/opened.new\" \"$(dirname \"$0\")/opened\"\n");
        ASSERT_EQ(::chmod(scratch_.path("bin/xdg-open").c_str(), 0755), 0);
        path_ = std::getenv("PATH");
        ::setenv("PATH", (scratch_.path("bin") + ":" + path_).c_str(), 1);
    }
    void TearDown() override { ::setenv("PATH", path_.c_str(), 1); }

    // What the stand-in was given, once it has run (it runs detached).
    std::string opened() const {
        for (int tries = 0; tries < 200; ++tries) {
            if (::access(scratch_.path("bin/opened").c_str(), F_OK) == 0) {
                return scratch_.readFile("bin/opened");
            }
            ::usleep(25000);
        }
        return "(never opened)";
    }
    std::string signals() const { return scratch_.readFile("bin/signals"); }

private:
    test::ScratchFolder scratch_;
    std::string path_;
};

TEST_F(DesktopOpenerTest, open_passesTheTargetAsOneArgumentWithNoSignalBlockedOrIgnored) {
    sigset_t terminate;
    sigemptyset(&terminate);
    sigaddset(&terminate, SIGTERM);
    sigaddset(&terminate, SIGINT);
    sigset_t before;
    ::pthread_sigmask(SIG_BLOCK, &terminate, &before);
    const auto quitBefore = ::signal(SIGQUIT, SIG_IGN);
    const std::string target = "http://127.0.0.1:8080/a b/'$(touch x)'\"; ls";
    const bool started = OpenWithDesktop(target);
    ::signal(SIGQUIT, quitBefore);
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    ASSERT_TRUE(started);
    EXPECT_EQ(opened(), target);
    const std::string seen = signals();
    ASSERT_TRUE(seen.starts_with("SigBlk:\t0000000000000000\nSigIgn:\t")) << seen;
    // The C library keeps its own signals, those past 31, as it likes.
    const unsigned long long ignored = std::stoull(seen.substr(seen.rfind('\t') + 1), nullptr, 16);
    EXPECT_EQ(ignored & 0x7fffffffULL, 0u) << seen;
}

TEST_F(DesktopOpenerTest, launcherThatCannotStart_isFalseWithItsReason) {
    const SystemCalls saved = systemCalls;
    systemCalls.posix_spawnp = [](pid_t*, const char*, const posix_spawn_file_actions_t*,
                                  const posix_spawnattr_t*, char* const[],
                                  char* const[]) { return EAGAIN; };
    errno = 0;
    const bool started = OpenWithDesktop("/tmp");
    systemCalls = saved;
    EXPECT_FALSE(started);
    EXPECT_EQ(errno, EAGAIN);
}

}  // namespace
}  // namespace vx
