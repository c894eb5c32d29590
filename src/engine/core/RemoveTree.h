#pragma once

#include <string>

namespace vx::engine {

// Removes the file or folder at path with everything in it, as far as it
// can, never following a symlink out of it; for taking back what a failed
// operation had begun, so it reports nothing.
void RemoveTree(const std::string& path);

}  // namespace vx::engine
