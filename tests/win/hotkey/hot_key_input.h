#pragma once

#include <windows.h>

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
