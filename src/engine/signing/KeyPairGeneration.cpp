#include "engine/signing/KeyPairGeneration.h"

#include <fcntl.h>

#include <cerrno>
#include <optional>

#include "engine/core/EngineFailure.h"
#include "engine/core/Interruption.h"
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
    if (request.publicKeyPath == request.secretKeyPath) {
        failUnacceptable(request.secretKeyPath, "the public and the secret key need two files");
    }
    if (!request.replace) {
        RefuseExisting(request.secretKeyPath);
        RefuseExisting(request.publicKeyPath);
    }
    const MinisignSecretKey key = MinisignSecretKey::Generate();
    const std::optional<SecretBytes> password = Password(request);
    // While the password is typed nothing is written, and a signal may end
    // the process at once; from here on it lets the key files be removed.
    const InterruptibleWork work;
    const SecretBytes secretText = key.FileText(password ? &*password : nullptr, request.limits);
    const MinisignPublicKey publicKey = key.PublicKey();
    WriteSmallFile(request.secretKeyPath, secretText.text(), 0600, request.replace);
    try {
        WriteSmallFile(request.publicKeyPath, publicKey.FileText(), 0644, request.replace);
    } catch (...) {
        // A secret key without its public key is of no use and must not
        // stay behind.
        systemCalls.unlinkat(AT_FDCWD, request.secretKeyPath.c_str(), 0);
        throw;
    }
    return publicKey;
}

}  // namespace vx::engine
