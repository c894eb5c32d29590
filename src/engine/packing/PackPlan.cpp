#include "engine/packing/PackPlan.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <set>
#include <utility>

#include "container/vxpkFormat.h"
#include "engine/core/EngineFailure.h"
#include "engine/core/OwnedDescriptor.h"
#include "runtime/files/SystemCalls.h"

namespace vx::engine {
namespace {

constexpr const char* kPackageJsonName = "package.json";

// The folders from the source down to the one being walked, by device and
// inode: a symlink back to any of them would make the walk endless.
using Ancestors = std::set<std::pair<dev_t, ino_t>>;

class Planner {
public:
    Planner(const std::string& source, const ExcludeGlob& exclude,
            const std::optional<std::string>& packageJson)
        : source_(source), exclude_(exclude), packageJson_(packageJson) {}

    // Every entry of the open folder, which is the plan's item folderItem;
    // names are looked up relative to it, so the kernel walks no path twice.
    void walk(int folder, const std::string& relative, const std::string& parent,
              std::size_t folderItem, Ancestors& ancestors);

    PackPlan plan;

private:
    std::vector<std::string> entries(int folder, const std::string& relative) const;
    void add(int folder, const std::string& name, const std::string& relative,
             const std::string& parent, std::size_t folderItem, Ancestors& ancestors);

    const std::string& source_;
    const ExcludeGlob& exclude_;
    const std::optional<std::string>& packageJson_;
};

bool isLeftOut(const std::string& name) {
    return name.front() == '.' || name.front() == '_';
}

std::vector<std::string> Planner::entries(int folder, const std::string& relative) const {
    const bool top = relative.empty();
    const int listed = systemCalls.dup(folder);
    const std::unique_ptr<DIR, int (*)(DIR*)> dir(
        listed < 0 ? nullptr : systemCalls.fdopendir(listed), systemCalls.closedir);
    if (!dir) {
        if (listed >= 0) {
            systemCalls.close(listed);
        }
        failSystem(top ? source_ : relative, errno);
    }
    std::vector<std::string> names;
    errno = 0;
    while (const dirent* entry = systemCalls.readdir(dir.get())) {
        const std::string name = entry->d_name;
        if (name != "." && name != ".." && !isLeftOut(name)) {
            names.push_back(name);
        }
    }
    if (errno != 0) {
        failSystem(top ? source_ : relative, errno);
    }
    if (top && packageJson_ &&
        std::find(names.begin(), names.end(), kPackageJsonName) == names.end()) {
        names.emplace_back(kPackageJsonName);
    }
    std::sort(names.begin(), names.end());
    return names;
}

void Planner::walk(int folder, const std::string& relative, const std::string& parent,
                   std::size_t folderItem, Ancestors& ancestors) {
    for (const auto& name : entries(folder, relative)) {
        const std::string path = relative.empty() ? name : relative + "/" + name;
        if (!exclude_.excludes(path)) {
            add(folder, name, path, parent, folderItem, ancestors);
        }
    }
}

void Planner::add(int folder, const std::string& name, const std::string& relative,
                  const std::string& parent, std::size_t folderItem, Ancestors& ancestors) {
    if (name.size() > vxpkFormat::kMaxStringBytes) {
        failUnacceptable(relative, "the name is longer than 255 bytes");
    }
    if (parent.size() > vxpkFormat::kMaxStringBytes) {
        failUnacceptable(relative, "the parent path is longer than 255 bytes");
    }
    PlannedItem item;
    item.relative = relative;
    item.name = name;
    item.parent = parent;
    item.folder = folderItem;
    if (packageJson_ && relative == kPackageJsonName) {
        item.generated = *packageJson_;
        item.size = packageJson_->size();
        plan.contentBytes += item.size;
        plan.items.push_back(std::move(item));
        return;
    }
    struct stat info;
    // Symlinks are followed, as the App's packer follows them.
    if (systemCalls.fstatat(folder, name.c_str(), &info, 0) != 0) {
        if (errno == ELOOP) {
            failUnacceptable(relative, "a symlink that leads into a cycle");
        }
        failSystem(relative, errno);
    }
    if (S_ISDIR(info.st_mode)) {
        if (name.find(vxpkFormat::kSeparator) != std::string::npos) {
            failUnacceptable(relative, "a folder name holding \":\", which reads as a separator");
        }
        if (!ancestors.emplace(info.st_dev, info.st_ino).second) {
            failUnacceptable(relative, "a symlink that leads into a cycle");
        }
        item.isFolder = true;
        const std::size_t index = plan.items.size();
        plan.items.push_back(std::move(item));
        const OwnedDescriptor inside(
            systemCalls.openat(folder, name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC, 0));
        if (inside.fd() < 0) {
            failSystem(relative, errno);
        }
        walk(inside.fd(), relative, parent.empty() ? name : parent + vxpkFormat::kSeparator + name,
             index, ancestors);
        ancestors.erase({info.st_dev, info.st_ino});
        return;
    }
    if (!S_ISREG(info.st_mode)) {
        failUnacceptable(relative, "neither a file nor a folder (a FIFO, socket or device)");
    }
    if (static_cast<uint64_t>(info.st_size) > vxpkFormat::kMaxContentsBytes) {
        failUnacceptable(relative, "a file of 2 GiB or more");
    }
    item.size = static_cast<uint64_t>(info.st_size);
    plan.contentBytes += item.size;
    plan.items.push_back(std::move(item));
}

}  // namespace

PackPlan planPack(const std::string& source, const ExcludeGlob& exclude,
                  const std::optional<std::string>& generatedPackageJson) {
    struct stat info;
    if (systemCalls.stat(source.c_str(), &info) != 0) {
        failSystem(source, errno);
    }
    if (!S_ISDIR(info.st_mode)) {
        failSystem(source, ENOTDIR);
    }
    const OwnedDescriptor top(
        systemCalls.openat(AT_FDCWD, source.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC, 0));
    if (top.fd() < 0) {
        failSystem(source, errno);
    }
    Planner planner(source, exclude, generatedPackageJson);
    Ancestors ancestors{{info.st_dev, info.st_ino}};
    planner.walk(top.fd(), "", "", kTopFolder, ancestors);
    return std::move(planner.plan);
}

}  // namespace vx::engine
