#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <variant>

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
    // Set when given, if only as "", which is refused rather than taken for
    // no key at all.
    std::optional<std::string> publicKey;
    std::optional<std::string> publicKeyString;
    std::string signature;
    bool json = false;
};

struct StructureVerdict {
    uint64_t records = 0;
    std::optional<PackageProblem> problem;
};

// The signature's verdict: the signature when good, else the one line why.
using SignatureVerdict = std::variant<engine::MinisignSignature, engine::EngineFailure>;

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
        options.publicKey ? engine::ReadPublicKey(*options.publicKey)
                          : engine::MinisignPublicKey::FromBase64(*options.publicKeyString,
                                                                  "--public-key-string");
    const std::string signaturePath = options.signature.empty()
                                          ? engine::DefaultSignaturePath(options.package)
                                          : options.signature;
    try {
        return engine::CheckSignature(options.package, signaturePath, key);
    } catch (const engine::EngineFailure& failure) {
        if (failure.kind != engine::FailureKind::kUnacceptable) {
            throw;
        }
        return failure;
    }
}

Ref<JSONItem> signatureJson(const SignatureVerdict& verdict) {
    auto item = NewJsonObject();
    const auto* signature = std::get_if<engine::MinisignSignature>(&verdict);
    item->Value("valid", signature != nullptr);
    if (signature != nullptr) {
        item->Value("keyId", String(engine::KeyIdText(signature->keyId), nullptr));
        item->Value("trustedComment", String(signature->trustedComment, nullptr));
    } else {
        item->Value("problem", String(std::get<engine::EngineFailure>(verdict).what(), nullptr));
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
        const auto& good = std::get<engine::MinisignSignature>(*signature);
        std::printf("%s: good signature by key %s\ntrusted comment: %s\n", options.package.c_str(),
                    engine::KeyIdText(good.keyId).c_str(), good.trustedComment.c_str());
    }
}

// An empty key must not pass for no key, which would leave the signature
// unchecked and call the package good.
void refuseEmpty(const std::optional<std::string>& value, const std::string& option) {
    if (value && value->empty()) {
        engine::failUnacceptable(option, "empty: no key to check the signature against");
    }
}

void verify(const VerifyOptions& options) {
    const bool keyGiven = options.publicKey || options.publicKeyString;
    if (!options.signature.empty() && !keyGiven) {
        throw CLI::ValidationError("--signature", "needs --public-key or --public-key-string");
    }
    refuseEmpty(options.publicKey, "--public-key");
    refuseEmpty(options.publicKeyString, "--public-key-string");
    const StructureVerdict structure = checkStructure(options.package);
    std::optional<SignatureVerdict> signature;
    if (keyGiven) {
        signature = checkSignature(options);
    }
    if (options.json) {
        printJsonVerdict(structure, signature ? &*signature : nullptr);
    }
    if (structure.problem) {
        engine::failUnacceptable(options.package, structure.problem->where());
    }
    if (const auto* failure =
            signature ? std::get_if<engine::EngineFailure>(&*signature) : nullptr) {
        throw *failure;
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
