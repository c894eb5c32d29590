#pragma once

#include "runtime/core/Ref.h"
#include "runtime/text/String.h"

namespace vx {

class FolderItem;

// The few user interface operations that the toolkit-free layers call. The
// desktop application installs the real ones at start-up; tests install
// substitutes that record what was asked and answer as the test says. With
// nothing installed, dialogs answer "cancelled", messages go to standard
// error and the rest does nothing.
class UIServices {
public:
    virtual ~UIServices() = default;

    virtual void MsgBox(const String& message) = 0;
    virtual void Beep() = 0;
    // The yield point at the end of each pass of a long loop.
    virtual void BackgroundTask() = 0;
    // Each gives nil when the user cancels.
    virtual Ref<FolderItem> SelectFolder() = 0;
    virtual Ref<FolderItem> GetSaveFolderItem(const String& filter, const String& defaultName) = 0;
    virtual Ref<FolderItem> ShowOpenDialog(const String& promptText, const String& title,
                                           const String& filter) = 0;
    // Opens the item with the desktop's default application (a folder in the
    // file browser).
    virtual void Launch(const FolderItem& item, bool activate) = 0;
};

namespace detail {
inline UIServices* installedUIServices = nullptr;
}

// Installs the services the functions below reach; nullptr restores the
// headless defaults. The caller keeps ownership.
void InstallUIServices(UIServices* services);

void MsgBox(const String& message);
void Beep();
Ref<FolderItem> SelectFolder();
Ref<FolderItem> GetSaveFolderItem(const String& filter, const String& defaultName);
Ref<FolderItem> ShowOpenDialog(const String& promptText, const String& title, const String& filter);

// Called once per pass of every long loop, so it must cost next to nothing
// when nobody listens: one load and one branch.
inline void RuntimeBackgroundTask() {
    if (detail::installedUIServices != nullptr) {
        detail::installedUIServices->BackgroundTask();
    }
}

}  // namespace vx
