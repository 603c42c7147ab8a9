#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "hotkey/reg_hot_key.h"

namespace tl {

struct Settings;

// The main window's one global hot key, "switch": a registrar made afresh on each registration, whose
// presses under that exact name call back. Every failure is passed over: a combination that another
// program holds simply leaves the program without a hot key.
class SwitchHotKey {
  public:
    static constexpr const char* kName = "switch";

    explicit SwitchHotKey(HotKeyPlatform& platform) : platform_(platform) {}
    SwitchHotKey(const SwitchHotKey&) = delete;
    SwitchHotKey& operator=(const SwitchHotKey&) = delete;

    // Removes any earlier registrar, makes a new one attached to window and registers "switch" with the
    // key code and RegisterHotKey modifier flags given. onSwitch runs on each press of it.
    void registerKey(HotKeyWindow window, int32_t key, int32_t modifiers, std::function<void()> onSwitch);
    // The same with Settings.HotKey and Settings.HotKeyMod.
    void registerFromSettings(HotKeyWindow window, const Settings& settings, std::function<void()> onSwitch);
    // Unregisters "switch" and lets the registrar go (which clears whatever it still holds).
    void remove();

    // The live registrar (pHK), or null.
    cRegHotKey* registrar() const { return pHK_.get(); }
    // Whether "switch" is registered right now.
    bool isRegistered() const;

  private:
    void onHotKeyPress(const std::string& name);

    HotKeyPlatform& platform_;
    std::unique_ptr<cRegHotKey> pHK_;
    std::function<void()> onSwitch_;
};

}  // namespace tl
