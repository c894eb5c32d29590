#include "engine/comparison/PackageIndex.h"

#include <algorithm>

namespace vx::engine {

PackageIndex IndexPackage(const std::string& path, int fd) {
    PackageIndex index;
    const PackageSummary summary = WalkOpenPackage(
        path, fd, [&](const PackageEntry& entry) { index.entries.push_back(entry); });
    index.header = summary.header;
    // The tree rules admit no path twice, so the order is total.
    std::sort(index.entries.begin(), index.entries.end(),
              [](const PackageEntry& a, const PackageEntry& b) { return a.path < b.path; });
    return index;
}

}  // namespace vx::engine
