#pragma once

#include <array>
#include <string>
#include <string_view>

#include "engine/signing/MinisignText.h"

namespace vx::engine {

// An Ed25519 public key with its minisign key id, read from and written to
// minisign's public key file ("untrusted comment:" line, then base64 of "Ed",
// the id and the key) or its one-line base64 form.
struct MinisignPublicKey {
    KeyId keyId{};
    std::array<unsigned char, kPublicKeyBytes> key{};

    // Each refuses, naming source, what is not such a key.
    static MinisignPublicKey FromFileText(std::string_view text, const std::string& source);
    static MinisignPublicKey FromBase64(std::string_view base64, const std::string& source);

    std::string Base64() const;
    std::string FileText() const;
};

}  // namespace vx::engine
