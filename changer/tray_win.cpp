#include "changer/tray_win.h"

#include <shellapi.h>

#include <algorithm>
#include <cstring>

#include "app/resource_ids.h"
#include "changer/tray_rules.h"

namespace tl {

namespace {

// The first version of NOTIFYICONDATAA: 88 bytes in a 32-bit program, 104 in a 64-bit one, where the
// handles are 8 bytes wide. The size tells the shell which fields the record has.
NOTIFYICONDATAA trayRecord(HWND form, HICON icon, std::string_view tip) {
    NOTIFYICONDATAA nid{};
    nid.cbSize = NOTIFYICONDATAA_V1_SIZE;
    nid.hWnd = form;
    nid.uID = kTrayIconId;
    nid.uFlags = NIF_MESSAGE | NIF_ICON | NIF_TIP;
    nid.uCallbackMessage = kTrayCallbackMessage;
    nid.hIcon = icon;
    const size_t n = std::min(tip.size(), kTrayTipLength);
    std::memcpy(nid.szTip, tip.data(), n);
    nid.szTip[n] = '\0';
    return nid;
}

unique_hicon loadTrayIcon(int id) {
    // The size the tray draws its icons at, so that the shell does not shrink a larger one.
    return unique_hicon(static_cast<HICON>(::LoadImageA(::GetModuleHandleA(nullptr), MAKEINTRESOURCEA(id), IMAGE_ICON,
                                                        ::GetSystemMetrics(SM_CXSMICON),
                                                        ::GetSystemMetrics(SM_CYSMICON), LR_DEFAULTCOLOR)));
}

}  // namespace

bool addTrayIcon(HWND form, HICON icon, std::string_view tip) {
    NOTIFYICONDATAA nid = trayRecord(form, icon, tip);
    return ::Shell_NotifyIconA(NIM_ADD, &nid) != FALSE;
}

bool modifyTrayIcon(HICON icon, std::string_view tip, HWND form) {
    NOTIFYICONDATAA nid = trayRecord(form, icon, tip);
    return ::Shell_NotifyIconA(NIM_MODIFY, &nid) != FALSE;
}

bool removeTrayIcon(HWND form) {
    NOTIFYICONDATAA nid = trayRecord(form, nullptr, "");
    return ::Shell_NotifyIconA(NIM_DELETE, &nid) != FALSE;
}

Win32TrayIcon::Win32TrayIcon(HWND form)
    : form_(form), normal_(loadTrayIcon(IDI_TESSALINE)), paused_(loadTrayIcon(IDI_PAUSED)) {}

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
