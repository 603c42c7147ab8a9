#include "tracker/tracker_form_win.h"

#include <commctrl.h>

#include <memory>
#include <optional>

#include "app/program_win.h"
#include "app/resource_ids.h"
#include "base/folder_dialog_win.h"
#include "base/window_win.h"
#include "lists/list_box_win.h"
#include "tracker/directory_changes.h"
#include "tracker/directory_watcher_win.h"
#include "tracker/flash_counter.h"
#include "tracker/folder_tracker.h"
#include "tracker/shell_notification_win.h"
#include "tracker/tracker_host.h"

namespace tl {

namespace {

constexpr const char* kTrackerClass = "TessalineTracker";
constexpr const char* kCaption = "Folder Tracker";
constexpr const char* kBrowseCaption = "Select a folder you want to track";
constexpr const char* kBrowseInstruction = "Select a folder:";

// Control and timer identifiers, in the tracker's range.
enum : int {
    kFrame1 = 3000,
    kList1 = 3001,
    kCmdAdd = 3002,
    kCmdRemove = 3003,
    kCommand1 = 3004,
    kCmdCancel = 3005,
    kLabel1 = 3006,
    kTmrFlashMe = 3010,
};

// Changes seen by the folder watches wait in their queue until this message comes.
constexpr UINT kWatcherMessage = WM_APP + 1;
constexpr UINT kDpiChanged = 0x02E0;  // WM_DPICHANGED, newer than the headers' target version

// The window as designed at 96 DPI.
constexpr int kClientWidth = 360;
constexpr int kClientHeight = 286;

struct ControlDesign {
    int id;
    const char* className;
    const char* text;
    const char* toolTip;
    DWORD style;
    int x, y, width, height;
};

constexpr ControlDesign kControls[] = {
    {kFrame1, "BUTTON", "Tracked Folders", nullptr, BS_GROUPBOX, 8, 6, 344, 178},
    {kList1, "LISTBOX", "", "Folders currently being tracked",
     WS_BORDER | WS_VSCROLL | WS_HSCROLL | WS_TABSTOP | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT, 18, 26, 324, 114},
    {kCmdAdd, "BUTTON", "&Add", "Adds currently selected folder", BS_PUSHBUTTON | WS_TABSTOP, 18, 148, 80, 26},
    {kCmdRemove, "BUTTON", "&Remove", "Removes a folder from the list", BS_PUSHBUTTON | WS_TABSTOP, 104, 148, 80, 26},
    {kLabel1, "STATIC",
     "Changes made to the contents of tracked folders (including sub-folders) while TL is running will "
     "automatically update the list file. In this version, TL will only respond to file move, copy, delete "
     "and rename actions.",
     nullptr, SS_LEFT, 10, 192, 340, 56},
    // The design gave the save button no caption of its own; "OK" is what a user looks for beside Cancel.
    {kCommand1, "BUTTON", "OK", "Save changes and close window", BS_DEFPUSHBUTTON | WS_TABSTOP, 190, 252, 78, 26},
    {kCmdCancel, "BUTTON", "&Cancel", nullptr, BS_PUSHBUTTON | WS_TABSTOP, 274, 252, 78, 26},
};

constexpr DWORD kWindowStyle = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX;

SIZE windowSizeFor(int dpi) {
    RECT r{0, 0, scaleForDpi(kClientWidth, dpi), scaleForDpi(kClientHeight, dpi)};
    ::AdjustWindowRectEx(&r, kWindowStyle, FALSE, 0);
    return {r.right - r.left, r.bottom - r.top};
}

class TrackerForm : public Window {
  public:
    explicit TrackerForm(TrackerHost& host) : tracker_(list1_, host, program().fs, program().ui) {}

    FolderTracker& tracker() { return tracker_; }

    bool load() {
        registerClass(kTrackerClass, ::LoadIconW(program().instance, MAKEINTRESOURCEW(IDI_TESSALINE)));
        const SIZE size = windowSizeFor(dpiOf(nullptr));
        create(kTrackerClass, kCaption, kWindowStyle, 0, CW_USEDEFAULT, CW_USEDEFAULT, size.cx, size.cy);
        if (!hwnd()) {
            return false;
        }
        createControls();
        placeInWorkArea();
        onLoad();
        return true;
    }

    void LoadList(const TrackedFolders& folders) {
        tracker_.LoadList(folders);
        rearmWatchers();
    }

    void show() {
        ::ShowWindow(hwnd(), SW_SHOWNORMAL);
        ::SetForegroundWindow(hwnd());
        flashInterval_ = FlashCounter::kRestingIntervalMs;
        ::SetTimer(hwnd(), kTmrFlashMe, flashInterval_, nullptr);
    }

    void unload() {
        tracker_.setAllowUnload(true);
        if (hwnd()) {
            ::DestroyWindow(hwnd());
        }
    }

  protected:
    LRESULT onMessage(UINT msg, WPARAM wParam, LPARAM lParam) override {
        switch (msg) {
            case WM_COMMAND:
                onCommand(LOWORD(wParam));
                return 0;
            case WM_CLOSE:
                onClose();
                return 0;
            case WM_TIMER:
                if (wParam == kTmrFlashMe) {
                    onFlashTick();
                    return 0;
                }
                break;
            case kShellNotifyMessage:
                onShellNotification(wParam, lParam);
                break;  // passed on, as any notification is
            case kWatcherMessage:
                onWatcherChanges();
                return 0;
            case kDpiChanged:
                onDpiChanged(HIWORD(wParam), reinterpret_cast<const RECT*>(lParam));
                return 0;
            case WM_DESTROY:
                onUnload();
                break;
            default:
                break;
        }
        return defaultProc(msg, wParam, lParam);
    }

  private:
    void createControls() {
        toolTips_ = createToolTips(hwnd());
        for (const ControlDesign& c : kControls) {
            HWND control =
                createControl(hwnd(), c.className, c.text, c.style | WS_VISIBLE, c.x, c.y, c.width, c.height, c.id);
            if (c.toolTip) {
                addToolTip(toolTips_, control, c.toolTip);
            }
        }
        list1_.attach(::GetDlgItem(hwnd(), kList1));
        list1_.keepExtentFitted(true);
        applyDpi(dpiOf(hwnd()));
    }

    // Centred in the work area, at the size for the DPI of the monitor the window landed on.
    void placeInWorkArea() {
        const SIZE size = windowSizeFor(dpiOf(hwnd()));
        RECT work{};
        if (!::SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0)) {
            work = {0, 0, ::GetSystemMetrics(SM_CXSCREEN), ::GetSystemMetrics(SM_CYSCREEN)};
        }
        ::SetWindowPos(hwnd(), nullptr, work.left + (work.right - work.left - size.cx) / 2,
                       work.top + (work.bottom - work.top - size.cy) / 2, size.cx, size.cy,
                       SWP_NOZORDER | SWP_NOACTIVATE);
    }

    // Places the controls and sets the Tahoma font for the window's DPI.
    void applyDpi(int dpi) {
        for (const ControlDesign& c : kControls) {
            ::MoveWindow(::GetDlgItem(hwnd(), c.id), scaleForDpi(c.x, dpi), scaleForDpi(c.y, dpi),
                         scaleForDpi(c.width, dpi), scaleForDpi(c.height, dpi), FALSE);
        }
        unique_hfont font = createPointFont("Tahoma", 8, dpi);
        setFontOnChildren(hwnd(), font.get());
        font_ = std::move(font);
        list1_.fitExtent();
        ::InvalidateRect(hwnd(), nullptr, TRUE);
    }

    void onLoad() {
        tracker_.setIgnoreEvents(false);
        tracker_.setAllowUnload(true);
        watcher_ = std::make_unique<DirectoryWatcher>(hwnd(), kWatcherMessage);
        // Without the shell's notifications the folder watches still see every program's changes.
        notification_.RegisterNotify(hwnd());
    }

    void onUnload() {
        ::KillTimer(hwnd(), kTmrFlashMe);
        notification_.UnregisterNotify();
        watcher_.reset();
    }

    void onCommand(int id) {
        switch (id) {
            case kCmdAdd:
                onAdd();
                break;
            case kCmdRemove:
                tracker_.removeSelectedFolder();
                rearmWatchers();
                break;
            case kCommand1:
            case IDOK:
                hideAndSave();
                break;
            case kCmdCancel:
            case IDCANCEL:
                // The list box keeps what was changed; nothing is written.
                ::ShowWindow(hwnd(), SW_HIDE);
                break;
            default:
                break;
        }
    }

    // The control menu's close is refused: the tracker must stay loaded to keep receiving changes.
    void onClose() { hideAndSave(); }

    void hideAndSave() {
        ::ShowWindow(hwnd(), SW_HIDE);
        tracker_.saveFolders();
        rearmWatchers();
    }

    void onAdd() {
        const AppState& app = program().app;
        const std::string start = tracker_.browseStartFolder(app.settings.WallpaperDirectory, app.programDir);
        const std::optional<std::string> path = browseForFolder(hwnd(), kBrowseCaption, kBrowseInstruction, start);
        if (path && tracker_.addChosenFolder(*path)) {
            rearmWatchers();
        }
    }

    void onFlashTick() {
        const FlashCounter::Tick tick = flash_.tick(flashInterval_);
        ::FlashWindow(hwnd(), TRUE);
        if (!tick.enabled) {
            ::KillTimer(hwnd(), kTmrFlashMe);
        } else if (tick.interval != flashInterval_) {
            ::SetTimer(hwnd(), kTmrFlashMe, tick.interval, nullptr);
        }
        flashInterval_ = tick.interval;
    }

    void onShellNotification(WPARAM wParam, LPARAM lParam) {
        const uint32_t event = shellEventOf(lParam);
        // Looked at before the items, so that the dialog manager's DM_SETDEFID is never read as one.
        if (tracker_.ignoreEvents() || !isTrackedEvent(event) || wParam == 0) {
            return;
        }
        tracker_.NotificationReceipt(readShellItems(wParam, event), ChangeSource::Shell, ::GetTickCount());
    }

    void onWatcherChanges() {
        if (!watcher_) {
            return;
        }
        for (const ShellChange& change : watcher_->takeChanges()) {
            tracker_.NotificationReceipt(change, ChangeSource::Watcher, ::GetTickCount());
        }
    }

    void onDpiChanged(int dpi, const RECT* suggested) {
        if (suggested) {
            ::SetWindowPos(hwnd(), nullptr, suggested->left, suggested->top, suggested->right - suggested->left,
                           suggested->bottom - suggested->top, SWP_NOZORDER | SWP_NOACTIVATE);
        }
        applyDpi(dpi);
    }

    void rearmWatchers() {
        if (watcher_) {
            watcher_->watch(foldersToWatch(tracker_.GetList()));
        }
    }

    Win32ListBox list1_;
    FolderTracker tracker_;
    ShellNotification notification_;
    std::unique_ptr<DirectoryWatcher> watcher_;
    unique_hfont font_;
    HWND toolTips_ = nullptr;
    FlashCounter flash_;
    unsigned flashInterval_ = FlashCounter::kRestingIntervalMs;
};

std::unique_ptr<TrackerForm> trackerForm;

TrackerForm* loadedForm() {
    return trackerForm && trackerForm->isCreated() ? trackerForm.get() : nullptr;
}

TrackerForm& loadForm(TrackerHost& host) {
    if (TrackerForm* form = loadedForm()) {
        form->tracker().setHost(host);
        return *form;
    }
    trackerForm = std::make_unique<TrackerForm>(host);
    trackerForm->load();
    return *trackerForm;
}

}  // namespace

void loadTracker(TrackerHost& host, const TrackedFolders& folders) {
    TrackerForm& form = loadForm(host);
    if (form.isCreated()) {
        form.LoadList(folders);
    }
}

void showTracker(TrackerHost& host) {
    TrackerForm& form = loadForm(host);
    if (form.isCreated()) {
        form.show();
    }
}

bool isTrackerLoaded() {
    return loadedForm() != nullptr;
}

TrackedFolders trackerList() {
    TrackerForm* form = loadedForm();
    return form ? form->tracker().GetList() : TrackedFolders{};
}

void setTrackerAllowUnload(bool allow) {
    if (TrackerForm* form = loadedForm()) {
        form->tracker().setAllowUnload(allow);
    }
}

void setTrackerIgnoreEvents(bool ignore) {
    if (TrackerForm* form = loadedForm()) {
        form->tracker().setIgnoreEvents(ignore);
    }
}

void unloadTracker() {
    if (trackerForm) {
        trackerForm->unload();
        trackerForm.reset();
    }
}

HWND trackerWindow() {
    TrackerForm* form = loadedForm();
    return form ? form->hwnd() : nullptr;
}

}  // namespace tl
