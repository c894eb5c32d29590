#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "runtime/text/String.h"

namespace vx::engine {

// A header field whose value changed between the two packages.
struct HeaderChange {
    enum class Field { kName, kUid, kFolderName };
    Field field;
    String before;
    String after;
};

// What a path is in one package: a folder, or a file of size bytes.
struct PathState {
    bool isFolder = false;
    uint64_t size = 0;
};

// One path that differs, with what it is on each side where it is.
struct PathChange {
    enum class Kind { kAdded, kRemoved, kModified, kTypeChanged };
    std::string path;
    Kind kind;
    std::optional<PathState> before;
    std::optional<PathState> after;
};

// Everything that differs from the package before to the one after: the
// header's fields in their order, then the paths sorted by their bytes.
struct PackageDifferences {
    std::vector<HeaderChange> header;
    std::vector<PathChange> paths;
    bool none() const { return header.empty() && paths.empty(); }
};

// Compares two sound packages record by record without extracting them:
// files of different sizes differ, files of the same size are compared by
// their bytes, read from both packages in blocks. A package that is not
// sound or cannot be read ends it with EngineFailure.
PackageDifferences DiffPackages(const std::string& before, const std::string& after);

}  // namespace vx::engine
