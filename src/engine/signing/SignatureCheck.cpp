#include "engine/signing/SignatureCheck.h"

#include <sodium.h>

#include "engine/core/EngineFailure.h"
#include "engine/signing/FileHash.h"
#include "engine/signing/PackageSigning.h"
#include "engine/signing/SmallFiles.h"
#include "engine/signing/Sodium.h"

namespace vx::engine {
namespace {

// minisign loads a file whole for a legacy signature; so do we, up to the
// size where minisign itself gave up.
constexpr uint64_t kLegacyFileMax = uint64_t{1} << 30;

bool SignsFile(const MinisignSignature& signature, const std::string& path,
               const MinisignPublicKey& key) {
    if (signature.prehashed) {
        return signature.SignsMessage(key, Blake2b512OfFile(path));
    }
    return signature.SignsMessage(key, WholeFile(path, kLegacyFileMax));
}

}  // namespace

MinisignPublicKey ReadPublicKey(const std::string& path) {
    StartSodium();
    return MinisignPublicKey::FromFileText(ReadSmallFile(path, kSigningFileMax).text(), path);
}

MinisignSignature CheckSignature(const std::string& path, const std::string& signaturePath,
                                 const MinisignPublicKey& key) {
    StartSodium();
    const MinisignSignature signature = MinisignSignature::FromFileText(
        ReadSmallFile(signaturePath, kSigningFileMax).text(), signaturePath);
    if (sodium_memcmp(signature.keyId.data(), key.keyId.data(), kKeyIdBytes) != 0) {
        failUnacceptable(signaturePath, "signed by another key: " + KeyIdText(signature.keyId) +
                                            " (the public key is " + KeyIdText(key.keyId) + ")");
    }
    if (!SignsFile(signature, path, key)) {
        failUnacceptable(path, "the signature does not match the file's bytes");
    }
    if (!signature.SignsComment(key)) {
        failUnacceptable(signaturePath, "the trusted comment does not match its signature");
    }
    return signature;
}

}  // namespace vx::engine
