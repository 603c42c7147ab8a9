#include "app/program_win.h"

#include <memory>

#include "app/settings.h"

namespace tl {

Program& program() {
    static Program instance;
    return instance;
}

Win32ProfileFile& Program::settingsFile() {
    static std::unique_ptr<Win32ProfileFile> file;
    const std::string path = settingsPath(app);
    if (!file || file->path() != path) {
        file = std::make_unique<Win32ProfileFile>(fs, path);
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

std::string executableDirectory() {
    char path[MAX_PATH * 2] = {};
    const DWORD n = ::GetModuleFileNameA(nullptr, path, sizeof path);
    std::string dir(path, n);
    const auto slash = dir.find_last_of("\\/");
    if (slash == std::string::npos) {
        return ".";
    }
    dir.resize(slash);
    if (dir.size() == 2 && dir[1] == ':') {
        dir += '\\';  // a drive root keeps its separator
    }
    return dir;
}

}  // namespace tl
