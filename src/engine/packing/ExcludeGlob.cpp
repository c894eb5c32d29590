#include "engine/packing/ExcludeGlob.h"

#include <fnmatch.h>

#include <algorithm>
#include <span>
#include <utility>

namespace vx::engine {
namespace {

constexpr std::string_view kAnyDepth = "**";

// The components of path between its slashes; empty ones, as of "a//b", are
// dropped.
std::vector<std::string> components(std::string_view path) {
    std::vector<std::string> parts;
    std::size_t start = 0;
    while (start <= path.size()) {
        const std::size_t end = std::min(path.find('/', start), path.size());
        if (end > start) {
            parts.emplace_back(path.substr(start, end - start));
        }
        start = end + 1;
    }
    return parts;
}

bool matches(std::span<const std::string> pattern, std::span<const std::string> path) {
    if (pattern.empty()) {
        return path.empty();
    }
    if (pattern.front() == kAnyDepth) {
        for (std::size_t skipped = 0; skipped <= path.size(); ++skipped) {
            if (matches(pattern.subspan(1), path.subspan(skipped))) {
                return true;
            }
        }
        return false;
    }
    return !path.empty() && ::fnmatch(pattern.front().c_str(), path.front().c_str(), 0) == 0 &&
           matches(pattern.subspan(1), path.subspan(1));
}

}  // namespace

ExcludeGlob::ExcludeGlob(const std::vector<std::string>& patterns) {
    for (std::string_view text : patterns) {
        Pattern pattern;
        pattern.folderOnly = text.ends_with('/');
        while (text.ends_with('/')) {
            text.remove_suffix(1);
        }
        // Without a slash the pattern is a name, found at any depth as if it
        // began with "**/"; with one, it is a path from the source's top.
        if (text.find('/') == std::string_view::npos) {
            pattern.components.emplace_back(kAnyDepth);
        }
        for (auto& component : components(text)) {
            pattern.components.push_back(std::move(component));
        }
        if (!text.empty()) {
            patterns_.push_back(std::move(pattern));
        }
    }
}

bool ExcludeGlob::excludes(std::string_view relativePath, bool isFolder) const {
    // Most packs exclude nothing; their walks split no paths.
    if (patterns_.empty()) {
        return false;
    }
    const std::vector<std::string> path = components(relativePath);
    for (const auto& pattern : patterns_) {
        if ((isFolder || !pattern.folderOnly) && matches(pattern.components, path)) {
            return true;
        }
    }
    return false;
}

}  // namespace vx::engine
