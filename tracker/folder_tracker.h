#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "lists/wallpaper_list.h"
#include "tracker/change_echoes.h"
#include "tracker/shell_change.h"

namespace tl {

class FileSystem;
class ListBoxView;
class TrackerHost;
class Ui;

// frmTracker's state and rules, apart from its window: the tracked folders (in its list box List1), the
// receipt of change notifications, and what its buttons do.
class FolderTracker {
  public:
    FolderTracker(ListBoxView& list1, TrackerHost& host, FileSystem& fs, Ui& ui);

    // The window that owns the running list now (the changer, or the manager while it edits a list).
    void setHost(TrackerHost& host) { host_ = &host; }

    bool allowUnload() const { return allowUnload_; }
    void setAllowUnload(bool allow) { allowUnload_ = allow; }
    bool ignoreEvents() const { return ignoreEvents_; }
    void setIgnoreEvents(bool ignore) { ignoreEvents_ = ignore; }
    const std::string& pendingImageName() const { return pendingImageName_; }

    // Appends every non-empty folder of list from slot 1 on (slot 0 is not read) to List1.
    void LoadList(const TrackedFolders& list);
    // List1's folders in slots 0 to n - 1, then one empty slot n.
    TrackedFolders GetList() const;
    // True when some tracked folder occurs anywhere in path, in any case. A substring test on purpose:
    // with C:\Pics tracked, D:\Backup\c:\pics\x.jpg matches too.
    bool matches(std::string_view path) const;

    // Handles one change: adds or removes images of the tracked folders through the host. Failures of the
    // host are passed over. nowMs is a millisecond tick count, used to recognise a change reported twice.
    void NotificationReceipt(const ShellChange& change, ChangeSource source, uint32_t nowMs);

    // The browse dialog's starting folder: the folder it returned last, else the wallpaper directory, else
    // the program's folder with a "\".
    std::string browseStartFolder(const std::string& wallpaperDirectory, const std::string& programDir) const;
    // cmdAdd, after the dialog: a chosen folder is appended, with no check for duplicates. True when added.
    bool addChosenFolder(const std::string& chosen);
    // cmdRemove: removes the selected folder and selects the first one left; beeps with no selection.
    void removeSelectedFolder();
    // Command1 and the refused close: hand the folders to the host, which writes them to the list file.
    void saveFolders();

  private:
    // A picture whose name UTF-8 can't hold is not added: the user is told of it.
    void addPaper(const std::string& path, bool unrepresentable, ChangeSource source, uint32_t nowMs);
    void deletePaper(const std::string& path, ChangeSource source, uint32_t nowMs);
    bool fileExists(const std::string& path);

    ListBoxView& list1_;
    TrackerHost* host_;
    FileSystem& fs_;
    Ui& ui_;
    bool allowUnload_ = true;
    bool ignoreEvents_ = false;
    std::string pendingImageName_;
    std::string lastOffered_;
    ChangeEchoes echoes_;
};

}  // namespace tl
