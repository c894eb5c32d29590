#include "runtime/services/UIServices.h"

#include <cstdio>

namespace vx {

void InstallUIServices(UIServices* services) {
    detail::installedUIServices = services;
}

void MsgBox(const String& message) {
    if (auto* services = detail::installedUIServices) {
        services->MsgBox(message);
        return;
    }
    std::fprintf(stderr, "%s\n", message.c_str());
}

void Beep() {
    if (auto* services = detail::installedUIServices) {
        services->Beep();
    }
}

Ref<FolderItem> SelectFolder() {
    if (auto* services = detail::installedUIServices) {
        return services->SelectFolder();
    }
    return nullptr;
}

Ref<FolderItem> GetSaveFolderItem(const String& filter, const String& defaultName) {
    if (auto* services = detail::installedUIServices) {
        return services->GetSaveFolderItem(filter, defaultName);
    }
    return nullptr;
}

Ref<FolderItem> ShowOpenDialog(const String& promptText, const String& title,
                               const String& filter) {
    if (auto* services = detail::installedUIServices) {
        return services->ShowOpenDialog(promptText, title, filter);
    }
    return nullptr;
}

}  // namespace vx
