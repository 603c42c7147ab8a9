#include "hotkey/switch_hot_key.h"

#include "app/settings.h"
#include "base/object_error.h"

namespace tl {

void SwitchHotKey::registerKey(HotKeyWindow window, int32_t key, int32_t modifiers, std::function<void()> onSwitch) {
    remove();
    onSwitch_ = std::move(onSwitch);
    pHK_ = std::make_unique<cRegHotKey>(platform_);
    pHK_->HotKeyPress = [this](const std::string& name, uint32_t, uint32_t) { onHotKeyPress(name); };
    pHK_->Attach(window);
    try {
        pHK_->RegisterKey(kName, static_cast<uint32_t>(key), static_cast<uint32_t>(modifiers));
    } catch (const ObjectError&) {
        // Held by another program, or refused by the system: the program runs without its hot key.
    }
}

void SwitchHotKey::registerFromSettings(HotKeyWindow window, const Settings& settings, std::function<void()> onSwitch) {
    registerKey(window, settings.HotKey, settings.HotKeyMod, std::move(onSwitch));
}

void SwitchHotKey::remove() {
    if (!pHK_) {
        return;
    }
    try {
        pHK_->UnregisterKey(kName);
    } catch (const ObjectError&) {
        // Never registered (the registration failed): nothing to undo.
    }
    pHK_.reset();
}

bool SwitchHotKey::isRegistered() const {
    if (!pHK_) {
        return false;
    }
    for (int i = 1; i <= pHK_->count(); ++i) {
        if (pHK_->record(i).name == kName) {
            return true;
        }
    }
    return false;
}

void SwitchHotKey::onHotKeyPress(const std::string& name) {
    if (name == kName && onSwitch_) {
        // A copy: switching may re-register and replace the callback.
        const std::function<void()> onSwitch = onSwitch_;
        onSwitch();
    }
}

}  // namespace tl
