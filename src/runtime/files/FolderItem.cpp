#include "runtime/files/FolderItem.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <memory>

#include "runtime/files/BinaryStream.h"
#include "runtime/files/FileErrorCode.h"
#include "runtime/files/SystemCalls.h"
#include "runtime/services/UIServices.h"
#include "runtime/text/TextEncoding.h"

namespace vx {
namespace {

std::string currentFolder() {
    char buffer[PATH_MAX];
    if (systemCalls.getcwd(buffer, sizeof buffer) == nullptr) {
        return "/";
    }
    return buffer;
}

// Collapses runs of "/" and drops a trailing one, so that every spelling of a
// path gives one string and NativePath needs no further work.
std::string normalise(std::string_view path) {
    std::string absolute;
    if (path.empty() || path.front() != '/') {
        absolute = currentFolder();
        absolute += '/';
    }
    absolute.append(path);

    std::string result;
    result.reserve(absolute.size());
    for (char c : absolute) {
        if (c == '/' && !result.empty() && result.back() == '/') {
            continue;
        }
        result += c;
    }
    if (result.size() > 1 && result.back() == '/') {
        result.pop_back();
    }
    return result;
}

std::string_view parentOf(std::string_view path) {
    const auto slash = path.rfind('/');
    return slash == 0 ? std::string_view("/") : path.substr(0, slash);
}

bool sameObject(const struct stat& a, const struct stat& b) {
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

// A link that resolves to a folder which already lies on its own path would
// make any walk below it endless; such a link is treated as an empty file.
bool leadsBackToAncestor(std::string_view path, const struct stat& target) {
    std::string_view ancestor = path;
    while (ancestor != "/") {
        ancestor = parentOf(ancestor);
        struct stat candidate;
        if (systemCalls.stat(std::string(ancestor).c_str(), &candidate) == 0 &&
            sameObject(candidate, target)) {
            return true;
        }
    }
    return false;
}

}  // namespace

// An open folder, shared by the FolderItem that listed it and the entries that
// Item gives out, so that their system calls look up one name in it instead of
// walking the whole path again.
struct FolderItem::FolderHandle {
    explicit FolderHandle(int openFolder) : fd(openFolder) {}
    ~FolderHandle() { systemCalls.close(fd); }
    FolderHandle(const FolderHandle&) = delete;
    FolderHandle& operator=(const FolderHandle&) = delete;
    const int fd;
};

FolderItem::FolderItem(const String& path, int64_t pathMode) {
    if (pathMode != PathModeNative || path.bytes().find('\0') != std::string_view::npos) {
        throw UnsupportedFormatException();
    }
    path_ = String(normalise(path.bytes()), Encodings::UTF8);
}

FolderItem::FolderItem(Passkey, String normalisedPath, std::shared_ptr<const FolderHandle> parent)
    : path_(std::move(normalisedPath)), parent_(std::move(parent)) {}

FolderItem::Location FolderItem::location() const {
    if (parent_) {
        return {parent_->fd, path_.c_str() + path_.bytes().rfind('/') + 1};
    }
    return {AT_FDCWD, path_.c_str()};
}

Ref<FolderItem> FolderItem::Child(const String& name) const {
    const std::string_view bytes = name.bytes();
    if (bytes.empty() || bytes == "." || bytes == ".." ||
        bytes.find_first_of(std::string_view("/\0", 2)) != std::string_view::npos) {
        return nullptr;
    }
    std::string childPath(path_.bytes());
    if (childPath != "/") {
        childPath += '/';
    }
    childPath.append(bytes);
    return New<FolderItem>(Passkey(), String(std::move(childPath), Encodings::UTF8), handle_);
}

Ref<FolderItem> FolderItem::Parent() const {
    if (path_ == "/") {
        return nullptr;
    }
    return New<FolderItem>(Passkey(), String(parentOf(path_.bytes()), Encodings::UTF8), nullptr);
}

bool FolderItem::Directory() const {
    const Location at = location();
    struct stat info;
    if (systemCalls.fstatat(at.folder, at.name, &info, AT_SYMLINK_NOFOLLOW) != 0) {
        return false;
    }
    if (!S_ISLNK(info.st_mode)) {
        return S_ISDIR(info.st_mode);
    }
    return systemCalls.fstatat(at.folder, at.name, &info, 0) == 0 && S_ISDIR(info.st_mode) &&
           !leadsBackToAncestor(path_.bytes(), info);
}

bool FolderItem::Exists() const {
    const Location at = location();
    struct stat info;
    return systemCalls.fstatat(at.folder, at.name, &info, AT_SYMLINK_NOFOLLOW) == 0;
}

bool FolderItem::IsReadable() const {
    const Location at = location();
    return systemCalls.faccessat(at.folder, at.name, R_OK, AT_EACCESS) == 0;
}

bool FolderItem::IsWriteable() const {
    const Location at = location();
    return systemCalls.faccessat(at.folder, at.name, W_OK, AT_EACCESS) == 0;
}

uint64_t FolderItem::Length() const {
    const Location at = location();
    struct stat info;
    if (systemCalls.fstatat(at.folder, at.name, &info, 0) != 0 || S_ISDIR(info.st_mode)) {
        return 0;
    }
    return static_cast<uint64_t>(info.st_size);
}

String FolderItem::Name() const {
    const std::string_view path = path_.bytes();
    return String(path == "/" ? std::string_view() : path.substr(path.rfind('/') + 1),
                  Encodings::UTF8);
}

String FolderItem::NativePath() const {
    return path_;
}

bool FolderItem::readListing() {
    if (entryNames_) {
        return true;
    }
    if (!Directory()) {
        return false;
    }
    // One descriptor is read to the end for the names; a second one on the
    // same folder stays open for the entries.
    const Location at = location();
    const int fd = systemCalls.openat(at.folder, at.name, O_RDONLY | O_DIRECTORY | O_CLOEXEC, 0);
    if (fd < 0) {
        lastErrorCode_ = FileErrorCode(errno);
        return false;
    }
    const std::unique_ptr<DIR, int (*)(DIR*)> dir(systemCalls.fdopendir(fd), systemCalls.closedir);
    const int kept = systemCalls.fcntl(fd, F_DUPFD_CLOEXEC, 0);
    if (!dir || kept < 0) {
        lastErrorCode_ = FileErrorCode(errno);
        if (!dir) {
            systemCalls.close(fd);
        }
        return false;
    }
    auto handle = std::make_shared<const FolderHandle>(kept);
    std::vector<std::string> names;
    errno = 0;
    while (const dirent* entry = systemCalls.readdir(dir.get())) {
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..") {
            names.emplace_back(name);
        }
    }
    if (errno != 0) {
        lastErrorCode_ = FileErrorCode(errno);
        return false;
    }
    // std::string compares its chars as unsigned, which is the byte order.
    std::sort(names.begin(), names.end());
    entryNames_ = std::move(names);
    handle_ = std::move(handle);
    return true;
}

int64_t FolderItem::Count() {
    lastItem_ = nullptr;
    return readListing() ? static_cast<int64_t>(entryNames_->size()) : 0;
}

Ref<FolderItem> FolderItem::Item(int64_t index) {
    if (lastItem_ && index == lastIndex_) {
        return lastItem_;
    }
    if (!readListing() || index < 1 || index > static_cast<int64_t>(entryNames_->size())) {
        throw OutOfBoundsException();
    }
    lastItem_ = Child(String((*entryNames_)[static_cast<std::size_t>(index - 1)], nullptr));
    lastIndex_ = index;
    return lastItem_;
}

void FolderItem::CreateAsFolder() {
    const Location at = location();
    lastErrorCode_ = systemCalls.mkdirat(at.folder, at.name, 0777) == 0 ? 0 : FileErrorCode(errno);
}

void FolderItem::Delete() {
    const Location at = location();
    struct stat info;
    int result = systemCalls.fstatat(at.folder, at.name, &info, AT_SYMLINK_NOFOLLOW);
    if (result == 0) {
        result = systemCalls.unlinkat(at.folder, at.name, S_ISDIR(info.st_mode) ? AT_REMOVEDIR : 0);
    }
    lastErrorCode_ = result == 0 ? 0 : FileErrorCode(errno);
}

Ref<BinaryStream> FolderItem::openStream(int flags) {
    const Location at = location();
    const int fd = systemCalls.openat(at.folder, at.name, flags | O_CLOEXEC, 0666);
    if (fd < 0) {
        lastErrorCode_ = FileErrorCode(errno);
        return nullptr;
    }
    // Only a read-only open can reach a folder; the kernel refuses the others.
    const bool writable = (flags & O_ACCMODE) != O_RDONLY;
    struct stat info;
    const int error = writable                            ? 0
                      : systemCalls.fstat(fd, &info) != 0 ? errno
                      : S_ISDIR(info.st_mode)             ? EISDIR
                                                          : 0;
    if (error != 0) {
        lastErrorCode_ = FileErrorCode(error);
        systemCalls.close(fd);
        return nullptr;
    }
    lastErrorCode_ = 0;
    return New<BinaryStream>(fd, writable);
}

Ref<BinaryStream> FolderItem::CreateBinaryFile(const String& /*fileTypeName*/) {
    return openStream(O_RDWR | O_CREAT | O_TRUNC);
}

Ref<BinaryStream> FolderItem::OpenAsBinaryFile(bool readWrite) {
    return openStream(readWrite ? O_RDWR : O_RDONLY);
}

void FolderItem::Launch(bool activate) const {
    if (auto* services = detail::installedUIServices) {
        services->Launch(*this, activate);
    }
}

}  // namespace vx
