#include "engine/signing/SmallFiles.h"

#include <fcntl.h>

#include <cerrno>

#include "engine/core/EngineFailure.h"
#include "engine/core/Interruption.h"
#include "engine/core/OwnedDescriptor.h"
#include "engine/core/TemporaryFile.h"
#include "engine/signing/ReadAt.h"
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
    std::size_t got = 0;
    while (got < bytes.size()) {
        const std::size_t read = ReadAt(file.fd(), path, bytes.bytes().subspan(got), got);
        if (read == 0) {
            break;
        }
        got += read;
    }
    if (got > limit) {
        failUnacceptable(
            path, "larger than " + std::to_string(limit) + " bytes: no key or signature file");
    }
    bytes.shrink(got);
    return bytes;
}

void WriteSmallFile(const std::string& path, std::string_view bytes, unsigned mode, bool replace) {
    TemporaryFile file(path);
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t written = systemCalls.pwrite(file.fd(), bytes.data() + done,
                                                   bytes.size() - done, static_cast<off_t>(done));
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written < 0) {
            failSystem(path, errno);
        }
        done += static_cast<std::size_t>(written);
    }
    // The last moment at which a stop leaves nothing behind.
    StopIfInterrupted();
    if (replace) {
        file.commit(mode);
    } else {
        file.commitNew(mode);
    }
}

}  // namespace vx::engine
