// Arbitrary bytes as a package file, extracted by vxpkFile::open. Every
// outcome that a package can have is an answer (an object, nil after a message
// or silently, and UnsupportedFormatException for a name with a NUL byte, which
// no path can hold); any other exception escapes and is reported as a crash.
//
// The reader follows ".." wherever it leads, so the target runs confined to a
// private root, and each extraction runs at the bottom of a chain of folders
// deeper than one record can climb: nothing it writes can leave the scratch
// folder, and the chain is emptied after every input so the disk does not fill.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "Confinement.h"
#include "QuietUIServices.h"
#include "container/vxpkFile.h"
#include "runtime/core/RuntimeException.h"
#include "runtime/services/UIServices.h"

namespace {

namespace fs = std::filesystem;

// A parent path of 255 bytes holds at most 85 times "..", and a name of 255
// bytes, which may hold "/", as many again: 170 levels up from the extraction
// folder, which lies one below the temporary folder.
constexpr int kChainDepth = 172;

struct Scratch {
    fs::path root;
    fs::path chainTop;
    fs::path temporary;
    fs::path package;
};

Scratch scratch;
vx::fuzzing::QuietUIServices ui;

Scratch makeChain(const fs::path& root) {
    Scratch made{root, root / "d", root, root / "in.vxpk"};
    for (int level = 0; level < kChainDepth; ++level) {
        made.temporary /= "d";
    }
    made.temporary /= "tmp";
    fs::create_directories(made.temporary);
    return made;
}

// Whatever climbed out of the extraction folder must still be inside the chain.
void checkContained(const Scratch& folders) {
    for (const auto& entry : fs::directory_iterator(folders.root)) {
        if (entry.path() != folders.chainTop && entry.path() != folders.package) {
            std::fprintf(stderr, "extraction escaped to %s\n", entry.path().c_str());
            std::abort();
        }
    }
}

// Empties the temporary folder and removes from every level of the chain what
// a climbing record left there. Making the chain anew for every input would
// cost the whole chain each time.
void clearChain(const Scratch& folders) {
    fs::path level = folders.chainTop;
    for (int depth = 1; depth <= kChainDepth + 1; ++depth) {
        const char* keep = depth < kChainDepth ? "d" : depth == kChainDepth ? "tmp" : "";
        for (const auto& entry : fs::directory_iterator(level)) {
            if (entry.path().filename() != keep) {
                fs::remove_all(entry.path());
            }
        }
        level /= depth < kChainDepth ? "d" : "tmp";
    }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    scratch = makeChain(vx::fuzzing::EnterConfinement(*argc, *argv));
    ::setenv("TMPDIR", scratch.temporary.c_str(), 1);
    vx::InstallUIServices(&ui);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::ofstream(scratch.package, std::ios::binary | std::ios::trunc)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    try {
        const auto file = vx::vxpkFile::open(vx::New<vx::FolderItem>(
            vx::String(scratch.package.string(), nullptr), vx::FolderItem::PathModeNative));
        if (file != nullptr && !file->folder->Directory()) {
            std::abort();
        }
    } catch (const vx::UnsupportedFormatException&) {
    }
    checkContained(scratch);
    vx::fuzzing::CheckConfinement();
    clearChain(scratch);
    ui.messages.clear();
    return 0;
}
