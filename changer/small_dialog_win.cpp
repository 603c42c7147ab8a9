#include "changer/small_dialog_win.h"

namespace tl {

namespace {

constexpr DWORD kDialogStyle = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN;
constexpr DWORD kDialogExStyle = WS_EX_DLGMODALFRAME | WS_EX_CONTROLPARENT;

}  // namespace

bool SmallDialog::createDialog(const char* className,
                               const char* caption,
                               int clientWidth96,
                               int clientHeight96,
                               HWND owner) {
    registerClass(className);
    dpi_ = dpiOf(owner);
    RECT frame{0, 0, scaleForDpi(clientWidth96, dpi_), scaleForDpi(clientHeight96, dpi_)};
    ::AdjustWindowRectEx(&frame, kDialogStyle, FALSE, kDialogExStyle);
    const int width = frame.right - frame.left;
    const int height = frame.bottom - frame.top;

    // Centred over the owner's monitor, or the one the pointer is on when there is no owner (a tray menu).
    HMONITOR monitor = nullptr;
    if (owner && ::IsWindowVisible(owner)) {
        monitor = ::MonitorFromWindow(owner, MONITOR_DEFAULTTOPRIMARY);
    } else {
        POINT cursor{};
        ::GetCursorPos(&cursor);
        monitor = ::MonitorFromPoint(cursor, MONITOR_DEFAULTTOPRIMARY);
    }
    MONITORINFO info{};
    info.cbSize = sizeof info;
    ::GetMonitorInfoW(monitor, &info);
    const RECT& work = info.rcWork;
    const int x = work.left + (work.right - work.left - width) / 2;
    const int y = work.top + (work.bottom - work.top - height) / 2;
    return create(className, caption, kDialogStyle, kDialogExStyle, x, y, width, height, owner) != nullptr;
}

HWND SmallDialog::addControl(const char* className,
                             const char* text,
                             DWORD style,
                             int x,
                             int y,
                             int width,
                             int height,
                             int id,
                             DWORD exStyle) {
    return createControl(hwnd(), className, text, style | WS_VISIBLE, x, y, width, height, id, exStyle);
}

void SmallDialog::useFont(unique_hfont font) {
    font_ = std::move(font);
    setFontOnChildren(hwnd(), font_.get());
}

void SmallDialog::showInFront() {
    ::ShowWindow(hwnd(), SW_SHOW);
    ::SetForegroundWindow(hwnd());
    if (focus_) {
        ::SetFocus(focus_);
    }
}

void SmallDialog::runModalDialog(HWND owner) {
    showInFront();
    runModal(hwnd(), owner);
}

void SmallDialog::close() {
    if (hwnd()) {
        ::DestroyWindow(hwnd());
    }
}

LRESULT SmallDialog::onMessage(UINT msg, WPARAM wParam, LPARAM lParam) {
    switch (msg) {
        case WM_COMMAND:
            onCommand(LOWORD(wParam), HIWORD(wParam), reinterpret_cast<HWND>(lParam));
            return 0;
        case WM_ACTIVATE:
            // As a dialog does: the focus goes back to the control that had it when the window was left.
            if (LOWORD(wParam) == WA_INACTIVE) {
                HWND focused = ::GetFocus();
                if (focused && ::IsChild(hwnd(), focused)) {
                    focus_ = focused;
                }
            } else if (focus_ && ::IsWindow(focus_)) {
                ::SetFocus(focus_);
                return 0;
            }
            return defaultProc(msg, wParam, lParam);
        case WM_CLOSE:
            onCommand(IDCANCEL, BN_CLICKED, nullptr);
            return 0;
        default:
            return defaultProc(msg, wParam, lParam);
    }
}

}  // namespace tl
