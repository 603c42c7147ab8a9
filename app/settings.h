#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <variant>

namespace tl {

class ProfileFile;
class FileSystem;
class Ui;
struct AppState;

// Every option of the program; one field per key of setup.pref, named as the key.
struct Settings {
    bool AutomaticShutdown = false;
    std::string OutputPath;
    int16_t DefaultOrientation = 0;
    int16_t Delay = 0;
    std::string LastList;
    int16_t Mode = 0;
    int16_t PreviewLeft = 0;
    int16_t PreviewTop = 0;
    int16_t PreviewMode = 0;
    int16_t MainMode = 0;
    bool AutomaticShowOnDesktop = false;
    bool AutoSortFolder = false;
    int16_t DefaultAddOrientation = 0;
    bool CheckForDuplicates = false;
    double RatioTolerance = 0.0;
    double HalfRatio = 0.0;
    bool UseActiveDesktop = false;
    bool SmartSwitch = false;
    int32_t IconTextColour = 0;
    bool TransText = false;
    int32_t ScreenSaver = 0;
    std::string WallpaperDirectory;
    bool TrapIEWallpaper = false;
    bool UseTracker = false;
    int32_t HotKey = 0;
    int16_t HotKeyMod = 0;
    bool HideDesktopIcons = false;
    // What each monitor shows: 0 decides by the number of monitors (one picture with one, a picture for
    // each with more), 1 one picture on every monitor, 2 a picture for each, 3 one picture across all.
    int16_t MonitorMode = 0;
};

// One key of the settings file and the field it fills.
struct SettingKey {
    const char* name;
    std::variant<bool Settings::*, int16_t Settings::*, int32_t Settings::*, double Settings::*,
                 std::string Settings::*>
        field;
};

// The 28 keys in file order: the 27 of version 1.0, then the newer ones, so that a file written by 1.0
// differs from ours only by the lines added at its end.
extern const std::array<SettingKey, 28> kSettingKeys;

inline constexpr const char* kSettingsSection = "Tessaline";
inline constexpr const char* kSettingsFileName = "setup.pref";
// A value is read into a buffer of this many characters. The first version's 200 cut longer paths short;
// this one holds the longest path Windows has, so that a path is never cut.
inline constexpr size_t kSettingBufferSize = 32768;

// A value in the settings file that can't be read as its key's type. Start-up stops on it.
class SettingsError : public std::runtime_error {
public:
    SettingsError(std::string key, std::string value, std::string file);
    const std::string key;
    const std::string value;
    const std::string file;
    // The message shown to the user, naming the key, the value and the file.
    std::string userMessage() const;
};

std::string settingsPath(const AppState& app);

// Reads one key ("0" when missing), cut at its first NUL.
std::string readSetting(ProfileFile& profile, const char* key);
// Writes one key; nonzero on success, 0 on failure.
int writeSetting(ProfileFile& profile, const char* key, const std::string& text);

// The text form of a field as saveSettings writes it.
std::string settingText(const Settings& settings, const SettingKey& key, char decimalSeparator);
// Reads text into a field; false when the text can't be converted to the field's type.
bool setSettingFromText(Settings& settings, const SettingKey& key, const std::string& text, char decimalSeparator);

void applyDefaultSettings(AppState& app);

// Reads setup.pref into app.settings, or writes one with every default when there is none.
// Throws SettingsError for a value that can't be converted; nothing is written then.
void loadSettings(AppState& app, ProfileFile& profile, FileSystem& fs, Ui& ui, char decimalSeparator);

// Writes all the keys. Only the last write is looked at; its failure is reported once to the user.
void saveSettings(const AppState& app, ProfileFile& profile, Ui& ui, char decimalSeparator);

}  // namespace tl
