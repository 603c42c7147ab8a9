#include "tracker/folder_tracker.h"

#include <exception>

#include "base/file_system.h"
#include "base/text.h"
#include "base/ui.h"
#include "base/unrepresentable_names.h"
#include "lists/list_box.h"
#include "tracker/tracker_host.h"

namespace tl {

bool isTrackedEvent(uint32_t event) {
    switch (event) {
        case kShcneRenameItem:
        case kShcneCreate:
        case kShcneDelete:
        case kShcneRmDir:
        case kShcneUpdateDir:
            return true;
        default:
            return false;
    }
}

FolderTracker::FolderTracker(ListBoxView& list1, TrackerHost& host, FileSystem& fs, Ui& ui)
    : list1_(list1), host_(&host), fs_(fs), ui_(ui) {}

void FolderTracker::LoadList(const TrackedFolders& list) {
    for (size_t i = 1; i < list.size(); ++i) {
        if (!list[i].empty()) {
            list1_.add(list[i]);
        }
    }
}

TrackedFolders FolderTracker::GetList() const {
    TrackedFolders out;
    const int n = list1_.count();
    out.reserve(static_cast<size_t>(n) + 1);
    for (int i = 0; i < n; ++i) {
        out.push_back(list1_.text(i));
    }
    out.emplace_back();
    return out;
}

bool FolderTracker::matches(std::string_view path) const {
    const std::string lowerPath = lowerCase(path);
    const int n = list1_.count();
    for (int i = 0; i < n; ++i) {
        if (lowerPath.find(lowerCase(list1_.text(i))) != std::string::npos) {
            return true;
        }
    }
    return false;
}

void FolderTracker::NotificationReceipt(const ShellChange& change, ChangeSource source, uint32_t nowMs) {
    if (ignoreEvents_ || !isTrackedEvent(change.event)) {
        return;
    }
    // A file created through the shell can be announced by name before it has a path; the folder's
    // update that follows names the folder, and the two together give the file.
    if (change.event == kShcneCreate && change.path1.empty() && !change.unrepresentable1 &&
        isImageFile(change.name1)) {
        pendingImageName_ = change.name1;
    }
    const bool m1 = matches(change.path1);
    const bool m2 = matches(change.path2);
    if (!m1 && !m2) {
        return;
    }
    switch (change.event) {
        case kShcneUpdateDir:
            if (!pendingImageName_.empty()) {
                const std::string file = joinPath(change.path1, pendingImageName_);
                if (fileExists(file)) {
                    addPaper(file, change.unrepresentable1, source, nowMs);
                }
            }
            pendingImageName_.clear();
            break;
        case kShcneDelete:
            deletePaper(change.path1, source, nowMs);
            break;
        case kShcneRenameItem:
            if (m1) {
                deletePaper(change.path1, source, nowMs);
            }
            if (m2) {
                addPaper(change.path2, change.unrepresentable2, source, nowMs);
            }
            break;
        case kShcneCreate:
            addPaper(change.path1, change.unrepresentable1, source, nowMs);
            break;
        default:  // a removed folder: its files are announced one by one, or not at all
            break;
    }
}

void FolderTracker::addPaper(const std::string& path, bool unrepresentable, ChangeSource source, uint32_t nowMs) {
    if (!echoes_.admit(source, ListAction::Add, path, nowMs)) {
        return;
    }
    if (unrepresentable) {
        // Told once, as the change itself is handled once; a file that is no picture is not worth a word.
        if (isImageFile(path)) {
            reportUnrepresentableNames(ui_, {path});
        }
        return;
    }
    try {
        int16_t result = 0;
        host_->addPaper(path, true, result);
    } catch (const std::exception&) {
        // An unreadable picture stays out of the list; the next change is handled as usual.
    }
}

void FolderTracker::deletePaper(const std::string& path, ChangeSource source, uint32_t nowMs) {
    if (!echoes_.admit(source, ListAction::Remove, path, nowMs)) {
        return;
    }
    try {
        host_->deletePaper(path, false);
    } catch (const std::exception&) {
        // The entry stays; nothing is reported.
    }
}

bool FolderTracker::fileExists(const std::string& path) {
    // A plain directory look-up: normal files only, as a search without attributes finds them.
    for (const DirEntry& e : fs_.findFiles(path)) {
        if (e.isNormalFile()) {
            return true;
        }
    }
    return false;
}

std::string FolderTracker::browseStartFolder(const std::string& wallpaperDirectory,
                                             const std::string& programDir) const {
    if (!lastOffered_.empty()) {
        return lastOffered_;
    }
    if (!wallpaperDirectory.empty()) {
        return wallpaperDirectory;
    }
    // A drive root already ends in its separator.
    return endsWith(programDir, "\\") ? programDir : programDir + "\\";
}

bool FolderTracker::addChosenFolder(const std::string& chosen) {
    if (chosen.empty()) {
        return false;
    }
    lastOffered_ = chosen;
    list1_.add(chosen);
    return true;
}

void FolderTracker::removeSelectedFolder() {
    const int selected = list1_.listIndex();
    if (selected < 0) {
        ui_.beep();
        return;
    }
    list1_.remove(selected);
    if (list1_.count() > 0) {
        list1_.setListIndex(0);
    }
}

void FolderTracker::saveFolders() {
    host_->setTrackerList(GetList());
}

}  // namespace tl
