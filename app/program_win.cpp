#include "app/program_win.h"

#include <memory>

#include "app/settings.h"

namespace tl {

Program& program() {
    static Program instance;
    return instance;
}

IniProfile& Program::settingsFile() {
    static std::unique_ptr<IniProfile> file;
    static std::string filePath;
    const std::string path = settingsPath(app);
    if (!file || filePath != path) {
        file = std::make_unique<IniProfile>(fs, ansi, path);
        filePath = path;
    }
    return *file;
}

void Program::saveSettings() {
    tl::saveSettings(app, settingsFile(), ui, decimalSeparator);
}

namespace {
int loadedForms = 0;
}

void formLoaded() {
    ++loadedForms;
}

void formUnloaded() {
    if (--loadedForms <= 0) {
        loadedForms = 0;
        ::PostQuitMessage(0);
    }
}

bool anyFormLoaded() {
    return loadedForms > 0;
}

char userDecimalSeparator() {
    wchar_t buf[8] = {};
    if (::GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, buf, 8) > 0 && buf[0] > 0 && buf[0] < 0x80) {
        return static_cast<char>(buf[0]);
    }
    return '.';
}

}  // namespace tl
