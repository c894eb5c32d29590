// Arbitrary bytes as a package, walked by the strict record reader under the
// tree rules, as vxpk verify does. A PackageProblem is an answer; any other
// exception escapes and is reported as a crash. The package lives in memory
// (memfd), so the target writes nothing to disk.

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "container/PackageProblem.h"
#include "container/vxpkRecordReader.h"
#include "container/vxpkTreeCheck.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const int fd = ::memfd_create("package", MFD_CLOEXEC);
    if (fd < 0 || ::write(fd, data, size) != static_cast<ssize_t>(size)) {
        std::abort();
    }
    auto stream = vx::New<vx::BinaryStream>(fd, false);
    stream->UseIOExceptions = true;
    try {
        vx::vxpkRecordReader reader(stream);
        vx::vxpkTreeCheck tree;
        uint64_t end = 0;
        while (const auto entry = reader.next()) {
            tree.admit(*entry);
            end = entry->contentsOffset + entry->contentsBytes();
            // Every record the reader gives lies whole inside the package.
            if (end > size || entry->offset >= end) {
                std::abort();
            }
        }
    } catch (const vx::PackageProblem&) {
    }
    return 0;
}
