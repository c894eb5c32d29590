#include <gtest/gtest.h>

#include <cstdio>
#include <random>
#include <string>

#include "MinisignSamples.h"
#include "engine/core/EngineFailure.h"
#include "engine/signing/FileHash.h"
#include "engine/signing/MinisignPublicKey.h"
#include "engine/signing/MinisignSignature.h"
#include "support/ScratchFolder.h"
#include "support/SystemCallFaults.h"

namespace vx::engine {
namespace {

using test::Faults;
using test::ScratchFolder;
using test::SystemCallFaults;

std::string Hex(std::span<const unsigned char> bytes) {
    std::string text;
    char digits[3];
    for (const unsigned char byte : bytes) {
        std::snprintf(digits, sizeof digits, "%02x", byte);
        text += digits;
    }
    return text;
}

// What a coreutils tool prints for the file, as a reference apart from ours.
std::string Coreutils(const std::string& tool, const std::string& path) {
    std::string out;
    FILE* pipe = ::popen((tool + " '" + path + "'").c_str(), "r");
    char block[256];
    while (pipe != nullptr && std::fgets(block, sizeof block, pipe) != nullptr) {
        out += block;
    }
    if (pipe != nullptr) {
        ::pclose(pipe);
    }
    return out.substr(0, out.find(' '));
}

class FileHashTest : public ::testing::Test {
protected:
    // Three blocks and a bit of random bytes, so that every block boundary is
    // crossed.
    std::string bigFile() {
        std::string bytes((std::size_t{3} << 20) + 17, '\0');
        std::mt19937 random(7);
        for (char& c : bytes) {
            c = static_cast<char>(random());
        }
        return scratch.writeFile("big", bytes);
    }
    ScratchFolder scratch;
};

TEST_F(FileHashTest, smallFiles_giveTheStandardDigests) {
    const std::string abc = scratch.writeFile("abc", "abc");
    EXPECT_EQ(Hex(Sha256OfFile(abc)),
              "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_EQ(HexOf(Sha256OfFile(abc)), Hex(Sha256OfFile(abc)));
    EXPECT_EQ(Hex(Blake2b512OfFile(abc)),
              "ba80a53f981c4d0d6a2797b69f12f6e94c212f14685ac4b74b12bb6fdbffa2d1"
              "7d87c5392aab792dc252d5de4533cc9518d38aa8dbf1925ab92386edd4009923");
    const std::string empty = scratch.writeFile("empty", "");
    EXPECT_EQ(Hex(Sha256OfFile(empty)),
              "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
}

TEST_F(FileHashTest, largeFile_matchesCoreutils_evenWithShortAndInterruptedReads) {
    const std::string path = bigFile();
    const std::string sha256 = Coreutils("sha256sum", path);
    const std::string blake2b = Coreutils("b2sum", path);
    ASSERT_EQ(sha256.size(), 64u);
    for (const Faults& faults : {Faults{}, Faults{.interruptEvery = 3, .readAtMost = 100000}}) {
        const SystemCallFaults injected(faults);
        EXPECT_EQ(Hex(Sha256OfFile(path)), sha256);
        EXPECT_EQ(Hex(Blake2b512OfFile(path)), blake2b);
        EXPECT_EQ(WholeFile(path, uint64_t{1} << 30).size(), (std::size_t{3} << 20) + 17);
    }
}

TEST_F(FileHashTest, failedRead_isASystemError_andTooLargeForLegacyIsRefused) {
    const std::string path = bigFile();
    {
        const SystemCallFaults injected(Faults{.readFailsAt = 1 << 20});
        try {
            Blake2b512OfFile(path);
            ADD_FAILURE() << "hashed a file that cannot be read";
        } catch (const EngineFailure& failure) {
            EXPECT_EQ(failure.kind, FailureKind::kSystem);
            EXPECT_EQ(failure.what(), path + ": Input/output error");
        }
    }
    try {
        WholeFile(path, 1 << 20);
        ADD_FAILURE() << "read a file above the limit";
    } catch (const EngineFailure& failure) {
        EXPECT_EQ(failure.kind, FailureKind::kUnacceptable);
    }
}

// minisign signs the BLAKE2b-512 that we compute for the same bytes.
TEST_F(FileHashTest, digest_isWhatMinisignSigns) {
    const auto key = MinisignPublicKey::FromBase64(samples::kPublicKeyLine, "key");
    const auto signature = MinisignSignature::FromFileText(samples::kSignature, "sig");
    const std::string signedFile = scratch.writeFile("f", samples::kSignedBytes);
    EXPECT_TRUE(signature.SignsMessage(key, Blake2b512OfFile(signedFile)));
    EXPECT_FALSE(signature.SignsMessage(key, Blake2b512OfFile(scratch.writeFile("g", "hello"))));
}

}  // namespace
}  // namespace vx::engine
