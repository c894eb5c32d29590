#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>
#include <thread>

#include "container/PackageBytes.h"
#include "engine/core/EngineFailure.h"
#include "engine/core/Interruption.h"
#include "engine/signing/KeyPairGeneration.h"
#include "engine/signing/PackageSigning.h"
#include "engine/signing/SignatureCheck.h"
#include "runtime/files/SystemCalls.h"
#include "support/ScratchFolder.h"

namespace vx::engine {
namespace {

using test::ScratchFolder;

class PackageSigningTest : public ::testing::Test {
protected:
    void SetUp() override {
        // Larger than one block read of the hash, so that it is read in steps.
        scratch.writeFile("app.vxpk",
                          test::EncodePackage({test::FileRecord("a", std::string(300 << 10, 'x'))},
                                              "My\tApp", "com.example\napp"));
        key = GenerateKeyPair({.publicKeyPath = scratch.path("k.pub"),
                               .secretKeyPath = scratch.path("k.key"),
                               .replace = false,
                               .password = nullptr,
                               .limits = kMinisignScrypt});
    }
    SignRequest request() const {
        return {.package = scratch.path("app.vxpk"),
                .secretKeyPath = scratch.path("k.key"),
                .signaturePath = "",
                .trustedComment = "",
                .password = nullptr};
    }
    std::size_t fileCount() const {
        const auto entries = std::filesystem::directory_iterator(scratch.path());
        return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
    }
    ScratchFolder scratch;
    MinisignPublicKey key;
};

TEST_F(PackageSigningTest, defaultComment_namesTheApp_inOneLineOfKeyValuePairs) {
    const SignOutcome outcome = SignPackage(request());
    EXPECT_EQ(outcome.signaturePath, scratch.path("app.vxpk.minisig"));
    const std::string& comment = outcome.signature.trustedComment;
    EXPECT_TRUE(comment.starts_with("timestamp:")) << comment;
    EXPECT_TRUE(comment.ends_with("\tfile:app.vxpk\tname:My App\tuid:com.example app\thashed"))
        << comment;
    const auto checked = CheckSignature(request().package, outcome.signaturePath, key);
    EXPECT_EQ(checked.trustedComment, comment);
}

TEST_F(PackageSigningTest, defaultComment_carriesTheGivenTime) {
    PackageSummary summary;
    summary.header.name = String("N");
    summary.header.uid = String("u");
    EXPECT_EQ(DefaultTrustedComment("dir/a.vxpk", summary, 1700000000),
              "timestamp:1700000000\tfile:a.vxpk\tname:N\tuid:u\thashed");
}

// A package replaced by another file once it was found sound, here while the
// secret key is read, is not what gets signed: the bytes checked are the
// bytes hashed.
TEST_F(PackageSigningTest, packageReplacedAfterItsCheck_theCheckedBytesAreSigned) {
    scratch.writeFile("checked.vxpk", scratch.readFile("app.vxpk"));
    static std::string replacement;
    static std::string package;
    replacement = scratch.writeFile("replacement", "not a package");
    package = request().package;
    struct Restore {
        ~Restore() { systemCalls = kRealSystemCalls; }
    } restore;
    systemCalls.openat = [](int folder, const char* name, int flags, mode_t mode) {
        if (std::string_view(name).ends_with("k.key")) {
            std::filesystem::rename(replacement, package);
        }
        return kRealSystemCalls.openat(folder, name, flags, mode);
    };
    const SignOutcome outcome = SignPackage(request());
    EXPECT_NO_THROW(CheckSignature(scratch.path("checked.vxpk"), outcome.signaturePath, key));
}

TEST_F(PackageSigningTest, signalWhileHashing_leavesNoSignature) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const std::size_t before = fileCount();
    EXPECT_EXIT(
        {
            WatchForInterruption();
            systemCalls.pread = [](int fd, void* data, std::size_t count, off_t offset) {
                // The hash's fifth 64 KiB block; the structure's walk
                // reads the record headers only, never there.
                if (offset == 256 << 10) {
                    ::kill(::getpid(), SIGINT);
                    while (InterruptingSignal() == 0) {
                        std::this_thread::sleep_for(std::chrono::milliseconds(1));
                    }
                }
                return kRealSystemCalls.pread(fd, data, count, offset);
            };
            try {
                SignPackage(request());
            } catch (const Interrupted& interrupted) {
                std::_Exit(fileCount() == before ? interrupted.signal : 1);
            }
            std::_Exit(2);
        },
        ::testing::ExitedWithCode(SIGINT), "");
}

}  // namespace
}  // namespace vx::engine
