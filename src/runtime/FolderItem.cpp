#include "runtime/FolderItem.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <memory>

#include "runtime/BinaryStream.h"
#include "runtime/FileErrorCode.h"
#include "runtime/TextEncoding.h"
#include "runtime/ui/UIServices.h"

namespace vx {
namespace {

std::string currentFolder() {
    char buffer[PATH_MAX];
    if (::getcwd(buffer, sizeof buffer) == nullptr) {
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
        if (::stat(std::string(ancestor).c_str(), &candidate) == 0 &&
            sameObject(candidate, target)) {
            return true;
        }
    }
    return false;
}

}  // namespace

FolderItem::FolderItem(const String& path, int64_t pathMode) {
    if (pathMode != PathModeNative || path.bytes().find('\0') != std::string_view::npos) {
        throw UnsupportedFormatException();
    }
    path_ = normalise(path.bytes());
}

FolderItem::FolderItem(std::string normalisedPath) : path_(std::move(normalisedPath)) {}

Ref<FolderItem> FolderItem::Child(const String& name) const {
    const std::string_view bytes = name.bytes();
    if (bytes.empty() || bytes == "." || bytes == ".." ||
        bytes.find_first_of(std::string_view("/\0", 2)) != std::string_view::npos) {
        return nullptr;
    }
    std::string childPath = path_;
    if (childPath != "/") {
        childPath += '/';
    }
    childPath.append(bytes);
    return Ref<FolderItem>(std::shared_ptr<FolderItem>(new FolderItem(std::move(childPath))));
}

Ref<FolderItem> FolderItem::Parent() const {
    if (path_ == "/") {
        return nullptr;
    }
    return Ref<FolderItem>(
        std::shared_ptr<FolderItem>(new FolderItem(std::string(parentOf(path_)))));
}

bool FolderItem::Directory() const {
    struct stat info;
    if (::lstat(path_.c_str(), &info) != 0) {
        return false;
    }
    if (!S_ISLNK(info.st_mode)) {
        return S_ISDIR(info.st_mode);
    }
    return ::stat(path_.c_str(), &info) == 0 && S_ISDIR(info.st_mode) &&
           !leadsBackToAncestor(path_, info);
}

bool FolderItem::Exists() const {
    struct stat info;
    return ::lstat(path_.c_str(), &info) == 0;
}

bool FolderItem::IsReadable() const {
    return ::faccessat(AT_FDCWD, path_.c_str(), R_OK, AT_EACCESS) == 0;
}

bool FolderItem::IsWriteable() const {
    return ::faccessat(AT_FDCWD, path_.c_str(), W_OK, AT_EACCESS) == 0;
}

uint64_t FolderItem::Length() const {
    struct stat info;
    if (::stat(path_.c_str(), &info) != 0 || S_ISDIR(info.st_mode)) {
        return 0;
    }
    return static_cast<uint64_t>(info.st_size);
}

String FolderItem::Name() const {
    if (path_ == "/") {
        return String(std::string_view(), Encodings::UTF8);
    }
    return String(std::string_view(path_).substr(path_.rfind('/') + 1), Encodings::UTF8);
}

String FolderItem::NativePath() const {
    return String(std::string_view(path_), Encodings::UTF8);
}

bool FolderItem::readListing() {
    if (entryNames_) {
        return true;
    }
    if (!Directory()) {
        return false;
    }
    std::unique_ptr<DIR, int (*)(DIR*)> dir(::opendir(path_.c_str()), &::closedir);
    if (!dir) {
        lastErrorCode_ = FileErrorCode(errno);
        return false;
    }
    std::vector<std::string> names;
    errno = 0;
    while (const dirent* entry = ::readdir(dir.get())) {
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
    entries_.assign(names.size(), nullptr);
    entryNames_ = std::move(names);
    return true;
}

int64_t FolderItem::Count() {
    return readListing() ? static_cast<int64_t>(entryNames_->size()) : 0;
}

Ref<FolderItem> FolderItem::Item(int64_t index) {
    if (!readListing() || index < 1 || index > static_cast<int64_t>(entryNames_->size())) {
        throw OutOfBoundsException();
    }
    Ref<FolderItem>& entry = entries_[static_cast<std::size_t>(index - 1)];
    if (!entry) {
        entry = Child(String((*entryNames_)[static_cast<std::size_t>(index - 1)], Encodings::UTF8));
    }
    return entry;
}

void FolderItem::CreateAsFolder() {
    lastErrorCode_ = ::mkdir(path_.c_str(), 0777) == 0 ? 0 : FileErrorCode(errno);
}

void FolderItem::Delete() {
    struct stat info;
    int result = ::lstat(path_.c_str(), &info);
    if (result == 0) {
        result = S_ISDIR(info.st_mode) ? ::rmdir(path_.c_str()) : ::unlink(path_.c_str());
    }
    lastErrorCode_ = result == 0 ? 0 : FileErrorCode(errno);
}

Ref<BinaryStream> FolderItem::openStream(int flags) {
    const int fd = ::open(path_.c_str(), flags | O_CLOEXEC, 0666);
    if (fd < 0) {
        lastErrorCode_ = FileErrorCode(errno);
        return nullptr;
    }
    struct stat info;
    const int error = ::fstat(fd, &info) != 0 ? errno : (S_ISDIR(info.st_mode) ? EISDIR : 0);
    if (error != 0) {
        lastErrorCode_ = FileErrorCode(error);
        ::close(fd);
        return nullptr;
    }
    lastErrorCode_ = 0;
    return New<BinaryStream>(fd, (flags & O_ACCMODE) != O_RDONLY);
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
