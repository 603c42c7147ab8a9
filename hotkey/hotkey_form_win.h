#pragma once

#include <windows.h>

namespace tl {

// Opens the hot key dialog (frmHotkey) modally over owner (which may be null). With "Ok" the typed key
// and modifier become Settings.HotKey and Settings.HotKeyMod, untranslated, and the settings are saved;
// the new key is registered at the next start. True when Ok stored them, false on Cancel or close.
bool showHotkeyDialog(HWND owner);

}  // namespace tl
