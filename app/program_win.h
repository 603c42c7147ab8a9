#pragma once

#include <windows.h>

#include <string>

#include "app/app_state.h"
#include "app/ini_profile.h"
#include "base/file_system_win.h"
#include "base/text_file_win.h"
#include "base/ui_win.h"

namespace tl {

// The process-wide objects every window reaches: the shared state and the platform behind it.
struct Program {
    AppState app;
    Win32FileSystem fs;
    Win32AnsiCodePage ansi;
    Win32Ui ui;
    char decimalSeparator = '.';
    HINSTANCE instance = nullptr;

    // setup.pref of the program directory.
    IniProfile& settingsFile();
    void saveSettings();
};

Program& program();

// The process lives while one of its windows is loaded: each form counts itself in and out, and the
// last one out ends the message loop.
void formLoaded();
void formUnloaded();
bool anyFormLoaded();

// The user's decimal separator (the first character of LOCALE_SDECIMAL, when it is ASCII).
char userDecimalSeparator();

}  // namespace tl
