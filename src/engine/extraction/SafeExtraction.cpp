#include "engine/extraction/SafeExtraction.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <memory>

#include "engine/core/EngineFailure.h"

namespace vx::engine {
namespace {

constexpr int kFolderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

bool isEmptyFolder(const std::string& path) {
    const std::unique_ptr<DIR, int (*)(DIR*)> dir(::opendir(path.c_str()), ::closedir);
    if (!dir) {
        failSystem(path, errno);
    }
    while (const dirent* entry = ::readdir(dir.get())) {
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..") {
            return false;
        }
    }
    return true;
}

void checkDestination(const std::string& destination) {
    struct stat info;
    if (::lstat(destination.c_str(), &info) != 0) {
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
    if (::mkdtemp(temporary_.data()) == nullptr) {
        failSystem(destination, errno);
    }
    const int root = ::open(temporary_.c_str(), kFolderFlags);
    if (root < 0) {
        const int error = errno;
        ::rmdir(temporary_.c_str());
        failSystem(temporary_, error);
    }
    root_ = std::make_shared<const FolderHandle>(root);
}

SafeExtraction::~SafeExtraction() {
    chain_.clear();
    root_.reset();
    if (!committed_) {
        std::error_code ignored;
        std::filesystem::remove_all(temporary_, ignored);
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
            const int handle = ::openat(parent, std::string(name).c_str(), kFolderFlags);
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
    if (::mkdirat(place.folder->fd(), place.name.c_str(), 0755) != 0) {
        failSystem(destination_ + "/" + relative, errno);
    }
}

int SafeExtraction::makeFile(const ItemPlace& place, const std::string& relative) const {
    const int fd = ::openat(place.folder->fd(), place.name.c_str(),
                            O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0644);
    if (fd < 0) {
        failSystem(destination_ + "/" + relative, errno);
    }
    return fd;
}

void SafeExtraction::commit() {
    // mkdtemp makes the folder private; the tree's top gets a folder's mode.
    const mode_t mask = ::umask(0);
    ::umask(mask);
    if (::fchmod(root_->fd(), 0755 & ~mask) != 0) {
        failSystem(temporary_, errno);
    }
    // An empty destination folder is replaced by the rename itself.
    if (::rename(temporary_.c_str(), destination_.c_str()) != 0) {
        failSystem(destination_, errno);
    }
    committed_ = true;
}

}  // namespace vx::engine
