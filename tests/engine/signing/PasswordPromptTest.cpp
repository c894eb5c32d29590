#include <gtest/gtest.h>
#include <unistd.h>

#include <cstring>
#include <string>
#include <vector>

#include "engine/core/EngineFailure.h"
#include "engine/signing/PasswordPrompt.h"
#include "runtime/files/SystemCalls.h"

namespace vx::engine {
namespace {

// A terminal or a pipe on standard input, played by substitute calls.
struct FakeInput {
    bool terminal = false;
    std::string typed;
    std::size_t read = 0;
    std::string prompts;
    // The echo flag as each tcsetattr left it.
    std::vector<bool> echo;
};
FakeInput fake;

void Type(bool terminal, const std::string& typed) {
    fake = FakeInput{};
    fake.terminal = terminal;
    fake.typed = typed;
}

class PasswordPromptTest : public ::testing::Test {
protected:
    void SetUp() override {
        fake = FakeInput{};
        systemCalls.tcgetattr = [](int fd, termios* settings) {
            *settings = {};
            settings->c_lflag = ECHO | ICANON;
            return fd == STDIN_FILENO && fake.terminal ? 0 : -1;
        };
        systemCalls.tcsetattr = [](int, int, const termios* settings) {
            fake.echo.push_back((settings->c_lflag & ECHO) != 0);
            return 0;
        };
        systemCalls.read = [](int fd, void* data, std::size_t count) -> ssize_t {
            const std::size_t left = fake.typed.size() - fake.read;
            const std::size_t given = std::min(count, left);
            std::memcpy(data, fake.typed.data() + fake.read, given);
            fake.read += given;
            return fd == STDIN_FILENO ? static_cast<ssize_t>(given) : -1;
        };
        systemCalls.write = [](int fd, const void* data, std::size_t count) -> ssize_t {
            if (fd == STDERR_FILENO) {
                fake.prompts.append(static_cast<const char*>(data), count);
            }
            return static_cast<ssize_t>(count);
        };
    }
    void TearDown() override { systemCalls = kRealSystemCalls; }

    static std::string Read(bool confirm) {
        try {
            return std::string(ReadPassword(confirm).text());
        } catch (const EngineFailure& failure) {
            return std::string("error: ") + failure.what();
        }
    }
};

TEST_F(PasswordPromptTest, pipe_givesItsFirstLine_once_withoutPrompt) {
    struct Case {
        std::string typed;
        std::string password;
        std::size_t consumed;
    };
    const std::vector<Case> cases = {
        {"secret\nnext\n", "secret", 7},
        {"with space \n", "with space ", 12},
        {"crlf\r\n", "crlf", 6},
        {"cut\rhere\n", "cut", 9},
        {"no line end", "no line end", 11},
        {"\n", "", 1},
        {"", "error: standard input: no password given", 0},
        {std::string(1023, 'x'), std::string(1023, 'x'), 1023},
        {std::string(1024, 'x') + "\n",
         "error: standard input: the password is longer than 1023 bytes", 1024},
    };
    for (const auto& [typed, password, consumed] : cases) {
        Type(false, typed);
        EXPECT_EQ(Read(true), password) << typed;
        EXPECT_EQ(fake.read, consumed) << typed;
        EXPECT_EQ(fake.prompts, "");
        EXPECT_TRUE(fake.echo.empty());
    }
}

TEST_F(PasswordPromptTest, terminal_asksTwiceWithoutEcho_andGivesTheEchoBack) {
    Type(true, "same\nsame\n");
    EXPECT_EQ(Read(true), "same");
    EXPECT_EQ(fake.prompts, "Password: \nPassword (one more time): \n");
    EXPECT_EQ(fake.echo, (std::vector<bool>{false, true, false, true}));

    Type(true, "one\ntwo\n");
    EXPECT_EQ(Read(true), "error: password: the two passwords differ");
    EXPECT_EQ(fake.echo.back(), true);

    Type(true, "once\n");
    EXPECT_EQ(Read(false), "once");
    EXPECT_EQ(fake.prompts, "Password: \n");
}

TEST_F(PasswordPromptTest, terminalClosedMidway_isRefused_withTheEchoBack) {
    Type(true, "");
    EXPECT_EQ(Read(false), "error: standard input: no password given");
    EXPECT_EQ(fake.echo, (std::vector<bool>{false, true}));
}

}  // namespace
}  // namespace vx::engine
