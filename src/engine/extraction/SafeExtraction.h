#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "engine/core/OwnedDescriptor.h"

namespace vx::engine {

// An open handle of a folder of the extracted tree, closed with the last
// owner: files are made in it on other threads after the extraction has
// moved on to other folders.
using FolderHandle = OwnedDescriptor;

// Where an item goes: its folder's handle and its last name.
struct ItemPlace {
    std::shared_ptr<const FolderHandle> folder;
    std::string name;
};

// Builds an extracted tree where nothing can reach outside it: a new folder
// with a unique name beside the destination (mkdtemp), every item made
// relative to an open handle of its folder, never through a symlink, and the
// whole renamed into place at the end. Until then, and on any failure, the
// destination stays as it was and the temporary folder goes.
class SafeExtraction {
public:
    // The destination must not exist or be an empty folder.
    explicit SafeExtraction(const std::string& destination);
    ~SafeExtraction();
    SafeExtraction(const SafeExtraction&) = delete;
    SafeExtraction& operator=(const SafeExtraction&) = delete;

    // relative has "/" between plain components whose parent was made
    // before; both come from records that the tree rules admitted.
    void makeFolder(const std::string& relative);
    // The folder handle and name for relative, whose parent was made before.
    ItemPlace placeOf(const std::string& relative);
    // A new file at place, 0644 before the umask; the descriptor is the
    // caller's. Safe on any thread while the extraction lives.
    int makeFile(const ItemPlace& place, const std::string& relative) const;
    void commit();

private:
    // The handle of folder, "/" between its components, "" for the top.
    std::shared_ptr<const FolderHandle> folderHandle(std::string_view folder);

    std::string destination_;
    std::string temporary_;
    std::shared_ptr<const FolderHandle> root_;
    // The open folders from the top down to the folder of the last item.
    // Records come depth first, so the next item's folder mostly shares all
    // but its last few components and only those are opened.
    std::vector<std::pair<std::string, std::shared_ptr<const FolderHandle>>> chain_;
    bool committed_ = false;
};

}  // namespace vx::engine
