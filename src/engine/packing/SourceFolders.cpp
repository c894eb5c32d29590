#include "engine/packing/SourceFolders.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>

#include "engine/core/EngineFailure.h"
#include "runtime/files/SystemCalls.h"

namespace vx::engine {

SourceFolders::SourceFolders(int top, const std::vector<PlannedItem>& items)
    : top_(top), items_(items) {}

int SourceFolders::handle(std::size_t folder) {
    chain_.clear();
    for (std::size_t at = folder; at != kTopFolder; at = items_[at].folder) {
        chain_.push_back(at);
    }
    std::reverse(chain_.begin(), chain_.end());
    std::size_t kept = 0;
    while (kept < open_.size() && kept < chain_.size() && open_[kept].first == chain_[kept]) {
        ++kept;
    }
    open_.resize(kept);
    for (std::size_t depth = kept; depth < chain_.size(); ++depth) {
        const PlannedItem& item = items_[chain_[depth]];
        const int parent = depth == 0 ? top_ : open_.back().second->fd();
        // Symlinks are followed, as the walk that made the plan followed them.
        auto opened = std::make_unique<OwnedDescriptor>(
            systemCalls.openat(parent, item.name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC, 0));
        if (opened->fd() < 0) {
            failSystem(item.relative, errno);
        }
        open_.emplace_back(chain_[depth], std::move(opened));
    }
    return open_.empty() ? top_ : open_.back().second->fd();
}

}  // namespace vx::engine
