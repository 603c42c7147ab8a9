#pragma once

#include <commctrl.h>
#include <windows.h>

#include <memory>
#include <string>
#include <vector>

#include "base/ui_win.h"
#include "base/window_win.h"
#include "lists/facts_panel_win.h"
#include "lists/list_box_win.h"
#include "manager/file_browser_win.h"
#include "manager/list_manager.h"
#include "manager/manager_layout.h"
#include "manager/registry_win.h"
#include "tracker/tracker_host.h"

namespace tl {

// frmManager: the window, its controls and menus. Its messages become calls on ListManager, which calls
// back through ManagerView.
class ManagerWindow : public Window, private ManagerView, private FileRemover, private TrackerHost {
  public:
    ManagerWindow();
    ~ManagerWindow() override;

    // Creates the window and its controls and loads the current list (the window's load).
    void load();

  protected:
    LRESULT onMessage(UINT msg, WPARAM wParam, LPARAM lParam) override;

  private:
    // The controls, by the design's names.
    struct Controls {
        HWND list1, command1, browseFrame, drive1, dir1, file1, fileCount, addFolder, addFiles;
        HWND conFrame, orType, removeFile, killFile, addOrType, dupeChecking;
        HWND prevFrame, preview, altPreview, label1, label2, label3, fsize, fdate, dimensions;
        HWND scanDir, kern, label4;
    };

    // Building (manager_window_win.cpp).
    void createControls();
    bool createPictures();
    void applyFonts();
    void layout();
    void place(HWND control, const LayoutRect& r) const;
    int dpi() const { return dpi_; }
    int px(int units) const { return scaleForDpi(units, dpi_); }
    // Lets List1 scroll sideways as far as its longest line reaches.
    void updateListExtent();

    // Messages (manager_form_win.cpp).
    void onCommand(int id, int code);
    void onDropFiles(HDROP drop);
    void onAnimatorTick();
    void onContextMenu(HWND from, POINT at);
    bool onClose();
    void onKillFile();
    void onFile1Click();
    void toggleBrowser();
    void finishPendingClose();

    // ManagerView.
    std::string caption() const override;
    void setCaption(const std::string& caption) override;
    void showBusy() override;
    void showIdle() override;
    void busyProgress() override;
    void setHourglass(bool on) override;
    void hideListAndFrames() override;
    void showListAndFrames() override;
    void showEntryControls() override;
    void hideEntryPanels() override;
    std::string dir1Path() const override { return browser_.path(); }
    void setDir1Path(const std::string& path) override { browser_.setPath(path); }
    std::string dir1Highlighted() const override { return browser_.highlighted(); }
    std::vector<DirEntry> file1SelectedFiles() const override { return browser_.selectedFiles(); }
    Orientation addOrientation() const override;
    void setAddOrientation(Orientation orientation) override;
    void showEntryOrientation(Orientation orientation) override;
    void setOptionChecks(const OptionChecks& checks) override;
    void hideHelpText() override;
    void showControlFrame() override;
    void hideBrowsePreview() override;
    bool showImageFacts(WallpaperEntry& entry) override;
    void clearPreview() override;
    void hidePreviewFrame() override;
    std::optional<std::string> chooseFileToOpen(const FileDialogRequest& request) override;
    std::optional<std::string> chooseFileToSave(const FileDialogRequest& request) override;
    void handFoldersToTracker(const TrackedFolders& folders) override;
    bool trackerLoaded() const override;
    void unloadTracker() override;
    void showChangerAndUnload() override { pendingClose_ = PendingClose::ShowChanger; }
    void unload() override { pendingClose_ = PendingClose::Unload; }
    void showAbout() override;

    // FileRemover.
    bool removeFileFromDisk(const std::string& path, bool recycle, bool useShell) override;

    // TrackerHost: while the manager edits a list with tracked folders, the tracker keeps it in step.
    void addPaper(const std::string& path, bool select, int16_t& result) override;
    void deletePaper(const std::string& path, bool reselect) override;
    void setTrackerList(const TrackedFolders& folders) override;

    Controls c_{};
    HWND toolTips_ = nullptr;
    unique_hmenu menuBar_;
    unique_hmenu contextMenu_;
    unique_hfont font_;
    HIMAGELIST ilsIcons_ = nullptr;
    std::vector<unique_hicon> buttonIcons_;
    int dpi_ = 96;

    Win32Ui ui_;
    Win32ClassesRegistry registry_;
    FileBrowser browser_;
    std::unique_ptr<Win32ListBox> list1_;
    FactsPanel panel_;     // the preview of a list entry
    FactsPanel altPanel_;  // the preview of a browsed file, in the same place
    std::unique_ptr<ListManager> manager_;

    bool browserShown_ = true;
    bool trackerLoadedHere_ = false;
    std::string browsedPath_;  // the browsed file on show in altPreview
    bool busyLook_ = false;
    bool kernShown_ = false;
    RECT normalRect_{};
    bool shrunk_ = false;
    int hourglass_ = 0;
    DWORD lastProgress_ = 0;
    int extentLines_ = -1;
    enum class PendingClose { None, ShowChanger, Unload } pendingClose_ = PendingClose::None;
};

}  // namespace tl
