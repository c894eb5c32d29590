#include "runtime/files/SpecialFolder.h"

#include <cstdlib>

namespace vx::SpecialFolder {

Ref<FolderItem> Temporary() {
    const char* configured = std::getenv("TMPDIR");
    const char* path = configured != nullptr && *configured != '\0' ? configured : "/tmp";
    return New<FolderItem>(String(path), FolderItem::PathModeNative);
}

}  // namespace vx::SpecialFolder
