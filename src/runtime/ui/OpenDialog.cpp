#include "runtime/ui/OpenDialog.h"

#include "runtime/files/FolderItem.h"
#include "runtime/services/UIServices.h"

namespace vx {

Ref<FolderItem> OpenDialog::ShowModal() {
    return ShowOpenDialog(PromptText, Title, Filter);
}

}  // namespace vx
