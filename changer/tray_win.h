#pragma once

#include <windows.h>

#include <string_view>

#include "base/unique_handle_win.h"
#include "changer/changer_platform.h"

namespace tl {

// The callback message of the tray icon: a mouse move, so that the tray's mouse message arrives where a
// mouse move's X coordinate would (in the low word of lParam).
inline constexpr UINT kTrayCallbackMessage = WM_MOUSEMOVE;
inline constexpr UINT kTrayIconId = 1;

// The tray module: one icon per window, uID 1, in the first version of the record (icon, tip and callback
// message; the tip at most 63 UTF-16 units).
bool addTrayIcon(HWND form, HICON icon, std::string_view tip);
bool modifyTrayIcon(HICON icon, std::string_view tip, HWND form);
bool removeTrayIcon(HWND form);

// frmMain's tray icon: the program's icon, or the paused one, at the size the tray asks for.
class Win32TrayIcon : public TrayIcon {
  public:
    explicit Win32TrayIcon(HWND form);

    bool add(TrayIconKind icon, std::string_view tip) override;
    bool modify(TrayIconKind icon, std::string_view tip) override;
    void remove() override;

  private:
    HICON iconOf(TrayIconKind kind);

    HWND form_;
    unique_hicon normal_;
    unique_hicon paused_;  // loaded the first time the program is paused: most never are
};

}  // namespace tl
