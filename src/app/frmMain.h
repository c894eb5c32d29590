#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "container/LogReceiver.h"
#include "runtime/files/FolderItem.h"
#include "runtime/ui/Canvas.h"
#include "runtime/ui/CheckBox.h"
#include "runtime/ui/Label.h"
#include "runtime/ui/MenuBar.h"
#include "runtime/ui/PagePanel.h"
#include "runtime/ui/PushButton.h"
#include "runtime/ui/QuitMenuItem.h"
#include "runtime/ui/TextArea.h"
#include "runtime/ui/TextField.h"
#include "runtime/ui/Window.h"

namespace vx {

// The wizard window in which a developer describes a web app, picks its
// folder and the package to write, and builds it while watching the log. It
// keeps what the user enters in its controls and hands it to the packer's
// shared properties; the packing itself is the packer's.
class frmMain : public Window, public LogReceiver {
public:
    // The window that the code reaches by the class's own name: the open one
    // of this class, or a new one.
    static Ref<frmMain> _ImplicitInstance();

    // The page to go back to when the about page is closed.
    int64_t lastPanel = 0;

    // Adds the message and a line end to the log.
    void log(const String& text) override;
    // Writes package.json into the top of the source folder, from the fields.
    void buildJSONFile();

    // The controls, each found by its name.
    Ref<PagePanel> PagePanel1() const { return control<PagePanel>("PagePanel1"); }
    Ref<PushButton> cmdSelectAppFolder() const { return control<PushButton>("cmdSelectAppFolder"); }
    Ref<TextField> txtPath() const { return control<TextField>("txtPath"); }
    Ref<TextField> txtUID() const { return control<TextField>("txtUID"); }
    Ref<Label> Label1() const { return control<Label>("Label1"); }
    Ref<Label> Label2() const { return control<Label>("Label2"); }
    Ref<Label> Label3() const { return control<Label>("Label3"); }
    Ref<Label> lblBuilding() const { return control<Label>("lblBuilding"); }
    Ref<Label> lblMsg() const { return control<Label>("lblMsg"); }
    Ref<PushButton> cmdBuild() const { return control<PushButton>("cmdBuild"); }
    Ref<PushButton> cmdNEXT() const { return control<PushButton>("cmdNEXT"); }
    Ref<PushButton> cmdSelectAppFile() const { return control<PushButton>("cmdSelectAppFile"); }
    Ref<TextField> txtPathFile() const { return control<TextField>("txtPathFile"); }
    Ref<Label> Label4() const { return control<Label>("Label4"); }
    Ref<TextArea> txtLog() const { return control<TextArea>("txtLog"); }
    Ref<Label> Label6() const { return control<Label>("Label6"); }
    Ref<TextArea> txtHelp() const { return control<TextArea>("txtHelp"); }
    Ref<TextField> txtName() const { return control<TextField>("txtName"); }
    Ref<Canvas> Canvas1() const { return control<Canvas>("Canvas1"); }
    Ref<CheckBox> opJSON() const { return control<CheckBox>("opJSON"); }
    Ref<Label> Label7() const { return control<Label>("Label7"); }
    Ref<TextField> txtWidth() const { return control<TextField>("txtWidth"); }
    Ref<Label> Label8() const { return control<Label>("Label8"); }
    Ref<TextField> txtHeight() const { return control<TextField>("txtHeight"); }
    Ref<Label> Label9() const { return control<Label>("Label9"); }
    Ref<TextField> txtTitle() const { return control<TextField>("txtTitle"); }
    Ref<Label> Label10() const { return control<Label>("Label10"); }
    Ref<TextField> txtMain() const { return control<TextField>("txtMain"); }
    Ref<Label> Label11() const { return control<Label>("Label11"); }
    Ref<TextField> txtVersion() const { return control<TextField>("txtVersion"); }
    Ref<Label> Label12() const { return control<Label>("Label12"); }
    Ref<TextField> txtCompany() const { return control<TextField>("txtCompany"); }
    Ref<Label> Label5() const { return control<Label>("Label5"); }
    Ref<PushButton> cmdHelp() const { return control<PushButton>("cmdHelp"); }

    // The items of the window's menu bar, each found there by its name.
    Ref<MenuItem> FileMenu() const { return menuItem<MenuItem>("FileMenu"); }
    Ref<MenuItem> mnuNewBuild() const { return menuItem<MenuItem>("mnuNewBuild"); }
    Ref<MenuItem> mnuExtract() const { return menuItem<MenuItem>("mnuExtract"); }
    Ref<QuitMenuItem> FileQuit() const { return menuItem<QuitMenuItem>("FileQuit"); }
    Ref<MenuItem> EditMenu() const { return menuItem<MenuItem>("EditMenu"); }
    Ref<MenuItem> EditUndo() const { return menuItem<MenuItem>("EditUndo"); }
    Ref<MenuItem> EditSeparator1() const { return menuItem<MenuItem>("EditSeparator1"); }
    Ref<MenuItem> EditCut() const { return menuItem<MenuItem>("EditCut"); }
    Ref<MenuItem> EditCopy() const { return menuItem<MenuItem>("EditCopy"); }
    Ref<MenuItem> EditPaste() const { return menuItem<MenuItem>("EditPaste"); }
    Ref<MenuItem> EditClear() const { return menuItem<MenuItem>("EditClear"); }
    Ref<MenuItem> EditSeparator2() const { return menuItem<MenuItem>("EditSeparator2"); }
    Ref<MenuItem> EditSelectAll() const { return menuItem<MenuItem>("EditSelectAll"); }

protected:
    void Layout() override;
    void CreateControls() override;

private:
    void _CreateControls0();
    void _CreateControls1();

    // txtLog, kept from its creation: log runs once per packed entry, and a
    // lookup by name each time was a measurable share of a long build.
    Ref<TextArea> logArea_;

    // Where a control stands: its frame in window coordinates, the sides it
    // keeps its distance to ("LTRB" initials), its place in the tab order and
    // its page (0 for the window itself).
    struct Placement {
        int64_t left, top, width, height;
        const char* locks;
        int64_t tabIndex;
        int64_t tabPanelIndex;
    };
    // Creates the control, adds it under its name, finds it again by that
    // name and places it; the caller gives it the rest of its properties.
    template <class C>
    Ref<C> addControl(const char* name, const Placement& placement);
    Ref<Label> addLabel(const char* name, const Placement& placement, const String& text);
    Ref<TextField> addField(const char* name, const Placement& placement, const String& text,
                            const String& helpTag, void (frmMain::*handler)(TextField&));
    template <class C>
    Ref<C> control(const char* name) const {
        return RuntimeCheckCast<C>(_ControlByName(name));
    }
    // Asks the bar anew each time: the window may have been given another.
    template <class C>
    Ref<C> menuItem(const char* name) const {
        return RuntimeCheckCast<C>(MenuBar()->_Lookup(name));
    }

    // Shows the dialog and puts its choice into the field and the property.
    void choosePath(TextField& field, const std::function<Ref<FolderItem>()>& dialog,
                    Ref<FolderItem>& property);
    void cmdSelectAppFolder_Action(PushButton& sender);
    void cmdBuild_Action(PushButton& sender);
    void cmdNEXT_Action(PushButton& sender);
    void cmdSelectAppFile_Action(PushButton& sender);
    void Canvas1_Paint(Canvas& sender, Graphics& g, const std::vector<Canvas::Rect>& areas);
    void cmdHelp_Action(PushButton& sender);
    void cmdHelp_Open(PushButton& sender);
    void Event_Open(Window& sender);

    // The ten TextChange handlers are one rule: the field that changed, and
    // only that one, decides whether Build is enabled. So the last edit wins,
    // even while another field is still empty.
    void anyField_TextChange(TextField& sender);
    static constexpr auto txtPath_TextChange = &frmMain::anyField_TextChange;
    static constexpr auto txtUID_TextChange = &frmMain::anyField_TextChange;
    static constexpr auto txtPathFile_TextChange = &frmMain::anyField_TextChange;
    static constexpr auto txtName_TextChange = &frmMain::anyField_TextChange;
    static constexpr auto txtWidth_TextChange = &frmMain::anyField_TextChange;
    static constexpr auto txtHeight_TextChange = &frmMain::anyField_TextChange;
    static constexpr auto txtTitle_TextChange = &frmMain::anyField_TextChange;
    static constexpr auto txtMain_TextChange = &frmMain::anyField_TextChange;
    static constexpr auto txtVersion_TextChange = &frmMain::anyField_TextChange;
    static constexpr auto txtCompany_TextChange = &frmMain::anyField_TextChange;
};

}  // namespace vx
