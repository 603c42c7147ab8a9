#include "base/window_win.h"

#include <commctrl.h>

#include <exception>

namespace tl {

Window::~Window() {
    if (hwnd_) {
        // Detach first: the derived part of this object is already gone.
        ::SetWindowLongPtrA(hwnd_, GWLP_USERDATA, 0);
        HWND h = hwnd_;
        hwnd_ = nullptr;
        ::DestroyWindow(h);
    }
}

void Window::registerClass(const char* className, HICON icon, HICON smallIcon, UINT style, HBRUSH background) {
    WNDCLASSEXA wc{};
    if (::GetClassInfoExA(::GetModuleHandleA(nullptr), className, &wc)) {
        return;
    }
    wc = {};
    wc.cbSize = sizeof wc;
    wc.style = style;
    wc.lpfnWndProc = &Window::windowProc;
    wc.hInstance = ::GetModuleHandleA(nullptr);
    wc.hIcon = icon;
    wc.hIconSm = smallIcon;
    wc.hCursor = ::LoadCursorA(nullptr, reinterpret_cast<LPCSTR>(IDC_ARROW));
    wc.hbrBackground = background ? background : reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    wc.lpszClassName = className;
    ::RegisterClassExA(&wc);
}

HWND Window::create(const char* className, const char* title, DWORD style, DWORD exStyle, int x, int y, int width,
                    int height, HWND parent, HMENU menu) {
    return ::CreateWindowExA(exStyle, className, title, style, x, y, width, height, parent, menu,
                             ::GetModuleHandleA(nullptr), this);
}

LRESULT Window::onMessage(UINT msg, WPARAM wParam, LPARAM lParam) {
    return defaultProc(msg, wParam, lParam);
}

LRESULT Window::defaultProc(UINT msg, WPARAM wParam, LPARAM lParam) {
    return ::DefWindowProcA(hwnd_, msg, wParam, lParam);
}

LRESULT CALLBACK Window::windowProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam) {
    Window* self = nullptr;
    if (msg == WM_NCCREATE) {
        const auto* cs = reinterpret_cast<const CREATESTRUCTA*>(lParam);
        self = static_cast<Window*>(cs->lpCreateParams);
        if (self) {
            self->hwnd_ = hwnd;
            ::SetWindowLongPtrA(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
        }
    } else {
        self = reinterpret_cast<Window*>(::GetWindowLongPtrA(hwnd, GWLP_USERDATA));
    }
    if (!self) {
        return ::DefWindowProcA(hwnd, msg, wParam, lParam);
    }
    LRESULT result = 0;
    try {
        result = self->onMessage(msg, wParam, lParam);
    } catch (const std::exception&) {
        // A handler that failed must not take the message loop down with it.
        result = ::DefWindowProcA(hwnd, msg, wParam, lParam);
    }
    if (msg == WM_NCDESTROY) {
        ::SetWindowLongPtrA(hwnd, GWLP_USERDATA, 0);
        self->hwnd_ = nullptr;
        self->onDestroyed();
    }
    return result;
}

int dpiOf(HWND hwnd) {
    using GetDpiForWindowFn = UINT(WINAPI*)(HWND);
    static const auto getDpiForWindow = reinterpret_cast<GetDpiForWindowFn>(
        reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleA("user32.dll"), "GetDpiForWindow")));
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
    NONCLIENTMETRICSA metrics{};
    metrics.cbSize = sizeof metrics;
    if (!::SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0)) {
        return createPointFont("Tahoma", 8, dpi);
    }
    LOGFONTA lf = metrics.lfMessageFont;
    // The system reports the font for the primary display's DPI; rescale for the window's.
    const int systemDpi = dpiOf(nullptr);
    lf.lfHeight = MulDiv(lf.lfHeight, dpi, systemDpi);
    return unique_hfont(::CreateFontIndirectA(&lf));
}

unique_hfont createPointFont(const char* face, int pointSize, int dpi, bool bold) {
    LOGFONTA lf{};
    lf.lfHeight = -MulDiv(pointSize, dpi, 72);
    lf.lfWeight = bold ? FW_BOLD : FW_NORMAL;
    lf.lfCharSet = DEFAULT_CHARSET;
    lf.lfQuality = CLEARTYPE_QUALITY;
    lstrcpynA(lf.lfFaceName, face, LF_FACESIZE);
    return unique_hfont(::CreateFontIndirectA(&lf));
}

void setFontOnChildren(HWND parent, HFONT font) {
    ::SendMessageA(parent, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
    ::EnumChildWindows(
        parent,
        [](HWND child, LPARAM lp) -> BOOL {
            ::SendMessageA(child, WM_SETFONT, static_cast<WPARAM>(lp), TRUE);
            return TRUE;
        },
        reinterpret_cast<LPARAM>(font));
}

HWND createControl(HWND parent, const char* className, const char* text, DWORD style, int x, int y, int width,
                   int height, int id, DWORD exStyle) {
    const int dpi = dpiOf(parent);
    return ::CreateWindowExA(exStyle, className, text, style | WS_CHILD, scaleForDpi(x, dpi), scaleForDpi(y, dpi),
                             scaleForDpi(width, dpi), scaleForDpi(height, dpi), parent,
                             reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), ::GetModuleHandleA(nullptr), nullptr);
}

HWND createToolTips(HWND owner) {
    return ::CreateWindowExA(WS_EX_TOPMOST, TOOLTIPS_CLASSA, nullptr, WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX,
                             CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, owner, nullptr,
                             ::GetModuleHandleA(nullptr), nullptr);
}

void addToolTip(HWND toolTips, HWND control, const char* text) {
    if (!toolTips || !control) {
        return;
    }
    TTTOOLINFOA info{};
    info.cbSize = sizeof info;
    info.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
    info.hwnd = ::GetParent(control);
    info.uId = reinterpret_cast<UINT_PTR>(control);
    info.lpszText = const_cast<char*>(text);
    ::SendMessageA(toolTips, TTM_ADDTOOLA, 0, reinterpret_cast<LPARAM>(&info));
    ::SendMessageA(toolTips, TTM_SETMAXTIPWIDTH, 0, 400);
}

std::string windowText(HWND hwnd) {
    const int length = ::GetWindowTextLengthA(hwnd);
    std::string text(static_cast<size_t>(length) + 1, '\0');
    const int copied = ::GetWindowTextA(hwnd, text.data(), length + 1);
    text.resize(static_cast<size_t>(copied > 0 ? copied : 0));
    return text;
}

namespace {

bool dispatchOne(MSG& msg) {
    HWND active = ::GetActiveWindow();
    if (active && (::GetWindowLongA(active, GWL_STYLE) & WS_CHILD) == 0 && ::IsDialogMessageA(active, &msg)) {
        return true;
    }
    ::TranslateMessage(&msg);
    ::DispatchMessageA(&msg);
    return true;
}

}  // namespace

int runMessageLoop() {
    MSG msg{};
    while (::GetMessageA(&msg, nullptr, 0, 0) > 0) {
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
        const BOOL got = ::GetMessageA(&msg, nullptr, 0, 0);
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
