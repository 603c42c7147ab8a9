#include "app/fuzz/settings_input.h"

#include <cmath>
#include <map>
#include <string_view>
#include <variant>

#include "app/app_state.h"
#include "app/ini_profile.h"
#include "app/settings.h"
#include "base/convert.h"
#include "base/file_system.h"
#include "base/text_file.h"
#include "base/fuzz/fuzz_check.h"
#include "base/ui.h"

namespace tl::fuzz {

namespace {

void check(bool holds, const char* what) {
    fuzz::check(holds, "settings", what);
}

// Files held in memory, by path.
class MemoryFiles final : public FileSystem {
  public:
    std::map<std::string, std::string> files;

    std::optional<std::string> readFile(const std::string& path, size_t maxBytes) override {
        const auto it = files.find(path);
        if (it == files.end()) {
            return std::nullopt;
        }
        return it->second.substr(0, maxBytes);
    }
    bool writeNewFile(const std::string& path, std::string_view contents) override {
        files[path] = std::string(contents);
        return true;
    }
    bool moveReplacing(const std::string& from, const std::string& to) override {
        const auto it = files.find(from);
        if (it == files.end()) {
            return false;
        }
        files[to] = it->second;
        files.erase(from);
        return true;
    }
    std::vector<DirEntry> findFiles(const std::string& pattern) override {
        if (files.count(pattern) == 0) {
            return {};
        }
        DirEntry entry;
        entry.name = pattern.substr(pattern.find_last_of('\\') + 1);
        return {entry};
    }
    std::optional<FileFacts> facts(const std::string& path) override {
        const auto it = files.find(path);
        if (it == files.end()) {
            return std::nullopt;
        }
        FileFacts facts;
        facts.size = it->second.size();
        return facts;
    }
    bool deleteFile(const std::string& path) override { return files.erase(path) > 0; }
    bool copyFile(const std::string& from, const std::string& to) override {
        const auto it = files.find(from);
        if (it == files.end()) {
            return false;
        }
        files[to] = it->second;
        return true;
    }
};

class SilentUi final : public Ui {
  public:
    int messages = 0;
    int messageBox(std::string_view, std::string_view, unsigned) override {
        ++messages;
        return kIdOk;
    }
    void beep() override {}
};

bool nearlyEqual(double a, double b) {
    return a == b || std::fabs(a - b) <= 1e-13 * std::max(std::fabs(a), std::fabs(b));
}

// Loads the file; false when the settings error stopped it.
bool load(AppState& app, MemoryFiles& fs, Ui& ui, char separator) {
    const Windows1252 ansi;
    IniProfile profile(fs, ansi, settingsPath(app));
    try {
        loadSettings(app, profile, fs, ui, separator);
        return true;
    } catch (const SettingsError&) {
        return false;
    }
}

}  // namespace

void settingsInput(std::span<const uint8_t> input) {
    if (input.empty()) {
        return;
    }
    const char separator = (input[0] & 1) != 0 ? ',' : '.';
    const std::string text(reinterpret_cast<const char*>(input.data() + 1), input.size() - 1);

    // Numbers as the settings and the list files read them, and as the settings write them back.
    if (const auto number = parseNumber(text, separator)) {
        check(std::isfinite(*number), "read a number that is not finite");
        const auto again = parseNumber(formatDouble(*number, separator), separator);
        check(again && nearlyEqual(*again, *number), "a number written does not read back");
    }
    check(std::isfinite(leadingNumber(text)), "a leading number that is not finite");
    static_cast<void>(parseBool(text, separator));

    MemoryFiles fs;
    SilentUi ui;
    AppState app;
    app.programDir = "C:\\Tessaline";
    const std::string path = settingsPath(app);
    fs.files[path] = text;
    if (!load(app, fs, ui, separator)) {
        check(fs.files[path] == text, "a file that failed to load was changed");
        return;
    }
    const Windows1252 ansi;
    IniProfile profile(fs, ansi, path);
    saveSettings(app, profile, ui, separator);
    check(ui.messages == 0, "saving into memory failed");
    AppState reloaded;
    reloaded.programDir = app.programDir;
    check(load(reloaded, fs, ui, separator), "the file the program wrote does not load");
    for (const SettingKey& key : kSettingKeys) {
        const bool same = std::visit(
            [&](auto field) {
                const auto& a = app.settings.*field;
                const auto& b = reloaded.settings.*field;
                if constexpr (std::is_same_v<std::decay_t<decltype(a)>, double>) {
                    return nearlyEqual(a, b);
                } else if constexpr (std::is_same_v<std::decay_t<decltype(a)>, std::string>) {
                    return true;  // blanks and quotes around a text are the profile reader's to take off
                } else {
                    return a == b;
                }
            },
            key.field);
        check(same, key.name);
    }
}

}  // namespace tl::fuzz
