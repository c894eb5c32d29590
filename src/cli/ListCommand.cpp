#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>
#include <string>

#include "cli/Commands.h"
#include "cli/JsonOutput.h"
#include "container/vxpkTreeCheck.h"
#include "engine/reading/PackageInput.h"

namespace vx::cli {
namespace {

struct ListOptions {
    std::string package;
    bool longForm = false;
    bool json = false;
};

const char* typeName(const RecordEntry& entry) {
    return entry.isFolder() ? "folder" : "file";
}

Ref<JSONItem> itemJson(const RecordEntry& entry, const std::string& path) {
    auto item = NewJsonObject();
    item->Value("path", String(path, nullptr));
    item->Value("type", String(typeName(entry)));
    item->Value("size", JsonCount(entry.contentsBytes()));
    item->Value("offset", JsonCount(entry.offset));
    return item;
}

void printLine(const RecordEntry& entry, const std::string& path, bool longForm) {
    if (longForm) {
        std::printf("%-6s %12llu  %s\n", typeName(entry),
                    static_cast<unsigned long long>(entry.contentsBytes()), path.c_str());
    } else {
        std::printf("%s\n", path.c_str());
    }
}

// One line per record, in package order, from the records alone: no contents
// are read.
void list(const ListOptions& options) {
    vxpkRecordReader reader = engine::openPackage(options.package);
    auto items = NewJsonArray();
    engine::withPackage(options.package, [&] {
        while (const auto entry = reader.next()) {
            const std::string path = RecordPath(entry->fields) + (entry->isFolder() ? "/" : "");
            if (options.json) {
                items->Append(Variant(itemJson(*entry, path)));
            } else {
                printLine(*entry, path, options.longForm);
            }
        }
    });
    if (options.json) {
        auto document = HeaderJson(reader.header());
        document->Value("items", Variant(items));
        PrintJson(document);
    }
}

}  // namespace

void addListCommand(CLI::App& app) {
    auto options = std::make_shared<ListOptions>();
    CLI::App* command = app.add_subcommand("list", "List the items of a package");
    command->add_option("PACKAGE", options->package, "The package to list")->required();
    command->add_flag("--long", options->longForm, "Show the type and size of each item");
    command->add_flag("--json", options->json,
                      "Print one JSON document: the header, then every item with its path, "
                      "type, size and byte offset");
    command->callback([options] { list(*options); });
}

}  // namespace vx::cli
