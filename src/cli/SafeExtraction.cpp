#include "cli/SafeExtraction.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <memory>

#include "cli/CliFailure.h"

namespace vx::cli {
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
    cachedHandle_.reset();
    root_.reset();
    if (!committed_) {
        std::error_code ignored;
        std::filesystem::remove_all(temporary_, ignored);
    }
}

ItemPlace SafeExtraction::placeOf(const std::string& relative) {
    const size_t slash = relative.rfind('/');
    ItemPlace place;
    place.name = slash == std::string::npos ? relative : relative.substr(slash + 1);
    const std::string folder = slash == std::string::npos ? "" : relative.substr(0, slash);
    if (folder.empty()) {
        place.folder = root_;
        return place;
    }
    if (cachedHandle_ && folder == cachedFolder_) {
        place.folder = cachedHandle_;
        return place;
    }
    int handle = ::dup(root_->fd());
    size_t start = 0;
    while (handle >= 0 && start <= folder.size()) {
        const size_t end = std::min(folder.find('/', start), folder.size());
        const int next = ::openat(handle, folder.substr(start, end - start).c_str(), kFolderFlags);
        ::close(handle);
        handle = next;
        start = end + 1;
    }
    if (handle < 0) {
        failSystem(destination_ + "/" + folder, errno);
    }
    cachedFolder_ = folder;
    cachedHandle_ = std::make_shared<const FolderHandle>(handle);
    place.folder = cachedHandle_;
    return place;
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

}  // namespace vx::cli
