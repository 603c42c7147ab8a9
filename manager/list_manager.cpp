#include "manager/list_manager.h"

#include <new>

#include "app/app_state.h"
#include "base/convert.h"
#include "base/file_system.h"
#include "base/text.h"
#include "base/ui.h"
#include "base/unrepresentable_names.h"
#include "changer/apply_rules.h"
#include "lists/image_info.h"
#include "lists/list_box.h"
#include "manager/folder_scan.h"

namespace tl {

DeleteMode deleteModeFor(bool shift, bool ctrl, bool alt) {
    if (shift && !ctrl && !alt) {
        return {false, true};
    }
    if (ctrl && !shift && !alt) {
        return {false, false};
    }
    return {true, true};
}

ListManager::ListManager(ManagerServices services) : s_(std::move(services)) {}

void ListManager::load(int screenWidth, int screenHeight) {
    entries_ = WallpaperEntries(1);
    trackedFolders_ = TrackedFolders(1);
    screenWidth_ = screenWidth;
    screenHeight_ = screenHeight;
    const Orientation add = s_.app.settings.DefaultAddOrientation;
    s_.view.setAddOrientation(add >= kCenter && add <= kFill ? add : kCenter);
    listPath_.clear();
    if (!trimBlanks(s_.app.listPath).empty()) {
        listPath_ = s_.app.listPath;
        readList(listPath_);
    }
    showCaption();
    refreshChecks();
}

// ---- Busy mode ----

void ListManager::beginBusy() {
    busy_ = true;
    scanStatus_.clear();
    s_.view.showBusy();
}

void ListManager::endBusy() {
    s_.view.showIdle();
    busy_ = false;
}

// ---- List1 and its index ----

void ListManager::appendLine(const std::string& path) {
    s_.list1.add(path);
    index_.add(path);
}

void ListManager::clearLines() {
    s_.list1.clear();
    index_.clear();
}

void ListManager::refillLines() {
    clearLines();
    for (int i = 0; i < imageCount(entries_); ++i) {
        appendLine(entries_[static_cast<size_t>(i)].path);
    }
}

// ---- Adding ----

bool ListManager::addEntry(const std::string& path, Orientation orientation) {
    entries_.emplace_back();
    // The element before the new spare one, unless an earlier add left an emptied element behind: the
    // slot is always List1's count, so entries and lines stay aligned.
    const auto slot = static_cast<size_t>(s_.list1.count());
    entries_[slot].path = path;
    try {
        if (orientation == kAuto) {
            cImageInfo info(s_.fs);
            info.ReadImageInfo(path);
            // A header that tells no size can't be laid out by the Auto rule: refused like an unreadable file.
            if (info.Width() <= 0 || info.Height() <= 0) {
                throw ImageReadError(path);
            }
            entries_[slot].width = info.Width();
            entries_[slot].height = info.Height();
            const Settings& settings = s_.app.settings;
            orientation = chooseAutoOrientation(info.Width(), info.Height(), screenWidth_, screenHeight_,
                                                settings.RatioTolerance, settings.HalfRatio);
        }
        entries_[slot].orientation = orientation;
        appendLine(path);
        listChanged_ = true;
        return true;
    } catch (const ImageReadError&) {
        s_.ui.messageBox(
            "The file '" + path + "' seems to be invalid, or I can't open it for some reason. I will not add it.",
            "Error", kMbOk);
        entries_[slot].path.clear();
    } catch (const std::bad_alloc&) {
        s_.ui.messageBox("A strange error has occured:\r\nCode: 7 - Out of memory", "Error!", kMbOk);
    } catch (const std::exception& e) {
        s_.ui.messageBox(std::string("A strange error has occured:\r\nCode: 51 - ") + e.what(), "Error!", kMbOk);
    }
    return false;
}

bool ListManager::addIfNew(const std::string& path, Orientation orientation) {
    if (s_.app.settings.CheckForDuplicates && checkDupe(path)) {
        return false;
    }
    return addEntry(path, orientation);
}

void ListManager::addFiles() {
    if (busy_) {
        s_.ui.beep();
        return;
    }
    beginBusy();
    // The separator is always added, also after a drive root's "\": such a file is listed as "C:\\name",
    // which the duplicate check does not take for the same file dropped as "C:\name". Kept on purpose.
    const std::string folder = s_.view.dir1Path() + "\\";
    const Orientation orientation = s_.view.addOrientation();
    for (const DirEntry& file : s_.view.file1SelectedFiles()) {
        if (file.unrepresentable) {
            unrepresentable_.push_back(folder + file.name);
        } else {
            addIfNew(folder + file.name, orientation);
        }
        s_.view.busyProgress();
    }
    endBusy();
    reportUnrepresentable();
}

void ListManager::reportUnrepresentable() {
    reportUnrepresentableNames(s_.ui, unrepresentable_);
    unrepresentable_.clear();
}

int ListManager::addFolder() {
    const int added = scanFolder();
    reportUnrepresentable();
    return added;
}

int ListManager::scanFolder() {
    if (busy_) {
        s_.ui.beep();
        return 0;
    }
    beginBusy();
    const std::string caption = s_.view.caption();
    const std::string start = s_.view.dir1Highlighted();
    s_.view.setCaption("Getting Directories...");
    const FolderTable table = collectFolders(s_.fs, start);
    unrepresentable_.insert(unrepresentable_.end(), table.unrepresentable.begin(), table.unrepresentable.end());

    s_.view.setCaption("Adding files...");
    const Orientation orientation = s_.view.addOrientation();
    int added = 0;
    // One pass more than there are folders, kept on purpose: the extra row is empty, so its searches run
    // on "\*.bmp" and so on, the root folder of the current drive, and add what they find there as "\name".
    for (size_t row = 0; row <= table.folders.size(); ++row) {
        const std::string folder = row < table.folders.size() ? table.folders[row] : std::string();
        scanStatus_ = folder + "\r\nAdded so far: " + formatSigned(added);
        for (const std::string_view extension : kFolderAddExtensions) {
            for (const std::string& name : findFolderImages(s_.fs, folder, extension, unrepresentable_)) {
                if (addIfNew(folder + "\\" + name, orientation)) {
                    ++added;
                }
                scanStatus_ = folder + "\r\nAdded so far: " + formatSigned(added);
                s_.view.busyProgress();
            }
        }
    }

    if (s_.app.settings.AutoSortFolder && listChanged_) {
        sortList();
    }
    if (added > 0) {
        s_.view.showEntryControls();
    }
    if (table.overflowed) {
        s_.ui.messageBox("The folder '" + start + "' holds more than " + std::to_string(kFolderTableRows) +
                             " folders, more than one add can take. I added the pictures of the first " +
                             std::to_string(kFolderTableRows) +
                             " and stopped there; add the folders further down one at a time.",
                         "Too many folders", kMbOk | kMbIconExclamation);
    }
    s_.view.setCaption(caption);
    endBusy();
    return added;
}

void ListManager::dropFiles(const std::vector<std::string>& names, const std::vector<std::string>& unrepresentable) {
    if (busy_) {
        return;
    }
    unrepresentable_ = unrepresentable;
    s_.view.setHourglass(true);
    s_.view.hideListAndFrames();
    const std::string dir = s_.view.dir1Path();
    // Each dropped folder is added without its own sort; the whole drop is sorted once at the end.
    const bool autoSort = s_.app.settings.AutoSortFolder;
    s_.app.settings.AutoSortFolder = false;
    const Orientation orientation = s_.view.addOrientation();
    int added = 0;
    for (const std::string& dropped : names) {
        const std::string name(cutAtNul(trimBlanks(dropped)));
        if (isImageFile(name)) {
            added += addIfNew(name, orientation) ? 1 : 0;
        } else if (s_.fs.isDirectory(name)) {
            s_.view.setDir1Path(name);
            added += scanFolder();
        }
    }
    s_.app.settings.AutoSortFolder = autoSort;
    if (autoSort && added > 0) {
        sortList();
    }
    s_.view.setDir1Path(dir);
    s_.view.showListAndFrames();
    s_.view.setHourglass(false);
    reportUnrepresentable();
}

// ---- The list's entries ----

void ListManager::onList1Click() {
    if (inClick_) {
        return;
    }
    inClick_ = true;
    int index = s_.list1.listIndex();
    while (index >= 0 && index < imageCount(entries_)) {
        pendingClick_ = -1;
        WallpaperEntry& entry = entries_[static_cast<size_t>(index)];
        s_.view.hideHelpText();
        s_.view.showEntryOrientation(entry.orientation);
        s_.view.showControlFrame();
        if (entry.path == previewTag_) {
            break;
        }
        s_.view.hideBrowsePreview();
        if (s_.view.showImageFacts(entry)) {
            previewTag_ = entry.path;
            break;
        }
        // A picture that can't be shown leaves the list, as the remove command would take it out; the
        // neighbour selected in its place is previewed in turn (here, not by recursion, so that a list
        // of many missing files can't exhaust the stack).
        entry.path.clear();
        afterRemoval(index);
        index = pendingClick_;
    }
    inClick_ = false;
}

void ListManager::clearPreview() {
    s_.view.clearPreview();
    previewTag_.clear();
}

void ListManager::selectLineAndClick(int index) {
    s_.list1.setListIndex(index);
    pendingClick_ = index;
    if (!inClick_) {
        onList1Click();
    }
}

void ListManager::afterRemoval(int firstRemoved) {
    entries_ = compactEntries(entries_);
    refillLines();
    listChanged_ = true;
    selectAfterRemoval(firstRemoved, *this);
}

void ListManager::onOrTypeChosen(Orientation orientation) {
    for (int i = 0; i < s_.list1.count() && i < imageCount(entries_); ++i) {
        if (s_.list1.isSelected(i)) {
            entries_[static_cast<size_t>(i)].orientation = orientation;
            listChanged_ = true;
        }
    }
}

void ListManager::removeSelected() {
    int first = -1;
    for (int i = 0; i < s_.list1.count() && i < imageCount(entries_); ++i) {
        if (s_.list1.isSelected(i)) {
            entries_[static_cast<size_t>(i)].path.clear();
            if (first < 0) {
                first = i;
            }
        }
    }
    if (first < 0) {
        s_.ui.beep();
        return;
    }
    afterRemoval(first);
}

void ListManager::deleteSelected(bool recycle, bool useShell) {
    int first = -1;
    for (int i = 0; i < s_.list1.count() && i < imageCount(entries_); ++i) {
        if (!s_.list1.isSelected(i)) {
            continue;
        }
        WallpaperEntry& entry = entries_[static_cast<size_t>(i)];
        // A file that is still there (the user said no, or the delete failed) keeps its entry.
        if (s_.remover.removeFileFromDisk(entry.path, recycle, useShell)) {
            entry.path.clear();
            if (first < 0) {
                first = i;
            }
        }
    }
    if (first >= 0) {
        afterRemoval(first);
    }
}

int ListManager::addTrackedFile(const std::string& path) {
    // During an add the list is the add's; the file is picked up by the scan if it lies in its way.
    if (busy_ || !isImageFile(path) || checkDupe(path)) {
        return 0;
    }
    const int slot = s_.list1.count();
    return addEntry(path, s_.view.addOrientation()) ? slot : 0;
}

void ListManager::removeTrackedFile(const std::string& path) {
    const int line = s_.list1.findExact(path);
    if (busy_ || line < 0 || line >= imageCount(entries_)) {
        return;
    }
    if (entries_[static_cast<size_t>(line)].path == previewTag_) {
        clearPreview();
        s_.view.hidePreviewFrame();
    }
    entries_[static_cast<size_t>(line)].path.clear();
    entries_ = compactEntries(entries_);
    refillLines();
    listChanged_ = true;
}

void ListManager::setTrackedFolders(const TrackedFolders& folders) {
    trackedFolders_ = TrackedFolders(1);
    for (const std::string& folder : folders) {
        if (!folder.empty()) {
            trackedFolders_.push_back(folder);
        }
    }
    listChanged_ = true;
}

void ListManager::sortList() {
    if (imageCount(entries_) <= 0) {
        return;
    }
    const std::string caption = s_.view.caption();
    s_.view.setCaption("Sorting...");
    previewTag_.clear();
    s_.view.setHourglass(true);
    sortEntries(entries_, 0, imageCount(entries_) - 1, s_.random);
    // List1 takes only entries that name a picture (an element emptied by a refused add sorts first and is
    // left out); whatever is left out goes from entries too, so that entry i stays line i.
    clearLines();
    bool leftOut = false;
    for (int i = 0; i < imageCount(entries_); ++i) {
        WallpaperEntry& entry = entries_[static_cast<size_t>(i)];
        if (isImageFile(entry.path)) {
            appendLine(entry.path);
        } else {
            entry.path.clear();
            leftOut = true;
        }
    }
    if (leftOut) {
        entries_ = compactEntries(entries_);
    }
    s_.view.setHourglass(false);
    s_.view.setCaption(caption);
    listChanged_ = true;
}

}  // namespace tl
