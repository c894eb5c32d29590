#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "engine/core/EngineFailure.h"
#include "engine/signing/MinisignSecretKey.h"
#include "engine/signing/MinisignSignature.h"

namespace vx::engine {
namespace {

// libsodium's smallest scrypt cost, so that a test derives in milliseconds.
constexpr ScryptLimits kCheap{.operations = 32768, .memory = 16777216};
// Where minisign's layout puts the fields, counted in the decoded bytes.
constexpr std::size_t kOperationsAt = 38;
constexpr std::size_t kKeyAt = 62;
constexpr std::size_t kChecksumAt = 126;
constexpr std::size_t kDecodedBytes = 158;

SecretBytes Secret(std::string_view text) {
    SecretBytes bytes(text.size());
    std::memcpy(bytes.data(), text.data(), text.size());
    return bytes;
}

PasswordSource Gives(std::string text, int* asked = nullptr) {
    return [text, asked] {
        if (asked != nullptr) {
            ++*asked;
        }
        return Secret(text);
    };
}

std::string FileOf(const MinisignSecretKey& key, const char* password) {
    if (password == nullptr) {
        return std::string(key.FileText(nullptr, kCheap).text());
    }
    const SecretBytes secret = Secret(password);
    return std::string(key.FileText(&secret, kCheap).text());
}

// The key file with its decoded bytes changed by change.
std::string Changed(const std::string& file,
                    const std::function<void(std::vector<unsigned char>&)>& change) {
    const std::size_t lineStart = file.find('\n') + 1;
    std::vector<unsigned char> bytes(kDecodedBytes);
    DecodeBase64(std::string_view(file).substr(lineStart, file.size() - lineStart - 1), bytes,
                 "key", "key");
    change(bytes);
    return file.substr(0, lineStart) + Base64Of(bytes) + "\n";
}

std::string ErrorOpening(const std::string& file, const PasswordSource& password) {
    try {
        MinisignSecretKey::FromFileText(file, "s.key", password);
    } catch (const EngineFailure& failure) {
        return failure.what();
    }
    return "opened";
}

// Whether the two keys are the same key pair: a signature by one checks with
// the other's public key.
bool SameKeyPair(const MinisignSecretKey& a, const MinisignSecretKey& b) {
    const std::vector<unsigned char> digest(64, 7);
    const auto signature = MinisignSignature::Sign(a, digest, "comment");
    return a.keyId() == b.keyId() && signature.SignsMessage(b.PublicKey(), digest) &&
           signature.SignsComment(b.PublicKey());
}

TEST(MinisignSecretKeyTest, keyFile_opensToTheSameKeyPair_withOrWithoutPassword) {
    const MinisignSecretKey key = MinisignSecretKey::Generate();
    int asked = 0;
    const auto plain =
        MinisignSecretKey::FromFileText(FileOf(key, nullptr), "s", Gives("", &asked));
    EXPECT_TRUE(SameKeyPair(key, plain));
    EXPECT_EQ(asked, 0);
    const auto sealed =
        MinisignSecretKey::FromFileText(FileOf(key, "pass word"), "s", Gives("pass word", &asked));
    EXPECT_TRUE(SameKeyPair(key, sealed));
    EXPECT_EQ(asked, 1);
    EXPECT_FALSE(SameKeyPair(key, MinisignSecretKey::Generate()));
}

TEST(MinisignSecretKeyTest, encryptedFile_holdsNoKeyBytesInTheClear) {
    const MinisignSecretKey key = MinisignSecretKey::Generate();
    const std::string file = FileOf(key, "pw");
    Changed(file, [&](std::vector<unsigned char>& bytes) {
        EXPECT_NE(std::memcmp(bytes.data() + kKeyAt, key.key().data(), 32), 0);
        EXPECT_EQ(std::string(bytes.begin(), bytes.begin() + 6), std::string("EdScB2"));
    });
}

TEST(MinisignSecretKeyTest, damagedKeyOrWrongPassword_isRefused) {
    const MinisignSecretKey key = MinisignSecretKey::Generate();
    const std::string plain = FileOf(key, nullptr);
    const std::string sealed = FileOf(key, "right");
    auto flip = [](std::size_t at) {
        return [at](std::vector<unsigned char>& bytes) { bytes[at] ^= 1; };
    };
    struct Case {
        std::string file;
        std::string password;
        std::string error;
    };
    const std::vector<Case> cases = {
        {sealed, "wrong", "s.key: wrong password for this key"},
        {sealed, "", "s.key: wrong password for this key"},
        {Changed(sealed, flip(kKeyAt + 5)), "right", "s.key: wrong password for this key"},
        {Changed(plain, flip(kKeyAt + 5)), "",
         "s.key: the secret key is damaged: its checksum does not match"},
        {Changed(plain, flip(kChecksumAt)), "",
         "s.key: the secret key is damaged: its checksum does not match"},
        {Changed(plain, flip(0)), "",
         "s.key: the secret key is not an Ed25519 key (algorithm \"Ed\")"},
        {Changed(plain, flip(2)), "",
         "s.key: the secret key has an unknown key derivation (not \"Sc\")"},
        {Changed(plain, flip(4)), "", "s.key: the secret key has an unknown checksum (not \"B2\")"},
        {plain.substr(0, plain.size() - 5) + "\n", "",
         "s.key: the secret key is not base64 of 158 bytes"},
        {plain.substr(plain.find('\n') + 1), "",
         "s.key: not a minisign secret key: it must be two lines"},
    };
    for (const auto& [file, password, error] : cases) {
        EXPECT_EQ(ErrorOpening(file, Gives(password)), error) << file;
    }
}

// minisign -W leaves the checksum zero; a damaged key must still be caught.
TEST(MinisignSecretKeyTest, keyWithoutChecksum_opens_butNotWhenItsHalvesDisagree) {
    const MinisignSecretKey key = MinisignSecretKey::Generate();
    auto unchecked = [](std::vector<unsigned char>& bytes) {
        std::fill(bytes.begin() + kChecksumAt, bytes.end(), 0);
    };
    const std::string file = Changed(FileOf(key, nullptr), unchecked);
    EXPECT_TRUE(SameKeyPair(key, MinisignSecretKey::FromFileText(file, "s", Gives(""))));
    for (const std::size_t at : {kKeyAt, kKeyAt + 40}) {
        const std::string damaged = Changed(file, [at](auto& bytes) { bytes[at] ^= 0x80; });
        EXPECT_EQ(ErrorOpening(damaged, Gives("")),
                  "s.key: the secret key is damaged: its halves do not match");
    }
}

TEST(MinisignSecretKeyTest, keyAskingScryptForTooMuch_isRefusedBeforeThePassword) {
    const std::string sealed = FileOf(MinisignSecretKey::Generate(), "pw");
    int asked = 0;
    for (const std::size_t at : {kOperationsAt + 4, kOperationsAt + 8 + 4}) {
        const std::string greedy = Changed(sealed, [at](auto& bytes) { bytes[at] = 0x40; });
        EXPECT_EQ(ErrorOpening(greedy, Gives("pw", &asked)),
                  "s.key: the key asks scrypt for more than minisign's limits");
    }
    EXPECT_EQ(asked, 0);
}

TEST(MinisignSecretKeyTest, limits_areStoredAsMinisignReadsThem) {
    const std::string sealed = FileOf(MinisignSecretKey::Generate(), "pw");
    Changed(sealed, [](std::vector<unsigned char>& bytes) {
        const std::vector<unsigned char> operations(bytes.begin() + kOperationsAt,
                                                    bytes.begin() + kOperationsAt + 16);
        EXPECT_EQ(operations, (std::vector<unsigned char>{0, 0x80, 0, 0, 0, 0, 0, 0,  //
                                                          0, 0, 0, 1, 0, 0, 0, 0}));
    });
}

}  // namespace
}  // namespace vx::engine
