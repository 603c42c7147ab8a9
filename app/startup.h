#pragma once

#include <string_view>

namespace tl {

struct AppState;
class ProfileFile;
class FileSystem;
class Ui;

enum class HandOver {
    MainForm,  // load frmMain hidden; it takes the list from there
    Manager,   // show frmManager
};

// Which window the program lives in after start-up.
HandOver chooseHandOver(const AppState& app);

// The start-up procedure up to the hand-over: settings, then the command line. Throws SettingsError
// (nothing written) when the settings file holds a value that can't be read.
HandOver startUp(AppState& app, std::string_view commandLine, ProfileFile& profile, FileSystem& fs, Ui& ui,
                 char decimalSeparator);

}  // namespace tl
