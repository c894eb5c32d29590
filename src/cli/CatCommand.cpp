#include <CLI/CLI.hpp>
#include <memory>
#include <string>

#include "cli/Commands.h"
#include "container/vxpkTreeCheck.h"
#include "engine/core/EngineFailure.h"
#include "engine/core/StandardStreams.h"
#include "engine/reading/PackageInput.h"

namespace vx::cli {
namespace {

struct CatOptions {
    std::string package;
    std::string path;
};

// The record of the file at path; the reader stands behind its fields.
RecordEntry findFile(vxpkRecordReader& reader, const CatOptions& options) {
    while (const auto entry = reader.next()) {
        if (RecordPath(entry->fields) != options.path) {
            continue;
        }
        if (entry->isFolder()) {
            engine::failUnacceptable(options.package, options.path + " is a folder");
        }
        return *entry;
    }
    engine::failUnacceptable(options.package, "no file " + options.path + " in the package");
}

void cat(const CatOptions& options) {
    vxpkRecordReader reader = engine::openPackage(options.package);
    engine::withPackage(options.package, [&] {
        findFile(reader, options);
        reader.readContents(engine::WriteStandardOutput);
    });
}

}  // namespace

void addCatCommand(CLI::App& app) {
    auto options = std::make_shared<CatOptions>();
    CLI::App* command =
        app.add_subcommand("cat", "Write the bytes of one file of a package to standard output");
    command->add_option("PACKAGE", options->package, "The package to read")->required();
    command->add_option("PATH", options->path, "The file's path in the package, with \"/\"")
        ->required();
    command->callback([options] { cat(*options); });
}

}  // namespace vx::cli
