#pragma once

#include <string_view>

namespace vx::engine {

// Whether the packer leaves out an entry of this name wherever it stands:
// names starting with "." or "_" are never packed. The server says so when
// one is asked for, as the usual reason an app works from its folder but not
// from its package.
inline bool IsNeverPacked(std::string_view name) {
    return !name.empty() && (name.front() == '.' || name.front() == '_');
}

}  // namespace vx::engine
