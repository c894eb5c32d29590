#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "engine/core/EngineFailure.h"
#include "engine/core/Interruption.h"
#include "engine/signing/KeyPairGeneration.h"
#include "engine/signing/SmallFiles.h"
#include "support/ScratchFolder.h"
#include "support/SystemCallFaults.h"

namespace vx::engine {
namespace {

using test::ScratchFolder;

constexpr ScryptLimits kCheap{.operations = 32768, .memory = 16777216};

class KeyPairGenerationTest : public ::testing::Test {
protected:
    KeyPairRequest request(bool withPassword) const {
        KeyPairRequest made{.publicKeyPath = scratch.path("k.pub"),
                            .secretKeyPath = scratch.path("k.key"),
                            .password = nullptr,
                            .limits = kCheap};
        if (withPassword) {
            made.password = [] {
                SecretBytes password(2);
                password.data()[0] = 'p';
                password.data()[1] = 'w';
                return password;
            };
        }
        return made;
    }
    std::vector<std::string> names() const {
        std::vector<std::string> found;
        for (const auto& entry : std::filesystem::directory_iterator(scratch.path())) {
            found.push_back(entry.path().filename().string());
        }
        std::sort(found.begin(), found.end());
        return found;
    }
    ScratchFolder scratch;
};

mode_t ModeOf(const std::string& path) {
    struct stat info {};
    ::stat(path.c_str(), &info);
    return info.st_mode & 07777;
}

TEST_F(KeyPairGenerationTest, keyFiles_holdThePairThatWasMade_theSecretOnePrivate) {
    for (const bool withPassword : {false, true}) {
        KeyPairRequest asked = request(withPassword);
        asked.replace = true;
        const MinisignPublicKey made = GenerateKeyPair(asked);
        EXPECT_EQ(ModeOf(asked.secretKeyPath), 0600u);
        const auto read = MinisignPublicKey::FromFileText(
            ReadSmallFile(asked.publicKeyPath, 4096).text(), "k.pub");
        EXPECT_EQ(read.key, made.key);
        EXPECT_EQ(read.keyId, made.keyId);
        const auto secret = MinisignSecretKey::FromFileText(
            ReadSmallFile(asked.secretKeyPath, 4096).text(), "k.key", request(true).password);
        EXPECT_EQ(secret.PublicKey().key, made.key);
    }
}

TEST_F(KeyPairGenerationTest, fullDisk_leavesNoKeyFile) {
    for (const uint64_t room : {0, 100}) {
        const test::SystemCallFaults full(test::Faults{.diskSpace = room});
        EXPECT_THROW(GenerateKeyPair(request(false)), EngineFailure);
        EXPECT_TRUE(names().empty()) << room;
    }
}

// A signal while the files are written stops the work; the old key files
// stay as they were and no temporary one is left. The signal comes from the
// public key's write, after the secret key's, so the stop is met at a known
// step.
TEST_F(KeyPairGenerationTest, signalWhileWriting_keepsTheOldKeys) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    scratch.writeFile("k.key", "old secret");
    scratch.writeFile("k.pub", "old public");
    const std::vector<std::string> oldNames = names();
    EXPECT_EXIT(
        {
            WatchForInterruption();
            systemCalls.pwrite = [](int fd, const void* data, std::size_t count, off_t offset) {
                if (std::string_view(static_cast<const char*>(data), count)
                        .starts_with("untrusted comment: minisign public key")) {
                    ::kill(::getpid(), SIGTERM);
                    while (InterruptingSignal() == 0) {
                        std::this_thread::sleep_for(std::chrono::milliseconds(1));
                    }
                }
                return kRealSystemCalls.pwrite(fd, data, count, offset);
            };
            KeyPairRequest asked = request(false);
            asked.replace = true;
            try {
                GenerateKeyPair(asked);
            } catch (const Interrupted& interrupted) {
                const bool kept = names() == oldNames &&
                                  scratch.readFile("k.key") == "old secret" &&
                                  scratch.readFile("k.pub") == "old public";
                std::_Exit(kept ? interrupted.signal : 1);
            }
            std::_Exit(2);
        },
        ::testing::ExitedWithCode(SIGTERM), "");
}

}  // namespace
}  // namespace vx::engine
