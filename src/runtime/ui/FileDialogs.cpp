#include "runtime/ui/internal/FileDialogs.h"

#include <QApplication>
#include <QFileDialog>

#include "runtime/ui/FileTypeRegistry.h"
#include "runtime/ui/UITrap.h"
#include "runtime/ui/internal/QtText.h"

namespace vx {

namespace {
QString Run(QFileDialog& dialog) {
    if (dialog.exec() != QDialog::Accepted) {
        return QString();
    }
    return dialog.selectedFiles().value(0);
}
}  // namespace

QString ChooseFolderPath() {
    _UITrap();
    QFileDialog dialog(QApplication::activeWindow());
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    return Run(dialog);
}

QString ChooseSavePath(const String& filter, const String& defaultName) {
    _UITrap();
    QFileDialog dialog(QApplication::activeWindow());
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setNameFilter(ToQString(_DialogNameFilters(filter)));
    dialog.setDefaultSuffix(ToQString(_DialogDefaultSuffix(filter)));
    dialog.selectFile(ToQString(defaultName));
    return Run(dialog);
}

QString ChooseOpenPath(const String& promptText, const String& title, const String& filter) {
    _UITrap();
    QFileDialog dialog(QApplication::activeWindow(), ToQString(title));
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setNameFilter(ToQString(_DialogNameFilters(filter)));
    if (!promptText.isEmpty()) {
        dialog.setLabelText(QFileDialog::FileName, ToQString(promptText));
    }
    return Run(dialog);
}

}  // namespace vx
