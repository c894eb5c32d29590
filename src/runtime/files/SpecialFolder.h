#pragma once

#include "runtime/core/Ref.h"
#include "runtime/files/FolderItem.h"

namespace vx::SpecialFolder {

// The folder for scratch data: TMPDIR when it is set, otherwise /tmp.
Ref<FolderItem> Temporary();

}  // namespace vx::SpecialFolder
