#include "engine/signing/MinisignSecretKey.h"

#include <sodium.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

#include "engine/core/EngineFailure.h"
#include "runtime/text/Lines.h"

namespace vx::engine {
namespace {

// Where the fields lie in the decoded key.
constexpr std::size_t kKdfAt = 2;
constexpr std::size_t kChecksumAlgorithmAt = 4;
constexpr std::size_t kSaltAt = 6;
constexpr std::size_t kOperationsAt = kSaltAt + crypto_pwhash_scryptsalsa208sha256_SALTBYTES;
constexpr std::size_t kMemoryAt = kOperationsAt + 8;
constexpr std::size_t kKeyIdAt = kMemoryAt + 8;
constexpr std::size_t kKeyAt = kKeyIdAt + kKeyIdBytes;
constexpr std::size_t kChecksumAt = kKeyAt + kSecretKeyBytes;
constexpr std::size_t kChecksumBytes = crypto_generichash_BYTES;
constexpr std::size_t kDecodedBytes = kChecksumAt + kChecksumBytes;
// The part that the password's key stream covers: id, key and checksum.
constexpr std::size_t kSealedBytes = kDecodedBytes - kKeyIdAt;
static_assert(kSecretKeyBytes == crypto_sign_SECRETKEYBYTES);

constexpr std::string_view kScrypt("Sc", 2);
constexpr std::string_view kNoKdf("\0\0", 2);

std::string_view Field(const SecretBytes& decoded, std::size_t at) {
    return decoded.text().substr(at, 2);
}

uint64_t LoadLittleEndian(const unsigned char* bytes) {
    uint64_t value = 0;
    for (int i = 7; i >= 0; --i) {
        value = (value << 8) | bytes[i];
    }
    return value;
}

void StoreLittleEndian(unsigned char* bytes, uint64_t value) {
    for (int i = 0; i < 8; ++i, value >>= 8) {
        bytes[i] = static_cast<unsigned char>(value & 0xff);
    }
}

// BLAKE2b-256 of the algorithm, the id and the key, as minisign checks them.
std::array<unsigned char, kChecksumBytes> Checksum(const SecretBytes& decoded) {
    std::array<unsigned char, kChecksumBytes> checksum{};
    crypto_generichash_state state;
    crypto_generichash_init(&state, nullptr, 0, checksum.size());
    crypto_generichash_update(&state, decoded.data(), 2);
    crypto_generichash_update(&state, decoded.data() + kKeyIdAt, kKeyIdBytes + kSecretKeyBytes);
    crypto_generichash_final(&state, checksum.data(), checksum.size());
    sodium_memzero(&state, sizeof state);
    return checksum;
}

bool DeriveAndApply(SecretBytes& decoded, const SecretBytes& password, ScryptLimits limits) {
    SecretBytes stream(kSealedBytes);
    if (crypto_pwhash_scryptsalsa208sha256(
            stream.data(), stream.size(), reinterpret_cast<const char*>(password.data()),
            password.size(), decoded.data() + kSaltAt, limits.operations, limits.memory) != 0) {
        return false;
    }
    for (std::size_t i = 0; i < kSealedBytes; ++i) {
        decoded.data()[kKeyIdAt + i] ^= stream.data()[i];
    }
    return true;
}

void Unseal(SecretBytes& decoded, const std::string& source, const PasswordSource& password) {
    const ScryptLimits limits{.operations = LoadLittleEndian(decoded.data() + kOperationsAt),
                              .memory = LoadLittleEndian(decoded.data() + kMemoryAt)};
    if (limits.operations > kMinisignScrypt.operations || limits.memory > kMinisignScrypt.memory) {
        failUnacceptable(source, "the key asks scrypt for more than minisign's limits");
    }
    if (!DeriveAndApply(decoded, password(), limits)) {
        failSystem(source, ENOMEM);
    }
    const auto checksum = Checksum(decoded);
    if (sodium_memcmp(checksum.data(), decoded.data() + kChecksumAt, kChecksumBytes) != 0) {
        failUnacceptable(source, "wrong password for this key");
    }
}

// minisign writes no checksum into a key without a password, so only one
// that is there can be checked; the halves' check below covers the rest.
void CheckPlainChecksum(const SecretBytes& decoded, const std::string& source) {
    const unsigned char* stored = decoded.data() + kChecksumAt;
    if (sodium_is_zero(stored, kChecksumBytes) ||
        sodium_memcmp(Checksum(decoded).data(), stored, kChecksumBytes) == 0) {
        return;
    }
    failUnacceptable(source, "the secret key is damaged: its checksum does not match");
}

// An Ed25519 secret key is its seed and its public key; a damaged one fails
// to derive the public key it carries.
void CheckHalves(const SecretBytes& decoded, const std::string& source) {
    std::array<unsigned char, crypto_sign_PUBLICKEYBYTES> publicKey{};
    SecretBytes derived(kSecretKeyBytes);
    crypto_sign_seed_keypair(publicKey.data(), derived.data(), decoded.data() + kKeyAt);
    if (sodium_memcmp(publicKey.data(), decoded.data() + kKeyAt + crypto_sign_SEEDBYTES,
                      publicKey.size()) != 0) {
        failUnacceptable(source, "the secret key is damaged: its halves do not match");
    }
}

bool CheckTags(const SecretBytes& decoded, const std::string& source) {
    if (Field(decoded, 0) != "Ed") {
        failUnacceptable(source, "the secret key is not an Ed25519 key (algorithm \"Ed\")");
    }
    if (Field(decoded, kChecksumAlgorithmAt) != "B2") {
        failUnacceptable(source, "the secret key has an unknown checksum (not \"B2\")");
    }
    if (Field(decoded, kKdfAt) != kScrypt && Field(decoded, kKdfAt) != kNoKdf) {
        failUnacceptable(source, "the secret key has an unknown key derivation (not \"Sc\")");
    }
    return Field(decoded, kKdfAt) == kScrypt;
}

// Encrypts at limits, halving them while scrypt cannot get the memory, as
// minisign does; gives the limits used.
ScryptLimits Seal(SecretBytes& decoded, const SecretBytes& password, ScryptLimits limits) {
    randombytes_buf(decoded.data() + kSaltAt, crypto_pwhash_scryptsalsa208sha256_SALTBYTES);
    while (!DeriveAndApply(decoded, password, limits)) {
        limits = {.operations = limits.operations / 2, .memory = limits.memory / 2};
        if (limits.operations < crypto_pwhash_scryptsalsa208sha256_OPSLIMIT_MIN ||
            limits.memory < crypto_pwhash_scryptsalsa208sha256_MEMLIMIT_MIN) {
            failSystem("scrypt", ENOMEM);
        }
    }
    return limits;
}

SecretBytes JoinLines(std::string_view comment, const SecretBytes& decoded) {
    const std::size_t encoded = Base64Length(decoded.size());
    const std::size_t head = kUntrustedPrefix.size() + comment.size() + 1;
    SecretBytes text(head + encoded + 2);
    char* out = reinterpret_cast<char*>(text.data());
    std::memcpy(out, kUntrustedPrefix.data(), kUntrustedPrefix.size());
    std::memcpy(out + kUntrustedPrefix.size(), comment.data(), comment.size());
    out[head - 1] = '\n';
    EncodeBase64(decoded.bytes(), {out + head, encoded + 2});
    out[head + encoded] = '\n';
    text.shrink(head + encoded + 1);
    return text;
}

}  // namespace

MinisignSecretKey::MinisignSecretKey() : key_(kSecretKeyBytes) {}

MinisignSecretKey MinisignSecretKey::Generate() {
    MinisignSecretKey key;
    randombytes_buf(key.keyId_.data(), key.keyId_.size());
    std::array<unsigned char, crypto_sign_PUBLICKEYBYTES> publicKey{};
    crypto_sign_keypair(publicKey.data(), key.key_.data());
    return key;
}

MinisignSecretKey MinisignSecretKey::FromFileText(std::string_view text, const std::string& source,
                                                  const PasswordSource& password) {
    const auto lines = SplitLines(text);
    if (lines.size() != 2) {
        failUnacceptable(source, "not a minisign secret key: it must be two lines");
    }
    AfterPrefix(lines[0], kUntrustedPrefix, source, "the secret key's first line");
    SecretBytes decoded(kDecodedBytes);
    DecodeBase64(lines[1], decoded.bytes(), source, "the secret key");
    if (CheckTags(decoded, source)) {
        Unseal(decoded, source, password);
    } else {
        CheckPlainChecksum(decoded, source);
    }
    CheckHalves(decoded, source);
    MinisignSecretKey key;
    std::copy_n(decoded.data() + kKeyIdAt, kKeyIdBytes, key.keyId_.begin());
    std::copy_n(decoded.data() + kKeyAt, kSecretKeyBytes, key.key_.data());
    return key;
}

SecretBytes MinisignSecretKey::FileText(const SecretBytes* password, ScryptLimits limits) const {
    SecretBytes decoded(kDecodedBytes);
    unsigned char* bytes = decoded.data();
    std::memcpy(bytes, "Ed", 2);
    std::memcpy(bytes + kKdfAt, (password != nullptr ? kScrypt : kNoKdf).data(), 2);
    std::memcpy(bytes + kChecksumAlgorithmAt, "B2", 2);
    std::copy(keyId_.begin(), keyId_.end(), bytes + kKeyIdAt);
    std::copy_n(key_.data(), kSecretKeyBytes, bytes + kKeyAt);
    const auto checksum = Checksum(decoded);
    std::copy(checksum.begin(), checksum.end(), bytes + kChecksumAt);
    if (password == nullptr) {
        return JoinLines("vxpk secret key, not encrypted", decoded);
    }
    const ScryptLimits used = Seal(decoded, *password, limits);
    StoreLittleEndian(bytes + kOperationsAt, used.operations);
    StoreLittleEndian(bytes + kMemoryAt, used.memory);
    return JoinLines("vxpk encrypted secret key", decoded);
}

MinisignPublicKey MinisignSecretKey::PublicKey() const {
    MinisignPublicKey publicKey;
    publicKey.keyId = keyId_;
    std::copy_n(key_.data() + crypto_sign_SEEDBYTES, kPublicKeyBytes, publicKey.key.begin());
    return publicKey;
}

}  // namespace vx::engine
