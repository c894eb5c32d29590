#include "engine/core/RemoveTree.h"

#include <dirent.h>
#include <fcntl.h>

#include <cerrno>
#include <memory>
#include <string_view>

#include "runtime/files/SystemCalls.h"

namespace vx::engine {
namespace {

// Empties the folder name of parent, if it is one, and removes it.
void removeEntry(int parent, const char* name) {
    if (systemCalls.unlinkat(parent, name, 0) == 0 || errno != EISDIR) {
        return;
    }
    const int fd =
        systemCalls.openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC, 0);
    const std::unique_ptr<DIR, int (*)(DIR*)> folder(fd < 0 ? nullptr : systemCalls.fdopendir(fd),
                                                     systemCalls.closedir);
    if (!folder && fd >= 0) {
        systemCalls.close(fd);
    }
    while (folder) {
        const dirent* entry = systemCalls.readdir(folder.get());
        if (entry == nullptr) {
            break;
        }
        const std::string_view inside = entry->d_name;
        if (inside != "." && inside != "..") {
            removeEntry(dirfd(folder.get()), entry->d_name);
        }
    }
    systemCalls.unlinkat(parent, name, AT_REMOVEDIR);
}

}  // namespace

void RemoveTree(const std::string& path) {
    removeEntry(AT_FDCWD, path.c_str());
}

}  // namespace vx::engine
