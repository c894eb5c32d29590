#pragma once

#include <string>

namespace vx::cli {

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
    // A new file, 0644 before the umask; the descriptor is the caller's.
    int makeFile(const std::string& relative);
    void commit();

private:
    // An open handle of the folder that holds relative, and the last name.
    int parentOf(const std::string& relative, std::string& name);

    std::string destination_;
    std::string temporary_;
    int root_ = -1;
    // The folder of the last item, kept open: records mostly come folder by
    // folder, so one handle saves most walks from the root.
    std::string cachedFolder_;
    int cachedHandle_ = -1;
    bool committed_ = false;
};

}  // namespace vx::cli
