// Arbitrary bytes as a package, extracted the way vxpk extract does it. A
// refusal (EngineFailure) is an answer; any other exception escapes and is
// reported as a crash. After every input nothing may stand anywhere but in
// the destination: the scratch folder is checked two levels above the
// destination's folder, where a record climbing out with ".." would land.
//
// The target runs confined to a private root, and checks that too after every
// input. The package lives in memory (memfd) and is named through /proc; the
// destination is emptied after every input.

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "Confinement.h"
#include "engine/core/EngineFailure.h"
#include "engine/core/WorkProgress.h"
#include "engine/extraction/ExtractPackage.h"

namespace {

namespace fs = std::filesystem;

struct Scratch {
    fs::path root;
    fs::path inner;
    fs::path destination;
};

Scratch scratch;

Scratch makeScratch(const fs::path& root) {
    Scratch made{root, root / "outer" / "inner", root / "outer" / "inner" / "dest"};
    fs::create_directories(made.inner);
    return made;
}

// Each level holds only the way down to the destination.
void checkContained(const Scratch& folders) {
    const fs::path allowed[] = {folders.root / "outer", folders.inner, folders.destination};
    for (const fs::path& level : {folders.root, folders.root / "outer", folders.inner}) {
        for (const auto& entry : fs::directory_iterator(level)) {
            if (std::find(std::begin(allowed), std::end(allowed), entry.path()) ==
                std::end(allowed)) {
                std::fprintf(stderr, "extraction left %s\n", entry.path().c_str());
                std::abort();
            }
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    scratch = makeScratch(vx::fuzzing::EnterConfinement(*argc, *argv));
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const Scratch& folders = scratch;
    const int fd = ::memfd_create("package", MFD_CLOEXEC);
    if (fd < 0 || ::write(fd, data, size) != static_cast<ssize_t>(size)) {
        std::abort();
    }
    try {
        vx::engine::NoProgress quiet;
        vx::engine::ExtractPackage("/proc/self/fd/" + std::to_string(fd),
                                   folders.destination.string(), quiet);
    } catch (const vx::engine::EngineFailure&) {
    }
    ::close(fd);
    checkContained(folders);
    vx::fuzzing::CheckConfinement();
    fs::remove_all(folders.destination);
    return 0;
}
