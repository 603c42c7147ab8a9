#include "hotkey/hotkey_form.h"

#include <cstdint>

#include "app/settings.h"
#include "hotkey/hot_key_control.h"

namespace tl {

void loadHotkeyForm(cHotKey& hk, const Settings& settings) {
    hk.setHotKey(settings.HotKey);
    hk.setHotKeyModifier(static_cast<uint8_t>(settings.HotKeyMod));
}

void storeHotkeyForm(cHotKey& hk, Settings& settings) {
    settings.HotKey = hk.HotKey();
    settings.HotKeyMod = static_cast<int16_t>(hk.HotKeyModifier());
}

}  // namespace tl
