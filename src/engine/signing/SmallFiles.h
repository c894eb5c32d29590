#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "engine/core/TemporaryFile.h"
#include "engine/signing/SecretBytes.h"

// Key and signature files: small, read whole and written whole.
namespace vx::engine {

// The file at path, in locked memory, since it may hold a key; a file larger
// than limit bytes is refused as no key or signature. Read from start to end
// without seeking, so a pipe does as well as a file.
SecretBytes ReadSmallFile(const std::string& path, std::size_t limit);

// A small file written whole under a temporary name beside path, and put in
// place only by commit; until then path is as it was, and the temporary file
// goes with this object. Several of them let a pair of files be written
// before either replaces anything.
class PendingFile {
public:
    PendingFile(const std::string& path, std::string_view bytes);

    // Gives the file mode and puts it at path. Unless replace, an existing
    // path is left as it is and refused, even one that appeared while
    // writing.
    void commit(unsigned mode, bool replace);

private:
    TemporaryFile file_;
};

// Writes bytes to path through a PendingFile, so that path is either the old
// file or the whole new one; a signal while writing leaves the old one.
void WriteSmallFile(const std::string& path, std::string_view bytes, unsigned mode, bool replace);

}  // namespace vx::engine
