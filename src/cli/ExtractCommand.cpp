#include <CLI/CLI.hpp>
#include <memory>
#include <string>

#include "cli/Commands.h"
#include "cli/Progress.h"
#include "engine/extraction/ExtractPackage.h"

namespace vx::cli {
namespace {

struct ExtractOptions {
    std::string package;
    std::string destination;
    bool quiet = false;
};

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
    command->callback([options] {
        Progress progress(options->quiet);
        engine::ExtractPackage(options->package, options->destination, progress);
    });
}

}  // namespace vx::cli
