#pragma once

#include <string>

#include "engine/preview/PathIndex.h"

namespace vx::engine {

// The file that answers a decoded request path, or why none does.
struct PathResolution {
    // nullptr when nothing in the package answers.
    const IndexedRecord* file = nullptr;
    // The path of that file in the package, for its type.
    std::string path;
    // Why nothing answers, as the developer needs to hear it.
    std::string reason;
};

// "" names the main file; a folder names its index.html. A path that is not
// in the package and has a component starting with "." or "_" is said to be
// left out by the format's rule, which is the usual reason an app works from
// its folder but not from its package.
PathResolution ResolvePath(const PathIndex& index, const std::string& path);

}  // namespace vx::engine
