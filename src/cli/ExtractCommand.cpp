#include <CLI/CLI.hpp>
#include <memory>
#include <string>

#include "cli/CliFailure.h"
#include "cli/Commands.h"
#include "cli/PackageInput.h"
#include "cli/Progress.h"
#include "cli/SafeExtraction.h"
#include "container/vxpkTreeCheck.h"
#include "runtime/core/RuntimeException.h"

namespace vx::cli {
namespace {

struct ExtractOptions {
    std::string package;
    std::string destination;
    bool quiet = false;
};

void extractFile(vxpkRecordReader& reader, SafeExtraction& extraction, const std::string& path,
                 const std::string& destination) {
    const auto out = New<BinaryStream>(extraction.makeFile(path), true);
    out->UseIOExceptions = true;
    try {
        reader.copyContents(*out);
        out->Close();
    } catch (const IOException& failure) {
        throw CliFailure(kSystem,
                         destination + "/" + path + ": " + describeFileError(failure.ErrorNumber));
    }
}

// Record by record into the temporary tree, each admitted by the tree rules
// before anything of it is made; the first refusal or failure leaves nothing.
void extract(const ExtractOptions& options) {
    vxpkRecordReader reader = openPackage(options.package);
    SafeExtraction extraction(options.destination);
    Progress progress(options.quiet, 0, reader.packageSize());
    withPackage(options.package, [&] {
        // Progress counts package bytes, so that it ends at 100% with the file.
        uint64_t done = 0;
        vxpkTreeCheck tree;
        while (const auto entry = reader.next()) {
            const std::string path = tree.admit(*entry);
            if (entry->isFolder()) {
                extraction.makeFolder(path);
            } else {
                extractFile(reader, extraction, path, options.destination);
            }
            const uint64_t end = entry->contentsOffset + entry->contentsBytes();
            progress.advance(end - done);
            done = end;
        }
    });
    extraction.commit();
}

}  // namespace

void addExtractCommand(CLI::App& app) {
    auto options = std::make_shared<ExtractOptions>();
    CLI::App* command = app.add_subcommand(
        "extract",
        "Extract a package safely, all or nothing: unsafe names and paths are refused, and "
        "nothing is written outside DEST");
    command->add_option("PACKAGE", options->package, "The package to extract")->required();
    command
        ->add_option("DEST", options->destination,
                     "The folder to make; it must not exist or be empty")
        ->required();
    command->add_flag("--quiet", options->quiet, "Show no progress");
    command->callback([options] { extract(*options); });
}

}  // namespace vx::cli
