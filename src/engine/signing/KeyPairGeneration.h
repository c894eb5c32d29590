#pragma once

#include <string>

#include "engine/signing/MinisignPublicKey.h"
#include "engine/signing/MinisignSecretKey.h"

namespace vx::engine {

struct KeyPairRequest {
    std::string publicKeyPath;
    std::string secretKeyPath;
    // Replace key files that exist; otherwise they are refused, untouched.
    bool replace = false;
    // Empty for a secret key without a password.
    PasswordSource password;
    ScryptLimits limits = kMinisignScrypt;
};

// Makes a new key pair and writes it in minisign's files: the secret key
// private (0600), the public key readable by all, each whole or not at all.
// When any step fails, no new file is left behind and a secret key that
// was there stays.
MinisignPublicKey GenerateKeyPair(const KeyPairRequest& request);

}  // namespace vx::engine
