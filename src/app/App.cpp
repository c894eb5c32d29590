#include "app/App.h"

#include "app/frmMain.h"
#include "runtime/FolderItem.h"
#include "runtime/ui/OpenDialog.h"

namespace vx {

Ref<App> App::_Instance() {
    return RuntimeCheckCast<App>(_GetAppObject());
}

bool App::_mnuNewBuild_Action() {
    auto window = New<frmMain>();
    window->Constructor();
    window->Show();
    return true;
}

bool App::_mnuExtract_Action() {
    auto dialog = New<OpenDialog>();
    dialog->Constructor();
    dialog->PromptText = "Enter a filename";
    dialog->Title = "Open App file";
    dialog->Filter = "vxpk";
    Ref<FolderItem> file = dialog->ShowModal();
    if (!file) {
        return true;
    }
    return true;
}

}  // namespace vx
