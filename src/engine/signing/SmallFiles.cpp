#include "engine/signing/SmallFiles.h"

#include "engine/core/EngineFailure.h"
#include "engine/core/Interruption.h"
#include "engine/core/ReadUpTo.h"
#include "runtime/files/FullCalls.h"

namespace vx::engine {
SecretBytes ReadSmallFile(const std::string& path, std::size_t limit) {
    // One byte more than allowed tells a file that is too large.
    SecretBytes bytes(limit + 1);
    const std::size_t read = ReadUpTo(path, reinterpret_cast<char*>(bytes.data()), bytes.size());
    if (read > limit) {
        failUnacceptable(
            path, "larger than " + std::to_string(limit) + " bytes: no key or signature file");
    }
    bytes.shrink(read);
    return bytes;
}

PendingFile::PendingFile(const std::string& path, std::string_view bytes) : file_(path) {
    const FullResult written = writeFullyAt(file_.fd(), bytes.data(), bytes.size(), 0);
    if (written.error != 0) {
        failSystem(path, written.error);
    }
}

void PendingFile::commit(unsigned mode, bool replace) {
    if (replace) {
        file_.commit(mode);
    } else {
        file_.commitNew(mode);
    }
}

void WriteSmallFile(const std::string& path, std::string_view bytes, unsigned mode, bool replace) {
    PendingFile file(path, bytes);
    // The last moment at which a stop leaves nothing behind.
    StopIfInterrupted();
    file.commit(mode, replace);
}

}  // namespace vx::engine
