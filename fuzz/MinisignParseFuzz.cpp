// Arbitrary bytes as each of minisign's files: a public key (file and base64
// line), a signature and a secret key, as vxpk reads them. A refusal is an
// answer; a crash, a sanitizer finding or another exception is a finding.
// What is read must write back to what reads the same again. An encrypted
// secret key stops before its password: scrypt at minisign's cost would take
// seconds an input.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "engine/core/EngineFailure.h"
#include "engine/signing/MinisignPublicKey.h"
#include "engine/signing/MinisignSecretKey.h"
#include "engine/signing/MinisignSignature.h"
#include "engine/signing/Sodium.h"

namespace {

using namespace vx::engine;

struct Encrypted {};

template <class Parse>
void Refusable(Parse&& parse) {
    try {
        parse();
    } catch (const EngineFailure& failure) {
        if (failure.kind != FailureKind::kUnacceptable) {
            std::abort();
        }
    }
}

void PublicKeyRoundTrip(std::string_view text) {
    const MinisignPublicKey key = MinisignPublicKey::FromFileText(text, "key");
    const MinisignPublicKey again = MinisignPublicKey::FromFileText(key.FileText(), "again");
    if (again.key != key.key || again.keyId != key.keyId ||
        MinisignPublicKey::FromBase64(key.Base64(), "line").key != key.key) {
        std::abort();
    }
}

void SignatureRoundTrip(std::string_view text) {
    const MinisignSignature signature = MinisignSignature::FromFileText(text, "signature");
    const MinisignSignature again = MinisignSignature::FromFileText(signature.FileText(), "again");
    if (again.FileText() != signature.FileText() || again.prehashed != signature.prehashed) {
        std::abort();
    }
}

void SecretKeyRoundTrip(std::string_view text) {
    try {
        const MinisignSecretKey key = MinisignSecretKey::FromFileText(
            text, "key", []() -> SecretBytes { throw Encrypted{}; });
        const SecretBytes written = key.FileText(nullptr, kMinisignScrypt);
        const MinisignSecretKey again =
            MinisignSecretKey::FromFileText(written.text(), "again", nullptr);
        if (again.keyId() != key.keyId() || !SameSecret(again.key(), key.key())) {
            std::abort();
        }
    } catch (const Encrypted&) {
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    StartSodium();
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    Refusable([&] { PublicKeyRoundTrip(text); });
    Refusable([&] { MinisignPublicKey::FromBase64(text, "line"); });
    Refusable([&] { SignatureRoundTrip(text); });
    Refusable([&] { SecretKeyRoundTrip(text); });
    return 0;
}
