// frmMain's window: hidden while the program lives in the tray. It owns the controls, the menus, the tray
// icon, the timer and the hot key, and turns each message into a call on frmMain's rules.
#include "changer/main_form_win.h"

#include <shellapi.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "app/program_win.h"
#include "app/resource_ids.h"
#include "base/folder_dialog_win.h"
#include "base/random.h"
#include "base/utf8_win.h"
#include "base/window_win.h"
#include "changer/about_window_win.h"
#include "changer/commands.h"
#include "changer/delay_dialog_win.h"
#include "changer/desktop_options_win.h"
#include "changer/desktop_win.h"
#include "changer/main_form.h"
#include "changer/menus_win.h"
#include "changer/monitors_win.h"
#include "changer/panel_win.h"
#include "changer/pictures_win.h"
#include "changer/preview_window_win.h"
#include "changer/tray_win.h"
#include "display/resolution_menu_win.h"
#include "display/screen_resolution_win.h"
#include "hotkey/hotkey_form_win.h"
#include "hotkey/reg_hot_key_win.h"
#include "lists/image_info.h"
#include "lists/list_tools_win.h"
#include "manager/manager_form_win.h"
#include "tracker/tracker_form_win.h"
#include "version.h"

namespace tl {

namespace {

constexpr const char* kMainClass = "TessalineMain";
constexpr UINT_PTR kMinuteTimerId = 1;
constexpr UINT kMinuteTimerInterval = 60000;
constexpr UINT_PTR kTransTimerId = 2;  // the desktop options' one-second timer
constexpr UINT kDpiChanged = 0x02E0;   // WM_DPICHANGED, newer than the headers' target version

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

// The modifier keys held now, as the panel's buttons read them.
int shiftKeys() {
    return (::GetKeyState(VK_SHIFT) < 0 ? kShiftKey : 0) | (::GetKeyState(VK_CONTROL) < 0 ? kCtrlKey : 0) |
           (::GetKeyState(VK_MENU) < 0 ? kAltKey : 0);
}

class MainWindow : public Window, private MainFormHost {
  public:
    MainWindow() = default;

    // Creates the hidden window and runs the load handler. The window stays only when the list has images.
    void load();
    frmMain* form() { return form_.get(); }

  protected:
    LRESULT onMessage(UINT msg, WPARAM wParam, LPARAM lParam) override;

  private:
    void onCommand(int id, int code, HWND control);
    bool onOptionsCommand(int id);
    void onDestroy();
    // Form_Resize, whenever the panel is shown, hidden, minimised, restored or sized. A minimised panel
    // leaves the taskbar too: the program is then in the tray alone.
    void onWindowPosChanged();
    void onContextMenu(HWND from, LPARAM at);
    void showPanel();
    void runDisplayProperties();
    void syncMenus();
    // Pops up one of frmMain's menus at a point (the cursor when none is given), its check marks and
    // captions brought up to date; the chosen item arrives as WM_COMMAND.
    void popUpMenu(HMENU menu, std::optional<POINT> at = std::nullopt);
    // The same under a button, or over it where the screen ends: never on it, or under the pointer.
    void popUpMenuAt(HMENU menu, RECT button);

    // MainFormHost
    ListBoxView& list1() override { return panel_.list1(); }
    void fillOrType() override;
    void setOrTypeIndex(int index) override;
    int orTypeIndex() const override;
    void setMinuteTimer(bool enabled) override;
    ScreenSize screenSize() override;
    std::vector<ScreenRect> monitors() override { return displayMonitors(); }
    double secondsSinceMidnight() override;
    void saveSettings() override { program().saveSettings(); }
    void beep() override { program().ui.beep(); }
    bool removeFileFromDisk(const std::string& path, bool recycle, bool useShell) override {
        return tl::removeFileFromDisk(path, recycle, useShell, hwnd());
    }
    void menusChanged() override { menusDirty_ = true; }
    void buildResolutionMenu() override { resolutionMenu_.build(); }
    void popUpTrayMenu() override;
    void registerSwitchHotKey() override;
    void unloadForm() override;
    void showManager() override { tl::showManager(); }
    void loadTracker(const TrackedFolders& folders) override { tl::loadTracker(*form_, folders); }
    void allowTrackerUnload() override { setTrackerAllowUnload(true); }
    void unloadTracker() override { tl::unloadTracker(); }
    void showTracker() override { tl::showTracker(*form_); }
    void setTrackerIgnoreEvents(bool ignore) override { tl::setTrackerIgnoreEvents(ignore); }
    void showDelayDialog() override;
    // The panel is hidden at load whatever its stored state, and "Show panel..." always opens it in the
    // normal state: the state read back changes nothing that shows.
    void applyMainMode(int16_t) override {}
    void preparePanel() override { panel_.layout(); }
    void showFactsLabels() override { panel_.showFactsLabels(); }
    bool livesInTray() override;
    void layoutPanel() override { panel_.layout(); }
    void openWebPage() override;
    void popUpOptionsMenu() override { popUpMenuAt(menus_.options(), panel_.buttonRect(PanelButton::Image4)); }
    void showPreviewWindow(const std::string& path) override { showPreview(path, program().app.settings); }
    std::optional<std::string> browseForFolder(const std::string& title,
                                               const std::string& prompt,
                                               const std::string& start) override {
        return tl::browseForFolder(hwnd(), title, prompt, start);
    }
    std::string currentDirectory() override;
    void applyIconTextOptions() override { options_->load(kTransTimerId); }
    void makeIconTextTransparent(bool redraw) override { options_->makeIconTextTransparent(redraw); }

    MainPanel panel_;
    Win32WallpaperPictures pictures_{panel_.facts()};
    MainMenus menus_;
    bool menusDirty_ = true;
    Win32Desktop desktop_;
    std::unique_ptr<Win32TrayIcon> tray_;
    std::unique_ptr<Win32DesktopOptions> options_;
    Win32DisplayPlatform displayPlatform_;
    ResolutionMenu resolutionMenu_{displayPlatform_, program().ui};
    Win32SwitchHotKey hotKey_;
    std::unique_ptr<frmMain> form_;
    UINT taskbarCreated_ = ::RegisterWindowMessageW(L"TaskbarCreated");
    bool timerRunning_ = false;

    // What Form_Resize last saw, so that each change reaches it once.
    struct Shown {
        bool onPanel;
        FormWindowState state;
        LONG width, height;
        bool operator==(const Shown&) const = default;
    };
    std::optional<Shown> lastShown_;
};

void MainWindow::load() {
    Program& p = program();
    registerClass(kMainClass, ::LoadIconW(p.instance, MAKEINTRESOURCEW(IDI_TESSALINE)));
    const SIZE size = panel_.windowSize(dpiOf(nullptr), false);
    lastShown_.reset();
    create(kMainClass, "Tessaline", WS_OVERLAPPEDWINDOW, 0, CW_USEDEFAULT, CW_USEDEFAULT, size.cx, size.cy);
    if (!hwnd()) {
        return;
    }
    formLoaded();
    // "Show panel..." opens it in the middle of the work area.
    RECT work{};
    if (::SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0)) {
        ::SetWindowPos(hwnd(), nullptr, work.left + (work.right - work.left - size.cx) / 2,
                       work.top + (work.bottom - work.top - size.cy) / 2, 0, 0,
                       SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    }
    panel_.create(hwnd());
    pictures_.setFrameHandlers([this] { panel_.factsShown(); }, [this] { panel_.factsHidden(); });
    tray_ = std::make_unique<Win32TrayIcon>(hwnd());
    // A wallpaper caught from the browser joins the running list as the one on show: the program then
    // applies it itself, which rewrites the desktop's "Wallpaper" value and so ends the catch.
    options_ = std::make_unique<Win32DesktopOptions>(hwnd(), p.app.settings, p.fs, [this](const std::string& path) {
        if (!form_) {
            return;
        }
        int16_t slot = 0;
        try {
            form_->addPaper(path, true, slot);
        } catch (const ImageReadError&) {
            // The copy can't be read: it stays on disk, off the list.
        }
    });
    form_ = std::make_unique<frmMain>(p.app, p.fs, p.ansi, sharedRandom(), static_cast<MainFormHost&>(*this), desktop_,
                                      pictures_, *tray_);
    form_->onLoad();
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
        case WM_SHOWWINDOW:
            if (wParam) {
                panel_.showing();
            }
            break;
        case WM_DISPLAYCHANGE:
            if (form_) {
                form_->onDisplayChange();
            }
            break;
        case WM_WINDOWPOSCHANGED: {
            const LRESULT result = defaultProc(msg, wParam, lParam);
            onWindowPosChanged();
            return result;
        }
        case WM_GETMINMAXINFO: {
            const SIZE least = panel_.windowSize(dpiOf(hwnd()), true);
            reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = {least.cx, least.cy};
            return 0;
        }
        case kDpiChanged: {
            const RECT* suggested = reinterpret_cast<const RECT*>(lParam);
            ::SetWindowPos(hwnd(), nullptr, suggested->left, suggested->top, suggested->right - suggested->left,
                           suggested->bottom - suggested->top, SWP_NOZORDER | SWP_NOACTIVATE);
            panel_.setDpi(HIWORD(wParam));
            return 0;
        }
        case WM_CONTEXTMENU:
            onContextMenu(reinterpret_cast<HWND>(wParam), lParam);
            return 0;
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
        if (!form_) {
            return;
        }
        if (id == idList1 && code == LBN_SELCHANGE) {
            form_->onList1Click();
        } else if (id == idOrType && code == CBN_SELCHANGE) {
            form_->onOrTypeClick();
        } else if (id == idPreview && code == STN_CLICKED) {
            form_->onPanelButton(PanelButton::Preview, shiftKeys());
        } else if (const auto button = panel_.buttonOf(id); button && code == BN_CLICKED) {
            form_->onPanelButton(*button, shiftKeys());
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
        case mnuTrayDisplayProps:
            runDisplayProperties();
            break;
        case mnuShowPanel:
            showPanel();
            break;
        case mnuAbout:
        case mnuTrayAbout:
            showAbout(hwnd());
            break;
        case mnuPreview:
            if (panel_.list1().listIndex() >= 0) {
                showPreview(panel_.list1().text(panel_.list1().listIndex()), program().app.settings);
            }
            break;
        case mnuOptionsChangeHotkey:
            // The new key is registered at the next start.
            showHotkeyDialog(hwnd());
            break;
        default:
            // mnuRename and mnuIconTextColour do nothing, on purpose.
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
    panel_.facts().clearPreview();
    panel_.facts().releasePicture();
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

void MainWindow::popUpMenu(HMENU menu, std::optional<POINT> at) {
    syncMenus();
    POINT where{};
    if (at) {
        where = *at;
    } else {
        ::GetCursorPos(&where);
    }
    // Without the foreground the menu would not close when the user clicks elsewhere, and the message
    // after it makes the second pop-up work as well.
    ::SetForegroundWindow(hwnd());
    ::TrackPopupMenuEx(menu, TPM_LEFTALIGN | TPM_TOPALIGN | TPM_RIGHTBUTTON, where.x, where.y, hwnd(), nullptr);
    ::PostMessageW(hwnd(), WM_NULL, 0, 0);
}

void MainWindow::popUpMenuAt(HMENU menu, RECT button) {
    syncMenus();
    // Opened towards the larger room, under or over the button. The exclusion rectangle keeps it off the
    // button where the system honours it (Wine does not).
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    ::GetMonitorInfoW(::MonitorFromRect(&button, MONITOR_DEFAULTTONEAREST), &monitor);
    const bool upwards = button.top - monitor.rcWork.top > monitor.rcWork.bottom - button.bottom;
    TPMPARAMS keepClear{};
    keepClear.cbSize = sizeof keepClear;
    keepClear.rcExclude = button;
    ::SetForegroundWindow(hwnd());
    ::TrackPopupMenuEx(menu,
                       TPM_LEFTALIGN | TPM_VERTICAL | TPM_RIGHTBUTTON | (upwards ? TPM_BOTTOMALIGN : TPM_TOPALIGN),
                       button.left, upwards ? button.top : button.bottom, hwnd(), &keepClear);
    ::PostMessageW(hwnd(), WM_NULL, 0, 0);
}

void MainWindow::onWindowPosChanged() {
    if (!form_ || form_->isUnloaded()) {
        return;
    }
    const bool visible = ::IsWindowVisible(hwnd()) != FALSE;
    const FormWindowState state = ::IsIconic(hwnd())   ? FormWindowState::Minimized
                                  : ::IsZoomed(hwnd()) ? FormWindowState::Maximized
                                                       : FormWindowState::Normal;
    RECT client{};
    ::GetClientRect(hwnd(), &client);
    const Shown now{visible && state != FormWindowState::Minimized, state, client.right, client.bottom};
    if (lastShown_ == now) {
        return;
    }
    lastShown_ = now;
    form_->onFormResize(visible, state);
    if (visible && state == FormWindowState::Minimized) {
        ::ShowWindow(hwnd(), SW_HIDE);
    }
}

void MainWindow::showPanel() {
    // Restored from the tray or from the minimised state alike; Form_Resize then takes the icon away.
    ::ShowWindow(hwnd(), SW_RESTORE);
    ::SetForegroundWindow(hwnd());
}

void MainWindow::onContextMenu(HWND from, LPARAM at) {
    if (from != panel_.list1().hwnd()) {
        return;
    }
    std::optional<POINT> where;
    if (at != -1) {
        where = POINT{static_cast<short>(LOWORD(at)), static_cast<short>(HIWORD(at))};
    } else {
        // From the keyboard: at the list's top-left corner.
        RECT r{};
        ::GetWindowRect(from, &r);
        where = POINT{r.left, r.top};
    }
    popUpMenu(menus_.file(), where);
}

void MainWindow::runDisplayProperties() {
    // The display control panel, in a normal window; a failure to start it is not reported.
    wchar_t command[] = L"rundll32.exe shell32.dll,Control_RunDLL desk.cpl";
    STARTUPINFOW si{};
    si.cb = sizeof si;
    si.dwFlags = STARTF_USESHOWWINDOW;
    si.wShowWindow = SW_SHOWNORMAL;
    PROCESS_INFORMATION pi{};
    if (::CreateProcessW(nullptr, command, nullptr, nullptr, FALSE, 0, nullptr, nullptr, &si, &pi)) {
        ::CloseHandle(pi.hThread);
        ::CloseHandle(pi.hProcess);
    }
}

void MainWindow::openWebPage() {
    ::ShellExecuteW(hwnd(), L"open", widen(TL_WEB_PAGE).c_str(), nullptr, nullptr, SW_SHOWNORMAL);
}

std::string MainWindow::currentDirectory() {
    // Asked for its length first: the folder may be deeper than MAX_PATH characters.
    const DWORD length = ::GetCurrentDirectoryW(0, nullptr);
    std::wstring buffer(length, L'\0');
    const DWORD n = length > 0 ? ::GetCurrentDirectoryW(length, buffer.data()) : 0;
    bool lost = false;
    const std::string directory = n > 0 && n < length ? narrow(std::wstring_view(buffer.data(), n), &lost) : "";
    return lost ? std::string() : directory;
}

void MainWindow::registerSwitchHotKey() {
    hotKey_.registerFromSettings(hwnd(), program().app.settings, [this] {
        if (form_) {
            form_->onSwitchHotKey();
        }
    });
}

void MainWindow::fillOrType() {
    ::SendMessageW(panel_.orType(), CB_RESETCONTENT, 0, 0);
    for (Orientation code : {kCenter, kTile, kStretch, kScale, kFill}) {
        addListItem(panel_.orType(), orientationName(code), true);
    }
}

void MainWindow::setOrTypeIndex(int index) {
    ::SendMessageW(panel_.orType(), CB_SETCURSEL, static_cast<WPARAM>(index), 0);
}

int MainWindow::orTypeIndex() const {
    return static_cast<int>(::SendMessageW(panel_.orType(), CB_GETCURSEL, 0, 0));
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
