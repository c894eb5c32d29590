#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <memory>
#include <string>

#include "cli/CommandFailure.h"
#include "cli/Commands.h"
#include "cli/ExitCode.h"
#include "cli/JsonOutput.h"
#include "engine/comparison/PackageDiff.h"

namespace vx::cli {
namespace {

using engine::HeaderChange;
using engine::PathChange;
using engine::PathState;

struct DiffOptions {
    std::string before;
    std::string after;
    bool json = false;
};

constexpr const char* kStatuses =
    "Exit status, as diff and cmp give it: 0 the packages are the same; 1 they differ; 2 "
    "trouble (a usage error, a package that is not sound, a file that cannot be read).";

// The field's label in the text, as info prints it, and its key in JSON.
const char* labelOf(HeaderChange::Field field) {
    switch (field) {
        case HeaderChange::Field::kName:
            return "name";
        case HeaderChange::Field::kUid:
            return "uid";
        case HeaderChange::Field::kFolderName:
            break;
    }
    return "folder name";
}

const char* keyOf(HeaderChange::Field field) {
    return field == HeaderChange::Field::kFolderName ? "folderName" : labelOf(field);
}

// The letter of the text, as git diff --name-status writes it, and the word of JSON.
const char* kindOf(PathChange::Kind kind, bool letter) {
    switch (kind) {
        case PathChange::Kind::kAdded:
            return letter ? "A" : "added";
        case PathChange::Kind::kRemoved:
            return letter ? "D" : "removed";
        case PathChange::Kind::kModified:
            return letter ? "M" : "modified";
        case PathChange::Kind::kTypeChanged:
            break;
    }
    return letter ? "T" : "type changed";
}

const char* typeOf(const PathState& state) {
    return state.isFolder ? "folder" : "file";
}

void printHeaderChange(const HeaderChange& change) {
    const std::string_view before = change.before.bytes();
    const std::string_view after = change.after.bytes();
    std::printf("%s: %.*s -> %.*s\n", labelOf(change.field), static_cast<int>(before.size()),
                before.data(), static_cast<int>(after.size()), after.data());
}

// Added and removed folders end in "/", as list writes them; a changed file
// gives its two sizes, a changed type its two types.
void printPathChange(const PathChange& change) {
    const char* letter = kindOf(change.kind, true);
    switch (change.kind) {
        case PathChange::Kind::kAdded:
        case PathChange::Kind::kRemoved: {
            const PathState& state = change.before ? *change.before : *change.after;
            std::printf("%s\t%s%s\n", letter, change.path.c_str(), state.isFolder ? "/" : "");
            return;
        }
        case PathChange::Kind::kModified:
            std::printf("%s\t%s\t%llu -> %llu\n", letter, change.path.c_str(),
                        static_cast<unsigned long long>(change.before->size),
                        static_cast<unsigned long long>(change.after->size));
            return;
        case PathChange::Kind::kTypeChanged:
            std::printf("%s\t%s\t%s -> %s\n", letter, change.path.c_str(), typeOf(*change.before),
                        typeOf(*change.after));
            return;
    }
}

Ref<JSONItem> headerChangeJson(const HeaderChange& change) {
    auto item = NewJsonObject();
    item->Value("field", String(keyOf(change.field)));
    item->Value("old", change.before);
    item->Value("new", change.after);
    return item;
}

// The type of each side that holds the path, and the size of each that
// holds a file.
void addSide(JSONItem& item, const char* typeKey, const char* sizeKey,
             const std::optional<PathState>& state) {
    if (!state) {
        return;
    }
    item.Value(typeKey, String(typeOf(*state)));
    if (!state->isFolder) {
        item.Value(sizeKey, JsonCount(state->size));
    }
}

Ref<JSONItem> pathChangeJson(const PathChange& change) {
    auto item = NewJsonObject();
    item->Value("path", String(change.path, nullptr));
    item->Value("kind", String(kindOf(change.kind, false)));
    addSide(*item, "oldType", "oldSize", change.before);
    addSide(*item, "newType", "newSize", change.after);
    return item;
}

void printJson(const engine::PackageDifferences& differences) {
    auto header = NewJsonArray();
    for (const auto& change : differences.header) {
        header->Append(Variant(headerChangeJson(change)));
    }
    auto paths = NewJsonArray();
    for (const auto& change : differences.paths) {
        paths->Append(Variant(pathChangeJson(change)));
    }
    auto document = NewJsonObject();
    document->Value("same", differences.none());
    document->Value("header", Variant(header));
    document->Value("paths", Variant(paths));
    PrintJson(document);
}

// Any failure is trouble, status 2, whatever its kind: 1 means "different".
engine::PackageDifferences compare(const DiffOptions& options) {
    try {
        return engine::DiffPackages(options.before, options.after);
    } catch (const std::exception& failure) {
        throw CommandFailure(kTrouble, failure.what());
    }
}

void diff(const DiffOptions& options, int& status) {
    const engine::PackageDifferences differences = compare(options);
    if (options.json) {
        printJson(differences);
    } else {
        for (const auto& change : differences.header) {
            printHeaderChange(change);
        }
        for (const auto& change : differences.paths) {
            printPathChange(change);
        }
    }
    status = differences.none() ? kSame : kDifferent;
}

}  // namespace

void addDiffCommand(CLI::App& app, int& status) {
    auto options = std::make_shared<DiffOptions>();
    CLI::App* command = app.add_subcommand(
        "diff",
        "Compare two packages without extracting them: the header's changes, then one line per "
        "path that differs, sorted: A added, D removed, M contents changed (with the two sizes), "
        "T a folder turned file or a file turned folder");
    command->add_option("OLD", options->before, "The package before")->required();
    command->add_option("NEW", options->after, "The package after")->required();
    command->add_flag("--json", options->json,
                      "Print one JSON document: the header's changes and every path that "
                      "differs, with its kind and its old and new types and sizes");
    command->footer(kStatuses);
    command->callback([options, &status] { diff(*options, status); });
}

}  // namespace vx::cli
