#include "engine/comparison/PackageDiff.h"

#include "engine/comparison/ContentsCompare.h"
#include "engine/comparison/PackageIndex.h"
#include "engine/core/OwnedDescriptor.h"
#include "engine/reading/PackageInput.h"

namespace vx::engine {
namespace {

using Kind = PathChange::Kind;

std::vector<HeaderChange> headerChanges(const vxpkFormat::Header& before,
                                        const vxpkFormat::Header& after) {
    std::vector<HeaderChange> changes;
    const auto note = [&](HeaderChange::Field field, const String& old, const String& now) {
        if (old != now) {
            changes.push_back({field, old, now});
        }
    };
    note(HeaderChange::Field::kName, before.name, after.name);
    note(HeaderChange::Field::kUid, before.uid, after.uid);
    note(HeaderChange::Field::kFolderName, before.folderName, after.folderName);
    return changes;
}

PathState stateOf(const PackageEntry& entry) {
    return {.isFolder = entry.isFolder, .size = entry.size};
}

// The change of a path that both packages hold, if any; only files of the
// same size need their bytes read.
std::optional<PathChange> changeOf(const PackageEntry& before, const PackageEntry& after,
                                   ContentsCompare& contents) {
    PathChange change{before.path, Kind::kModified, stateOf(before), stateOf(after)};
    if (before.isFolder != after.isFolder) {
        change.kind = Kind::kTypeChanged;
        return change;
    }
    if (before.isFolder ||
        (before.size == after.size &&
         contents.same(before.contentsOffset, after.contentsOffset, before.size))) {
        return std::nullopt;
    }
    return change;
}

// Walks both sorted lists side by side, as a merge does.
std::vector<PathChange> pathChanges(const PackageIndex& before, const PackageIndex& after,
                                    ContentsCompare& contents) {
    std::vector<PathChange> changes;
    auto old = before.entries.begin();
    auto now = after.entries.begin();
    while (old != before.entries.end() || now != after.entries.end()) {
        if (now == after.entries.end() || (old != before.entries.end() && old->path < now->path)) {
            changes.push_back({old->path, Kind::kRemoved, stateOf(*old), std::nullopt});
            ++old;
        } else if (old == before.entries.end() || now->path < old->path) {
            changes.push_back({now->path, Kind::kAdded, std::nullopt, stateOf(*now)});
            ++now;
        } else if (auto change = changeOf(*old++, *now++, contents)) {
            changes.push_back(std::move(*change));
        }
    }
    return changes;
}

}  // namespace

PackageDifferences DiffPackages(const std::string& before, const std::string& after) {
    // Each package is opened once, so that its contents are read from the
    // very file that was walked, even if it is replaced meanwhile.
    const OwnedDescriptor beforeFile(openPackageFile(before));
    const OwnedDescriptor afterFile(openPackageFile(after));
    const PackageIndex beforeIndex = IndexPackage(before, beforeFile.fd());
    const PackageIndex afterIndex = IndexPackage(after, afterFile.fd());
    ContentsCompare contents({before, beforeFile.fd()}, {after, afterFile.fd()});
    return {.header = headerChanges(beforeIndex.header, afterIndex.header),
            .paths = pathChanges(beforeIndex, afterIndex, contents)};
}

}  // namespace vx::engine
