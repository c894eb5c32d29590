#include "engine/packing/ExcludeGlob.h"

#include <fnmatch.h>

#include <span>

namespace vx::engine {
namespace {

std::vector<std::string> components(std::string_view path) {
    std::vector<std::string> parts;
    size_t start = 0;
    while (true) {
        const size_t end = path.find('/', start);
        parts.emplace_back(path.substr(start, end - start));
        if (end == std::string_view::npos) {
            return parts;
        }
        start = end + 1;
    }
}

bool matches(std::span<const std::string> pattern, std::span<const std::string> path) {
    if (pattern.empty()) {
        return path.empty();
    }
    if (pattern.front() == "**") {
        for (size_t skipped = 0; skipped <= path.size(); ++skipped) {
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

ExcludeGlob::ExcludeGlob(std::vector<std::string> patterns) {
    for (const auto& pattern : patterns) {
        patterns_.push_back(components(pattern));
    }
}

bool ExcludeGlob::excludes(std::string_view relativePath) const {
    const std::vector<std::string> path = components(relativePath);
    for (const auto& pattern : patterns_) {
        if (matches(pattern, path)) {
            return true;
        }
    }
    return false;
}

}  // namespace vx::engine
