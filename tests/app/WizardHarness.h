#pragma once

#include <QApplication>
#include <QTest>
#include <string>

#include "AppHarness.h"
#include "app/frmMain.h"
#include "container/vxPacker.h"
#include "support/RecordingUIServices.h"
#include "support/ScratchFolder.h"

namespace vx::test {

// Every wizard test starts from a running application with a fresh window of
// its own, a recording user interface and a packer that remembers nothing of
// an earlier test: its properties are shared by all windows of a process.
class WizardTest : public ::testing::Test {
protected:
    void SetUp() override {
        StartApplication();
        vxPacker::folder = nullptr;
        vxPacker::target = nullptr;
        vxPacker::owner = nullptr;
        vxPacker::bs = nullptr;
        vxPacker::name = "";
        vxPacker::uid = "";
        wizard = OpenWizard();
    }

    // A window as "New Build..." makes one.
    static Ref<frmMain> OpenWizard() {
        auto window = New<frmMain>();
        window->Constructor();
        return window;
    }

    // Browse for the source folder or the package file; the dialog answers
    // with the item given, or is cancelled when it is nil.
    void BrowseFolder(const Ref<frmMain>& window, const Ref<FolderItem>& folder) {
        ui.selectFolderAnswers.push_back(folder);
        window->cmdSelectAppFolder()->Push();
    }
    void BrowseFile(const Ref<frmMain>& window, const Ref<FolderItem>& file) {
        ui.saveFolderItemAnswers.push_back(file);
        window->cmdSelectAppFile()->Push();
    }

    static std::string LogOf(const Ref<frmMain>& window) {
        return std::string(window->txtLog()->Text().bytes());
    }

    RecordingUIServices ui;
    InstalledUIServices installed{ui};
    ScratchFolder scratch;
    Ref<frmMain> wizard;
};

}  // namespace vx::test
