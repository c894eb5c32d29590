#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>

#include "cli/CliFailure.h"
#include "cli/Commands.h"
#include "cli/JsonOutput.h"
#include "cli/PackageInput.h"
#include "container/PackageProblem.h"
#include "container/vxpkTreeCheck.h"

namespace vx::cli {
namespace {

struct VerifyOptions {
    std::string package;
    bool json = false;
};

// Every record through the strict reader and the tree rules; the number of
// records when all are sound.
uint64_t checkAll(vxpkRecordReader& reader) {
    vxpkTreeCheck tree;
    uint64_t records = 0;
    while (const auto entry = reader.next()) {
        tree.admit(*entry);
        records = entry->number;
    }
    return records;
}

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
    const Ref<BinaryStream> stream = openPackageStream(options.package);
    uint64_t records = 0;
    std::optional<PackageProblem> problem;
    withPackage(options.package, [&] {
        try {
            vxpkRecordReader reader(stream);
            records = checkAll(reader);
        } catch (const PackageProblem& found) {
            problem = found;
        }
    });
    if (options.json) {
        printJsonVerdict(records, problem ? &*problem : nullptr);
    }
    if (problem) {
        failUnacceptable(options.package, problem->where());
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
