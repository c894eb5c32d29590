#include "engine/preview/PathResolution.h"

#include <algorithm>
#include <string_view>

#include "engine/core/NeverPacked.h"
#include "engine/preview/MainFile.h"

namespace vx::engine {
namespace {

// The first character of a component that the packer never packs, or 0.
char unpackedMark(std::string_view path) {
    for (size_t start = 0; start < path.size();) {
        const size_t end = std::min(path.find('/', start), path.size());
        if (IsNeverPacked(path.substr(start, end - start))) {
            return path[start];
        }
        start = end + 1;
    }
    return 0;
}

PathResolution missing(const std::string& path, const std::string& what) {
    if (const char mark = unpackedMark(path)) {
        return {.file = nullptr,
                .path = path,
                .reason = std::string("not in the package: names starting with '") + mark +
                          "' are never packed"};
    }
    return {.file = nullptr, .path = path, .reason = "not in the package" + what};
}

}  // namespace

PathResolution ResolvePath(const PathIndex& index, const std::string& path) {
    const std::string& asked = path.empty() ? index.mainFile() : path;
    const IndexedRecord* record = index.find(asked);
    if (record == nullptr) {
        return missing(asked, path.empty() ? " (the main file)" : "");
    }
    if (!record->isFolder) {
        return {.file = record, .path = asked, .reason = {}};
    }
    const std::string inside = asked + "/" + std::string(kIndexPage);
    const IndexedRecord* page = index.find(inside);
    if (page == nullptr || page->isFolder) {
        return missing(inside, " (the folder has no " + std::string(kIndexPage) + ")");
    }
    return {.file = page, .path = inside, .reason = {}};
}

}  // namespace vx::engine
