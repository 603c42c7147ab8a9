// What any tray program made like Tessaline pays the system, as the fair reference for the program's idle
// working set (idle_reference_win.exe is the bare floor): it loads the DLLs Tessaline loads at start
// (common controls 6, from a manifest put beside the exe; comdlg32 waits for a file dialog in both),
// initialises COM, adds a tray icon and keeps a hidden window with one STATIC control in the message font,
// which wakes the system's font machinery. The comctl32 it loaded is printed, to show that the manifest
// took (common controls 6 load from WinSxS).
#include <windows.h>

#include <commctrl.h>
#include <objbase.h>
#include <shellapi.h>

#include <cstdio>
#include <cwchar>

namespace {

constexpr UINT kTrayMessage = WM_APP + 1;

LRESULT CALLBACK procedure(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam) {
    if (msg == WM_DESTROY) {
        ::PostQuitMessage(0);
        return 0;
    }
    return ::DefWindowProcW(hwnd, msg, wParam, lParam);
}

// Each call is one Tessaline makes at start-up or one that maps a DLL it imports, all harmless.
void makeUpLikeTessaline(HWND window) {
    INITCOMMONCONTROLSEX controls{sizeof controls, ICC_WIN95_CLASSES | ICC_STANDARD_CLASSES | ICC_HOTKEY_CLASS};
    ::InitCommonControlsEx(&controls);
    (void)::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    wchar_t exe[MAX_PATH] = {};
    ::GetModuleFileNameW(nullptr, exe, MAX_PATH);
    DWORD ignored = 0;
    (void)::GetFileVersionInfoSizeW(exe, &ignored);
    HKEY desktop = nullptr;
    if (::RegOpenKeyExW(HKEY_CURRENT_USER, L"Control Panel\\Desktop", 0, KEY_READ, &desktop) == ERROR_SUCCESS) {
        ::RegCloseKey(desktop);
    }

    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    ::SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    HFONT font = ::CreateFontIndirectW(&metrics.lfMessageFont);
    HWND label = ::CreateWindowExW(0, L"STATIC", L"fair reference", WS_CHILD | WS_VISIBLE, 4, 4, 180, 20, window,
                                   nullptr, ::GetModuleHandleW(nullptr), nullptr);
    ::SendMessageW(label, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);

    NOTIFYICONDATAW icon{};
    icon.cbSize = sizeof icon;
    icon.hWnd = window;
    icon.uID = 1;
    icon.uFlags = NIF_ICON | NIF_MESSAGE | NIF_TIP;
    icon.uCallbackMessage = kTrayMessage;
    icon.hIcon = ::LoadIconW(nullptr, IDI_APPLICATION);
    std::wcscpy(icon.szTip, L"fair reference");
    ::Shell_NotifyIconW(NIM_ADD, &icon);

    wchar_t comctl[MAX_PATH] = {};
    ::GetModuleFileNameW(::GetModuleHandleW(L"comctl32.dll"), comctl, MAX_PATH);
    std::printf("fair reference: comctl32 from %ls\n", comctl);
    std::fflush(stdout);
}

}  // namespace

int main() {
    WNDCLASSW wc{};
    wc.lpfnWndProc = &procedure;
    wc.hInstance = ::GetModuleHandleW(nullptr);
    wc.lpszClassName = L"TessalineFairReference";
    ::RegisterClassW(&wc);
    HWND window = ::CreateWindowExW(0, wc.lpszClassName, L"fair reference", WS_OVERLAPPEDWINDOW, CW_USEDEFAULT,
                                    CW_USEDEFAULT, 200, 100, nullptr, nullptr, wc.hInstance, nullptr);
    makeUpLikeTessaline(window);
    MSG msg{};
    while (::GetMessageW(&msg, nullptr, 0, 0) > 0) {
        ::TranslateMessage(&msg);
        ::DispatchMessageW(&msg);
    }
    return 0;
}
