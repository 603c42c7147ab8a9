// The List and Options menus of the list manager.
#include "app/app_state.h"
#include "base/text.h"
#include "base/ui.h"
#include "lists/list_box.h"
#include "manager/list_manager.h"

namespace tl {

namespace {

// The dialogs open where they were last.
const FileDialogRequest kOpenRequest{.title = "Select a list to open",
                                     .filter = "Wallpaper Lists|*.txt;*.wall",
                                     .defaultName = "",
                                     .initialDirectory = "",
                                     .defaultExtension = ""};
const FileDialogRequest kSaveRequest{.title = "Select a file to save list to",
                                     .filter = "Wallpaper Lists|*.wall",
                                     .defaultName = "*.wall",
                                     .initialDirectory = "",
                                     .defaultExtension = ""};

}  // namespace

void ListManager::showCaption() {
    s_.view.setCaption(listPath_.empty() ? "Tessaline" : "Tessaline (" + listPath_ + ")");
}

void ListManager::readList(const std::string& path) {
    ListFileContents contents = readListFile(s_.fs, s_.ansi, path, ListReader::Manager, s_.app.settings.DefaultAddOrientation);
    entries_ = std::move(contents.entries);
    trackedFolders_ = std::move(contents.trackedFolders);
    refillLines();
    previewTag_.clear();
    listChanged_ = false;
    s_.view.handFoldersToTracker(trackedFolders_);
}

void ListManager::newList() {
    clearLines();
    entries_ = WallpaperEntries(1);
    // A new list starts without the old one's tracked folders too, and nothing watches them any more.
    trackedFolders_ = TrackedFolders(1);
    s_.view.handFoldersToTracker(trackedFolders_);
    listPath_.clear();
    previewTag_.clear();
    listChanged_ = false;
    s_.view.setCaption("Tessaline");
    s_.view.hideEntryPanels();
}

void ListManager::openList() {
    const std::optional<std::string> chosen = s_.view.chooseFileToOpen(kOpenRequest);
    if (!chosen || chosen->empty()) {
        return;
    }
    readList(*chosen);
    listPath_ = *chosen;
    showCaption();
}

bool ListManager::askListPath() {
    std::optional<std::string> chosen = s_.view.chooseFileToSave(kSaveRequest);
    if (!chosen || chosen->empty()) {
        return false;
    }
    // A dot anywhere in the full path, a folder's included, counts as an extension.
    if (chosen->find('.') == std::string::npos) {
        *chosen += ".wall";
    }
    listPath_ = *chosen;
    showCaption();
    return true;
}

void ListManager::writeList() {
    writeListFile(s_.fs, entries_, listPath_, trackedFolders_);
}

void ListManager::saveList() {
    if (listPath_.empty() && !askListPath()) {
        return;
    }
    writeList();
}

void ListManager::saveListAs() {
    if (askListPath()) {
        writeList();
    }
}

void ListManager::saveAndClose() {
    if (listPath_.empty()) {
        saveList();
    }
    // A cancelled dialog still closes: the settings are written and the list, without a name, is not.
    s_.app.listPath = listPath_;
    s_.saveSettings();
    if (!listPath_.empty() && listChanged_) {
        writeList();
    }
    if (s_.view.trackerLoaded()) {
        s_.view.unloadTracker();
    }
    s_.view.showChangerAndUnload();
}

void ListManager::closeWithoutSave() {
    s_.saveSettings();
    if (s_.list1.count() > 0) {
        s_.view.showChangerAndUnload();
    } else {
        s_.view.unload();
    }
}

bool ListManager::mayClose() {
    if (busy_) {
        s_.ui.beep();
        return false;
    }
    return true;
}

// ---- Options ----

OptionChecks ListManager::optionChecks() const {
    return {s_.app.settings.CheckForDuplicates, s_.app.settings.AutoSortFolder, s_.view.addOrientation()};
}

void ListManager::refreshChecks() {
    s_.view.setOptionChecks(optionChecks());
}

void ListManager::chooseAddOrientation(Orientation orientation) {
    if (orientation < kCenter || orientation > kFill) {
        return;
    }
    s_.view.setAddOrientation(orientation);
    // The manager is where the orientation of new files is chosen; the changer adds with it too.
    s_.app.settings.DefaultAddOrientation = orientation;
    refreshChecks();
    s_.saveSettings();
}

void ListManager::toggleCheckDuplicates() {
    bool& check = s_.app.settings.CheckForDuplicates;
    check = !check;
    if (!check) {
        s_.ui.messageBox("It is recommended that you leave this setting on unless absolutely necessary.", "Warning",
                         kMbOk | kMbIconExclamation);
    }
    refreshChecks();
    s_.saveSettings();
}

void ListManager::toggleAutoSortFolder() {
    s_.app.settings.AutoSortFolder = !s_.app.settings.AutoSortFolder;
    refreshChecks();
    s_.saveSettings();
}

}  // namespace tl
