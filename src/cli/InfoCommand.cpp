#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>
#include <string>

#include "cli/Commands.h"
#include "cli/JsonOutput.h"
#include "engine/reading/PackageInput.h"
#include "engine/signing/FileHash.h"

namespace vx::cli {
namespace {

struct InfoOptions {
    std::string package;
    bool json = false;
};

struct Counts {
    uint64_t files = 0;
    uint64_t folders = 0;
    uint64_t contentBytes = 0;
};

void printText(const vxpkFormat::Header& header, const Counts& counts, uint64_t packageBytes,
               const std::string& sha256) {
    std::printf("version: %s\nname: %.*s\nuid: %.*s\nfolder name: %.*s\n", vxpkFormat::kVersion,
                static_cast<int>(header.name.bytes().size()), header.name.bytes().data(),
                static_cast<int>(header.uid.bytes().size()), header.uid.bytes().data(),
                static_cast<int>(header.folderName.bytes().size()),
                header.folderName.bytes().data());
    std::printf("files: %llu\nfolders: %llu\ncontent bytes: %llu\npackage bytes: %llu\n",
                static_cast<unsigned long long>(counts.files),
                static_cast<unsigned long long>(counts.folders),
                static_cast<unsigned long long>(counts.contentBytes),
                static_cast<unsigned long long>(packageBytes));
    std::printf("sha256: %s\n", sha256.c_str());
}

void info(const InfoOptions& options) {
    vxpkRecordReader reader = engine::openPackage(options.package);
    Counts counts;
    engine::withPackage(options.package, [&] {
        while (const auto entry = reader.next()) {
            ++(entry->isFolder() ? counts.folders : counts.files);
            counts.contentBytes += entry->contentsBytes();
        }
    });
    const std::string sha256 = engine::HexOf(engine::Sha256OfFile(options.package));
    if (!options.json) {
        printText(reader.header(), counts, reader.packageSize(), sha256);
        return;
    }
    auto document = HeaderJson(reader.header());
    document->Value("files", JsonCount(counts.files));
    document->Value("folders", JsonCount(counts.folders));
    document->Value("contentBytes", JsonCount(counts.contentBytes));
    document->Value("packageBytes", JsonCount(reader.packageSize()));
    document->Value("sha256", String(sha256, nullptr));
    PrintJson(document);
}

}  // namespace

void addInfoCommand(CLI::App& app) {
    auto options = std::make_shared<InfoOptions>();
    CLI::App* command = app.add_subcommand(
        "info",
        "Show a package's header, its counts of files and folders, its sizes and the SHA-256 "
        "of its bytes");
    command->add_option("PACKAGE", options->package, "The package to describe")->required();
    command->add_flag("--json", options->json, "Print one JSON document");
    command->callback([options] { info(*options); });
}

}  // namespace vx::cli
