#include "changer/desktop_options_win.h"

#include <cstring>
#include <vector>

#include "base/unique_handle_win.h"
#include "base/utf8_win.h"

namespace tl {

namespace {

HWND toHwnd(ShellWindow window) {
    return reinterpret_cast<HWND>(window);
}
ShellWindow fromHwnd(HWND hwnd) {
    return reinterpret_cast<ShellWindow>(hwnd);
}

}  // namespace

ShellWindow Win32DesktopShell::findWindow(const char* className, const char* title) {
    return fromHwnd(::FindWindowW(className ? widen(className).c_str() : nullptr, title ? widen(title).c_str() : nullptr));
}

ShellWindow Win32DesktopShell::findChildWindow(ShellWindow parent, const char* className) {
    return fromHwnd(::FindWindowExW(toHwnd(parent), nullptr, className ? widen(className).c_str() : nullptr, nullptr));
}

ShellWindow Win32DesktopShell::firstChild(ShellWindow window) {
    return window ? fromHwnd(::GetWindow(toHwnd(window), GW_CHILD)) : 0;
}

std::intptr_t Win32DesktopShell::sendMessage(ShellWindow window,
                                             unsigned message,
                                             std::uintptr_t wParam,
                                             std::intptr_t lParam) {
    if (!window) {
        return 0;
    }
    // The desktop belongs to Explorer and this is sent every second: a hung Explorer must not hang the
    // tray program with it, so the wait is bounded.
    DWORD_PTR result = 0;
    if (!::SendMessageTimeoutW(toHwnd(window), message, wParam, lParam, SMTO_ABORTIFHUNG | SMTO_NORMAL, 2000,
                               &result)) {
        return 0;
    }
    return static_cast<std::intptr_t>(result);
}

void Win32DesktopShell::showWindow(ShellWindow window, bool show) {
    ::ShowWindow(toHwnd(window), show ? SW_SHOW : SW_HIDE);
}

void Win32DesktopShell::updateWindow(ShellWindow window) {
    if (window) {
        ::UpdateWindow(toHwnd(window));
    }
}

void Win32DesktopShell::invalidateWindow(ShellWindow window) {
    if (window) {
        ::InvalidateRect(toHwnd(window), nullptr, TRUE);
    }
}

bool Win32DesktopShell::isSomethingMaximised() {
    HWND front = ::GetForegroundWindow();
    // The title is read as it always was, though nothing looks at it.
    wchar_t title[255] = {};
    ::GetWindowTextW(front, title, 255);
    return front && ::IsZoomed(front);
}

bool Win32DesktopSystem::systemParameter(unsigned action, unsigned param, unsigned flags) {
    return ::SystemParametersInfoW(action, param, nullptr, flags) != FALSE;
}

std::string Win32DesktopSystem::desktopValue(const char* name) {
    unique_hkey key;
    if (::RegOpenKeyExW(HKEY_CURRENT_USER, L"Control Panel\\Desktop", 0, KEY_QUERY_VALUE, key.put()) != ERROR_SUCCESS) {
        return {};
    }
    const std::wstring valueName = widen(name);
    DWORD type = 0;
    DWORD size = 0;
    if (::RegQueryValueExW(key.get(), valueName.c_str(), nullptr, &type, nullptr, &size) != ERROR_SUCCESS) {
        return {};
    }
    // Whole UTF-16 units and a NUL more, whatever size the value reports.
    std::vector<wchar_t> data(size / sizeof(wchar_t) + 2, L'\0');
    if (::RegQueryValueExW(key.get(), valueName.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(data.data()),
                           &size) != ERROR_SUCCESS) {
        return {};
    }
    if (type == REG_DWORD && size == sizeof(DWORD)) {
        DWORD number = 0;
        memcpy(&number, data.data(), sizeof number);
        return std::to_string(number);
    }
    if (type != REG_SZ && type != REG_EXPAND_SZ) {
        return {};
    }
    return narrow(data.data());  // up to its NUL, which a stored text need not carry
}

void Win32BusyPointer::show(bool busy) {
    if (busy) {
        previous_ = ::SetCursor(::LoadCursorW(nullptr, IDC_WAIT));
    } else {
        ::SetCursor(previous_ ? previous_ : ::LoadCursorW(nullptr, IDC_ARROW));
        previous_ = nullptr;
    }
}

Win32DesktopOptions::Win32DesktopOptions(HWND window,
                                         Settings& settings,
                                         FileSystem& fs,
                                         std::function<void(const std::string&)> addFile)
    : Win32DesktopPlatform(window),
      DesktopOptions(
          settings,
          {Win32DesktopPlatform::shell, Win32DesktopPlatform::system, Win32DesktopPlatform::inputBox,
           Win32DesktopPlatform::ui, Win32DesktopPlatform::saveDialog, fs, Win32DesktopPlatform::busyPointer},
          std::move(addFile)) {}

void Win32DesktopOptions::load(UINT_PTR transTimerId) {
    findDesktopListView();
    ::SetTimer(mainWindow, transTimerId, kTransTimerInterval, nullptr);
}

void Win32DesktopOptions::startScreenSaver() {
    ::SendMessageW(mainWindow, WM_SYSCOMMAND, SC_SCREENSAVE, 0);
}

void Win32DesktopOptions::setCheckMarks(HMENU menu, const std::function<UINT(OptionItem)>& commandOf) const {
    for (const OptionCheck& check : checkMarks()) {
        ::CheckMenuItem(menu, commandOf(check.item),
                        MF_BYCOMMAND | static_cast<UINT>(check.checked ? MF_CHECKED : MF_UNCHECKED));
    }
}

}  // namespace tl
