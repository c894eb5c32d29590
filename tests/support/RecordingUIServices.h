#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <vector>

#include "runtime/files/FolderItem.h"
#include "runtime/services/UIServices.h"

namespace vx::test {

// A stand-in for the desktop's user interface: records what the code under
// test asked of it and answers the dialogs from queues the test fills. An
// empty queue answers nil, as a user who cancels.
class RecordingUIServices : public UIServices {
public:
    struct SaveRequest {
        String filter;
        String defaultName;
    };
    struct OpenRequest {
        String promptText;
        String title;
        String filter;
    };

    std::vector<String> messages;
    int64_t beeps = 0;
    int64_t backgroundTasks = 0;
    std::vector<String> launchedPaths;
    std::vector<bool> launchActivations;
    std::vector<SaveRequest> saveRequests;
    std::vector<OpenRequest> openRequests;

    std::deque<Ref<FolderItem>> selectFolderAnswers;
    std::deque<Ref<FolderItem>> saveFolderItemAnswers;
    std::deque<Ref<FolderItem>> openDialogAnswers;
    // Runs at every yield point, so a test can act in the middle of a long loop.
    std::function<void()> onBackgroundTask;

    void MsgBox(const String& message) override { messages.push_back(message); }
    void Beep() override { ++beeps; }
    void BackgroundTask() override {
        ++backgroundTasks;
        if (onBackgroundTask) {
            onBackgroundTask();
        }
    }
    Ref<FolderItem> SelectFolder() override { return Next(selectFolderAnswers); }
    Ref<FolderItem> GetSaveFolderItem(const String& filter, const String& defaultName) override {
        saveRequests.push_back({filter, defaultName});
        return Next(saveFolderItemAnswers);
    }
    Ref<FolderItem> ShowOpenDialog(const String& promptText, const String& title,
                                   const String& filter) override {
        openRequests.push_back({promptText, title, filter});
        return Next(openDialogAnswers);
    }
    void Launch(const FolderItem& item, bool activate) override {
        launchedPaths.push_back(item.NativePath());
        launchActivations.push_back(activate);
    }

private:
    static Ref<FolderItem> Next(std::deque<Ref<FolderItem>>& answers) {
        if (answers.empty()) {
            return nullptr;
        }
        Ref<FolderItem> answer = answers.front();
        answers.pop_front();
        return answer;
    }
};

// Installs services for the life of the object and puts back what was
// installed before.
class InstalledUIServices {
public:
    explicit InstalledUIServices(UIServices& services);
    ~InstalledUIServices();
    InstalledUIServices(const InstalledUIServices&) = delete;
    InstalledUIServices& operator=(const InstalledUIServices&) = delete;

private:
    UIServices* previous_;
};

}  // namespace vx::test
