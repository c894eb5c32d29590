#pragma once

#include <string>
#include <string_view>

#include "runtime/core/Ref.h"
#include "runtime/files/FolderItem.h"

namespace vx::test {

// A new folder in the system's temporary folder, open to every user so that
// a test can act in it as an unprivileged one, and removed with everything in
// it when the object goes.
class ScratchFolder {
public:
    ScratchFolder();
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    // The absolute path of relative inside the scratch folder ("" for itself).
    std::string path(std::string_view relative = "") const;
    Ref<FolderItem> item(std::string_view relative = "") const;

    // Each makes the missing folders on the way and gives the absolute path.
    std::string writeFile(std::string_view relative, std::string_view bytes) const;
    std::string makeFolder(std::string_view relative) const;
    std::string makeLink(std::string_view relative, std::string_view target) const;
    std::string readFile(std::string_view relative) const;

private:
    std::string root_;
};

}  // namespace vx::test
