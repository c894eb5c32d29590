#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "MinisignSamples.h"
#include "engine/core/EngineFailure.h"
#include "engine/signing/MinisignPublicKey.h"
#include "engine/signing/MinisignSecretKey.h"
#include "engine/signing/MinisignSignature.h"

namespace vx::engine {
namespace {

using samples::kPublicKey;
using samples::kSignature;

std::string ErrorOf(const std::function<void()>& body) {
    try {
        body();
    } catch (const EngineFailure& failure) {
        EXPECT_EQ(failure.kind, FailureKind::kUnacceptable) << failure.what();
        return failure.what();
    }
    return "accepted";
}

TEST(MinisignFilesTest, minisignsPublicKey_readsWithItsIdAndWritesBackTheSame) {
    const auto key = MinisignPublicKey::FromFileText(kPublicKey, "k.pub");
    EXPECT_EQ(KeyIdText(key.keyId), "B4775A96A14973AA");
    EXPECT_EQ(key.FileText(), kPublicKey);
    EXPECT_EQ(MinisignPublicKey::FromBase64(key.Base64(), "-").key, key.key);
}

TEST(MinisignFilesTest, windowsLineEnds_areRead) {
    const auto key = MinisignPublicKey::FromFileText(
        "untrusted comment: x\r\nRWSqc0mhllp3tBKy4gGUE7J0++ZykY1ksT/fKdyXrvCgWO5Yr+jdOsn1\r\n",
        "k");
    EXPECT_EQ(KeyIdText(key.keyId), "B4775A96A14973AA");
}

TEST(MinisignFilesTest, keyId_isPrintedAsALittleEndianNumber) {
    EXPECT_EQ(KeyIdText({0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0xab}), "AB07060504030201");
}

TEST(MinisignFilesTest, minisignsSignature_readsAndWritesBackTheSame) {
    const auto signature = MinisignSignature::FromFileText(kSignature, "f.minisig");
    EXPECT_TRUE(signature.prehashed);
    EXPECT_EQ(KeyIdText(signature.keyId), "B4775A96A14973AA");
    EXPECT_EQ(signature.trustedComment, "timestamp:1795550195\tfile:f.txt\thashed");
    EXPECT_EQ(signature.FileText(), kSignature);
    const auto key = MinisignPublicKey::FromFileText(kPublicKey, "k.pub");
    EXPECT_TRUE(signature.SignsComment(key));
}

TEST(MinisignFilesTest, damagedPublicKey_isRefusedWithItsReason) {
    const std::string good = kPublicKey;
    const std::string line = good.substr(good.find('\n') + 1);
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"", "k: not a minisign public key: it must be two lines"},
        {good.substr(0, good.find('\n') + 1), "k: not a minisign public key: it must be two lines"},
        {good + "\n", "k: not a minisign public key: it must be two lines"},
        {"comment\n" + line,
         "k: the public key's first line does not start with \"untrusted comment: \""},
        {"untrusted comment: \n" + line.substr(0, 40) + "\n",
         "k: the public key is not base64 of 42 bytes"},
        {"untrusted comment: \n" + line.substr(0, 55) + "!\n",
         "k: the public key is not base64 of 42 bytes"},
        {"untrusted comment: \n" + line.substr(0, 56) + "AAAA\n",
         "k: the public key is not base64 of 42 bytes"},
        {"untrusted comment: \nQW" + line.substr(2),
         "k: the public key is not an Ed25519 key (algorithm \"Ed\")"},
    };
    for (const auto& [text, error] : cases) {
        EXPECT_EQ(ErrorOf([&] { MinisignPublicKey::FromFileText(text, "k"); }), error) << text;
    }
}

TEST(MinisignFilesTest, damagedSignature_isRefusedWithItsReason) {
    const std::string good = kSignature;
    std::vector<std::string> lines;
    for (std::size_t at = 0; at < good.size(); at = good.find('\n', at) + 1) {
        lines.push_back(good.substr(at, good.find('\n', at) + 1 - at));
    }
    const std::vector<std::pair<std::string, std::string>> cases = {
        {lines[0] + lines[1] + lines[2], "s: not a minisign signature: it must be four lines"},
        {"x" + good, "s: the signature's first line does not start with \"untrusted comment: \""},
        {lines[0] + lines[1] + "trusted: x\n" + lines[3],
         "s: the signature's third line does not start with \"trusted comment: \""},
        {lines[0] + "RXSq" + lines[1].substr(4) + lines[2] + lines[3],
         "s: unknown signature algorithm (neither \"ED\" nor \"Ed\")"},
        {lines[0] + lines[1].substr(10) + lines[2] + lines[3],
         "s: the signature is not base64 of 74 bytes"},
        {lines[0] + lines[1] + lines[2] + lines[3].substr(2),
         "s: the global signature is not base64 of 64 bytes"},
        {lines[0] + lines[1] + "trusted comment: " + std::string(8174, 'x') + "\n" + lines[3],
         "s: the trusted comment is longer than 8173 bytes"},
    };
    for (const auto& [text, error] : cases) {
        EXPECT_EQ(ErrorOf([&] { MinisignSignature::FromFileText(text, "s"); }), error) << text;
    }
}

TEST(MinisignFilesTest, longestTrustedComment_thatMinisignReads_isAccepted) {
    EXPECT_EQ(TrustedCommentProblem(std::string(8173, 'x')), "");
    EXPECT_EQ(TrustedCommentProblem("a\rb"), "the trusted comment holds a line break");
}

}  // namespace
}  // namespace vx::engine
