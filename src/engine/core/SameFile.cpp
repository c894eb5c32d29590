#include "engine/core/SameFile.h"

#include <filesystem>

#include "runtime/files/SystemCalls.h"

namespace vx::engine {
namespace {

bool SameInode(const std::string& a, const std::string& b) {
    struct stat aInfo;
    struct stat bInfo;
    return systemCalls.stat(a.c_str(), &aInfo) == 0 && systemCalls.stat(b.c_str(), &bInfo) == 0 &&
           aInfo.st_dev == bInfo.st_dev && aInfo.st_ino == bInfo.st_ino;
}

std::string FolderOf(const std::filesystem::path& path) {
    return path.has_parent_path() ? path.parent_path().string() : ".";
}

}  // namespace

bool SameFile(const std::string& a, const std::string& b) {
    const std::filesystem::path aPath(a);
    const std::filesystem::path bPath(b);
    return SameInode(a, b) ||
           (aPath.filename() == bPath.filename() && SameInode(FolderOf(aPath), FolderOf(bPath)));
}

}  // namespace vx::engine
