#include "hotkey/reg_hot_key_win.h"

#include <commctrl.h>

#include <exception>

#include "base/file_system_win.h"
#include "base/utf8_win.h"

namespace tl {

namespace {

HWND toHwnd(HotKeyWindow window) {
    return reinterpret_cast<HWND>(window);
}

// One subclass per registrar and window (the registrar's address is the subclass id), so two
// registrars can share a window.
LRESULT CALLBACK routeHotKey(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam, UINT_PTR id, DWORD_PTR refData) {
    if (msg == WM_HOTKEY) {
        auto* target = reinterpret_cast<cRegHotKey*>(refData);
        if (target->MsgResponse() == cRegHotKey::kPreProcess) {
            try {
                target->windowProc(toHotKeyWindow(hwnd), msg, wParam, lParam);
            } catch (const std::exception&) {
                // A failing handler must not keep the message from the window.
            }
        }
    } else if (msg == WM_NCDESTROY) {
        // The window is going: the subclass must not outlive it.
        ::RemoveWindowSubclass(hwnd, &routeHotKey, id);
    }
    return ::DefSubclassProc(hwnd, msg, wParam, lParam);
}

}  // namespace

uint16_t Win32HotKeyPlatform::globalAddAtom(const std::string& name) {
    return ::GlobalAddAtomW(widen(name).c_str());
}

void Win32HotKeyPlatform::globalDeleteAtom(uint16_t atom) {
    ::GlobalDeleteAtom(atom);
}

bool Win32HotKeyPlatform::registerHotKey(HotKeyWindow window, int32_t id, uint32_t modifiers, uint32_t key) {
    return ::RegisterHotKey(toHwnd(window), id, modifiers, key) != FALSE;
}

void Win32HotKeyPlatform::unregisterHotKey(HotKeyWindow window, int32_t id) {
    ::UnregisterHotKey(toHwnd(window), id);
}

uint32_t Win32HotKeyPlatform::lastError() {
    return ::GetLastError();
}

std::string Win32HotKeyPlatform::systemErrorText(uint32_t code) {
    wchar_t buffer[256] = {};
    const DWORD n = ::FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code, 0,
                                     buffer, 256, nullptr);
    return n > 0 ? narrow(std::wstring_view(buffer, n)) : std::string();
}

uint32_t Win32HotKeyPlatform::tickCount() {
    return ::GetTickCount();
}

std::string Win32HotKeyPlatform::executableName() {
    return executableBaseName();
}

std::string executableBaseName() {
    std::string name = executablePath().value_or(std::string());
    const auto slash = name.find_last_of("\\/");
    if (slash != std::string::npos) {
        name.erase(0, slash + 1);
    }
    const auto dot = name.find_last_of('.');
    if (dot != std::string::npos) {
        name.resize(dot);
    }
    return name;
}

void Win32HotKeyPlatform::startRouting(HotKeyWindow window, cRegHotKey& target) {
    ::SetWindowSubclass(toHwnd(window), &routeHotKey, reinterpret_cast<UINT_PTR>(&target),
                        reinterpret_cast<DWORD_PTR>(&target));
}

void Win32HotKeyPlatform::stopRouting(HotKeyWindow window, cRegHotKey& target) {
    ::RemoveWindowSubclass(toHwnd(window), &routeHotKey, reinterpret_cast<UINT_PTR>(&target));
}

bool Win32HotKeyPlatform::isWindowVisible(HotKeyWindow window) {
    return ::IsWindowVisible(toHwnd(window)) != FALSE;
}

void Win32HotKeyPlatform::showWindow(HotKeyWindow window, int command) {
    ::ShowWindow(toHwnd(window), command);
}

bool Win32HotKeyPlatform::isIconic(HotKeyWindow window) {
    return ::IsIconic(toHwnd(window)) != FALSE;
}

void Win32HotKeyPlatform::sendMessage(HotKeyWindow window, uint32_t msg, std::uintptr_t wParam, std::intptr_t lParam) {
    ::SendMessageW(toHwnd(window), msg, wParam, lParam);
}

void Win32HotKeyPlatform::setForegroundWindow(HotKeyWindow window) {
    ::SetForegroundWindow(toHwnd(window));
}

Win32HotKeyPlatform& win32HotKeyPlatform() {
    static Win32HotKeyPlatform instance;
    return instance;
}

}  // namespace tl
