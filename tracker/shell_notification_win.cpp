#include "tracker/shell_notification_win.h"

#include <shlobj.h>

#include <string>

#include "base/folder_dialog_win.h"
#include "base/utf8_win.h"

namespace tl {

namespace {

// The registration calls exist in every shell32 but were exported by ordinal only in the older ones.
constexpr WORD kRegisterOrdinal = 2;
constexpr WORD kDeregisterOrdinal = 4;

// Every source the shell knows of, in the old delivery (wParam points at the two identifier lists).
constexpr int kAllSources = 0xFF;
constexpr LONG kAllEvents = static_cast<LONG>(0xFFFFFFFF);
constexpr uint32_t kInterruptFlag = 0x80000000u;  // SHCNE_INTERRUPT

struct NotifyEntry {
    PCIDLIST_ABSOLUTE pidl;
    BOOL recursive;
};

using RegisterFn = ULONG(WINAPI*)(HWND, int, LONG, UINT, int, const NotifyEntry*);
using DeregisterFn = BOOL(WINAPI*)(ULONG);

FARPROC shellOrdinal(WORD ordinal) {
    HMODULE shell = ::GetModuleHandleW(L"shell32.dll");
    if (!shell) {
        shell = ::LoadLibraryW(L"shell32.dll");
    }
    return shell ? ::GetProcAddress(shell, MAKEINTRESOURCEA(ordinal)) : nullptr;  // GetProcAddress has no W
}

template <typename Fn>
Fn shellFunction(WORD ordinal) {
    return reinterpret_cast<Fn>(reinterpret_cast<void*>(shellOrdinal(ordinal)));
}

void readItem(PCIDLIST_ABSOLUTE pidl, std::string& name, std::string& path, bool& unrepresentable) {
    name.clear();
    path.clear();
    unrepresentable = false;
    if (!pidl) {
        return;
    }
    SHFILEINFOW info{};
    if (::SHGetFileInfoW(reinterpret_cast<LPCWSTR>(pidl), 0, &info, sizeof info, SHGFI_PIDL | SHGFI_DISPLAYNAME)) {
        name = narrow(info.szDisplayName, &unrepresentable);
    }
    if (name.empty()) {
        return;
    }
    bool pathLost = false;
    path = pathOfItem(pidl, &pathLost);
    unrepresentable = unrepresentable || pathLost;
}

}  // namespace

unique_cotaskmem GetFolderPidl(HWND hwnd, int csidl) {
    PIDLIST_ABSOLUTE pidl = nullptr;
    if (FAILED(::SHGetSpecialFolderLocation(hwnd, csidl, &pidl))) {
        ::CoTaskMemFree(pidl);  // whatever the shell may have left in it
        return {};
    }
    return unique_cotaskmem(pidl);
}

bool ShellNotification::RegisterNotify(HWND hwnd) {
    if (handle_ != 0) {
        return false;
    }
    desktop_ = GetFolderPidl(hwnd, CSIDL_DESKTOP);
    if (!desktop_) {
        return false;
    }
    const auto registerNotify = shellFunction<RegisterFn>(kRegisterOrdinal);
    if (!registerNotify) {
        desktop_.reset();
        return false;
    }
    const NotifyEntry entry{static_cast<PCIDLIST_ABSOLUTE>(desktop_.get()), TRUE};
    handle_ = registerNotify(hwnd, kAllSources, kAllEvents, kShellNotifyMessage, 1, &entry);
    if (handle_ == 0) {
        desktop_.reset();
    }
    return handle_ != 0;
}

bool ShellNotification::UnregisterNotify() {
    if (handle_ == 0) {
        return false;
    }
    const auto deregister = shellFunction<DeregisterFn>(kDeregisterOrdinal);
    if (!deregister || !deregister(handle_)) {
        return false;
    }
    handle_ = 0;
    desktop_.reset();
    return true;
}

uint32_t shellEventOf(LPARAM lParam) {
    return static_cast<uint32_t>(lParam) & ~kInterruptFlag;
}

ShellChange readShellItems(WPARAM wParam, uint32_t event) {
    ShellChange change;
    change.event = event;
    const auto* items = reinterpret_cast<const PCIDLIST_ABSOLUTE*>(wParam);
    if (items) {
        readItem(items[0], change.name1, change.path1, change.unrepresentable1);
        readItem(items[1], change.name2, change.path2, change.unrepresentable2);
    }
    return change;
}

}  // namespace tl
