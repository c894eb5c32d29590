#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>
#include <string>

#include "cli/Commands.h"
#include "engine/signing/KeyPairGeneration.h"
#include "engine/signing/MinisignText.h"
#include "engine/signing/PasswordPrompt.h"

namespace vx::cli {
namespace {

struct KeygenOptions {
    std::string publicKey;
    std::string secretKey;
    bool withoutPassword = false;
    bool force = false;
};

void keygen(const KeygenOptions& options) {
    engine::KeyPairRequest request{.publicKeyPath = options.publicKey,
                                   .secretKeyPath = options.secretKey,
                                   .replace = options.force,
                                   .password = nullptr};
    if (!options.withoutPassword) {
        request.password = [] { return engine::ReadPassword(true); };
    }
    const engine::MinisignPublicKey key = engine::GenerateKeyPair(request);
    std::printf("key id %s\nsecret key: %s\npublic key: %s\nminisign -Vm PACKAGE -P %s\n",
                engine::KeyIdText(key.keyId).c_str(), options.secretKey.c_str(),
                options.publicKey.c_str(), key.Base64().c_str());
}

}  // namespace

void addKeygenCommand(CLI::App& app) {
    auto options = std::make_shared<KeygenOptions>();
    CLI::App* command = app.add_subcommand(
        "keygen",
        "Make a new Ed25519 key pair for signing packages, in minisign's file formats. The "
        "password is read twice from the terminal without echo, or once from standard input "
        "when that is no terminal");
    command->add_option("--public-key", options->publicKey, "The public key file to write")
        ->required();
    command
        ->add_option("--secret-key", options->secretKey,
                     "The secret key file to write, readable by its owner only (mode 0600)")
        ->required();
    command->add_flag("--without-password", options->withoutPassword,
                      "Write the secret key unencrypted, as for CI; keep it safe otherwise");
    command->add_flag("--force", options->force, "Replace key files that exist");
    command->callback([options] { keygen(*options); });
}

}  // namespace vx::cli
