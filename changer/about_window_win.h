#pragma once

#include <windows.h>

#include <string>

namespace tl {

// What the about window shows from a program's version record.
struct VersionFacts {
    std::string version;     // major.minor.revision of the file version
    std::string trademarks;  // LegalTrademarks: the release date line
    std::string copyright;   // LegalCopyright
};

// The version record of an executable; empty texts for what it lacks.
VersionFacts readVersionFacts(const std::string& modulePath);

// frmAbout: one window, created on first use and brought to the front after that.
void showAbout(HWND owner);

}  // namespace tl
