#pragma once

#include <string>

#include "engine/signing/MinisignPublicKey.h"
#include "engine/signing/MinisignSignature.h"

namespace vx::engine {

// The public key in the minisign file at path.
MinisignPublicKey ReadPublicKey(const std::string& path);

// Checks the minisign signature at signaturePath against the bytes of the
// file at path and key: made by that key (else "signed by another key"), over
// these bytes, with the trusted comment it carries. Gives the signature; a
// mismatch is unacceptable, a file that cannot be read a system error.
MinisignSignature CheckSignature(const std::string& path, const std::string& signaturePath,
                                 const MinisignPublicKey& key);

}  // namespace vx::engine
