#include "support/RecordingUIServices.h"

namespace vx::test {
namespace {

Ref<FolderItem> nextAnswer(std::deque<Ref<FolderItem>>& answers) {
    if (answers.empty()) {
        return nullptr;
    }
    Ref<FolderItem> answer = answers.front();
    answers.pop_front();
    return answer;
}

}  // namespace

void RecordingUIServices::MsgBox(const String& message) {
    messages.push_back(message);
}

void RecordingUIServices::Beep() {
    ++beeps;
}

void RecordingUIServices::BackgroundTask() {
    ++backgroundTasks;
    if (onBackgroundTask) {
        onBackgroundTask();
    }
}

Ref<FolderItem> RecordingUIServices::SelectFolder() {
    return nextAnswer(selectFolderAnswers);
}

Ref<FolderItem> RecordingUIServices::GetSaveFolderItem(const String& filter,
                                                       const String& defaultName) {
    saveRequests.push_back({filter, defaultName});
    return nextAnswer(saveFolderItemAnswers);
}

Ref<FolderItem> RecordingUIServices::ShowOpenDialog(const String& promptText, const String& title,
                                                    const String& filter) {
    openRequests.push_back({promptText, title, filter});
    return nextAnswer(openDialogAnswers);
}

void RecordingUIServices::Launch(const FolderItem& item, bool activate) {
    launchedPaths.push_back(item.NativePath());
    launchActivations.push_back(activate);
}

InstalledUIServices::InstalledUIServices(UIServices& services)
    : previous_(detail::installedUIServices) {
    InstallUIServices(&services);
}

InstalledUIServices::~InstalledUIServices() {
    InstallUIServices(previous_);
}

}  // namespace vx::test
