#pragma once

#include <sys/stat.h>

#include <string>
#include <string_view>

#include "engine/preview/PathIndex.h"

namespace vx::engine {

// What tells one package file from another, or from itself rewritten: its
// inode, size and modification time in nanoseconds, from its fstat.
std::string PackageIdentityOf(const struct stat& info);

// The strong ETag of a file of the package: the package's identity, then
// its record's offset and its size, which no other file of the same package
// shares, so a browser's copy stays good for as long as the package is the
// same, and a package rebuilt and served on the same port is fetched anew.
std::string EntityTagOf(std::string_view packageIdentity, const IndexedRecord& file);

// Whether an If-None-Match header value names tag (weakly, as the header is
// compared) or is "*": then the browser's copy is current and 304 answers.
bool NoneMatchNames(std::string_view header, std::string_view tag);

}  // namespace vx::engine
