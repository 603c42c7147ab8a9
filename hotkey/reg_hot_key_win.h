#pragma once

#include <windows.h>

#include "hotkey/reg_hot_key.h"
#include "hotkey/switch_hot_key.h"

namespace tl {

// The registrar's platform on Win32. WM_HOTKEY is routed with the comctl32 subclass API: the registrar
// sees the message first, then the window's own procedure runs as usual.
class Win32HotKeyPlatform : public HotKeyPlatform {
  public:
    uint16_t globalAddAtom(const std::string& name) override;
    void globalDeleteAtom(uint16_t atom) override;
    bool registerHotKey(HotKeyWindow window, int32_t id, uint32_t modifiers, uint32_t key) override;
    void unregisterHotKey(HotKeyWindow window, int32_t id) override;
    uint32_t lastError() override;
    std::string systemErrorText(uint32_t code) override;
    uint32_t tickCount() override;
    std::string executableName() override;
    void startRouting(HotKeyWindow window, cRegHotKey& target) override;
    void stopRouting(HotKeyWindow window, cRegHotKey& target) override;
    bool isWindowVisible(HotKeyWindow window) override;
    void showWindow(HotKeyWindow window, int command) override;
    bool isIconic(HotKeyWindow window) override;
    void sendMessage(HotKeyWindow window, uint32_t msg, std::uintptr_t wParam, std::intptr_t lParam) override;
    void setForegroundWindow(HotKeyWindow window) override;
};

// The running executable's file name without its folder and extension ("tessaline").
std::string executableBaseName();

// The process-wide instance.
Win32HotKeyPlatform& win32HotKeyPlatform();

inline HotKeyWindow toHotKeyWindow(HWND hwnd) {
    return reinterpret_cast<HotKeyWindow>(hwnd);
}

// The main window's "switch" hot key on Win32: a SwitchHotKey on the Win32 platform.
class Win32SwitchHotKey : public SwitchHotKey {
  public:
    Win32SwitchHotKey() : SwitchHotKey(win32HotKeyPlatform()) {}
    void registerFromSettings(HWND window, const Settings& settings, std::function<void()> onSwitch) {
        SwitchHotKey::registerFromSettings(toHotKeyWindow(window), settings, std::move(onSwitch));
    }
};

}  // namespace tl
