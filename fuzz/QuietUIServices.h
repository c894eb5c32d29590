#pragma once

#include <string>
#include <vector>

#include "runtime/core/Ref.h"
#include "runtime/files/FolderItem.h"
#include "runtime/services/UIServices.h"

namespace vx::fuzzing {

// A user interface for fuzz targets: it shows nothing, cancels every dialog and
// keeps the messages it was asked to show, so that a target can check them.
class QuietUIServices : public UIServices {
public:
    void MsgBox(const String& message) override { messages.emplace_back(message.bytes()); }
    void Beep() override {}
    void BackgroundTask() override {}
    Ref<FolderItem> SelectFolder() override { return nullptr; }
    Ref<FolderItem> GetSaveFolderItem(const String&, const String&) override { return nullptr; }
    Ref<FolderItem> ShowOpenDialog(const String&, const String&, const String&) override {
        return nullptr;
    }
    void Launch(const FolderItem& /*item*/, bool /*activate*/) override {}

    std::vector<std::string> messages;
};

}  // namespace vx::fuzzing
