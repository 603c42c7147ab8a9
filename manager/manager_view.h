#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/file_dialog.h"
#include "base/file_system.h"
#include "lists/wallpaper_list.h"

namespace tl {

// The check marks of the Options menu (and the "Check for duplicates" box beside the list).
struct OptionChecks {
    bool checkDuplicates = false;
    bool autoSortFolder = false;
    Orientation addOrientation = kCenter;  // exactly one of the five default-orientation items
    bool operator==(const OptionChecks&) const = default;
};

// What the list manager's logic asks of its window (frmManager). The Win32 window implements it; tests
// use a fake that records the calls.
class ManagerView {
  public:
    virtual ~ManagerView() = default;

    virtual std::string caption() const = 0;
    virtual void setCaption(const std::string& caption) = 0;

    // Busy mode's look: "Working..." in scanDir, the hourglass, the animation running, the list and the
    // frames hidden, the window shrunk to its busy size when it is in its normal state; and back.
    virtual void showBusy() = 0;
    virtual void showIdle() = 0;
    // Called between the files of a long add: a chance for the busy text and animation to advance.
    virtual void busyProgress() = 0;
    // The hourglass for shorter work (a sort, a drop); calls nest.
    virtual void setHourglass(bool on) = 0;
    // A drop hides the list and the frames while it works.
    virtual void hideListAndFrames() = 0;
    virtual void showListAndFrames() = 0;
    // orType, killFile and removeFile.
    virtual void showEntryControls() = 0;
    // A new list: preview, altPreview, prevFrame, conFrame and orType hidden.
    virtual void hideEntryPanels() = 0;

    // The browser: the folder open in Dir1, the one highlighted in it, and File1's selected files in order
    // (their names, flagged where they can't be held in UTF-8).
    virtual std::string dir1Path() const = 0;
    virtual void setDir1Path(const std::string& path) = 0;
    virtual std::string dir1Highlighted() const = 0;
    virtual std::vector<DirEntry> file1SelectedFiles() const = 0;

    // addOrType: the orientation given to new files.
    virtual Orientation addOrientation() const = 0;
    virtual void setAddOrientation(Orientation orientation) = 0;
    // orType set by the program (never taken as the user's edit).
    virtual void showEntryOrientation(Orientation orientation) = 0;
    virtual void setOptionChecks(const OptionChecks& checks) = 0;

    // The preview of a list entry.
    virtual void hideHelpText() = 0;       // Label4
    virtual void showControlFrame() = 0;   // conFrame
    virtual void hideBrowsePreview() = 0;  // altPreview
    // ShowImageFacts into the window's preview panel; false when the picture can't be loaded.
    virtual bool showImageFacts(WallpaperEntry& entry) = 0;
    virtual void clearPreview() = 0;
    virtual void hidePreviewFrame() = 0;

    // Common dialogs: the chosen full path, or nullopt when cancelled.
    virtual std::optional<std::string> chooseFileToOpen(const FileDialogRequest& request) = 0;
    virtual std::optional<std::string> chooseFileToSave(const FileDialogRequest& request) = 0;

    // The folder tracker, which watches a list's folders: it watches these from now on (none, when only
    // the empty slot 0 is given).
    virtual void handFoldersToTracker(const TrackedFolders& folders) = 0;
    virtual bool trackerLoaded() const = 0;
    virtual void unloadTracker() = 0;

    // Closing: both take effect once the current command has returned.
    virtual void showChangerAndUnload() = 0;  // frmMain shown again, the manager unloaded
    virtual void unload() = 0;

    virtual void showAbout() = 0;
};

// Deletes a file from the disk (the list tools' removeFileFromDisk); true when it is gone.
class FileRemover {
  public:
    virtual ~FileRemover() = default;
    virtual bool removeFileFromDisk(const std::string& path, bool recycle, bool useShell) = 0;
};

}  // namespace tl
