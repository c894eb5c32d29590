#include "app/frmMain.h"

#include "app/MainMenuBar.h"

namespace vx {

Ref<frmMain> frmMain::_ImplicitInstance() {
    Ref<Window> window = _GetImplicitWindow("frmMain");
    if (!window) {
        auto made = New<frmMain>();
        made->Constructor();
        window = made;
    }
    return RuntimeCheckCast<frmMain>(window);
}

void frmMain::Layout() {
    MenuBar(MainMenuBar::_Instance());
    Width(600);
    Height(600);
    MinWidth(64);
    MinHeight(64);
    MaxWidth(32000);
    MaxHeight(32000);
    Title("Build");
    CloseButton(true);
    Resizeable(true);
    MaximizeButton(true);
    MinimizeButton(true);
    Visible(true);
    MenuBarVisible(true);
    HasBackColor(false);
    BackColor(Color{255, 255, 255, 0});
}

}  // namespace vx
