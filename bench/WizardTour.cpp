// Opens the App Builder as its main does and brings the first window to one
// of its pages, for the screenshots of the documentation:
//   vx_wizard_tour settings|build|about SCRATCH
// For the build page it builds a small sample app made in SCRATCH, so the
// log shows a real run. The dialogs are answered by the program; everything
// else is the application as the user sees it, until the window is closed.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "app/Startup.h"
#include "app/frmMain.h"
#include "runtime/files/FolderItem.h"
#include "runtime/ui/RuntimeLifecycle.h"
#include "runtime/ui/internal/DesktopUIServices.h"

namespace {

using namespace vx;
namespace fs = std::filesystem;

class AnsweringUIServices : public DesktopUIServices {
public:
    Ref<FolderItem> folder;
    Ref<FolderItem> file;
    Ref<FolderItem> SelectFolder() override { return folder; }
    Ref<FolderItem> GetSaveFolderItem(const String&, const String&) override { return file; }
};

void WriteFile(const fs::path& path, const std::string& text) {
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << text;
}

// A web app of a few files, as a developer would bring one.
fs::path MakeSampleApp(const fs::path& scratch) {
    const fs::path app = scratch / "my-app";
    fs::remove_all(app);
    WriteFile(app / "index.html", "<!doctype html><title>My App</title><script src=js/app.js>");
    WriteFile(app / "css" / "site.css", "body { font: 14px sans-serif; }\n");
    WriteFile(app / "js" / "app.js", "document.title = 'My App';\n");
    WriteFile(app / "js" / "lib" / "util.js", "export const two = 2;\n");
    WriteFile(app / "images" / "logo.svg", "<svg xmlns='http://www.w3.org/2000/svg'/>\n");
    WriteFile(app / ".DS_Store", "");
    return app;
}

Ref<FolderItem> ItemAt(const fs::path& path) {
    return New<FolderItem>(String(path.string().c_str()), FolderItem::PathModeNative);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: %s settings|build|about SCRATCH\n", argv[0]);
        return 2;
    }
    const std::string page = argv[1];
    const fs::path scratch = argv[2];
    AnsweringUIServices answers;

    _EarlyStartup();
    _RunFrameworkInitialization([&] {
        _LateStartup();
        InstallUIServices(&answers);
        Ref<frmMain> wizard = frmMain::_ImplicitInstance();
        if (page == "build") {
            answers.folder = ItemAt(MakeSampleApp(scratch));
            answers.file = ItemAt(scratch / "My App.vxpk");
            wizard->cmdSelectAppFolder()->Push();
            wizard->cmdSelectAppFile()->Push();
            wizard->cmdNEXT()->Push();
            wizard->cmdBuild()->Push();
        } else if (page == "about") {
            wizard->cmdHelp()->Push();
        }
    });
    _RuntimeRun();
    RuntimePerformFinalizers();
    return RuntimeExit();
}
