#pragma once

#include <windows.h>

#include "app/app_state.h"
#include "app/profile_win.h"
#include "base/file_system_win.h"
#include "base/ui_win.h"

namespace tl {

// The process-wide objects every window reaches: the shared state and the platform behind it.
struct Program {
    AppState app;
    Win32FileSystem fs;
    Win32Ui ui;
    char decimalSeparator = '.';
    HINSTANCE instance = nullptr;

    // setup.pref of the program directory.
    Win32ProfileFile& settingsFile();
    void saveSettings();
};

Program& program();

// The process lives while one of its windows is loaded: each form counts itself in and out, and the
// last one out ends the message loop.
void formLoaded();
void formUnloaded();
bool anyFormLoaded();

// The directory of the running executable, without a trailing separator (a drive root keeps its "\").
std::string executableDirectory();

}  // namespace tl
