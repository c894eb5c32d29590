#pragma once

#include <string>

#include "runtime/core/Ref.h"
#include "runtime/files/FolderItem.h"

namespace vx::SpecialFolder {

// The folder for scratch data, the user's own: TMPDIR when it is set;
// otherwise a folder of this user's in the shared one, closed to everybody
// else. Nil when no such folder can be had.
Ref<FolderItem> Temporary();

// The shared folder in which the user's own is kept when TMPDIR is unset.
inline std::string _SharedTemporary = "/tmp";

}  // namespace vx::SpecialFolder
