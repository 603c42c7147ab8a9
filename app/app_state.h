#pragma once

#include <string>

#include "app/settings.h"

namespace tl {

// The program-wide state, created zeroed before anything runs and alive for the whole process.
struct AppState {
    AppState() = default;
    AppState(const AppState&) = delete;
    AppState& operator=(const AppState&) = delete;

    Settings settings;
    // The current list. It is the same storage as the setting LastList, so that reading the settings
    // sets it and saving them writes it back.
    std::string& listPath = settings.LastList;
    std::string startMode;  // "auto", "setup" or empty
    bool paused = false;     // never saved
    std::string programDir;  // no trailing separator, except a drive root's "\"
};

}  // namespace tl
