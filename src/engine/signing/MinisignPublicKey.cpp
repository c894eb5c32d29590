#include "engine/signing/MinisignPublicKey.h"

#include <algorithm>

#include "engine/core/EngineFailure.h"
#include "runtime/text/Lines.h"

namespace vx::engine {
namespace {

constexpr std::string_view kAlgorithm = "Ed";
constexpr std::size_t kEncodedBytes = kAlgorithm.size() + kKeyIdBytes + kPublicKeyBytes;

}  // namespace

MinisignPublicKey MinisignPublicKey::FromFileText(std::string_view text,
                                                  const std::string& source) {
    const auto lines = SplitLines(text);
    if (lines.size() != 2) {
        failUnacceptable(source, "not a minisign public key: it must be two lines");
    }
    AfterPrefix(lines[0], kUntrustedPrefix, source, "the public key's first line");
    return FromBase64(lines[1], source);
}

MinisignPublicKey MinisignPublicKey::FromBase64(std::string_view base64,
                                                const std::string& source) {
    std::array<unsigned char, kEncodedBytes> bytes{};
    DecodeBase64(base64, bytes, source, "the public key");
    if (!std::equal(kAlgorithm.begin(), kAlgorithm.end(), bytes.begin())) {
        failUnacceptable(source, "the public key is not an Ed25519 key (algorithm \"Ed\")");
    }
    MinisignPublicKey key;
    const auto id = bytes.begin() + kAlgorithm.size();
    std::copy_n(id, kKeyIdBytes, key.keyId.begin());
    std::copy_n(id + kKeyIdBytes, kPublicKeyBytes, key.key.begin());
    return key;
}

std::string MinisignPublicKey::Base64() const {
    std::array<unsigned char, kEncodedBytes> bytes{};
    const auto end = std::copy(kAlgorithm.begin(), kAlgorithm.end(), bytes.begin());
    std::copy(key.begin(), key.end(), std::copy(keyId.begin(), keyId.end(), end));
    return Base64Of(bytes);
}

std::string MinisignPublicKey::FileText() const {
    return std::string(kUntrustedPrefix) + "minisign public key " + KeyIdText(keyId) + "\n" +
           Base64() + "\n";
}

}  // namespace vx::engine
