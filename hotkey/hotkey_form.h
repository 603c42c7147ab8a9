#pragma once

namespace tl {

class cHotKey;
struct Settings;

// What the hot key dialog does with the settings. Loading shows Settings.HotKey and Settings.HotKeyMod
// in the control; storing takes the control's key and modifier back as they are. The control's modifier
// flags (1 Shift, 2 Control, 4 Alt) are not turned into RegisterHotKey's (1 Alt, 2 Control, 4 Shift) on
// either way: a combination typed with Alt is registered with Shift and the other way round, on purpose.
void loadHotkeyForm(cHotKey& hk, const Settings& settings);
void storeHotkeyForm(cHotKey& hk, Settings& settings);

}  // namespace tl
