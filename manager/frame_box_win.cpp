#include "manager/frame_box_win.h"

#include <string>

#include "base/utf8_win.h"
#include "base/window_win.h"

namespace tl {

namespace {

constexpr const wchar_t* kFrameClass = L"TessalineFrame";

HFONT frameFont(HWND hwnd) {
    return reinterpret_cast<HFONT>(::GetWindowLongPtrW(hwnd, GWLP_USERDATA));
}

// An etched border with the caption set into its top edge, as a group box draws itself.
void paintFrame(HWND hwnd) {
    PAINTSTRUCT ps{};
    HDC dc = ::BeginPaint(hwnd, &ps);
    RECT client{};
    ::GetClientRect(hwnd, &client);
    ::FillRect(dc, &client, ::GetSysColorBrush(COLOR_BTNFACE));
    HFONT font = frameFont(hwnd) ? frameFont(hwnd) : static_cast<HFONT>(::GetStockObject(DEFAULT_GUI_FONT));
    scoped_select_object selected(dc, font);
    TEXTMETRICW metrics{};
    ::GetTextMetricsW(dc, &metrics);
    RECT border = client;
    border.top += metrics.tmHeight / 2;
    ::DrawEdge(dc, &border, EDGE_ETCHED, BF_RECT);
    const std::wstring caption = widen(windowText(hwnd));
    if (!caption.empty()) {
        SIZE extent{};
        ::GetTextExtentPoint32W(dc, caption.c_str(), static_cast<int>(caption.size()), &extent);
        const int inset = metrics.tmAveCharWidth;
        RECT text{client.left + inset, client.top, client.left + inset + extent.cx + 4, client.top + metrics.tmHeight};
        ::FillRect(dc, &text, ::GetSysColorBrush(COLOR_BTNFACE));
        ::SetBkMode(dc, TRANSPARENT);
        ::SetTextColor(dc, ::GetSysColor(COLOR_WINDOWTEXT));
        ::DrawTextW(dc, caption.c_str(), static_cast<int>(caption.size()), &text,
                    DT_CENTER | DT_SINGLELINE | DT_NOPREFIX);
    }
    ::EndPaint(hwnd, &ps);
}

LRESULT CALLBACK frameProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam) {
    switch (msg) {
        case WM_COMMAND:
        case WM_NOTIFY:
        case WM_DRAWITEM:
        case WM_MEASUREITEM:
        case WM_CTLCOLORSTATIC:
        case WM_CTLCOLORBTN:
        case WM_CTLCOLORLISTBOX:
        case WM_VKEYTOITEM:
        case WM_CONTEXTMENU:
            return ::SendMessageW(::GetParent(hwnd), msg, wParam, lParam);
        case WM_SETFONT:
            ::SetWindowLongPtrW(hwnd, GWLP_USERDATA, static_cast<LONG_PTR>(wParam));
            if (LOWORD(lParam)) {
                ::InvalidateRect(hwnd, nullptr, TRUE);
            }
            return 0;
        case WM_GETFONT:
            return reinterpret_cast<LRESULT>(frameFont(hwnd));
        case WM_ERASEBKGND:
            return 1;  // painted whole in WM_PAINT
        case WM_PAINT:
            paintFrame(hwnd);
            return 0;
        case WM_SETTEXT: {
            const LRESULT r = ::DefWindowProcW(hwnd, msg, wParam, lParam);
            ::InvalidateRect(hwnd, nullptr, TRUE);
            return r;
        }
        default:
            return ::DefWindowProcW(hwnd, msg, wParam, lParam);
    }
}

}  // namespace

HWND createFrameBox(HWND parent, const char* caption, int id) {
    WNDCLASSEXW wc{};
    wc.cbSize = sizeof wc;
    if (!::GetClassInfoExW(::GetModuleHandleW(nullptr), kFrameClass, &wc)) {
        wc = {};
        wc.cbSize = sizeof wc;
        wc.style = CS_HREDRAW | CS_VREDRAW;
        wc.lpfnWndProc = frameProc;
        wc.hInstance = ::GetModuleHandleW(nullptr);
        wc.hCursor = ::LoadCursorW(nullptr, IDC_ARROW);
        wc.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
        wc.lpszClassName = kFrameClass;
        ::RegisterClassExW(&wc);
    }
    return ::CreateWindowExW(WS_EX_CONTROLPARENT, kFrameClass, widen(caption).c_str(),
                             WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN, 0, 0,
                             0, 0, parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                             ::GetModuleHandleW(nullptr), nullptr);
}

}  // namespace tl
