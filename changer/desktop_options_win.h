#pragma once

#include <windows.h>

#include <functional>
#include <string>

#include "base/file_dialog_win.h"
#include "base/ui_win.h"
#include "changer/desktop_options.h"
#include "changer/input_box_win.h"

namespace tl {

class Win32DesktopShell : public DesktopShell {
  public:
    ShellWindow findWindow(const char* className, const char* title) override;
    ShellWindow findChildWindow(ShellWindow parent, const char* className) override;
    ShellWindow firstChild(ShellWindow window) override;
    std::intptr_t sendMessage(ShellWindow window,
                              unsigned message,
                              std::uintptr_t wParam,
                              std::intptr_t lParam) override;
    void showWindow(ShellWindow window, bool show) override;
    void updateWindow(ShellWindow window) override;
    void invalidateWindow(ShellWindow window) override;
    bool isSomethingMaximised() override;
};

class Win32DesktopSystem : public DesktopSystem {
  public:
    bool systemParameter(unsigned action, unsigned param, unsigned flags) override;
    std::string desktopValue(const char* name) override;
};

class Win32SaveDialog : public SaveDialog {
  public:
    explicit Win32SaveDialog(HWND owner) : owner_(owner) {}
    std::optional<std::string> ask(const FileDialogRequest& request) override {
        return showSaveDialog(owner_, request);
    }

  private:
    HWND owner_;
};

class Win32BusyPointer : public BusyPointer {
  public:
    void show(bool busy) override;

  private:
    HCURSOR previous_ = nullptr;
};

// The platform half of the desktop options, held apart so that it is built before the options that use it.
struct Win32DesktopPlatform {
    explicit Win32DesktopPlatform(HWND window) : inputBox(window), ui(window), saveDialog(window), mainWindow(window) {}
    Win32DesktopShell shell;
    Win32DesktopSystem system;
    Win32InputBox inputBox;
    Win32Ui ui;
    Win32SaveDialog saveDialog;
    Win32BusyPointer busyPointer;
    HWND mainWindow;
};

// The desktop options as frmMain owns them: the portable behaviour on the Win32 platform, plus what needs
// frmMain's own window (transTimer, the screen saver start, the menus' check marks).
class Win32DesktopOptions : private Win32DesktopPlatform, public DesktopOptions {
  public:
    Win32DesktopOptions(HWND window,
                        Settings& settings,
                        FileSystem& fs,
                        std::function<void(const std::string&)> addFile);

    // At load: finds the desktop's icon list once and starts transTimer on the main window (WM_TIMER with
    // timerId every second; frmMain answers it with onTransTimer()).
    void load(UINT_PTR transTimerId);
    // "Start Screensaver": WM_SYSCOMMAND SC_SCREENSAVE to the main window, which passes it on to the system.
    void startScreenSaver();
    // Sets the check mark of every option item in menu (items found by command, submenus included).
    void setCheckMarks(HMENU menu, const std::function<UINT(OptionItem)>& commandOf) const;
};

}  // namespace tl
