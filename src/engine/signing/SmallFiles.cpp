#include "engine/signing/SmallFiles.h"

#include <fcntl.h>

#include <cerrno>

#include "engine/core/EngineFailure.h"
#include "engine/core/Interruption.h"
#include "engine/core/OwnedDescriptor.h"
#include "runtime/files/FullCalls.h"
#include "runtime/files/SystemCalls.h"

namespace vx::engine {
namespace {

int OpenForReading(const std::string& path) {
    const int fd = systemCalls.openat(AT_FDCWD, path.c_str(), O_RDONLY | O_CLOEXEC, 0);
    if (fd < 0) {
        failSystem(path, errno);
    }
    return fd;
}

}  // namespace

SecretBytes ReadSmallFile(const std::string& path, std::size_t limit) {
    const OwnedDescriptor file(OpenForReading(path));
    // One byte more than allowed tells a file that is too large.
    SecretBytes bytes(limit + 1);
    const FullResult read =
        readFully(file.fd(), reinterpret_cast<char*>(bytes.data()), bytes.size());
    if (read.error != 0) {
        failSystem(path, read.error);
    }
    if (read.bytes > limit) {
        failUnacceptable(
            path, "larger than " + std::to_string(limit) + " bytes: no key or signature file");
    }
    bytes.shrink(static_cast<std::size_t>(read.bytes));
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
