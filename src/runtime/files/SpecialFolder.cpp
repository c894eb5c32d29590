#include "runtime/files/SpecialFolder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

namespace vx::SpecialFolder {

namespace {

// Whether the path is a real folder of this user's, not a link to one; a
// folder that others could enter is closed to them first. Asked through one
// open folder, so the answer holds for the folder that was looked at.
bool IsOwnPrivateFolder(const std::string& path) {
    const int folder = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (folder < 0) {
        return false;
    }
    struct stat info {};
    const bool own = ::fstat(folder, &info) == 0 && S_ISDIR(info.st_mode) &&
                     info.st_uid == ::geteuid() &&
                     ((info.st_mode & 077) == 0 || ::fchmod(folder, 0700) == 0);
    ::close(folder);
    return own;
}

// In the shared folder anybody may put anything under any name, the user's
// usual one included. A name that is taken by somebody else is given up for
// one that nobody can foresee, made in the same step as it is chosen.
std::string MakePrivateFolderIn(const std::string& shared) {
    const std::string usual = shared + "/vantrelix-" + std::to_string(::geteuid());
    ::mkdir(usual.c_str(), 0700);
    if (IsOwnPrivateFolder(usual)) {
        return usual;
    }
    std::string fresh = usual + "-XXXXXX";
    return ::mkdtemp(fresh.data()) != nullptr ? fresh : std::string();
}

// The folder chosen last, asked again before each use: the shared folder may
// be cleared while the program runs, and a fresh name must not be replaced
// by yet another on every call.
struct Chosen {
    std::string shared;
    std::string folder;
};

Chosen& LastChosen() {
    static Chosen chosen;
    return chosen;
}

}  // namespace

Ref<FolderItem> Temporary() {
    const char* configured = std::getenv("TMPDIR");
    if (configured != nullptr && *configured != '\0') {
        return New<FolderItem>(String(configured), FolderItem::PathModeNative);
    }
    Chosen& chosen = LastChosen();
    if (chosen.shared != _SharedTemporary || !IsOwnPrivateFolder(chosen.folder)) {
        chosen = {_SharedTemporary, MakePrivateFolderIn(_SharedTemporary)};
    }
    if (chosen.folder.empty()) {
        return nullptr;
    }
    return New<FolderItem>(String(chosen.folder.c_str()), FolderItem::PathModeNative);
}

}  // namespace vx::SpecialFolder
