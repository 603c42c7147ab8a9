#include "base/window_win.h"

#include <commctrl.h>

#include <exception>

#include "base/utf8_win.h"

namespace tl {

Window::~Window() {
    if (hwnd_) {
        // Detach first: the derived part of this object is already gone.
        ::SetWindowLongPtrW(hwnd_, GWLP_USERDATA, 0);
        HWND h = hwnd_;
        hwnd_ = nullptr;
        ::DestroyWindow(h);
    }
}

void Window::registerClass(const char* className, HICON icon, HICON smallIcon, UINT style, HBRUSH background) {
    // A W class: the controls' text and every message's text arrive as UTF-16.
    const std::wstring name = widen(className);
    WNDCLASSEXW wc{};
    if (::GetClassInfoExW(::GetModuleHandleW(nullptr), name.c_str(), &wc)) {
        return;
    }
    wc = {};
    wc.cbSize = sizeof wc;
    wc.style = style;
    wc.lpfnWndProc = &Window::windowProc;
    wc.hInstance = ::GetModuleHandleW(nullptr);
    wc.hIcon = icon;
    wc.hIconSm = smallIcon;
    wc.hCursor = ::LoadCursorW(nullptr, IDC_ARROW);
    wc.hbrBackground = background ? background : reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    wc.lpszClassName = name.c_str();
    ::RegisterClassExW(&wc);
}

HWND Window::create(const char* className, const char* title, DWORD style, DWORD exStyle, int x, int y, int width,
                    int height, HWND parent, HMENU menu) {
    return ::CreateWindowExW(exStyle, widen(className).c_str(), widen(title).c_str(), style, x, y, width, height,
                             parent, menu, ::GetModuleHandleW(nullptr), this);
}

LRESULT Window::onMessage(UINT msg, WPARAM wParam, LPARAM lParam) {
    return defaultProc(msg, wParam, lParam);
}

LRESULT Window::defaultProc(UINT msg, WPARAM wParam, LPARAM lParam) {
    return ::DefWindowProcW(hwnd_, msg, wParam, lParam);
}

LRESULT CALLBACK Window::windowProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam) {
    Window* self = nullptr;
    if (msg == WM_NCCREATE) {
        const auto* cs = reinterpret_cast<const CREATESTRUCTW*>(lParam);
        self = static_cast<Window*>(cs->lpCreateParams);
        if (self) {
            self->hwnd_ = hwnd;
            ::SetWindowLongPtrW(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
        }
    } else {
        self = reinterpret_cast<Window*>(::GetWindowLongPtrW(hwnd, GWLP_USERDATA));
    }
    if (!self) {
        return ::DefWindowProcW(hwnd, msg, wParam, lParam);
    }
    LRESULT result = 0;
    try {
        result = self->onMessage(msg, wParam, lParam);
    } catch (const std::exception&) {
        // A handler that failed must not take the message loop down with it.
        result = ::DefWindowProcW(hwnd, msg, wParam, lParam);
    }
    if (msg == WM_NCDESTROY) {
        ::SetWindowLongPtrW(hwnd, GWLP_USERDATA, 0);
        self->hwnd_ = nullptr;
        self->onDestroyed();
    }
    return result;
}

int dpiOf(HWND hwnd) {
    using GetDpiForWindowFn = UINT(WINAPI*)(HWND);
    static const auto getDpiForWindow = reinterpret_cast<GetDpiForWindowFn>(
        reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"user32.dll"), "GetDpiForWindow")));
    if (getDpiForWindow && hwnd) {
        if (const UINT dpi = getDpiForWindow(hwnd)) {
            return static_cast<int>(dpi);
        }
    }
    unique_window_dc dc(nullptr);
    const int dpi = dc.get() ? ::GetDeviceCaps(dc.get(), LOGPIXELSY) : 96;
    return dpi > 0 ? dpi : 96;
}

unique_hfont createMessageFont(int dpi) {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    if (!::SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0)) {
        return createPointFont("Tahoma", 8, dpi);
    }
    LOGFONTW lf = metrics.lfMessageFont;
    // The system reports the font for the primary display's DPI; rescale for the window's.
    const int systemDpi = dpiOf(nullptr);
    lf.lfHeight = MulDiv(lf.lfHeight, dpi, systemDpi);
    return unique_hfont(::CreateFontIndirectW(&lf));
}

unique_hfont createPointFont(const char* face, int pointSize, int dpi, bool bold) {
    LOGFONTW lf{};
    lf.lfHeight = -MulDiv(pointSize, dpi, 72);
    lf.lfWeight = bold ? FW_BOLD : FW_NORMAL;
    lf.lfCharSet = DEFAULT_CHARSET;
    lf.lfQuality = CLEARTYPE_QUALITY;
    lstrcpynW(lf.lfFaceName, widen(face).c_str(), LF_FACESIZE);
    return unique_hfont(::CreateFontIndirectW(&lf));
}

void setFontOnChildren(HWND parent, HFONT font) {
    ::SendMessageW(parent, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
    ::EnumChildWindows(
        parent,
        [](HWND child, LPARAM lp) -> BOOL {
            ::SendMessageW(child, WM_SETFONT, static_cast<WPARAM>(lp), TRUE);
            return TRUE;
        },
        reinterpret_cast<LPARAM>(font));
}

HWND createControl(HWND parent, const char* className, const char* text, DWORD style, int x, int y, int width,
                   int height, int id, DWORD exStyle) {
    const int dpi = dpiOf(parent);
    return ::CreateWindowExW(exStyle, widen(className).c_str(), widen(text).c_str(), style | WS_CHILD,
                             scaleForDpi(x, dpi), scaleForDpi(y, dpi), scaleForDpi(width, dpi),
                             scaleForDpi(height, dpi), parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                             ::GetModuleHandleW(nullptr), nullptr);
}

HWND createToolTips(HWND owner) {
    return ::CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX,
                             CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, owner, nullptr,
                             ::GetModuleHandleW(nullptr), nullptr);
}

void addToolTip(HWND toolTips, HWND control, const char* text) {
    if (!toolTips || !control) {
        return;
    }
    std::wstring wide = widen(text);
    TTTOOLINFOW info{};
    info.cbSize = sizeof info;
    info.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
    info.hwnd = ::GetParent(control);
    info.uId = reinterpret_cast<UINT_PTR>(control);
    info.lpszText = wide.data();
    ::SendMessageW(toolTips, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&info));
    ::SendMessageW(toolTips, TTM_SETMAXTIPWIDTH, 0, 400);
}

std::string windowText(HWND hwnd) {
    const int length = ::GetWindowTextLengthW(hwnd);
    std::wstring text(static_cast<size_t>(length) + 1, L'\0');
    const int copied = ::GetWindowTextW(hwnd, text.data(), length + 1);
    text.resize(static_cast<size_t>(copied > 0 ? copied : 0));
    return narrow(text);
}

void setWindowText(HWND hwnd, std::string_view text) {
    ::SetWindowTextW(hwnd, widen(text).c_str());
}

std::string listItemText(HWND box, int index, bool comboBox) {
    const auto length = ::SendMessageW(box, comboBox ? CB_GETLBTEXTLEN : LB_GETTEXTLEN, static_cast<WPARAM>(index), 0);
    if (length < 0) {
        return {};
    }
    std::wstring text(static_cast<size_t>(length) + 1, L'\0');
    const auto got = ::SendMessageW(box, comboBox ? CB_GETLBTEXT : LB_GETTEXT, static_cast<WPARAM>(index),
                                    reinterpret_cast<LPARAM>(text.data()));
    text.resize(got < 0 ? 0 : static_cast<size_t>(got));
    return narrow(text);
}

int addListItem(HWND box, std::string_view text, bool comboBox) {
    return static_cast<int>(::SendMessageW(box, comboBox ? CB_ADDSTRING : LB_ADDSTRING, 0,
                                           reinterpret_cast<LPARAM>(widen(text).c_str())));
}

namespace {

bool dispatchOne(MSG& msg) {
    HWND active = ::GetActiveWindow();
    if (active && (::GetWindowLongW(active, GWL_STYLE) & WS_CHILD) == 0 && ::IsDialogMessageW(active, &msg)) {
        return true;
    }
    ::TranslateMessage(&msg);
    ::DispatchMessageW(&msg);
    return true;
}

}  // namespace

int runMessageLoop() {
    MSG msg{};
    while (::GetMessageW(&msg, nullptr, 0, 0) > 0) {
        dispatchOne(msg);
    }
    return static_cast<int>(msg.wParam);
}

void runModal(HWND window, HWND owner) {
    if (!window) {
        return;
    }
    const bool ownerWasEnabled = owner && ::IsWindowEnabled(owner);
    if (ownerWasEnabled) {
        ::EnableWindow(owner, FALSE);
    }
    MSG msg{};
    while (::IsWindow(window)) {
        const BOOL got = ::GetMessageW(&msg, nullptr, 0, 0);
        if (got <= 0) {
            ::PostQuitMessage(static_cast<int>(msg.wParam));
            break;
        }
        dispatchOne(msg);
    }
    if (ownerWasEnabled) {
        ::EnableWindow(owner, TRUE);
        ::SetActiveWindow(owner);
    }
}

}  // namespace tl
