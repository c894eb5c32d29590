#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>

#include "cli/Commands.h"
#include "cli/JsonOutput.h"
#include "container/PackageProblem.h"
#include "engine/core/EngineFailure.h"
#include "engine/reading/PackageInput.h"
#include "engine/reading/PackageWalk.h"
#include "engine/signing/PackageSigning.h"
#include "engine/signing/SignatureCheck.h"

namespace vx::cli {
namespace {

struct VerifyOptions {
    std::string package;
    std::string publicKey;
    std::string publicKeyString;
    std::string signature;
    bool json = false;
};

struct StructureVerdict {
    uint64_t records = 0;
    std::optional<PackageProblem> problem;
};

// The signature's verdict: the signature when good, else the one line why.
struct SignatureVerdict {
    std::optional<engine::MinisignSignature> signature;
    std::optional<engine::EngineFailure> failure;
};

StructureVerdict checkStructure(const std::string& package) {
    const Ref<BinaryStream> stream = engine::openPackageStream(package);
    StructureVerdict verdict;
    engine::withPackage(package, [&] {
        try {
            vxpkRecordReader reader(stream);
            verdict.records = engine::WalkRecords(reader, [](const engine::PackageEntry&) {});
        } catch (const PackageProblem& found) {
            verdict.problem = found;
        }
    });
    return verdict;
}

// A file that cannot be read ends the command at once; a signature that does
// not hold is a verdict, reported with the structure's.
SignatureVerdict checkSignature(const VerifyOptions& options) {
    const engine::MinisignPublicKey key =
        options.publicKey.empty()
            ? engine::MinisignPublicKey::FromBase64(options.publicKeyString, "--public-key-string")
            : engine::ReadPublicKey(options.publicKey);
    const std::string signaturePath = options.signature.empty()
                                          ? engine::DefaultSignaturePath(options.package)
                                          : options.signature;
    SignatureVerdict verdict;
    try {
        verdict.signature = engine::CheckSignature(options.package, signaturePath, key);
    } catch (const engine::EngineFailure& failure) {
        if (failure.kind != engine::FailureKind::kUnacceptable) {
            throw;
        }
        verdict.failure = failure;
    }
    return verdict;
}

Ref<JSONItem> signatureJson(const SignatureVerdict& verdict) {
    auto item = NewJsonObject();
    item->Value("valid", verdict.signature.has_value());
    if (verdict.signature) {
        item->Value("keyId", String(engine::KeyIdText(verdict.signature->keyId), nullptr));
        item->Value("trustedComment", String(verdict.signature->trustedComment, nullptr));
    } else {
        item->Value("problem", String(verdict.failure->what(), nullptr));
    }
    return item;
}

void printJsonVerdict(const StructureVerdict& structure, const SignatureVerdict* signature) {
    auto document = NewJsonObject();
    document->Value("sound", !structure.problem);
    if (!structure.problem) {
        document->Value("records", JsonCount(structure.records));
    } else {
        document->Value("record", JsonCount(structure.problem->record));
        document->Value("offset", JsonCount(structure.problem->offset));
        document->Value("problem", String(structure.problem->what(), nullptr));
    }
    if (signature != nullptr) {
        document->Value("signature", signatureJson(*signature));
    }
    PrintJson(document);
}

void printText(const VerifyOptions& options, const StructureVerdict& structure,
               const SignatureVerdict* signature) {
    std::printf("%s: sound, %llu records\n", options.package.c_str(),
                static_cast<unsigned long long>(structure.records));
    if (signature != nullptr) {
        std::printf("%s: good signature by key %s\ntrusted comment: %s\n", options.package.c_str(),
                    engine::KeyIdText(signature->signature->keyId).c_str(),
                    signature->signature->trustedComment.c_str());
    }
}

void verify(const VerifyOptions& options) {
    if (!options.signature.empty() && options.publicKey.empty() &&
        options.publicKeyString.empty()) {
        throw CLI::ValidationError("--signature", "needs --public-key or --public-key-string");
    }
    const StructureVerdict structure = checkStructure(options.package);
    std::optional<SignatureVerdict> signature;
    if (!options.publicKey.empty() || !options.publicKeyString.empty()) {
        signature = checkSignature(options);
    }
    if (options.json) {
        printJsonVerdict(structure, signature ? &*signature : nullptr);
    }
    if (structure.problem) {
        engine::failUnacceptable(options.package, structure.problem->where());
    }
    if (signature && signature->failure) {
        throw *signature->failure;
    }
    if (!options.json) {
        printText(options, structure, signature ? &*signature : nullptr);
    }
}

}  // namespace

void addVerifyCommand(CLI::App& app) {
    auto options = std::make_shared<VerifyOptions>();
    CLI::App* command = app.add_subcommand(
        "verify",
        "Check the whole structure of a package without extracting it; on the first problem, "
        "say which record and byte offset. With a public key, also check its minisign "
        "signature (prehashed \"ED\" or legacy \"Ed\") and the signed trusted comment");
    command->add_option("PACKAGE", options->package, "The package to check")->required();
    CLI::Option* keyFile = command->add_option("--public-key", options->publicKey,
                                               "The minisign public key file to check against");
    command
        ->add_option("--public-key-string", options->publicKeyString,
                     "The public key as minisign's base64 line (as for minisign -P)")
        ->excludes(keyFile);
    command->add_option("--signature", options->signature,
                        "The signature file (default PACKAGE.minisig); needs a public key");
    command->add_flag("--json", options->json,
                      "Print the verdict as one JSON document, with the signature's when a "
                      "public key is given");
    command->callback([options] { verify(*options); });
}

}  // namespace vx::cli
