#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "manager/manager_view.h"

namespace tl::test {

// The manager's window in memory: keeps what it is told, answers the browser and the dialogs from its
// fields, and logs the calls whose order matters.
class FakeManagerView : public ManagerView {
  public:
    std::string caption() const override { return caption_; }
    void setCaption(const std::string& caption) override {
        caption_ = caption;
        captions.push_back(caption);
    }

    void showBusy() override { log += "busy;"; }
    void showIdle() override { log += "idle;"; }
    void busyProgress() override {
        if (onProgress) {
            onProgress();
        }
    }
    void setHourglass(bool on) override { hourglass += on ? 1 : -1; }
    void hideListAndFrames() override { log += "hideList;"; }
    void showListAndFrames() override { log += "showList;"; }
    void showEntryControls() override { log += "entryControls;"; }
    void hideEntryPanels() override { log += "hidePanels;"; }

    std::string dir1Path() const override { return dir1; }
    void setDir1Path(const std::string& path) override {
        dir1 = path;
        highlighted = path;
        dirHistory.push_back(path);
    }
    std::string dir1Highlighted() const override { return highlighted; }
    std::vector<DirEntry> file1SelectedFiles() const override {
        std::vector<DirEntry> files;
        for (const std::string& name : selectedFiles) {
            files.push_back({name});
        }
        return files;
    }

    Orientation addOrientation() const override { return addOrientation_; }
    void setAddOrientation(Orientation orientation) override { addOrientation_ = orientation; }
    void showEntryOrientation(Orientation orientation) override { entryOrientation = orientation; }
    void setOptionChecks(const OptionChecks& c) override { checks = c; }

    void hideHelpText() override { helpHidden = true; }
    void showControlFrame() override { controlFrameShown = true; }
    void hideBrowsePreview() override {}
    bool showImageFacts(WallpaperEntry& entry) override {
        log += "facts " + entry.path + ";";
        return unloadable.count(entry.path) == 0;
    }
    void clearPreview() override { log += "clearPreview;"; }
    void hidePreviewFrame() override { log += "hideFrame;"; }

    std::optional<std::string> chooseFileToOpen(const FileDialogRequest& request) override {
        dialogs.push_back(request);
        return openAnswer;
    }
    std::optional<std::string> chooseFileToSave(const FileDialogRequest& request) override {
        dialogs.push_back(request);
        return saveAnswer;
    }

    void handFoldersToTracker(const TrackedFolders& folders) override {
        trackerFolders = folders;
        trackerLoaded_ = folders.size() > 1;
    }
    bool trackerLoaded() const override { return trackerLoaded_; }
    void unloadTracker() override {
        trackerLoaded_ = false;
        log += "unloadTracker;";
    }
    void showChangerAndUnload() override { log += "handBack;"; }
    void unload() override { log += "unload;"; }
    void showAbout() override {}

    std::string caption_;
    std::vector<std::string> captions;
    std::string log;
    std::function<void()> onProgress;
    int hourglass = 0;
    std::string dir1;
    std::string highlighted;
    std::vector<std::string> dirHistory;
    std::vector<std::string> selectedFiles;
    Orientation addOrientation_ = kCenter;
    Orientation entryOrientation = -1;
    OptionChecks checks;
    bool helpHidden = false;
    bool controlFrameShown = false;
    std::map<std::string, int> unloadable;
    std::vector<FileDialogRequest> dialogs;
    std::optional<std::string> openAnswer;
    std::optional<std::string> saveAnswer;
    TrackedFolders trackerFolders;
    bool trackerLoaded_ = false;
};

}  // namespace tl::test
