#pragma once

#include <windows.h>

namespace tl {

struct Settings;

// frmDelay: asks for the minutes each wallpaper stays, modally. Refused entries keep the dialog open with
// a message; Ok with a good entry stores it in settings.Delay. True when Delay was set.
bool showDelayDialog(HWND owner, Settings& settings, char decimalSeparator);

}  // namespace tl
