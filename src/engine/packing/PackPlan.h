#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "engine/packing/ExcludeGlob.h"

namespace vx::engine {

// The folder of an item at the top of the tree.
inline constexpr std::size_t kTopFolder = static_cast<std::size_t>(-1);

// One record that pack will write, in package order.
struct PlannedItem {
    // Below the source folder, "/" between components; for messages and
    // --exclude.
    std::string relative;
    std::string name;
    // The record's parent field, ":" between components.
    std::string parent;
    // The place in the plan of the folder that holds the item, or kTopFolder.
    std::size_t folder = kTopFolder;
    bool isFolder = false;
    uint64_t size = 0;
    // The contents of a file that pack makes itself instead of reading one.
    std::optional<std::string> generated;
};

struct PackPlan {
    std::vector<PlannedItem> items;
    uint64_t contentBytes = 0;
    // What the format's rule left out, for the user to hear of: the entries
    // whose names begin with "." or "_", in the order of the walk, below the
    // source folder with "/" between components, folders ending in "/". A
    // folder counts once, as what it holds is never walked; what --exclude
    // leaves out is not here.
    std::vector<std::string> leftOut;
};

// Walks source as the App's packer does (entries sorted by the bytes of their
// names, those beginning with "." or "_" left out, symlinks followed) and
// refuses, before anything is written, whatever the format cannot hold
// faithfully: contents of 2 GiB or more, a name or parent over 255 bytes, a
// folder name holding ":", a symlink that leads into a cycle, and anything
// that is neither file nor folder; what exclude leaves out is not refused,
// whatever it is. With generatedPackageJson, a top-level
// package.json holds it, in place of whatever stands in the source.
PackPlan planPack(const std::string& source, const ExcludeGlob& exclude,
                  const std::optional<std::string>& generatedPackageJson);

}  // namespace vx::engine
