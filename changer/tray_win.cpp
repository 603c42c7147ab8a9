#include "changer/tray_win.h"

#include <shellapi.h>

#include <algorithm>
#include <cwchar>

#include "app/resource_ids.h"
#include "base/utf8_win.h"
#include "changer/tray_rules.h"

namespace tl {

namespace {

// The first version of NOTIFYICONDATAW: 152 bytes in a 32-bit program, 168 in a 64-bit one, where the
// handles are 8 bytes wide. The size tells the shell which fields the record has. Its tip holds 64 UTF-16
// units: the A record's 64 bytes held a third of that in the letters of most scripts.
NOTIFYICONDATAW trayRecord(HWND form, HICON icon, std::string_view tip) {
    NOTIFYICONDATAW nid{};
    nid.cbSize = NOTIFYICONDATAW_V1_SIZE;
    nid.hWnd = form;
    nid.uID = kTrayIconId;
    nid.uFlags = NIF_MESSAGE | NIF_ICON | NIF_TIP;
    nid.uCallbackMessage = kTrayCallbackMessage;
    nid.hIcon = icon;
    // trayTip has cut the text to what the record holds; min() only guards the copy.
    const std::wstring wide = widen(tip);
    const size_t n = std::min(wide.size(), kTrayTipLength);
    std::wmemcpy(nid.szTip, wide.data(), n);
    nid.szTip[n] = L'\0';
    return nid;
}

unique_hicon loadTrayIcon(int id) {
    // The size the tray draws its icons at, so that the shell does not shrink a larger one.
    return unique_hicon(static_cast<HICON>(::LoadImageW(::GetModuleHandleW(nullptr), MAKEINTRESOURCEW(id), IMAGE_ICON,
                                                        ::GetSystemMetrics(SM_CXSMICON),
                                                        ::GetSystemMetrics(SM_CYSMICON), LR_DEFAULTCOLOR)));
}

}  // namespace

bool addTrayIcon(HWND form, HICON icon, std::string_view tip) {
    NOTIFYICONDATAW nid = trayRecord(form, icon, tip);
    return ::Shell_NotifyIconW(NIM_ADD, &nid) != FALSE;
}

bool modifyTrayIcon(HICON icon, std::string_view tip, HWND form) {
    NOTIFYICONDATAW nid = trayRecord(form, icon, tip);
    return ::Shell_NotifyIconW(NIM_MODIFY, &nid) != FALSE;
}

bool removeTrayIcon(HWND form) {
    NOTIFYICONDATAW nid = trayRecord(form, nullptr, "");
    return ::Shell_NotifyIconW(NIM_DELETE, &nid) != FALSE;
}

Win32TrayIcon::Win32TrayIcon(HWND form)
    : form_(form), normal_(loadTrayIcon(IDI_TESSALINE)) {}

HICON Win32TrayIcon::iconOf(TrayIconKind kind) {
    if (kind != TrayIconKind::Paused) {
        return normal_.get();
    }
    if (!paused_) {
        paused_ = loadTrayIcon(IDI_PAUSED);
    }
    return paused_.get();
}

bool Win32TrayIcon::add(TrayIconKind icon, std::string_view tip) {
    return addTrayIcon(form_, iconOf(icon), tip);
}

bool Win32TrayIcon::modify(TrayIconKind icon, std::string_view tip) {
    return modifyTrayIcon(iconOf(icon), tip, form_);
}

void Win32TrayIcon::remove() {
    removeTrayIcon(form_);
}

}  // namespace tl
