#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "changer/after_removal.h"
#include "changer/apply_rules.h"
#include "changer/changer_platform.h"
#include "changer/menu_state.h"
#include "changer/panel_rules.h"
#include "lists/wallpaper_list.h"
#include "tracker/tracker_host.h"

namespace tl {

struct AppState;
class AnsiCodePage;
class FileSystem;
class RandomSource;

// The rules of the hidden main form frmMain: the current list and its cursor List1, the switching clock,
// the applier, the tray icon's tip and the menus' state. Every event of the form ends in one of the
// public handlers below; the Win32 window (main_form_win.cpp) only translates messages into them.
//
// List1 and busy: Win32 raises no click when code moves a list box's selection, so every move the engine
// makes (switch, step back, the list submenu, the reselection after a removal) sets busy, moves the
// selection and runs the click handling itself, which then applies the newly selected entry exactly once.
// A click with busy clear is the user's.
//
// The list editing (addPaper, deletePaper, setTrackerList) is also what the folder tracker calls.
class frmMain : private RemovalForm, public TrackerHost {
  public:
    frmMain(AppState& app,
            FileSystem& fs,
            const AnsiCodePage& ansi,
            RandomSource& random,
            MainFormHost& host,
            Desktop& desktop,
            WallpaperPictures& pictures,
            TrayIcon& tray);

    // Form_Load: reads the current list and, when it has images, starts switching and applies a first
    // wallpaper. False when the list was empty: the manager was shown and the form unloaded.
    bool onLoad();
    // The unload steps (tray icon off, list and settings written, tracker unloaded); they run once,
    // whichever of Quit, closing and the end of the Windows session comes first.
    void unload();
    bool isUnloaded() const { return unloaded_; }
    // The end of the session was called off after the unload steps ran: back to the tray.
    void resumeAfterCancelledShutdown();

    // minuteTimer, every 60 s.
    void onMinuteTimer();
    // The ten-minute housekeeping: tray icon re-added, list and settings written.
    void tenMinutes();

    // Moves to the next image (random or sequential) and applies it; force re-applies even an unchanged one.
    void switchWallpaper(bool force);
    // A press of the "switch" hot key.
    void onSwitchHotKey() { switchWallpaper(false); }
    // mnuPreviousPaper: one step back in the history.
    void onPrevious();
    // mnuPaused / mnuTrayPause.
    void onPause();
    // mnuRandom / mnuTrayRandom.
    void onRandom();
    // mnuDelay / mnuTrayDelay.
    void onDelay();
    // One item of the "Pick different list" submenu.
    void onListItem(int index);

    // List1's click handling: the user's click, or (with busy set) the engine's move.
    void onList1Click();
    // orType's click: a new orientation for the selected entries, re-applied at once.
    void onOrTypeClick();
    // The tray's "Switch Orientation" items.
    void onSwitchOrientation(Orientation orientation);
    // A tray callback: the mouse message arrives where a mouse move's X coordinate would.
    void onTrayMouse(long x);
    // mnuTrayQuit.
    void onTrayQuit();
    // Explorer restarted: the tray is new and empty.
    void onTaskbarCreated();
    // The display mode or the monitors changed (one plugged in, removed or turned): Scale and Auto measure
    // the screen again, and the pictures on show are laid out again on the monitors there are now.
    void onDisplayChange();
    // The Display Properties choice of what each monitor shows (a MonitorLayout other than Automatic).
    void onMonitorLayout(MonitorLayout layout);

    // Runs the menu item's action; false for items whose action is not the changer's own.
    bool onMenuCommand(int id);

    // Applies entries[index]: the decoded picture saved as the bitmap, scaled for Scale, handed to the
    // desktop, the tray tip updated. forceChange re-applies an unchanged entry; forceNextApply sets it.
    void changeWallpaper(int index, bool& forceChange);

    // The panel's "remove selected wallpaper(s) from list": the selected entries leave the list (the files
    // stay) and a neighbouring line is applied.
    void removeSelectedEntries();
    // The panel's delete: the selected entries' files are deleted (recycled, or for good; through the
    // shell, which asks, or directly), and those that went leave the list.
    void deleteSelectedFiles(bool recycle, bool useShell);

    // Adds an image file to the running list, unless it is listed already; result receives its slot (0
    // when nothing was added). With select the new line is applied. A file that can't be read for its
    // size (DefaultAddOrientation Auto) throws ImageReadError and adds nothing.
    void addPaper(const std::string& path, bool select, int16_t& result) override;
    // Removes the entry with that path (any case), if listed; the wallpaper on show removed, or reselect
    // given, a neighbouring line is applied. The list file is written later.
    void deletePaper(const std::string& path, bool reselect) override;
    // The tracker's folders become the list's and the list file is written at once.
    void setTrackerList(const TrackedFolders& folders) override;

    // Form_Resize: the panel shown, or put into the tray when minimised. The state is kept in MainMode.
    void onFormResize(bool visible, FormWindowState state);
    // A click on one of the panel's image buttons or its preview, with the modifier keys held.
    void onPanelButton(PanelButton button, int shiftKeys);

    // readListFile of the main form: the list at path replaces the current one, List1 follows, and
    // AppState.listPath becomes path; a list with folder lines loads the tracker.
    void readListFile(std::string path);
    // Puts the entries' paths into List1, one line each, in list order.
    void refreshList1();
    // Applies the settings to the menus' check marks and captions.
    void refreshMenus();
    // The "Pick different list" submenu from the ".wall" files of the program directory.
    void buildListMenu();
    // updateTrayIcon: the tip of the wallpaper on show, the paused icon while paused.
    void updateTrayIcon();

    // The state other parts of frmMain read and change.
    WallpaperEntries& entries() { return entries_; }
    TrackedFolders& trackedFolders() { return trackedFolders_; }
    bool hasTrackedFolders() const { return hasTrackedFolders_; }
    const std::string& previewTag() const { return previewTag_; }
    const MenuState& menus() const { return menus_; }
    int previousIndex() const { return previousIndex_; }
    int currentIndex() const { return currentIndex_; }
    int minuteCount() const { return minuteCount_; }
    int tenMinuteCount() const { return tenMinuteCount_; }
    Orientation lastAppliedOrientation() const { return lastAppliedOrientation_; }
    ScreenSize screen() const { return screen_; }
    // The monitors in turn order, and the pictures on show on all but the last of them (whose picture is
    // the current line's), when each monitor has its own.
    const std::vector<ScreenRect>& monitors() const { return monitors_; }
    const std::vector<WallpaperEntry>& otherPictures() const { return others_; }
    bool panelBusy() const { return panelBusy_; }
    const std::string& lastRemovedPath() const { return lastRemovedPath_; }
    bool trackerLoaded() const { return trackerLoaded_; }
    size_t longestPath() const { return longestPath_; }

  private:
    // RemovalForm, for selectAfterRemoval on frmMain.
    ListBoxView& removalList() override;
    void clearPreview() override;
    void clearPreviewTag() override { previewTag_.clear(); }
    void selectLineAndClick(int index) override;
    void hidePreviewFrame() override;

    // Sets busy, moves the selection from the current line to index and runs the click handling.
    void engineMove(int index);
    void list1Click();
    // Sets orType's index from code; the click it raises is the handler's to run or not.
    void setOrType(Orientation orientation);
    TrayIconKind trayIconKind() const;
    bool validIndex(int index) const;
    MonitorLayout monitorLayout() const;
    void refreshMonitorChecks();
    // The pictures on show laid out again on the monitors there are now, when the desktop has a composed
    // bitmap or is to get one; the history is kept.
    void layOutAgain();
    // Whether an entry goes to the desktop as a composed bitmap: with more than one monitor, and for Fill;
    // one monitor and the older orientations keep the single picture's way, byte for byte.
    bool composes(Orientation orientation) const;
    // The composed apply of entry e, the current line's picture, beside the others on show.
    void applyComposed(const WallpaperEntry& e, bool mustApply);
    // The pictures for all monitors but the last, taken in turn before the cursor moves to the last one's;
    // returns the index for the last.
    int pickOtherPictures(int oldIndex, int count);
    void writeList();
    // refreshList1, then the line on show is made the current one again (without a click), so that the
    // engine goes on from it and the tray's commands still act on it.
    void refreshList1KeepingCursor();
    // The selected lines' texts, top to bottom.
    std::vector<std::string> selectedPaths();
    // The tracker runs on the list's folders when there are any and UseTracker is on.
    void startTracker();
    void stopTracker();
    void onTrackedFolders();
    void onSetDefaultSaveDir();

    AppState& app_;
    FileSystem& fs_;
    const AnsiCodePage& ansi_;
    RandomSource& random_;
    MainFormHost& host_;
    Desktop& desktop_;
    WallpaperPictures& pictures_;
    TrayIcon& tray_;

    WallpaperEntries entries_ = WallpaperEntries(1);
    TrackedFolders trackedFolders_ = TrackedFolders(1);
    bool hasTrackedFolders_ = false;
    bool trackerLoaded_ = false;
    std::string lastRemovedPath_;
    size_t longestPath_ = 0;
    int minuteCount_ = 0;
    int tenMinuteCount_ = 0;
    int previousIndex_ = 0;
    int currentIndex_ = 0;
    bool forceNextApply_ = false;
    bool busy_ = false;
    bool ignoreOrientationClick_ = false;
    bool panelBusy_ = false;
    Orientation lastAppliedOrientation_ = kCenter;
    std::string previewTag_;
    ScreenSize screen_;
    std::vector<ScreenRect> monitors_;
    std::vector<WallpaperEntry> others_;
    std::vector<WallpaperEntry> previousOthers_;
    bool composedOnShow_ = false;  // the bitmap on the desktop is a composed one
    bool switchedOthers_ = false;  // this switch took pictures for the other monitors
    bool othersChanged_ = false;   // and they differ from those on show
    MenuState menus_;
    bool unloaded_ = false;

    // A click raised while one is being handled (an unloadable picture removed and its neighbour
    // selected) waits for the first to finish, so that a run of bad files is walked in a loop and not
    // by recursion, however long the run.
    int clickDepth_ = 0;
    bool pendingClick_ = false;
};

}  // namespace tl
