#include "hotkey/hot_key_control_win.h"

#include <commctrl.h>

#include "base/utf8_win.h"
#include "hotkey/reg_hot_key_win.h"

namespace tl {

namespace {

constexpr const char* kControlClass = "TessalineHotKey";

// Common controls are initialised once for the process, by the first control made.
bool commonControlsReady = false;

}  // namespace

HotKeyControl::HotKeyControl() : hk_(host_) {}

HotKeyControl::~HotKeyControl() {
    // The field goes before the font it draws with is deleted (by hk_).
    if (HWND own = hwnd()) {
        ::DestroyWindow(own);
    }
}

bool HotKeyControl::create(HWND parent,
                           int x,
                           int y,
                           int width,
                           int height,
                           int id,
                           const HotKeySavedProperties& saved) {
    registerClass(kControlClass);
    const int dpi = dpiOf(parent);
    Window::create(kControlClass, "", WS_CHILD | WS_VISIBLE | WS_TABSTOP, 0, scaleForDpi(x, dpi), scaleForDpi(y, dpi),
                   scaleForDpi(width, dpi), scaleForDpi(height, dpi), parent,
                   reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)));
    if (!hwnd()) {
        return false;
    }
    host_.own = hwnd();
    createField();
    hk_.ReadProperties(saved);
    return true;
}

void HotKeyControl::createField() {
    if (!commonControlsReady) {
        ::InitCommonControls();
        commonControlsReady = true;
    }
    RECT client{};
    ::GetClientRect(hwnd(), &client);
    host_.child = ::CreateWindowExW(0, HOTKEY_CLASSW, L"", WS_CHILD | WS_VISIBLE, 0, 0, client.right, client.bottom,
                                    hwnd(), nullptr, ::GetModuleHandleW(nullptr), nullptr);
    if (host_.child) {
        ::SetFocus(host_.child);
    }
}

LRESULT HotKeyControl::onMessage(UINT msg, WPARAM wParam, LPARAM lParam) {
    switch (msg) {
        case WM_SIZE:
            onSize();
            return 0;
        case WM_SETFOCUS:
            onSetFocus();
            return 0;
        case WM_NCDESTROY:
            host_.child = nullptr;
            host_.own = nullptr;
            break;
        default:
            break;
    }
    return defaultProc(msg, wParam, lParam);
}

void HotKeyControl::onSize() {
    if (host_.child) {
        RECT client{};
        ::GetClientRect(hwnd(), &client);
        ::MoveWindow(host_.child, 0, 0, client.right, client.bottom, TRUE);
    }
}

void HotKeyControl::onSetFocus() {
    if (host_.child) {
        ::SetFocus(host_.child);
    }
}

std::intptr_t HotKeyControl::Host::sendToChild(uint32_t msg, std::uintptr_t wParam, std::intptr_t lParam) {
    // A field that was never made reads 0, as a message to no window does.
    return child ? ::SendMessageW(child, msg, wParam, lParam) : 0;
}

std::intptr_t HotKeyControl::Host::sendTo(HotKeyWindow window,
                                          uint32_t msg,
                                          std::uintptr_t wParam,
                                          std::intptr_t lParam) {
    return ::SendMessageW(reinterpret_cast<HWND>(window), msg, wParam, lParam);
}

int HotKeyControl::Host::logPixelsY() {
    unique_window_dc dc(own);
    return dc.get() ? ::GetDeviceCaps(dc.get(), LOGPIXELSY) : 96;
}

FontHandle HotKeyControl::Host::createFont(const LogicalFont& font) {
    LOGFONTW lf{};
    lf.lfHeight = font.height;
    lf.lfWeight = font.weight;
    lf.lfItalic = font.italic ? 1 : 0;
    lf.lfUnderline = font.underline ? 1 : 0;
    lf.lfStrikeOut = font.strikeOut ? 1 : 0;
    lstrcpynW(lf.lfFaceName, widen(font.faceName).c_str(), LF_FACESIZE);
    return reinterpret_cast<FontHandle>(::CreateFontIndirectW(&lf));
}

void HotKeyControl::Host::deleteFont(FontHandle font) {
    ::DeleteObject(reinterpret_cast<HGDIOBJ>(font));
}

std::string HotKeyControl::Host::executableName() {
    return executableBaseName();
}

}  // namespace tl
