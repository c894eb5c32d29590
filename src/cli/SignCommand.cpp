#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>
#include <string>

#include "cli/Commands.h"
#include "engine/signing/PackageSigning.h"
#include "engine/signing/PasswordPrompt.h"

namespace vx::cli {
namespace {

void sign(const engine::SignRequest& options) {
    engine::SignRequest request = options;
    request.password = [] { return engine::ReadPassword(false); };
    const engine::SignOutcome outcome = engine::SignPackage(request);
    std::printf("%s: signed, signature in %s\ntrusted comment: %s\n", request.package.c_str(),
                outcome.signaturePath.c_str(), outcome.signature.trustedComment.c_str());
}

}  // namespace

void addSignCommand(CLI::App& app) {
    auto options = std::make_shared<engine::SignRequest>();
    CLI::App* command = app.add_subcommand(
        "sign",
        "Check that a package is sound, then sign it with a minisign secret key: a detached "
        "signature in minisign's format, which minisign -V checks. The password of an "
        "encrypted key is read from the terminal, or from standard input when that is no "
        "terminal");
    command->add_option("PACKAGE", options->package, "The package to sign")->required();
    command->add_option("--secret-key", options->secretKeyPath, "The secret key file")->required();
    command->add_option("--signature", options->signaturePath,
                        "The signature file to write (default PACKAGE.minisig)");
    command->add_option("--trusted-comment", options->trustedComment,
                        "The signed comment, one line (default: timestamp, file name, package "
                        "name and uid as timestamp:T<TAB>file:F<TAB>name:N<TAB>uid:U<TAB>hashed)");
    command->callback([options] { sign(*options); });
}

}  // namespace vx::cli
