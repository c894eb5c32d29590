#include "app/App.h"

#include "app/frmMain.h"
#include "container/vxpkFile.h"
#include "runtime/files/FolderItem.h"
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
    // The reader has told the user what went wrong, if anything could be told.
    Ref<vxpkFile> package = vxpkFile::open(file);
    if (!package) {
        return true;
    }
    package->folder->Launch(true);
    return true;
}

}  // namespace vx
