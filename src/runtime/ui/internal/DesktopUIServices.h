#pragma once

#include <QElapsedTimer>

#include "runtime/services/UIServices.h"

namespace vx {

// The real user interface behind the toolkit-free seam: the toolkit's message
// box and file dialogs, the system alert, the desktop's file browser.
class DesktopUIServices : public UIServices {
public:
    // The yield lets the windows repaint at most this often during a long
    // loop; keyboard and mouse wait until the loop is over.
    static constexpr qint64 kRepaintIntervalMs = 30;

    void MsgBox(const String& message) override;
    void Beep() override;
    void BackgroundTask() override;
    Ref<FolderItem> SelectFolder() override;
    Ref<FolderItem> GetSaveFolderItem(const String& filter, const String& defaultName) override;
    Ref<FolderItem> ShowOpenDialog(const String& promptText, const String& title,
                                   const String& filter) override;
    void Launch(const FolderItem& item, bool activate) override;

    // True while the yield lets events through in the middle of a long loop:
    // a window must not close under the loop then.
    static bool _Yielding() { return yielding_; }

private:
    static inline bool yielding_ = false;
    QElapsedTimer sinceRepaint_;
};

}  // namespace vx
