#include "support/ScratchFolder.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <system_error>

namespace vx::test {
namespace fs = std::filesystem;

ScratchFolder::ScratchFolder() {
    std::string pattern = (fs::temp_directory_path() / "vx-test-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) {
        throw std::runtime_error("cannot make a scratch folder");
    }
    root_ = pattern;
    ::chmod(root_.c_str(), 0777);
}

ScratchFolder::~ScratchFolder() {
    // Tests take rights away; give them back so that the removal can pass.
    std::error_code ignored;
    for (auto it = fs::recursive_directory_iterator(
             root_, fs::directory_options::skip_permission_denied, ignored);
         it != fs::recursive_directory_iterator(); it.increment(ignored)) {
        if (!it->is_symlink(ignored)) {
            fs::permissions(it->path(), fs::perms::owner_all, fs::perm_options::add, ignored);
        }
    }
    fs::remove_all(root_, ignored);
}

std::string ScratchFolder::path(std::string_view relative) const {
    return relative.empty() ? root_ : root_ + "/" + std::string(relative);
}

Ref<FolderItem> ScratchFolder::item(std::string_view relative) const {
    return New<FolderItem>(String(std::string_view(path(relative)), nullptr),
                           FolderItem::PathModeNative);
}

std::string ScratchFolder::writeFile(std::string_view relative, std::string_view bytes) const {
    const std::string full = path(relative);
    fs::create_directories(fs::path(full).parent_path());
    std::ofstream(full, std::ios::binary).write(bytes.data(), static_cast<long>(bytes.size()));
    return full;
}

std::string ScratchFolder::makeFolder(std::string_view relative) const {
    const std::string full = path(relative);
    fs::create_directories(full);
    return full;
}

std::string ScratchFolder::makeLink(std::string_view relative, std::string_view target) const {
    const std::string full = path(relative);
    fs::create_directories(fs::path(full).parent_path());
    fs::create_symlink(fs::path(target), full);
    return full;
}

std::string ScratchFolder::readFile(std::string_view relative) const {
    std::ifstream in(path(relative), std::ios::binary);
    std::ostringstream bytes;
    bytes << in.rdbuf();
    return bytes.str();
}

}  // namespace vx::test
