// The smallest program that lives like Tessaline in the tray: one hidden window and a message loop. Its
// idle working set under the same system is the reference the program's own is read against.
#include <windows.h>

namespace {

LRESULT CALLBACK procedure(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam) {
    if (msg == WM_DESTROY) {
        ::PostQuitMessage(0);
        return 0;
    }
    return ::DefWindowProcW(hwnd, msg, wParam, lParam);
}

}  // namespace

int main() {
    WNDCLASSW wc{};
    wc.lpfnWndProc = &procedure;
    wc.hInstance = ::GetModuleHandleW(nullptr);
    wc.lpszClassName = L"TessalineIdleReference";
    ::RegisterClassW(&wc);
    ::CreateWindowExW(0, wc.lpszClassName, L"idle reference", WS_OVERLAPPEDWINDOW, CW_USEDEFAULT, CW_USEDEFAULT, 200,
                      100, nullptr, nullptr, wc.hInstance, nullptr);
    MSG msg{};
    while (::GetMessageW(&msg, nullptr, 0, 0) > 0) {
        ::TranslateMessage(&msg);
        ::DispatchMessageW(&msg);
    }
    return 0;
}
