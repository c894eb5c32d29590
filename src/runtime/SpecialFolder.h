#pragma once

#include "runtime/FolderItem.h"
#include "runtime/Ref.h"

namespace vx::SpecialFolder {

// The folder for scratch data: TMPDIR when it is set, otherwise /tmp.
Ref<FolderItem> Temporary();

}  // namespace vx::SpecialFolder
