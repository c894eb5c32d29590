#pragma once

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

#include "engine/core/OwnedDescriptor.h"
#include "engine/packing/PackPlan.h"

namespace vx::engine {

// The open folders of the source from its top down to the one in use, known
// by their places in the plan, so that each file is opened relative to its
// folder and the kernel walks no path from the start. Packing goes through
// the plan in order, so the chain mostly stays as it is; each thread that
// reads files keeps its own.
class SourceFolders {
public:
    // top is the source folder's handle, which stays the caller's.
    SourceFolders(int top, const std::vector<PlannedItem>& items);

    // A handle of the plan's folder item at folder, or of the top for
    // kTopFolder; valid until the next call.
    int handle(std::size_t folder);

private:
    int top_;
    const std::vector<PlannedItem>& items_;
    std::vector<std::pair<std::size_t, std::unique_ptr<OwnedDescriptor>>> open_;
    std::vector<std::size_t> chain_;
};

}  // namespace vx::engine
