// Arbitrary bytes as a package file, extracted by vxpkFile::open. Every
// outcome that a package can have is an answer (an object, nil after a message
// or silently, and UnsupportedFormatException for a name with a NUL byte, which
// no path can hold); any other exception escapes and is reported as a crash.
//
// The reader follows ".." wherever it leads, so each extraction runs at the
// bottom of a chain of folders deeper than the 86 levels that one record can
// climb: nothing it writes can leave the scratch folder, and the chain is
// emptied after every input so the disk does not fill.

#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "container/vxpkFile.h"
#include "runtime/core/RuntimeException.h"
#include "runtime/services/UIServices.h"

namespace {

namespace fs = std::filesystem;

// A parent path holds 255 bytes, at most 85 times ".." and a name "..".
constexpr int kChainDepth = 90;

class QuietUI : public vx::UIServices {
public:
    void MsgBox(const vx::String& /*message*/) override {}
    void Beep() override {}
    void BackgroundTask() override {}
    vx::Ref<vx::FolderItem> SelectFolder() override { return nullptr; }
    vx::Ref<vx::FolderItem> GetSaveFolderItem(const vx::String&, const vx::String&) override {
        return nullptr;
    }
    vx::Ref<vx::FolderItem> ShowOpenDialog(const vx::String&, const vx::String&,
                                           const vx::String&) override {
        return nullptr;
    }
    void Launch(const vx::FolderItem& /*item*/, bool /*activate*/) override {}
};

struct Scratch {
    fs::path root;
    fs::path chainTop;
    fs::path temporary;
    fs::path package;
};

const Scratch& scratch() {
    static const Scratch folders = [] {
        std::string pattern = (fs::temp_directory_path() / "vxpk-fuzz-XXXXXX").string();
        if (::mkdtemp(pattern.data()) == nullptr) {
            std::perror("mkdtemp");
            std::abort();
        }
        Scratch made{pattern, fs::path(pattern) / "d", fs::path(pattern),
                     fs::path(pattern) / "in.vxpk"};
        for (int level = 0; level < kChainDepth; ++level) {
            made.temporary /= "d";
        }
        made.temporary /= "tmp";
        fs::create_directories(made.temporary);
        ::setenv("TMPDIR", made.temporary.c_str(), 1);
        static QuietUI ui;
        vx::InstallUIServices(&ui);
        return made;
    }();
    static const bool removedAtExit = std::atexit([] { fs::remove_all(scratch().root); }) == 0;
    (void)removedAtExit;
    return folders;
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
// cost ninety directories each time.
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

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const Scratch& folders = scratch();
    std::ofstream(folders.package, std::ios::binary | std::ios::trunc)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    try {
        const auto file = vx::vxpkFile::open(vx::New<vx::FolderItem>(
            vx::String(folders.package.string(), nullptr), vx::FolderItem::PathModeNative));
        if (file != nullptr && !file->folder->Directory()) {
            std::abort();
        }
    } catch (const vx::UnsupportedFormatException&) {
    }
    checkContained(folders);
    clearChain(folders);
    return 0;
}
