#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "engine/signing/SecretBytes.h"

// Key and signature files: small, read whole and written whole.
namespace vx::engine {

// The file at path, in locked memory, since it may hold a key; a file larger
// than limit bytes is refused as no key or signature. Read from start to end
// without seeking, so a pipe does as well as a file.
SecretBytes ReadSmallFile(const std::string& path, std::size_t limit);

// Writes bytes to path through a temporary file renamed into place, so that
// path is either the old file or the whole new one. Unless replace, an
// existing path is left as it is and refused, even one that appeared while
// writing.
void WriteSmallFile(const std::string& path, std::string_view bytes, unsigned mode, bool replace);

}  // namespace vx::engine
