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

namespace vx::cli {
namespace {

struct VerifyOptions {
    std::string package;
    bool json = false;
};

void printJsonVerdict(uint64_t records, const PackageProblem* problem) {
    auto document = NewJsonObject();
    document->Value("sound", problem == nullptr);
    if (problem == nullptr) {
        document->Value("records", JsonCount(records));
    } else {
        document->Value("record", JsonCount(problem->record));
        document->Value("offset", JsonCount(problem->offset));
        document->Value("problem", String(problem->what(), nullptr));
    }
    PrintJson(document);
}

void verify(const VerifyOptions& options) {
    const Ref<BinaryStream> stream = engine::openPackageStream(options.package);
    uint64_t records = 0;
    std::optional<PackageProblem> problem;
    engine::withPackage(options.package, [&] {
        try {
            vxpkRecordReader reader(stream);
            records = engine::WalkRecords(reader, [](const engine::PackageEntry&) {});
        } catch (const PackageProblem& found) {
            problem = found;
        }
    });
    if (options.json) {
        printJsonVerdict(records, problem ? &*problem : nullptr);
    }
    if (problem) {
        engine::failUnacceptable(options.package, problem->where());
    }
    if (!options.json) {
        std::printf("%s: sound, %llu records\n", options.package.c_str(),
                    static_cast<unsigned long long>(records));
    }
}

}  // namespace

void addVerifyCommand(CLI::App& app) {
    auto options = std::make_shared<VerifyOptions>();
    CLI::App* command = app.add_subcommand(
        "verify",
        "Check the whole structure of a package without extracting it; on the first problem, "
        "say which record and byte offset");
    command->add_option("PACKAGE", options->package, "The package to check")->required();
    command->add_flag("--json", options->json, "Print the verdict as one JSON document");
    command->callback([options] { verify(*options); });
}

}  // namespace vx::cli
