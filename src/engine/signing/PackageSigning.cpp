#include "engine/signing/PackageSigning.h"

#include <chrono>
#include <filesystem>

#include "engine/core/EngineFailure.h"
#include "engine/core/Interruption.h"
#include "engine/core/OwnedDescriptor.h"
#include "engine/core/SameFile.h"
#include "engine/reading/PackageInput.h"
#include "engine/signing/FileHash.h"
#include "engine/signing/SmallFiles.h"
#include "engine/signing/Sodium.h"

namespace vx::engine {
namespace {

// A tab or a line break in a name would break the comment's form.
std::string OneLine(std::string_view text) {
    std::string line(text);
    for (char& c : line) {
        c = c == '\t' || c == '\n' || c == '\r' ? ' ' : c;
    }
    return line;
}

// A signature written over the package itself would lose the package.
void RefuseSameFile(const std::string& package, const std::string& signaturePath) {
    if (SameFile(package, signaturePath)) {
        failUnacceptable(signaturePath, "the signature would replace the package");
    }
}

// The comment asked for, or the default one; refused unless minisign reads
// it whole.
std::string TrustedComment(const SignRequest& request, const PackageSummary& summary) {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    std::string comment =
        !request.trustedComment.empty()
            ? request.trustedComment
            : DefaultTrustedComment(request.package, summary,
                                    std::chrono::duration_cast<std::chrono::seconds>(now).count());
    if (const std::string problem = TrustedCommentProblem(comment); !problem.empty()) {
        failUnacceptable("trusted comment", problem);
    }
    return comment;
}

}  // namespace

std::string DefaultSignaturePath(const std::string& package) {
    return package + ".minisig";
}

std::string DefaultTrustedComment(const std::string& package, const PackageSummary& summary,
                                  int64_t unixTime) {
    return "timestamp:" + std::to_string(unixTime) +
           "\tfile:" + OneLine(std::filesystem::path(package).filename().string()) +
           "\tname:" + OneLine(summary.header.name.bytes()) +
           "\tuid:" + OneLine(summary.header.uid.bytes()) + "\thashed";
}

SignOutcome SignPackage(const SignRequest& request) {
    StartSodium();
    // Opened once: the bytes found sound are the bytes signed, even if the
    // package is replaced while the password is typed.
    const OwnedDescriptor package(openPackageFile(request.package));
    const PackageSummary summary =
        WalkOpenPackage(request.package, package.fd(), [](const PackageEntry&) {});
    const std::string comment = TrustedComment(request, summary);
    const std::string signaturePath = request.signaturePath.empty()
                                          ? DefaultSignaturePath(request.package)
                                          : request.signaturePath;
    RefuseSameFile(request.package, signaturePath);
    const SecretBytes keyText = ReadSmallFile(request.secretKeyPath, kSigningFileMax);
    const MinisignSecretKey key =
        MinisignSecretKey::FromFileText(keyText.text(), request.secretKeyPath, request.password);
    // Until here nothing is written, and a signal may end the process at
    // once; from here on it stops the hashing so the signature file is never
    // left half-written.
    const InterruptibleWork work;
    SignOutcome outcome{.signaturePath = signaturePath,
                        .signature = MinisignSignature::Sign(
                            key, Blake2b512OfFile(package.fd(), request.package), comment)};
    WriteSmallFile(outcome.signaturePath, outcome.signature.FileText(), 0644, true);
    return outcome;
}

}  // namespace vx::engine
