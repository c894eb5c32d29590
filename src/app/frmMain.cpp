#include "app/frmMain.h"

#include "app/FileTypes.h"
#include "container/PackageDescription.h"
#include "container/vxPacker.h"
#include "runtime/files/FolderItem.h"
#include "runtime/services/UIServices.h"
#include "runtime/text/EndOfLine.h"
#include "runtime/text/StringFunctions.h"
#include "runtime/ui/Picture.h"
#include "runtime/ui/RuntimeLifecycle.h"

namespace vx {

namespace {

// Drawn on every paint of the settings page, so it is loaded once and kept
// for the rest of the run.
Ref<Picture> icon_vxpk_file_picture;

Ref<Picture> icon_vxpk_file() {
    if (!icon_vxpk_file_picture) {
        icon_vxpk_file_picture = Picture::_OpenFromApp("icon_vxpk_file");
    }
    return icon_vxpk_file_picture;
}

// The packer holds on to the window of the last build; that window must go
// while the toolkit is still there, not among the static objects at exit.
bool ownerReleaseRegistered = false;

void releaseOwnerAtExit() {
    if (ownerReleaseRegistered) {
        return;
    }
    ownerReleaseRegistered = true;
    RuntimeAddFinalizer([] {
        vxPacker::owner = nullptr;
        ownerReleaseRegistered = false;
    });
}

// A field holding a single blank is filled: nothing here trims.
bool isEmpty(const String& text) {
    return Len(text) < 1;
}

}  // namespace

Ref<frmMain> frmMain::_ImplicitInstance() {
    Ref<Window> window = _GetImplicitWindow("frmMain");
    if (!window) {
        auto made = New<frmMain>();
        made->Constructor();
        window = made;
    }
    return RuntimeCheckCast<frmMain>(window);
}

void frmMain::log(const String& text) {
    // Appending costs the length of the line, not of the whole log, which
    // matters when a build logs a hundred thousand entries.
    logArea_->AppendText(text + EndOfLine());
}

void frmMain::buildJSONFile() {
    const String text = PackageDescription::document({.name = txtName()->Text(),
                                                      .uid = txtUID()->Text(),
                                                      .version = txtVersion()->Text(),
                                                      .company = txtCompany()->Text(),
                                                      .main = txtMain()->Text(),
                                                      .title = txtTitle()->Text(),
                                                      .width = txtWidth()->Text(),
                                                      .height = txtHeight()->Text()})
                            ->ToString();
    if (!PackageDescription::write(vxPacker::folder->Child("package.json"), text)) {
        MsgBox("Unable to write package.json");
        return;
    }
    log("Created file package.json");
}

// Both Browse buttons: Build goes off while their field is still empty, and
// comes on with any choice, whether or not the other path is set yet.
void frmMain::choosePath(TextField& field, const std::function<Ref<FolderItem>()>& dialog,
                         Ref<FolderItem>& property) {
    if (isEmpty(field.Text())) {
        cmdBuild()->Enabled(false);
    }
    Ref<FolderItem> chosen = dialog();
    if (!chosen) {
        return;
    }
    field.Text(chosen->NativePath());
    property = chosen;
    cmdBuild()->Enabled(true);
}

void frmMain::cmdSelectAppFolder_Action(PushButton& /*sender*/) {
    choosePath(
        *txtPath(), [] { return SelectFolder(); }, vxPacker::folder);
}

void frmMain::cmdSelectAppFile_Action(PushButton& /*sender*/) {
    // The default name is made from txtName as it is now, empty or not.
    choosePath(
        *txtPathFile(),
        [this] {
            const String filter = FileTypes::vxpk()->Operator_Convert();
            return GetSaveFolderItem(filter, txtName()->Text() + ".vxpk");
        },
        vxPacker::target);
}

// A failed check beeps and says no more; only the two fields the user can
// type in get the focus, the path fields are filled by their Browse buttons.
void frmMain::cmdNEXT_Action(PushButton& /*sender*/) {
    if (isEmpty(txtPath()->Text())) {
        Beep();
        return;
    }
    if (isEmpty(txtPathFile()->Text())) {
        Beep();
        return;
    }
    if (isEmpty(txtName()->Text())) {
        Beep();
        txtName()->SetFocus();
        return;
    }
    if (isEmpty(txtUID()->Text())) {
        Beep();
        txtUID()->SetFocus();
        return;
    }
    vxPacker::name = txtName()->Text();
    vxPacker::uid = txtUID()->Text();
    lblMsg()->Text("...");
    lblBuilding()->Text("Ready to build your app...");
    PagePanel1()->Value(1);
}

// The labels are set only before the build: afterwards the log alone tells
// how it ended, and Build stays enabled for another run.
void frmMain::cmdBuild_Action(PushButton& /*sender*/) {
    lblBuilding()->Text("Building your app...");
    vxPacker::owner = Ref<frmMain>(std::static_pointer_cast<frmMain>(shared_from_this()));
    releaseOwnerAtExit();
    vxPacker::name = txtName()->Text();
    vxPacker::uid = txtUID()->Text();
    lblMsg()->Text("...");
    // Written on every build: the check box beside it only looks like a switch.
    buildJSONFile();
    vxPacker::build();
}

void frmMain::anyField_TextChange(TextField& sender) {
    cmdBuild()->Enabled(!isEmpty(sender.Text()));
}

void frmMain::Canvas1_Paint(Canvas& /*sender*/, Graphics& g,
                            const std::vector<Canvas::Rect>& /*areas*/) {
    g.DrawPicture(icon_vxpk_file(), 0, 0, 128, 128, 0, 0, 1067, 1067);
}

void frmMain::cmdHelp_Action(PushButton& /*sender*/) {
    if (PagePanel1()->Value() == 2) {
        PagePanel1()->Value(lastPanel);
    } else {
        lastPanel = PagePanel1()->Value();
        PagePanel1()->Value(2);
    }
}

// This, and not the window's own Open event, is what puts every new window
// on the settings page.
void frmMain::cmdHelp_Open(PushButton& /*sender*/) {
    PagePanel1()->Value(0);
}

// The window's own Open comes after its controls' and has nothing left to do.
void frmMain::Event_Open(Window& /*sender*/) {}

}  // namespace vx
