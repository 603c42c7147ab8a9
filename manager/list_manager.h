#pragma once

#include <functional>
#include <string>
#include <vector>

#include "changer/after_removal.h"
#include "lists/wallpaper_list.h"
#include "manager/duplicate_index.h"
#include "manager/manager_view.h"

namespace tl {

struct AppState;
class AnsiCodePage;
class FileSystem;
class ListBoxView;
class RandomSource;
class Ui;

// How the delete button deletes, from the keyboard modifiers held as it is released.
struct DeleteMode {
    bool recycle;
    bool useShell;
    bool operator==(const DeleteMode&) const = default;
};
// SHIFT alone: for good through the shell, which asks first; CTRL alone: for good, directly, without a
// question; anything else (nothing, or any other combination): to the recycle bin through the shell,
// which asks first.
DeleteMode deleteModeFor(bool shift, bool ctrl, bool alt);

// The platform pieces the list manager works through.
struct ManagerServices {
    ManagerView& view;
    ListBoxView& list1;
    FileSystem& fs;
    const AnsiCodePage& ansi;  // of the list files earlier versions wrote
    Ui& ui;
    AppState& app;
    RandomSource& random;
    FileRemover& remover;
    std::function<void()> saveSettings;
};

// frmManager's behaviour: its list (entries, index-aligned with List1 and always ending in one spare
// element), every way of adding files, and the list commands. The window translates its messages into
// calls on it.
class ListManager : private RemovalForm {
  public:
    explicit ListManager(ManagerServices services);

    // The window's load: an empty list, the screen size for the Auto rule, the add orientation from the
    // settings, and the current list (AppState.listPath) when there is one.
    void load(int screenWidth, int screenHeight);

    // Adding.
    bool addEntry(const std::string& path, Orientation orientation);
    bool checkDupe(const std::string& path) const { return index_.contains(path); }
    void addFiles();
    // Returns the number of files added.
    int addFolder();
    // Dropped names in order; unrepresentable are those dropped whose names can't be held in UTF-8 (as
    // shown), which the user is told of.
    void dropFiles(const std::vector<std::string>& names, const std::vector<std::string>& unrepresentable = {});
    bool busy() const { return busy_; }
    const std::string& scanStatus() const { return scanStatus_; }

    // The list and its entries.
    void onList1Click();
    // The user picked an orientation in orType for the selected entries.
    void onOrTypeChosen(Orientation orientation);
    void removeSelected();
    void deleteSelected(bool recycle, bool useShell);
    void sortList();
    // A browsed file went into the preview panel: the list entry is no longer the one on show there.
    void onBrowsePreviewShown() { previewTag_.clear(); }
    // The path of the list entry on show in the preview; empty when none is.
    const std::string& previewedPath() const { return previewTag_; }

    // The folder tracker's calls while this list is the one it keeps in step: an image file that appeared
    // in a tracked folder (added unless listed; returns its slot, 0 when nothing was added), one that went,
    // and the tracked folders edited (as the tracker lists them: slots 0 to n - 1, then an empty one).
    int addTrackedFile(const std::string& path);
    void removeTrackedFile(const std::string& path);
    void setTrackedFolders(const TrackedFolders& folders);

    // The List menu.
    void newList();
    void openList();
    void saveList();
    void saveListAs();
    void saveAndClose();
    void closeWithoutSave();
    // The title bar's close: refused with a beep while busy.
    bool mayClose();

    // The Options menu.
    void chooseAddOrientation(Orientation orientation);
    void toggleCheckDuplicates();
    void toggleAutoSortFolder();
    OptionChecks optionChecks() const;

    const WallpaperEntries& entries() const { return entries_; }
    const TrackedFolders& trackedFolders() const { return trackedFolders_; }
    const std::string& listPath() const { return listPath_; }
    bool listChanged() const { return listChanged_; }

  private:
    // RemovalForm, for selectAfterRemoval.
    ListBoxView& removalList() override { return s_.list1; }
    void clearPreview() override;
    void clearPreviewTag() override { previewTag_.clear(); }
    void selectLineAndClick(int index) override;
    void hidePreviewFrame() override { s_.view.hidePreviewFrame(); }

    void beginBusy();
    void endBusy();
    void appendLine(const std::string& path);
    void clearLines();
    // List1 again from entries, one line per entry.
    void refillLines();
    void readList(const std::string& path);
    void afterRemoval(int firstRemoved);
    // Save's dialog and its ".wall" rule; false when cancelled.
    bool askListPath();
    void writeList();
    void showCaption();
    void refreshChecks();
    bool addIfNew(const std::string& path, Orientation orientation);
    // addFolder without telling of the names it had to leave out, so that a drop tells of them once.
    int scanFolder();
    void reportUnrepresentable();

    ManagerServices s_;
    WallpaperEntries entries_ = WallpaperEntries(1);
    TrackedFolders trackedFolders_ = TrackedFolders(1);
    DuplicateIndex index_;
    std::string listPath_;
    std::string previewTag_;  // the path of the entry on show in the preview
    std::string scanStatus_;
    std::vector<std::string> unrepresentable_;  // left out of the add under way, to be told of at its end
    bool listChanged_ = false;
    bool busy_ = false;
    int screenWidth_ = 0;
    int screenHeight_ = 0;
    bool inClick_ = false;
    int pendingClick_ = -1;
};

}  // namespace tl
