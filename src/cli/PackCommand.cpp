#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cli/Commands.h"
#include "cli/LeftOutReport.h"
#include "cli/Progress.h"
#include "container/PackageDescription.h"
#include "engine/packing/ExcludeFile.h"
#include "engine/packing/PackFolder.h"
#include "runtime/text/TextEncoding.h"

namespace vx::cli {
namespace {

// The wizard's fields hold their texts as UTF-8, and so does package.json.
struct PackOptions {
    std::string source;
    std::string package;
    std::string name;
    std::string uid;
    std::vector<std::string> excludes;
    std::vector<std::string> excludeFiles;
    bool packageJson = false;
    PackageDescription::Fields fields = PackageDescription::wizardDefaults();
    bool quiet = false;
    bool verbose = false;
};

std::vector<std::string> packWithProgress(const engine::PackRequest& request, bool quiet) {
    // Gone, and its line ended, before anything else is printed.
    Progress progress(quiet);
    return engine::PackFolder(request, progress);
}

engine::PackRequest requestOf(const PackOptions& options) {
    engine::PackRequest request{.source = options.source,
                                .package = options.package,
                                .name = options.name,
                                .uid = options.uid,
                                .excludes = options.excludes,
                                .packageJson = std::nullopt};
    if (options.packageJson) {
        PackageDescription::Fields fields = options.fields;
        fields.name = String(options.name, Encodings::UTF8);
        fields.uid = String(options.uid, Encodings::UTF8);
        request.packageJson = std::string(PackageDescription::document(fields)->ToString().bytes());
    }
    for (const auto& file : options.excludeFiles) {
        const std::vector<std::string> patterns = engine::readExcludeFile(file);
        request.excludes.insert(request.excludes.end(), patterns.begin(), patterns.end());
    }
    return request;
}

void pack(const PackOptions& options) {
    // Told even when quiet: what is missing from a package is no progress.
    const std::string report =
        leftOutReport(packWithProgress(requestOf(options), options.quiet), options.verbose);
    if (!report.empty()) {
        std::fprintf(stderr, "%s\n", report.c_str());
    }
}

void addPackageJsonOption(CLI::App& command, CLI::Option* packageJson, const std::string& name,
                          String& field, const std::string& what) {
    const std::string help = "The " + what + " in package.json (default \"" +
                             std::string(field.bytes()) + "\"); needs --package-json";
    command
        .add_option_function<std::string>(
            name, [&field](const std::string& text) { field = String(text, Encodings::UTF8); },
            help)
        ->needs(packageJson);
}

}  // namespace

void addPackCommand(CLI::App& app) {
    auto options = std::make_shared<PackOptions>();
    CLI::App* command = app.add_subcommand("pack", "Pack a folder tree into a package");
    command->add_option("SOURCE", options->source, "The folder to pack")->required();
    command->add_option("PACKAGE", options->package, "The package file to write")->required();
    command->add_option("--name", options->name, "The app's display name")->required();
    command->add_option("--uid", options->uid, "The app's identifier")->required();
    command
        ->add_option("--exclude", options->excludes,
                     "Leave out the entries the glob matches, as tar and .gitignore do: "
                     "without \"/\" it matches a name at any depth, with one the path below "
                     "SOURCE (a leading \"/\" only anchors it); a trailing \"/\" matches "
                     "folders only; *, ? and [...] match within a name, ** any depth; "
                     "repeatable")
        ->type_name("GLOB");
    command
        ->add_option("--exclude-from", options->excludeFiles,
                     "Read --exclude patterns from FILE, one a line, skipping blank lines "
                     "and lines that start with #; repeatable")
        ->type_name("FILE");
    CLI::Option* packageJson =
        command->add_flag("--package-json", options->packageJson,
                          "Put the package.json the App's wizard would write into the package");
    PackageDescription::Fields& fields = options->fields;
    addPackageJsonOption(*command, packageJson, "--app-version", fields.version, "version");
    addPackageJsonOption(*command, packageJson, "--company", fields.company, "company");
    addPackageJsonOption(*command, packageJson, "--main", fields.main, "main file");
    addPackageJsonOption(*command, packageJson, "--width", fields.width, "window width");
    addPackageJsonOption(*command, packageJson, "--height", fields.height, "window height");
    addPackageJsonOption(*command, packageJson, "--title", fields.title, "window title");
    command->add_flag("--quiet", options->quiet,
                      "Show no progress (what the format left out is still told)");
    command->add_flag("--verbose", options->verbose,
                      "Name every entry the format left out (names starting with \"_\" or "
                      "\".\"); without it, dot-names are only counted and the first few others "
                      "named");
    command->callback([options] { pack(*options); });
}

}  // namespace vx::cli
