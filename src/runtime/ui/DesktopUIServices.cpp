#include "runtime/ui/internal/DesktopUIServices.h"

#include <QApplication>
#include <QMessageBox>

#include "runtime/files/FolderItem.h"
#include "runtime/services/DesktopOpener.h"
#include "runtime/ui/UITrap.h"
#include "runtime/ui/internal/FileDialogs.h"
#include "runtime/ui/internal/QtText.h"

namespace vx {

namespace {
Ref<FolderItem> ItemAt(const QString& path) {
    if (path.isEmpty()) {
        return nullptr;
    }
    return New<FolderItem>(FromQString(path), FolderItem::PathModeNative);
}
}  // namespace

void DesktopUIServices::MsgBox(const String& message) {
    _UITrap();
    QMessageBox box(QMessageBox::NoIcon, QApplication::applicationDisplayName(), ToQString(message),
                    QMessageBox::Ok, QApplication::activeWindow());
    box.exec();
}

void DesktopUIServices::Beep() {
    QApplication::beep();
}

void DesktopUIServices::BackgroundTask() {
    if (sinceRepaint_.isValid() && sinceRepaint_.elapsed() < kRepaintIntervalMs) {
        return;
    }
    sinceRepaint_.start();
    yielding_ = true;
    QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    yielding_ = false;
}

Ref<FolderItem> DesktopUIServices::SelectFolder() {
    return ItemAt(ChooseFolderPath());
}

Ref<FolderItem> DesktopUIServices::GetSaveFolderItem(const String& filter,
                                                     const String& defaultName) {
    return ItemAt(ChooseSavePath(filter, defaultName));
}

Ref<FolderItem> DesktopUIServices::ShowOpenDialog(const String& promptText, const String& title,
                                                  const String& filter) {
    return ItemAt(ChooseOpenPath(promptText, title, filter));
}

void DesktopUIServices::Launch(const FolderItem& item, bool /*activate*/) {
    // The desktop brings what it opens to the front by itself. The launcher
    // is vxpk's too, so that both open things the same way.
    OpenWithDesktop(std::string(item.NativePath().bytes()));
}

}  // namespace vx
