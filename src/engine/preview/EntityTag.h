#pragma once

#include <string>
#include <string_view>

#include "engine/preview/PathIndex.h"

namespace vx::engine {

// The strong ETag of a file of the package: its record's offset and its
// size, which no other file of the same package shares, so a browser's copy
// stays good for as long as the package is the same.
std::string EntityTagOf(const IndexedRecord& file);

// Whether an If-None-Match header value names tag (weakly, as the header is
// compared) or is "*": then the browser's copy is current and 304 answers.
bool NoneMatchNames(std::string_view header, std::string_view tag);

}  // namespace vx::engine
