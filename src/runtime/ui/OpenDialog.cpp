#include "runtime/ui/OpenDialog.h"

#include "runtime/FolderItem.h"
#include "runtime/ui/UIServices.h"

namespace vx {

Ref<FolderItem> OpenDialog::ShowModal() {
    return ShowOpenDialog(PromptText, Title, Filter);
}

}  // namespace vx
