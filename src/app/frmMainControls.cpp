// What frmMain is made of: the window's own properties and every control,
// created in a fixed order with its place, texts and flags, then wired to its
// handlers. The irregular values (a copied help tag, a field two pixels out
// of line, repeated tab indices) are the window as it has always looked.
#include <string_view>

#include "app/MainMenuBar.h"
#include "app/frmMain.h"
#include "container/PackageDescription.h"

namespace vx {

namespace {

constexpr uint32_t kVersionLabelColor = 0x000F7FFE;

String aboutText() {
    return String("Use this utility to pack a web app for distribution using Vantrelix.") + "\r\r" +
           "The contents of the source folder will be packed into a single file that can be "
           "opened with Vantrelix." +
           "\r\r\r";
}

}  // namespace

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

void frmMain::CreateControls() {
    _CreateControls0();
    _CreateControls1();
    Open.AddHandler(this, &frmMain::Event_Open);
}

template <class C>
Ref<C> frmMain::addControl(const char* name, const Placement& placement) {
    auto made = New<C>();
    made->Name(name);
    _AddControl(made);
    Ref<C> found = control<C>(name);
    if (placement.tabPanelIndex > 0) {
        found->InitialParent("PagePanel1");
        found->TabPanelIndex(placement.tabPanelIndex);
    }
    found->Left(placement.left);
    found->Top(placement.top);
    found->Width(placement.width);
    found->Height(placement.height);
    const std::string_view locks(placement.locks);
    found->LockLeft(locks.find('L') != std::string_view::npos);
    found->LockTop(locks.find('T') != std::string_view::npos);
    found->LockRight(locks.find('R') != std::string_view::npos);
    found->LockBottom(locks.find('B') != std::string_view::npos);
    found->TabIndex(placement.tabIndex);
    return found;
}

Ref<Label> frmMain::addLabel(const char* name, const Placement& placement, const String& text) {
    auto label = addControl<Label>(name, placement);
    label->Text(text);
    return label;
}

Ref<TextField> frmMain::addField(const char* name, const Placement& placement, const String& text,
                                 const String& helpTag, void (frmMain::*handler)(TextField&)) {
    auto field = addControl<TextField>(name, placement);
    field->Text(text);
    field->HelpTag(helpTag);
    field->TextChange.AddHandler(this, handler);
    return field;
}

void frmMain::_CreateControls0() {
    constexpr int64_t settings = 1, build = 2, about = 3;

    auto panel = addControl<PagePanel>("PagePanel1", {20, 20, 560, 528, "LTRB", 1, 0});
    panel->PanelCount(4);
    panel->Value(0);

    auto selectFolder =
        addControl<PushButton>("cmdSelectAppFolder", {471, 259, 80, 20, "TR", 6, settings});
    selectFolder->Caption("Browse");
    selectFolder->HelpTag("Select app folder");
    selectFolder->Action.AddHandler(this, &frmMain::cmdSelectAppFolder_Action);

    auto path =
        addField("txtPath", {40, 258, 419, 22, "LTR", 5, settings}, "", "", txtPath_TextChange);
    path->ReadOnly(true);

    addField("txtUID", {202, 52, 173, 22, "LT", 1, settings},
             PackageDescription::wizardDefaults().uid, "", txtUID_TextChange);

    addLabel("Label1", {202, 30, 134, 20, "LT", 4, settings}, "App Unique Identifier");
    addLabel("Label2", {202, 79, 134, 20, "LT", 6, settings}, "App Name");
    addLabel("Label3", {40, 233, 134, 20, "LT", 7, settings}, "Source Contents");

    auto building = addLabel("lblBuilding", {48, 40, 501, 20, "LTR", 0, build}, "Building app...");
    building->Bold(true);
    building->TextSize(16);

    addLabel("lblMsg", {48, 69, 501, 20, "LTR", 1, build}, "...");

    auto buildButton = addControl<PushButton>("cmdBuild", {470, 515, 80, 20, "RB", 2, build});
    buildButton->Caption("Build");
    buildButton->HelpTag("Build distribution...");
    buildButton->Bold(true);
    buildButton->Default(true);
    buildButton->Enabled(false);
    buildButton->Action.AddHandler(this, &frmMain::cmdBuild_Action);

    auto next = addControl<PushButton>("cmdNEXT", {470, 516, 80, 22, "RB", 15, settings});
    next->Caption("Continue");
    next->HelpTag("Continue...");
    next->Default(true);
    next->Action.AddHandler(this, &frmMain::cmdNEXT_Action);

    auto selectFile =
        addControl<PushButton>("cmdSelectAppFile", {471, 311, 80, 20, "TR", 8, settings});
    selectFile->Caption("Browse");
    selectFile->HelpTag("Select app file");
    selectFile->Action.AddHandler(this, &frmMain::cmdSelectAppFile_Action);

    auto pathFile = addField("txtPathFile", {40, 311, 419, 22, "LTR", 7, settings}, "", "",
                             txtPathFile_TextChange);
    pathFile->ReadOnly(true);

    addLabel("Label4", {40, 286, 134, 20, "LT", 11, settings}, "Destination File");

    logArea_ = addControl<TextArea>("txtLog", {40, 101, 520, 402, "LTRB", 3, build});
    logArea_->ReadOnly(true);
    logArea_->TextFont("Monaco");

    auto aboutTitle = addLabel("Label6", {33, 31, 440, 20, "LT", 0, about}, "About...");
    aboutTitle->Bold(true);

    addControl<TextArea>("txtHelp", {33, 56, 534, 479, "LTRB", 1, about})->Text(aboutText());

    addField("txtName", {202, 101, 349, 22, "LT", 3, settings},
             PackageDescription::wizardDefaults().name, "", txtName_TextChange);

    auto canvas = addControl<Canvas>("Canvas1", {40, 28, 128, 128, "LT", 13, settings});
    canvas->Transparent(true);
    canvas->AcceptFocus(false);
    canvas->Paint.AddHandler(this, &frmMain::Canvas1_Paint);

    auto json = addControl<CheckBox>("opJSON", {40, 345, 335, 20, "LT", 9, settings});
    json->Caption("Create package.json");
    json->HelpTag("Create the file package.json");
    json->Bold(true);
    json->State(1);

    auto widthLabel = addLabel("Label7", {73, 377, 134, 20, "LT", 15, settings}, "Width");
    widthLabel->HelpTag("Initial window width");
    widthLabel->TextAlign(Label::kAlignRight);

    auto width = addField("txtWidth", {221, 376, 200, 22, "LT", 10, settings},
                          PackageDescription::wizardDefaults().width, "", txtWidth_TextChange);
    width->Mask("0#");

    auto heightLabel = addLabel("Label8", {73, 410, 134, 20, "LT", 17, settings}, "Height");
    heightLabel->HelpTag("Initial window width");
    heightLabel->TextAlign(Label::kAlignRight);

    auto height = addField("txtHeight", {221, 409, 200, 22, "LT", 11, settings},
                           PackageDescription::wizardDefaults().height, "Initial window height",
                           txtHeight_TextChange);
    height->Mask("0#");

    auto titleLabel = addLabel("Label9", {73, 443, 134, 20, "LT", 19, settings}, "Title");
    titleLabel->TextAlign(Label::kAlignRight);

    addField("txtTitle", {219, 443, 200, 22, "LT", 12, settings},
             PackageDescription::wizardDefaults().title, "Window title...", txtTitle_TextChange);

    auto mainLabel = addLabel("Label10", {73, 476, 134, 20, "LT", 21, settings}, "Main File");
    mainLabel->TextAlign(Label::kAlignRight);

    addField("txtMain", {221, 475, 200, 22, "LT", 13, settings},
             PackageDescription::wizardDefaults().main, "Initial file to load", txtMain_TextChange);

    addLabel("Label11", {394, 30, 134, 20, "LT", 23, settings}, "App Version");

    addField("txtVersion", {387, 52, 164, 22, "LT", 2, settings},
             PackageDescription::wizardDefaults().version, "", txtVersion_TextChange);
}

void frmMain::_CreateControls1() {
    constexpr int64_t settings = 1, onWindow = 0;

    addLabel("Label12", {202, 128, 180, 20, "LT", 25, settings}, "App Company or Support");

    addField("txtCompany", {202, 150, 290, 22, "LT", 4, settings},
             PackageDescription::wizardDefaults().company, "Name or URL of company or support page",
             txtCompany_TextChange);

    auto versionLabel = addLabel("Label5", {20, 572, 246, 20, "LB", 2, onWindow},
                                 "Vantrelix App Builder Version 1.0");
    versionLabel->TextColor(Color::fromPacked(kVersionLabelColor));

    auto help = addControl<PushButton>("cmdHelp", {500, 560, 80, 32, "RB", 3, onWindow});
    help->ButtonStyle(PushButton::kHelpButtonStyle);
    help->Action.AddHandler(this, &frmMain::cmdHelp_Action);
    help->Open.AddHandler(this, &frmMain::cmdHelp_Open);
}

}  // namespace vx
