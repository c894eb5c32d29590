#pragma once

#include <string>
#include <vector>

#include "container/vxpkFormat.h"
#include "engine/reading/PackageWalk.h"

namespace vx::engine {

// A sound package's header and its records sorted by path, so that two
// packages can be compared by walking both lists side by side. It holds no
// contents: its memory grows with the number of records, not their bytes.
struct PackageIndex {
    vxpkFormat::Header header;
    std::vector<PackageEntry> entries;
};

// Walks the package open at fd, named path in failures, once; a package that
// is not sound or cannot be read ends it with EngineFailure, as WalkPackage
// does.
PackageIndex IndexPackage(const std::string& path, int fd);

}  // namespace vx::engine
