#include "engine/packing/PackPlan.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <set>
#include <utility>

#include "container/vxpkFormat.h"
#include "engine/core/EngineFailure.h"
#include "engine/core/Interruption.h"
#include "engine/core/NeverPacked.h"
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
    void noteLeftOut(int folder, const std::string& name, const std::string& relative);
    void add(int folder, PlannedItem item, Ancestors& ancestors);
    void addFolder(int folder, PlannedItem item, const struct stat& info, Ancestors& ancestors);
    void keep(PlannedItem item);

    const std::string& source_;
    const ExcludeGlob& exclude_;
    const std::optional<std::string>& packageJson_;
};

bool isLeftOut(const std::string& name) {
    return IsNeverPacked(name);
}

void checkNames(const PlannedItem& item) {
    if (item.name.size() > vxpkFormat::kMaxStringBytes) {
        failUnacceptable(item.relative, "the name is longer than 255 bytes");
    }
    if (item.parent.size() > vxpkFormat::kMaxStringBytes) {
        failUnacceptable(item.relative, "the parent path is longer than 255 bytes");
    }
}

// Symlinks are followed, as the App's packer follows them.
struct stat statEntry(int folder, const std::string& name, const std::string& relative) {
    struct stat info;
    if (systemCalls.fstatat(folder, name.c_str(), &info, 0) != 0) {
        if (errno == ELOOP) {
            failUnacceptable(relative, "a symlink that leads into a cycle");
        }
        failSystem(relative, errno);
    }
    return info;
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
        if (name != "." && name != "..") {
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
        StopIfInterrupted();
        const std::string path = relative.empty() ? name : relative + "/" + name;
        // Patterns for any kind of entry decide before the entry is looked
        // at, so that what they leave out may be anything, even unreadable.
        if (exclude_.excludes(path, false)) {
            continue;
        }
        if (isLeftOut(name)) {
            noteLeftOut(folder, name, path);
        } else {
            PlannedItem item;
            item.relative = path;
            item.name = name;
            item.parent = parent;
            item.folder = folderItem;
            add(folder, std::move(item), ancestors);
        }
    }
}

void Planner::noteLeftOut(int folder, const std::string& name, const std::string& relative) {
    struct stat info;
    // An entry that cannot be looked at is no folder; the format leaves it
    // out all the same.
    const bool isFolder =
        systemCalls.fstatat(folder, name.c_str(), &info, 0) == 0 && S_ISDIR(info.st_mode);
    if (!isFolder) {
        plan.leftOut.push_back(relative);
    } else if (!exclude_.excludes(relative, true)) {
        plan.leftOut.push_back(relative + "/");
    }
}

void Planner::add(int folder, PlannedItem item, Ancestors& ancestors) {
    if (packageJson_ && item.relative == kPackageJsonName) {
        checkNames(item);
        item.generated = *packageJson_;
        item.size = packageJson_->size();
        keep(std::move(item));
        return;
    }
    const struct stat info = statEntry(folder, item.name, item.relative);
    if (S_ISDIR(info.st_mode)) {
        if (!exclude_.excludes(item.relative, true)) {
            addFolder(folder, std::move(item), info, ancestors);
        }
        return;
    }
    checkNames(item);
    if (!S_ISREG(info.st_mode)) {
        failUnacceptable(item.relative, "neither a file nor a folder (a FIFO, socket or device)");
    }
    if (static_cast<uint64_t>(info.st_size) > vxpkFormat::kMaxContentsBytes) {
        failUnacceptable(item.relative, "a file of 2 GiB or more");
    }
    item.size = static_cast<uint64_t>(info.st_size);
    keep(std::move(item));
}

void Planner::addFolder(int folder, PlannedItem item, const struct stat& info,
                        Ancestors& ancestors) {
    checkNames(item);
    if (item.name.find(vxpkFormat::kSeparator) != std::string::npos) {
        failUnacceptable(item.relative, "a folder name holding \":\", which reads as a separator");
    }
    if (!ancestors.emplace(info.st_dev, info.st_ino).second) {
        failUnacceptable(item.relative, "a symlink that leads into a cycle");
    }
    const OwnedDescriptor inside(
        systemCalls.openat(folder, item.name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC, 0));
    if (inside.fd() < 0) {
        failSystem(item.relative, errno);
    }
    const std::string relative = item.relative;
    const std::string parent =
        item.parent.empty() ? item.name : item.parent + vxpkFormat::kSeparator + item.name;
    item.isFolder = true;
    const std::size_t index = plan.items.size();
    keep(std::move(item));
    walk(inside.fd(), relative, parent, index, ancestors);
    ancestors.erase({info.st_dev, info.st_ino});
}

void Planner::keep(PlannedItem item) {
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
