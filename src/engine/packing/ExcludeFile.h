#pragma once

#include <string>
#include <vector>

namespace vx::engine {

// The patterns of an exclude file, as ExcludeGlob reads them: one a line,
// with blank lines and lines that begin with "#" skipped and the "\r" of a
// line ending in "\r\n" dropped. A file that cannot be read ends it with
// EngineFailure naming the file.
std::vector<std::string> readExcludeFile(const std::string& path);

}  // namespace vx::engine
