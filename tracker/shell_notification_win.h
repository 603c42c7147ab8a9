#pragma once

#include <windows.h>

#include "base/unique_handle_win.h"
#include "tracker/shell_change.h"

namespace tl {

// The message the shell sends the tracker's window for each change (WM_USER + 1). The dialog manager
// sends the same number as DM_SETDEFID, with an lParam of 0, which is no event code.
inline constexpr UINT kShellNotifyMessage = WM_USER + 1;

// The item identifier list of a special folder (CSIDL_*), or none when the shell has no such folder.
unique_cotaskmem GetFolderPidl(HWND hwnd, int csidl);

// A registration for the shell's change notifications of the whole name space, every event from every
// source, sent to one window. Deregistered by UnregisterNotify or at the latest when destroyed.
class ShellNotification {
  public:
    ShellNotification() = default;
    ShellNotification(const ShellNotification&) = delete;
    ShellNotification& operator=(const ShellNotification&) = delete;
    ~ShellNotification() { UnregisterNotify(); }

    // False when already registered or when the shell refuses.
    bool RegisterNotify(HWND hwnd);
    // False when not registered or when the shell refuses; the registration is then kept.
    bool UnregisterNotify();
    bool registered() const { return handle_ != 0; }

  private:
    ULONG handle_ = 0;
    unique_cotaskmem desktop_;
};

// The event code of a notification message, without the flag that tells interrupt-level events apart.
uint32_t shellEventOf(LPARAM lParam);

// The names and paths of a notification's two items (wParam points to their identifier lists).
ShellChange readShellItems(WPARAM wParam, uint32_t event);

}  // namespace tl
