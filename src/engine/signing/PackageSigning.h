#pragma once

#include <string>

#include "engine/reading/PackageWalk.h"
#include "engine/signing/MinisignSecretKey.h"
#include "engine/signing/MinisignSignature.h"

namespace vx::engine {

// The largest key or signature file read; minisign's are a few hundred bytes
// and its trusted comment stops at 8 KiB.
inline constexpr std::size_t kSigningFileMax = 16 << 10;

struct SignRequest {
    std::string package;
    std::string secretKeyPath;
    // Empty for PACKAGE.minisig.
    std::string signaturePath;
    // Empty for DefaultTrustedComment.
    std::string trustedComment;
    PasswordSource password;
};

struct SignOutcome {
    std::string signaturePath;
    MinisignSignature signature;
};

// Where a package's signature goes unless told otherwise, as for minisign.
std::string DefaultSignaturePath(const std::string& package);

// What a person checking the signature wants to see, in minisign's
// tab-separated key:value form: when, which file, which app, and "hashed" as
// minisign marks a prehashed signature.
std::string DefaultTrustedComment(const std::string& package, const PackageSummary& summary,
                                  int64_t unixTime);

// Checks that the package is sound, opens the secret key, and writes the
// prehashed signature of the package's bytes beside it (or where asked),
// whole or not at all.
SignOutcome SignPackage(const SignRequest& request);

}  // namespace vx::engine
