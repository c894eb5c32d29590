#include "engine/signing/KeyPairGeneration.h"

#include <fcntl.h>

#include <cerrno>
#include <optional>

#include "engine/core/EngineFailure.h"
#include "engine/core/Interruption.h"
#include "engine/core/SameFile.h"
#include "engine/signing/SmallFiles.h"
#include "engine/signing/Sodium.h"
#include "runtime/files/SystemCalls.h"

namespace vx::engine {
namespace {

// Checked before the password is asked, so nobody types one in vain; the
// writing checks again.
void RefuseExisting(const std::string& path) {
    struct stat info;
    if (systemCalls.fstatat(AT_FDCWD, path.c_str(), &info, AT_SYMLINK_NOFOLLOW) == 0) {
        failUnacceptable(path, "the key file exists; --force replaces it");
    }
    if (errno != ENOENT) {
        failSystem(path, errno);
    }
}

std::optional<SecretBytes> Password(const KeyPairRequest& request) {
    if (!request.password) {
        return std::nullopt;
    }
    SecretBytes password = request.password();
    if (password.size() == 0) {
        failUnacceptable("password", "empty; --without-password makes a key without one");
    }
    return password;
}

}  // namespace

MinisignPublicKey GenerateKeyPair(const KeyPairRequest& request) {
    StartSodium();
    if (SameFile(request.publicKeyPath, request.secretKeyPath)) {
        failUnacceptable(request.secretKeyPath, "the public and the secret key need two files");
    }
    if (!request.replace) {
        RefuseExisting(request.secretKeyPath);
        RefuseExisting(request.publicKeyPath);
    }
    const MinisignSecretKey key = MinisignSecretKey::Generate();
    const std::optional<SecretBytes> password = Password(request);
    // Until the key files are written nothing is, and a signal during the
    // prompt or the slow key derivation ends the process at once.
    const SecretBytes secretText = key.FileText(password ? &*password : nullptr, request.limits);
    const MinisignPublicKey publicKey = key.PublicKey();
    const InterruptibleWork work;
    // Both files whole before either replaces anything, so that a failure or
    // a signal leaves the old pair as it was.
    PendingFile secretFile(request.secretKeyPath, secretText.text());
    PendingFile publicFile(request.publicKeyPath, publicKey.FileText());
    StopIfInterrupted();
    publicFile.commit(0644, request.replace);
    // The secret key goes last: whatever fails, the user keeps one.
    try {
        secretFile.commit(0600, request.replace);
    } catch (...) {
        // A public key that no secret key matches would only mislead; the
        // old secret key, where there is one, still holds its public key.
        systemCalls.unlinkat(AT_FDCWD, request.publicKeyPath.c_str(), 0);
        throw;
    }
    return publicKey;
}

}  // namespace vx::engine
