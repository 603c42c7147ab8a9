#pragma once

#include <windows.h>

#include <cstdio>

#include <chrono>
#include <functional>
#include <initializer_list>
#include <vector>

namespace tl::wintest {

// Presses a key with the modifier keys held, the way a user's fingers do: modifiers down, the key down
// and up, the modifiers up in reverse order. True when the system took every event.
inline bool pressKeys(std::initializer_list<WORD> modifierKeys, WORD key) {
    std::vector<INPUT> inputs;
    auto add = [&](WORD vk, bool up) {
        INPUT in{};
        in.type = INPUT_KEYBOARD;
        in.ki.wVk = vk;
        in.ki.wScan = static_cast<WORD>(::MapVirtualKeyA(vk, MAPVK_VK_TO_VSC));
        in.ki.dwFlags = up ? KEYEVENTF_KEYUP : 0;
        inputs.push_back(in);
    };
    for (WORD m : modifierKeys) {
        add(m, false);
    }
    add(key, false);
    add(key, true);
    for (auto it = std::rbegin(modifierKeys); it != std::rend(modifierKeys); ++it) {
        add(*it, true);
    }
    return ::SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT)) == inputs.size();
}

// A left click in the middle of a window, with the mouse.
inline bool clickWindow(HWND window) {
    RECT r{};
    if (!::GetWindowRect(window, &r)) {
        return false;
    }
    const int x = (r.left + r.right) / 2;
    const int y = (r.top + r.bottom) / 2;
    // A window left on screen by an earlier test may cover the button: bring ours forward first and
    // click only once the point is really over it.
    const POINT centre{x, y};
    for (int i = 0; i < 80 && ::WindowFromPoint(centre) != window; ++i) {
        ::SetForegroundWindow(::GetAncestor(window, GA_ROOT));
        ::Sleep(25);
    }
    if (HWND over = ::WindowFromPoint(centre); over != window) {
        char cls[128] = {}, title[128] = {};
        ::GetClassNameA(over, cls, sizeof cls);
        ::GetWindowTextA(::GetAncestor(over, GA_ROOT), title, sizeof title);
        std::fprintf(stderr, "clickWindow: the point is over %s in \"%s\"\n", cls, title);
        return false;
    }
    const int width = ::GetSystemMetrics(SM_CXSCREEN);
    const int height = ::GetSystemMetrics(SM_CYSCREEN);
    INPUT in[3]{};
    for (INPUT& i : in) {
        i.type = INPUT_MOUSE;
        i.mi.dx = MulDiv(x, 65535, width - 1);
        i.mi.dy = MulDiv(y, 65535, height - 1);
    }
    in[0].mi.dwFlags = MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE;
    in[1].mi.dwFlags = MOUSEEVENTF_LEFTDOWN | MOUSEEVENTF_ABSOLUTE;
    in[2].mi.dwFlags = MOUSEEVENTF_LEFTUP | MOUSEEVENTF_ABSOLUTE;
    return ::SendInput(3, in, sizeof(INPUT)) == 3;
}

// Dispatches this thread's messages until the condition holds or the time is up.
inline bool pumpUntil(const std::function<bool()>& condition,
                      std::chrono::milliseconds timeout = std::chrono::seconds(5)) {
    const auto end = std::chrono::steady_clock::now() + timeout;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        MSG msg{};
        while (::PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
            ::TranslateMessage(&msg);
            ::DispatchMessageA(&msg);
        }
        ::Sleep(10);
    }
    return true;
}

}  // namespace tl::wintest
