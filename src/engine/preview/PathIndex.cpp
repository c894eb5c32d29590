#include "engine/preview/PathIndex.h"

namespace vx::engine {

void PathIndex::add(const PackageEntry& entry) {
    records_.emplace(entry.path, IndexedRecord{.isFolder = entry.isFolder,
                                               .recordOffset = entry.recordOffset,
                                               .contentsOffset = entry.contentsOffset,
                                               .size = entry.size});
}

const IndexedRecord* PathIndex::find(std::string_view path) const {
    const auto found = records_.find(path);
    return found == records_.end() ? nullptr : &found->second;
}

}  // namespace vx::engine
