// frmMain's window: hidden while the program lives in the tray. It owns the controls, the menus, the tray
// icon, the timer and the hot key, and turns each message into a call on frmMain's rules.
#include "changer/main_form_win.h"

#include <memory>
#include <string>
#include <utility>

#include "app/program_win.h"
#include "app/resource_ids.h"
#include "base/random.h"
#include "base/window_win.h"
#include "changer/about_window_win.h"
#include "changer/commands.h"
#include "changer/delay_dialog_win.h"
#include "changer/desktop_options_win.h"
#include "changer/desktop_win.h"
#include "changer/main_form.h"
#include "changer/menus_win.h"
#include "changer/pictures_win.h"
#include "changer/preview_window_win.h"
#include "changer/tray_win.h"
#include "display/resolution_menu_win.h"
#include "display/screen_resolution_win.h"
#include "hotkey/hotkey_form_win.h"
#include "hotkey/reg_hot_key_win.h"
#include "lists/facts_panel_win.h"
#include "lists/list_box_win.h"
#include "manager/manager_form_win.h"

namespace tl {

namespace {

constexpr const char* kMainClass = "TessalineMain";
constexpr UINT_PTR kMinuteTimerId = 1;
constexpr UINT kMinuteTimerInterval = 60000;
constexpr UINT_PTR kTransTimerId = 2;  // the desktop options' one-second timer

// The menu items that toggle a desktop option.
constexpr std::pair<int, OptionItem> kOptionCommands[] = {
    {mnuSmartSwitch, OptionItem::mnuSmartSwitch},
    {mnuAutoShowDesktop, OptionItem::mnuAutoShowDesktop},
    {mnuAutoShutdown, OptionItem::mnuAutoShutdown},
    {mnuOptUseActiveDesktop, OptionItem::mnuOptUseActiveDesktop},
    {mnuTrapIEWallpaper, OptionItem::mnuTrapIEWallpaper},
    {mnuTransIcon, OptionItem::mnuTransIcon},
    {mnuOptionsHideIcons, OptionItem::mnuOptionsHideIcons},
    {mnuTrayDisplayHideIcons, OptionItem::mnuTrayDisplayHideIcons},
};

// The preview's box on the panel, in 96-DPI units.
constexpr int kPreviewWidth = 200;
constexpr int kPreviewHeight = 150;

class MainWindow : public Window, private MainFormHost {
  public:
    MainWindow() = default;

    // Creates the hidden window and runs the load handler. The window stays only when the list has images.
    void load();
    frmMain* form() { return form_.get(); }

  protected:
    LRESULT onMessage(UINT msg, WPARAM wParam, LPARAM lParam) override;

  private:
    void createControls();
    void onCommand(int id, int code, HWND control);
    bool onOptionsCommand(int id);
    void onDestroy();
    void syncMenus();
    // Pops up one of frmMain's menus at the cursor, its check marks and captions brought up to date; the
    // chosen item arrives as WM_COMMAND. (The panel pops up menus_.options() and menus_.file() so too.)
    void popUpMenu(HMENU menu);

    // MainFormHost
    ListBoxView& list1() override { return *list1_; }
    void fillOrType() override;
    void setOrTypeIndex(int index) override;
    int orTypeIndex() const override;
    void setMinuteTimer(bool enabled) override;
    ScreenSize screenSize() override;
    double secondsSinceMidnight() override;
    void saveSettings() override { program().saveSettings(); }
    void beep() override { program().ui.beep(); }
    void menusChanged() override { menusDirty_ = true; }
    void buildResolutionMenu() override { resolutionMenu_.build(); }
    void popUpTrayMenu() override;
    void registerSwitchHotKey() override;
    void unloadForm() override;
    void showManager() override { tl::showManager(); }
    void loadTracker(const TrackedFolders&) override {}
    void allowTrackerUnload() override {}
    void unloadTracker() override {}
    void showDelayDialog() override;
    void applyMainMode(int16_t) override {}
    void preparePanel() override {}
    void showFactsLabels() override;
    bool livesInTray() override;
    void applyIconTextOptions() override { options_->load(kTransTimerId); }
    void makeIconTextTransparent(bool redraw) override { options_->makeIconTextTransparent(redraw); }

    HWND orType_ = nullptr;
    HWND labels_[3] = {};
    std::unique_ptr<Win32ListBox> list1_;
    FactsPanel facts_;
    Win32WallpaperPictures pictures_{facts_};
    MainMenus menus_;
    bool menusDirty_ = true;
    Win32Desktop desktop_;
    std::unique_ptr<Win32TrayIcon> tray_;
    std::unique_ptr<Win32DesktopOptions> options_;
    Win32DisplayPlatform displayPlatform_;
    ResolutionMenu resolutionMenu_{displayPlatform_, program().ui};
    Win32SwitchHotKey hotKey_;
    std::unique_ptr<frmMain> form_;
    UINT taskbarCreated_ = ::RegisterWindowMessageA("TaskbarCreated");
    bool timerRunning_ = false;
};

void MainWindow::load() {
    Program& p = program();
    registerClass(kMainClass, ::LoadIconA(p.instance, MAKEINTRESOURCEA(IDI_TESSALINE)));
    create(kMainClass, "Tessaline", WS_OVERLAPPEDWINDOW, 0, CW_USEDEFAULT, CW_USEDEFAULT, 480, 420);
    if (!hwnd()) {
        return;
    }
    formLoaded();
    createControls();
    tray_ = std::make_unique<Win32TrayIcon>(hwnd());
    // A wallpaper caught from the browser is to join the running list as added files do; that waits for
    // the list editing (addPaper), until then the saved copy stays off the list.
    options_ = std::make_unique<Win32DesktopOptions>(hwnd(), p.app.settings, p.fs, [](const std::string&) {});
    form_ = std::make_unique<frmMain>(p.app, p.fs, sharedRandom(), static_cast<MainFormHost&>(*this), desktop_,
                                      pictures_, *tray_);
    form_->onLoad();
}

void MainWindow::createControls() {
    HWND w = hwnd();
    const DWORD visible = WS_VISIBLE;
    HWND list = createControl(w, "LISTBOX", "",
                              visible | WS_VSCROLL | WS_HSCROLL | WS_BORDER | WS_TABSTOP | LBS_EXTENDEDSEL |
                                  LBS_NOTIFY | LBS_NOINTEGRALHEIGHT,
                              7, 7, 450, 200, idList1, WS_EX_CLIENTEDGE);
    list1_ = std::make_unique<Win32ListBox>(list);
    orType_ = createControl(w, "COMBOBOX", "", WS_VSCROLL | WS_TABSTOP | CBS_DROPDOWNLIST, 7, 215, 120, 120, idOrType);
    facts_.prevFrame = createControl(w, "BUTTON", "", BS_GROUPBOX, 135, 210, 322, 170, idPrevFrame);
    facts_.preview = createControl(w, "STATIC", "", SS_BITMAP, 245, 222, kPreviewWidth, kPreviewHeight, idPreview);
    const int dpi = dpiOf(w);
    facts_.previewDefaultWidth = scaleForDpi(kPreviewWidth, dpi);
    facts_.previewDefaultHeight = scaleForDpi(kPreviewHeight, dpi);
    facts_.keepPicture = true;  // the applier saves the decoded picture as its bitmap
    labels_[0] = createControl(w, "STATIC", "Filesize:", 0, 142, 225, 95, 14, idLabel1);
    facts_.fsize = createControl(w, "STATIC", "", visible, 142, 240, 95, 14, idFsize);
    labels_[1] = createControl(w, "STATIC", "Date:", 0, 142, 260, 95, 14, idLabel2);
    facts_.fdate = createControl(w, "STATIC", "", visible, 142, 275, 95, 28, idFdate);
    labels_[2] = createControl(w, "STATIC", "Dimensions:", 0, 142, 310, 95, 14, idLabel3);
    facts_.dimensions = createControl(w, "STATIC", "", visible, 142, 325, 95, 28, idDimensions);
}

LRESULT MainWindow::onMessage(UINT msg, WPARAM wParam, LPARAM lParam) {
    if (taskbarCreated_ != 0 && msg == taskbarCreated_) {
        if (form_) {
            form_->onTaskbarCreated();
        }
        return 0;
    }
    switch (msg) {
        case kTrayCallbackMessage:
            // The tray's callback carries the icon's id and the mouse message; a real mouse move over the
            // panel carries key flags and a position, and is not a tray event.
            if (form_ && wParam == kTrayIconId && HIWORD(lParam) == 0) {
                form_->onTrayMouse(static_cast<long>(LOWORD(lParam)));
            }
            break;
        case WM_TIMER:
            if (wParam == kMinuteTimerId && form_) {
                form_->onMinuteTimer();
            } else if (wParam == kTransTimerId && options_) {
                options_->onTransTimer();
            }
            return 0;
        case WM_COMMAND:
            onCommand(LOWORD(wParam), HIWORD(wParam), reinterpret_cast<HWND>(lParam));
            return 0;
        case WM_DISPLAYCHANGE:
            if (form_) {
                form_->onDisplayChange();
            }
            break;
        case WM_CLOSE:
            unloadForm();
            return 0;
        case WM_QUERYENDSESSION:
            // Everything is written now: the session may end without another message reaching us.
            if (form_) {
                form_->unload();
            }
            return TRUE;
        case WM_ENDSESSION:
            if (form_) {
                if (wParam) {
                    unloadForm();
                } else {
                    form_->resumeAfterCancelledShutdown();
                }
            }
            return 0;
        case WM_DESTROY:
            onDestroy();
            return 0;
        default:
            break;
    }
    return defaultProc(msg, wParam, lParam);
}

void MainWindow::onCommand(int id, int code, HWND control) {
    if (control != nullptr) {
        if (id == idList1 && code == LBN_SELCHANGE && form_) {
            form_->onList1Click();
        } else if (id == idOrType && code == CBN_SELCHANGE && form_) {
            form_->onOrTypeClick();
        }
        return;
    }
    if (resolutionMenu_.onCommand(static_cast<UINT>(id))) {
        return;
    }
    if (form_ && form_->onMenuCommand(id)) {
        return;
    }
    if (onOptionsCommand(id)) {
        return;
    }
    switch (id) {
        case mnuTrayDisplayProps: {
            // The display control panel, in a normal window; a failure to start it is not reported.
            char command[] = "rundll32.exe shell32.dll,Control_RunDLL desk.cpl";
            STARTUPINFOA si{};
            si.cb = sizeof si;
            si.dwFlags = STARTF_USESHOWWINDOW;
            si.wShowWindow = SW_SHOWNORMAL;
            PROCESS_INFORMATION pi{};
            if (::CreateProcessA(nullptr, command, nullptr, nullptr, FALSE, 0, nullptr, nullptr, &si, &pi)) {
                ::CloseHandle(pi.hThread);
                ::CloseHandle(pi.hProcess);
            }
            break;
        }
        case mnuAbout:
        case mnuTrayAbout:
            showAbout(hwnd());
            break;
        case mnuPreview:
            if (form_ && list1_->listIndex() >= 0) {
                showPreview(list1_->text(list1_->listIndex()), program().app.settings);
            }
            break;
        case mnuOptionsChangeHotkey:
            // The new key is registered at the next start.
            showHotkeyDialog(hwnd());
            break;
        default:
            // Still to come: the panel (mnuShowPanel, mnuSetDefaultSaveDir), the list editing (mnuDelete,
            // mnuTrayDelete) and the tracker window (mnuTrackedFolders). mnuRename and mnuIconTextColour do
            // nothing, on purpose.
            break;
    }
}

bool MainWindow::onOptionsCommand(int id) {
    for (const auto& [command, item] : kOptionCommands) {
        if (id == command) {
            options_->toggleOption(item);
            return true;
        }
    }
    switch (id) {
        case mnuDisplayDisableSS:
            options_->disableScreenSaver();
            return true;
        case mnuDisplayEnableSS:
            options_->enableScreenSaver();
            return true;
        case mnuStartSaver:
            options_->startScreenSaver();
            return true;
        default:
            return false;
    }
}

void MainWindow::onDestroy() {
    if (form_) {
        form_->unload();
    }
    setMinuteTimer(false);
    ::KillTimer(hwnd(), kTransTimerId);
    hotKey_.remove();
    facts_.clearPreview();
    facts_.releasePicture();
    formUnloaded();
}

void MainWindow::unloadForm() {
    if (!hwnd()) {
        return;
    }
    if (form_) {
        form_->unload();
    }
    ::DestroyWindow(hwnd());
}

void MainWindow::syncMenus() {
    if (menusDirty_ && form_) {
        menus_.apply(form_->menus());
        menusDirty_ = false;
    }
    // The desktop options keep their own check marks: the settings they toggle, and the icons' state.
    const auto commandOf = [](OptionItem item) -> UINT {
        for (const auto& [command, option] : kOptionCommands) {
            if (option == item) {
                return static_cast<UINT>(command);
            }
        }
        return 0;
    };
    for (HMENU menu : {menus_.tray(), menus_.options()}) {
        options_->setCheckMarks(menu, commandOf);
    }
}

void MainWindow::showDelayDialog() {
    Program& p = program();
    tl::showDelayDialog(hwnd(), p.app.settings, p.decimalSeparator);
}

void MainWindow::popUpTrayMenu() {
    if (HMENU res = menus_.submenu(mnuChangeRes)) {
        resolutionMenu_.fill(res, hwnd());
    }
    popUpMenu(menus_.tray());
}

void MainWindow::popUpMenu(HMENU menu) {
    syncMenus();
    POINT at{};
    ::GetCursorPos(&at);
    // Without the foreground the menu would not close when the user clicks elsewhere, and the message
    // after it makes the second pop-up work as well.
    ::SetForegroundWindow(hwnd());
    ::TrackPopupMenuEx(menu, TPM_LEFTALIGN | TPM_RIGHTBUTTON, at.x, at.y, hwnd(), nullptr);
    ::PostMessageA(hwnd(), WM_NULL, 0, 0);
}

void MainWindow::registerSwitchHotKey() {
    hotKey_.registerFromSettings(hwnd(), program().app.settings, [this] {
        if (form_) {
            form_->onSwitchHotKey();
        }
    });
}

void MainWindow::fillOrType() {
    ::SendMessageA(orType_, CB_RESETCONTENT, 0, 0);
    for (Orientation code : {kCenter, kTile, kStretch, kScale}) {
        ::SendMessageA(orType_, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(orientationName(code)));
    }
}

void MainWindow::setOrTypeIndex(int index) {
    ::SendMessageA(orType_, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
}

int MainWindow::orTypeIndex() const {
    return static_cast<int>(::SendMessageA(orType_, CB_GETCURSEL, 0, 0));
}

void MainWindow::setMinuteTimer(bool enabled) {
    if (enabled && !timerRunning_ && hwnd()) {
        timerRunning_ = ::SetTimer(hwnd(), kMinuteTimerId, kMinuteTimerInterval, nullptr) != 0;
    } else if (!enabled && timerRunning_) {
        ::KillTimer(hwnd(), kMinuteTimerId);
        timerRunning_ = false;
    }
}

ScreenSize MainWindow::screenSize() {
    return {::GetSystemMetrics(SM_CXSCREEN), ::GetSystemMetrics(SM_CYSCREEN)};
}

double MainWindow::secondsSinceMidnight() {
    SYSTEMTIME t{};
    ::GetLocalTime(&t);
    return t.wHour * 3600.0 + t.wMinute * 60.0 + t.wSecond + t.wMilliseconds / 1000.0;
}

void MainWindow::showFactsLabels() {
    ::ShowWindow(orType_, SW_SHOWNA);
    for (HWND label : labels_) {
        ::ShowWindow(label, SW_SHOWNA);
    }
}

bool MainWindow::livesInTray() {
    return !::IsWindowVisible(hwnd()) || ::IsIconic(hwnd());
}

std::unique_ptr<MainWindow> mainWindow;

}  // namespace

void loadMainForm() {
    if (!mainWindow) {
        mainWindow = std::make_unique<MainWindow>();
    }
    if (!mainWindow->isCreated()) {
        mainWindow->load();
    }
}

frmMain* loadedMainForm() {
    return mainWindow && mainWindow->isCreated() ? mainWindow->form() : nullptr;
}

HWND mainFormWindow() {
    return mainWindow ? mainWindow->hwnd() : nullptr;
}

}  // namespace tl
