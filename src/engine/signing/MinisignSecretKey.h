#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "engine/signing/MinisignPublicKey.h"
#include "engine/signing/MinisignText.h"
#include "engine/signing/SecretBytes.h"

namespace vx::engine {

// The cost of the scrypt derivation that turns a password into the key
// stream of an encrypted secret key, as minisign stores it in the file.
struct ScryptLimits {
    uint64_t operations = 0;
    uint64_t memory = 0;
};
// What minisign asks for (libsodium's "sensitive" limits: 1 GiB of memory);
// keys asking for more are refused, so that a key file cannot make us spend
// without end.
inline constexpr ScryptLimits kMinisignScrypt{.operations = 33554432, .memory = 1073741824};

// Asked only when the key is encrypted.
using PasswordSource = std::function<SecretBytes()>;

// An Ed25519 secret key with its minisign key id, in locked memory, read
// from and written to minisign's secret key file: "Ed", the key derivation
// ("Sc" for scrypt, or none), "B2" for the BLAKE2b checksum, the scrypt salt
// and limits, then the id, the key and the checksum, XORed with the scrypt
// stream when encrypted.
class MinisignSecretKey {
public:
    static MinisignSecretKey Generate();
    // Refuses, naming source, a file that is not such a key, is damaged, or
    // does not open with the password.
    static MinisignSecretKey FromFileText(std::string_view text, const std::string& source,
                                          const PasswordSource& password);

    // The file, encrypted with password unless it is null, at limits or, where
    // memory is short, at the highest halving of them that works.
    SecretBytes FileText(const SecretBytes* password, ScryptLimits limits) const;
    MinisignPublicKey PublicKey() const;
    const KeyId& keyId() const { return keyId_; }
    const SecretBytes& key() const { return key_; }

private:
    MinisignSecretKey();
    KeyId keyId_{};
    SecretBytes key_;
};

}  // namespace vx::engine
