#include "engine/extraction/SafeExtraction.h"

#include <dirent.h>
#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <memory>

#include "engine/core/CurrentUmask.h"
#include "engine/core/EngineFailure.h"
#include "engine/core/RemoveTree.h"
#include "runtime/files/SystemCalls.h"

namespace vx::engine {
namespace {

constexpr int kFolderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

bool isEmptyFolder(const std::string& path) {
    const int fd = systemCalls.openat(AT_FDCWD, path.c_str(), kFolderFlags, 0);
    const std::unique_ptr<DIR, int (*)(DIR*)> dir(fd < 0 ? nullptr : systemCalls.fdopendir(fd),
                                                  systemCalls.closedir);
    if (!dir) {
        const int error = errno;
        if (fd >= 0) {
            systemCalls.close(fd);
        }
        failSystem(path, error);
    }
    while (const dirent* entry = systemCalls.readdir(dir.get())) {
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..") {
            return false;
        }
    }
    return true;
}

void checkDestination(const std::string& destination) {
    struct stat info;
    if (systemCalls.fstatat(AT_FDCWD, destination.c_str(), &info, AT_SYMLINK_NOFOLLOW) != 0) {
        if (errno != ENOENT) {
            failSystem(destination, errno);
        }
        return;
    }
    if (!S_ISDIR(info.st_mode) || !isEmptyFolder(destination)) {
        failUnacceptable(destination, "exists and is not an empty folder");
    }
}

}  // namespace

SafeExtraction::SafeExtraction(const std::string& destination) : destination_(destination) {
    checkDestination(destination);
    std::filesystem::path target(destination);
    if (!target.has_filename()) {
        target = target.parent_path();
    }
    // Appended rather than "." + ...: GCC 12 at -O3 warns falsely
    // (-Wrestrict) on a literal inserted before a temporary string.
    const std::string hidden =
        std::string(".").append(target.filename().string()).append(".XXXXXX");
    temporary_ = (target.parent_path() / hidden).string();
    if (systemCalls.mkdtemp(temporary_.data()) == nullptr) {
        failSystem(destination, errno);
    }
    const int root = systemCalls.openat(AT_FDCWD, temporary_.c_str(), kFolderFlags, 0);
    if (root < 0) {
        const int error = errno;
        systemCalls.unlinkat(AT_FDCWD, temporary_.c_str(), AT_REMOVEDIR);
        failSystem(temporary_, error);
    }
    root_ = std::make_shared<const FolderHandle>(root);
}

SafeExtraction::~SafeExtraction() {
    chain_.clear();
    root_.reset();
    if (!committed_) {
        RemoveTree(temporary_);
    }
}

std::shared_ptr<const FolderHandle> SafeExtraction::folderHandle(std::string_view folder) {
    std::size_t depth = 0;
    std::size_t start = 0;
    while (start < folder.size()) {
        const std::size_t end = std::min(folder.find('/', start), folder.size());
        const std::string_view name = folder.substr(start, end - start);
        if (depth < chain_.size() && chain_[depth].first != name) {
            chain_.resize(depth);
        }
        if (depth == chain_.size()) {
            const int parent = depth == 0 ? root_->fd() : chain_.back().second->fd();
            const int handle =
                systemCalls.openat(parent, std::string(name).c_str(), kFolderFlags, 0);
            if (handle < 0) {
                failSystem(destination_ + "/" + std::string(folder), errno);
            }
            chain_.emplace_back(name, std::make_shared<const FolderHandle>(handle));
        }
        ++depth;
        start = end + 1;
    }
    chain_.resize(depth);
    return depth == 0 ? root_ : chain_.back().second;
}

ItemPlace SafeExtraction::placeOf(const std::string& relative) {
    const size_t slash = relative.rfind('/');
    if (slash == std::string::npos) {
        return {root_, relative};
    }
    return {folderHandle(std::string_view(relative).substr(0, slash)), relative.substr(slash + 1)};
}

void SafeExtraction::makeFolder(const std::string& relative) {
    const ItemPlace place = placeOf(relative);
    if (systemCalls.mkdirat(place.folder->fd(), place.name.c_str(), 0755) != 0) {
        failSystem(destination_ + "/" + relative, errno);
    }
}

int SafeExtraction::makeFile(const ItemPlace& place, const std::string& relative) const {
    const int fd = systemCalls.openat(place.folder->fd(), place.name.c_str(),
                                      O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0644);
    if (fd < 0) {
        failSystem(destination_ + "/" + relative, errno);
    }
    return fd;
}

void SafeExtraction::commit() {
    // mkdtemp makes the folder private; the tree's top gets a folder's mode.
    if (systemCalls.fchmod(root_->fd(), 0755 & ~CurrentUmask()) != 0) {
        failSystem(temporary_, errno);
    }
    // An empty destination folder is replaced by the rename itself.
    if (systemCalls.renameat(AT_FDCWD, temporary_.c_str(), AT_FDCWD, destination_.c_str()) != 0) {
        failSystem(destination_, errno);
    }
    committed_ = true;
}

}  // namespace vx::engine
