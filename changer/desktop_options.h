#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/file_dialog.h"

namespace tl {

struct Settings;
class Ui;
class FileSystem;
class InputBox;

// A window of the desktop shell or of any program, as an opaque number (0 = none).
using ShellWindow = std::uintptr_t;

// The window calls the desktop options make on the desktop shell and the foreground window.
class DesktopShell {
  public:
    virtual ~DesktopShell() = default;
    // FindWindow(className, title); 0 when there is none.
    virtual ShellWindow findWindow(const char* className, const char* title) = 0;
    // FindWindowEx(parent, 0, className, 0); 0 when there is none.
    virtual ShellWindow findChildWindow(ShellWindow parent, const char* className) = 0;
    // GetWindow(window, GW_CHILD).
    virtual ShellWindow firstChild(ShellWindow window) = 0;
    virtual std::intptr_t sendMessage(ShellWindow window,
                                      unsigned message,
                                      std::uintptr_t wParam,
                                      std::intptr_t lParam) = 0;
    virtual void showWindow(ShellWindow window, bool show) = 0;
    virtual void updateWindow(ShellWindow window) = 0;
    // InvalidateRect(window, whole, erase).
    virtual void invalidateWindow(ShellWindow window) = 0;
    // IsZoomed of the foreground window.
    virtual bool isSomethingMaximised() = 0;
};

// The system parameters and the desktop's registry values.
class DesktopSystem {
  public:
    virtual ~DesktopSystem() = default;
    // SystemParametersInfo(action, param, no buffer, flags); true when the call reports success.
    virtual bool systemParameter(unsigned action, unsigned param, unsigned flags) = 0;
    // A value under HKEY_CURRENT_USER\Control Panel\Desktop as text; empty when it can't be read.
    virtual std::string desktopValue(const char* name) = 0;
};

// The save dialog of the browser-wallpaper catch.
class SaveDialog {
  public:
    virtual ~SaveDialog() = default;
    // The chosen path; nullopt when cancelled.
    virtual std::optional<std::string> ask(const FileDialogRequest& request) = 0;
};

// The hourglass pointer for the duration of a slow step.
class BusyPointer {
  public:
    virtual ~BusyPointer() = default;
    virtual void show(bool busy) = 0;
};

// The menu items whose check marks follow the desktop options. "Icon text colour..." (mnuIconTextColour) is
// not among them: choosing it does nothing, and IconTextColour is only carried in the settings file. Both are
// kept so on purpose.
enum class OptionItem {
    mnuSmartSwitch,
    mnuAutoShowDesktop,
    mnuAutoShutdown,
    mnuOptUseActiveDesktop,
    mnuTrapIEWallpaper,
    mnuTransIcon,
    mnuOptionsHideIcons,
    mnuTrayDisplayHideIcons,
};
struct OptionCheck {
    OptionItem item;
    bool checked;
};

inline constexpr unsigned kLvmSetTextBkColor = 4134;   // LVM_SETTEXTBKCOLOR
inline constexpr std::uint32_t kClrNone = 0xFFFFFFFF;  // CLR_NONE: no text background
inline constexpr unsigned kSpiGetScreenSaveTimeout = 14;
inline constexpr unsigned kSpiSetScreenSaveTimeout = 15;
inline constexpr unsigned kSpifUpdateAndBroadcast = 3;  // SPIF_UPDATEINIFILE | SPIF_SENDCHANGE
inline constexpr int kTransTimerInterval = 1000;        // ms

inline constexpr const char* kBrowserWallpaperName = "Internet Explorer Wallpaper.bmp";

// True when a desktop "Wallpaper" value is the file the web browser writes when the user sets a picture
// from a page as the wallpaper: the name, any case, within the last n + 1 characters of the trimmed value.
bool isBrowserWallpaper(std::string_view wallpaperValue);

// The desktop conveniences of the tray program: transparent icon text, hidden icons, the browser
// wallpaper catch, the screen saver commands and the option check marks. frmMain owns one and calls it
// from its menu handlers and its transTimer.
class DesktopOptions {
  public:
    struct Platform {
        DesktopShell& shell;
        DesktopSystem& system;
        InputBox& inputBox;
        Ui& ui;
        SaveDialog& saveDialog;
        FileSystem& fs;
        BusyPointer& busyPointer;
    };
    // addFile puts a caught wallpaper on the running list, as files are added there.
    DesktopOptions(Settings& settings, Platform platform, std::function<void(const std::string&)> addFile);

    // The desktop's icon list: Progman "Program Manager" / SHELLDLL_DefView / SysListView32. A step that
    // finds nothing keeps the handle found before.
    void findDesktopListView();
    ShellWindow desktopListView() const { return desktopListView_; }
    // LVM_SETTEXTBKCOLOR on the icon list; true when it answered above zero.
    bool setIconTextBackground(std::uint32_t colour);
    void makeIconTextTransparent(bool redraw);
    // After every wallpaper apply: the icon text is redrawn over the new picture while TransText is on.
    void afterWallpaperApplied();

    // Shows or hides the desktop icons (the shell's first child window); nothing with UseActiveDesktop.
    void showDesktopIcons(bool show);
    bool iconsHidden() const { return iconsHidden_; }

    bool isSomethingMaximised();

    // One tick of transTimer: transparent text while TransText is on, then the browser-wallpaper catch.
    void onTransTimer();
    bool catchInProgress() const { return catchInProgress_; }
    // Offers to save a wallpaper the browser set, copies it and adds the copy to the running list.
    void saveCaughtWallpaper(const std::string& path);

    // Screen saver timeout in minutes from the registry, as the system call without a buffer fails.
    int32_t getScreenSaverTimeout();
    bool setScreenSaverTimeout(int32_t minutes);
    void disableScreenSaver();
    void enableScreenSaver();

    // Menu handlers of the checked items. Each returns the item's new check state.
    bool toggleOption(OptionItem item);
    // Every check mark as the settings (and the icon state) say.
    std::vector<OptionCheck> checkMarks() const;

  private:
    Settings& settings_;
    Platform platform_;
    std::function<void(const std::string&)> addFile_;
    ShellWindow desktopListView_ = 0;
    bool iconsHidden_ = false;
    bool catchInProgress_ = false;
};

// The shutdown step after an automatic start with AutomaticShutdown on. It does nothing and the program
// stays in the tray: kept empty on purpose.
void automaticShutdown();

}  // namespace tl
