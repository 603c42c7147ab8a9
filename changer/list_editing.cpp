// Editing the running list: what the panel's remove and delete commands and the folder tracker do to it.
#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "app/app_state.h"
#include "base/file_system.h"
#include "changer/main_form.h"
#include "lists/image_info.h"
#include "lists/list_box.h"

namespace tl {

void frmMain::removeSelectedEntries() {
    if (panelBusy_) {
        host_.beep();
        return;
    }
    panelBusy_ = true;
    ListBoxView& list = host_.list1();
    // The selected lines themselves, not the caret: with a single selection they are the same line,
    // and a line the user did not select never goes.
    int removedIndex = -1;
    const int count = std::min(list.count(), imageCount(entries_));
    for (int i = 0; i < count; ++i) {
        if (list.isSelected(i)) {
            entries_[static_cast<size_t>(i)].path.clear();
            if (removedIndex == -1) {
                removedIndex = i;
            }
        }
    }
    if (removedIndex >= 0) {
        entries_ = compactEntries(entries_);
        refreshList1();
        selectAfterRemoval(removedIndex, *this);
    } else {
        host_.beep();
    }
    panelBusy_ = false;
}

void frmMain::deleteSelectedFiles(bool recycle, bool useShell) {
    // Taken before the first file goes: each removal refills List1 and applies a neighbour, and while the
    // shell asks its question the tracker and the clock may change the list too. Walking the paths chosen
    // here, not the line numbers, deletes every selected file and no other.
    const std::vector<std::string> chosen = selectedPaths();
    if (chosen.empty()) {
        host_.beep();
        return;
    }
    for (const std::string& path : chosen) {
        // Only a removal seen while this file was being deleted counts: the tracker may have heard of the
        // deletion from the shell and removed the entry already. An older one would keep a file that was
        // deleted, restored and deleted again on the list.
        lastRemovedPath_.clear();
        if (host_.removeFileFromDisk(path, recycle, useShell) && path != lastRemovedPath_) {
            deletePaper(path, true);
        }
    }
}

void frmMain::addPaper(const std::string& path, bool select, int16_t& result) {
    result = 0;
    if (!isImageFile(path)) {
        return;
    }
    ListBoxView& list = host_.list1();
    if (list.findExact(path) >= 0) {
        return;  // a listed path is never added twice
    }
    Orientation orientation = app_.settings.DefaultAddOrientation;
    if (orientation == kAuto) {
        // Read before the list grows, so that a file that can't be read leaves it as it was. The size
        // decides the orientation and is not kept.
        cImageInfo info(fs_);
        info.ReadImageInfo(path);
        orientation = chooseAutoOrientation(info.Width(), info.Height(), screen_.width, screen_.height,
                                            app_.settings.RatioTolerance, app_.settings.HalfRatio);
    }
    if (entries_.empty()) {
        entries_.emplace_back();
    }
    const size_t n = entries_.size() - 1;  // the spare slot takes the image, and a new spare follows
    entries_[n].path = path;
    entries_[n].orientation = orientation;
    entries_.emplace_back();
    refreshList1KeepingCursor();
    writeList();
    if (select) {
        engineMove(list.count() - 1);
    }
    result = static_cast<int16_t>(n);
}

void frmMain::deletePaper(const std::string& path, bool reselect) {
    if (!isImageFile(path)) {
        return;
    }
    ListBoxView& list = host_.list1();
    const int removedIndex = list.findExact(path);
    if (removedIndex >= 0 && validIndex(removedIndex)) {
        entries_[static_cast<size_t>(removedIndex)].path.clear();
        if (list.listIndex() == removedIndex) {
            reselect = true;  // the wallpaper on show went: another one takes its place
        }
        entries_ = compactEntries(entries_);
        refreshList1KeepingCursor();
        if (reselect) {
            selectAfterRemoval(removedIndex, *this);
        }
    }
    lastRemovedPath_ = path;
}

void frmMain::setTrackerList(const TrackedFolders& folders) {
    // The tracker hands its folders over from slot 0; the list keeps slot 0 empty, as a list file gives it.
    TrackedFolders kept(1);
    for (const std::string& folder : folders) {
        if (!folder.empty()) {
            kept.push_back(folder);
        }
    }
    trackedFolders_ = std::move(kept);
    hasTrackedFolders_ = trackedFolders_.size() > 1;
    writeList();
}

void frmMain::refreshList1KeepingCursor() {
    refreshList1();
    if (previewTag_.empty()) {
        return;
    }
    for (int i = 0; i < imageCount(entries_); ++i) {
        if (entries_[static_cast<size_t>(i)].path == previewTag_) {
            host_.list1().setListIndex(i);
            return;
        }
    }
}

std::vector<std::string> frmMain::selectedPaths() {
    ListBoxView& list = host_.list1();
    std::vector<std::string> paths;
    for (int i = 0; i < list.count(); ++i) {
        if (list.isSelected(i)) {
            paths.push_back(list.text(i));
        }
    }
    return paths;
}

}  // namespace tl
