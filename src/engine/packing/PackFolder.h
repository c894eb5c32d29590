#pragma once

#include <optional>
#include <string>
#include <vector>

#include "engine/core/WorkProgress.h"

namespace vx::engine {

// What to pack and where: the header's texts as UTF-8 bytes, and the
// package.json to put in the package in place of the source's, if any.
struct PackRequest {
    std::string source;
    std::string package;
    std::string name;
    std::string uid;
    std::vector<std::string> excludes;
    std::optional<std::string> packageJson;
};

// Packs the folder tree of request.source into request.package, byte for byte
// as the App's packer would, refusing before anything is written whatever the
// format cannot hold. The package appears whole or not at all. Gives what the
// format's rule left out, as PackPlan::leftOut tells it.
std::vector<std::string> PackFolder(const PackRequest& request, WorkProgress& progress);

}  // namespace vx::engine
