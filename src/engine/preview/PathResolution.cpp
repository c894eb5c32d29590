#include "engine/preview/PathResolution.h"

#include <string_view>

namespace vx::engine {
namespace {

constexpr std::string_view kIndexFile = "index.html";

// The first character of a component that the packer never packs, or 0.
char unpackedMark(std::string_view path) {
    for (size_t start = 0; start < path.size();) {
        if (path[start] == '.' || path[start] == '_') {
            return path[start];
        }
        const size_t slash = path.find('/', start);
        start = slash == std::string_view::npos ? path.size() : slash + 1;
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
    const std::string inside = asked + "/" + std::string(kIndexFile);
    const IndexedRecord* page = index.find(inside);
    if (page == nullptr || page->isFolder) {
        return missing(inside, " (the folder has no index.html)");
    }
    return {.file = page, .path = inside, .reason = {}};
}

}  // namespace vx::engine
