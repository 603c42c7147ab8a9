#include "app/settings.h"

#include "app/app_state.h"
#include "app/profile.h"
#include "base/convert.h"
#include "base/file_system.h"
#include "base/text.h"
#include "base/ui.h"

namespace tl {

#define TL_KEY(name) SettingKey{#name, &Settings::name}
const std::array<SettingKey, 28> kSettingKeys = {
    TL_KEY(AutomaticShutdown),
    TL_KEY(OutputPath),
    TL_KEY(DefaultOrientation),
    TL_KEY(Delay),
    TL_KEY(LastList),
    TL_KEY(Mode),
    TL_KEY(PreviewLeft),
    TL_KEY(PreviewTop),
    TL_KEY(PreviewMode),
    TL_KEY(MainMode),
    TL_KEY(AutomaticShowOnDesktop),
    TL_KEY(AutoSortFolder),
    TL_KEY(DefaultAddOrientation),
    TL_KEY(CheckForDuplicates),
    TL_KEY(RatioTolerance),
    TL_KEY(HalfRatio),
    TL_KEY(UseActiveDesktop),
    TL_KEY(SmartSwitch),
    TL_KEY(IconTextColour),
    TL_KEY(TransText),
    TL_KEY(ScreenSaver),
    TL_KEY(WallpaperDirectory),
    TL_KEY(TrapIEWallpaper),
    TL_KEY(UseTracker),
    TL_KEY(HotKey),
    TL_KEY(HotKeyMod),
    TL_KEY(HideDesktopIcons),
    TL_KEY(MonitorMode),
};
#undef TL_KEY

SettingsError::SettingsError(std::string keyName, std::string valueText, std::string fileName)
    : std::runtime_error("bad setting " + keyName),
      key(std::move(keyName)),
      value(std::move(valueText)),
      file(std::move(fileName)) {}

std::string SettingsError::userMessage() const {
    return "Tessaline can't start: the setting " + key + " in the file " + file + " holds \"" + value +
           "\", which is not a value it can read.\r\n\r\nCorrect or remove that line and start Tessaline again. "
           "No file has been changed.";
}

std::string settingsPath(const AppState& app) {
    return joinPath(app.programDir, kSettingsFileName);
}

std::string readSetting(ProfileFile& profile, const char* key) {
    const std::string buffer = profile.readString(kSettingsSection, key, "0", kSettingBufferSize);
    return std::string(cutAtNul(buffer));
}

int writeSetting(ProfileFile& profile, const char* key, const std::string& text) {
    return profile.writeString(kSettingsSection, key, text);
}

namespace {

template <typename... F>
struct Overloaded : F... {
    using F::operator()...;
};
template <typename... F>
Overloaded(F...) -> Overloaded<F...>;

}  // namespace

std::string settingText(const Settings& settings, const SettingKey& key, char decimalSeparator) {
    return std::visit(Overloaded{
                          [&](bool Settings::*f) -> std::string { return formatBool(settings.*f); },
                          [&](int16_t Settings::*f) -> std::string { return std::to_string(settings.*f); },
                          [&](int32_t Settings::*f) -> std::string { return std::to_string(settings.*f); },
                          [&](double Settings::*f) -> std::string {
                              return formatDouble(settings.*f, decimalSeparator);
                          },
                          [&](std::string Settings::*f) -> std::string { return settings.*f; },
                      },
                      key.field);
}

bool setSettingFromText(Settings& settings, const SettingKey& key, const std::string& text, char decimalSeparator) {
    return std::visit(Overloaded{
                          [&](bool Settings::*f) {
                              auto v = parseBool(text, decimalSeparator);
                              if (v) {
                                  settings.*f = *v;
                              }
                              return v.has_value();
                          },
                          [&](int16_t Settings::*f) {
                              auto n = parseNumber(text, decimalSeparator);
                              auto v = n ? toInt16(*n) : std::nullopt;
                              if (v) {
                                  settings.*f = *v;
                              }
                              return v.has_value();
                          },
                          [&](int32_t Settings::*f) {
                              auto n = parseNumber(text, decimalSeparator);
                              auto v = n ? toInt32(*n) : std::nullopt;
                              if (v) {
                                  settings.*f = *v;
                              }
                              return v.has_value();
                          },
                          [&](double Settings::*f) {
                              auto v = parseNumber(text, decimalSeparator);
                              if (v) {
                                  settings.*f = *v;
                              }
                              return v.has_value();
                          },
                          [&](std::string Settings::*f) {
                              settings.*f = text;
                              return true;
                          },
                      },
                      key.field);
}

void applyDefaultSettings(AppState& app) {
    Settings& s = app.settings;
    const std::string& dir = app.programDir;
    s.AutomaticShutdown = false;
    s.OutputPath = joinPath(dir, "tl_current.bmp");
    s.DefaultOrientation = 0;
    s.Delay = 1;
    s.LastList = joinPath(dir, "MyWallpapers.wall");
    s.Mode = 1;
    s.PreviewLeft = 0;
    s.PreviewTop = 0;
    // PreviewMode, UseActiveDesktop, SmartSwitch, IconTextColour and TransText are left as they are.
    s.MainMode = 0;
    s.AutomaticShowOnDesktop = true;
    s.AutoSortFolder = true;
    s.DefaultAddOrientation = 0;
    s.CheckForDuplicates = true;
    s.RatioTolerance = 0.25;
    s.HalfRatio = 1.5;
    s.ScreenSaver = -1;
    s.WallpaperDirectory = joinPath(dir, "");
    s.TrapIEWallpaper = true;
    s.UseTracker = true;
    s.HotKey = 83;
    s.HotKeyMod = 3;
    s.HideDesktopIcons = false;
    s.MonitorMode = 0;
    app.paused = false;
}

void loadSettings(AppState& app, ProfileFile& profile, FileSystem& fs, Ui& ui, char decimalSeparator) {
    const std::string path = settingsPath(app);
    bool found = false;
    for (const DirEntry& e : fs.findFiles(path)) {
        found = found || e.isNormalFile();
    }
    if (!found) {
        applyDefaultSettings(app);
        saveSettings(app, profile, ui, decimalSeparator);
        return;
    }
    // Convert everything before touching the record, so a bad value leaves nothing half-read. One reading
    // of the file serves every key: another copy of the program saving meanwhile can't leave us with
    // some settings from its file and some from the one before.
    struct OneReading {
        ProfileFile& profile;
        explicit OneReading(ProfileFile& p) : profile(p) { profile.beginRead(); }
        ~OneReading() { profile.endRead(); }
    } oneReading(profile);
    Settings loaded = app.settings;
    for (const SettingKey& key : kSettingKeys) {
        const std::string text = readSetting(profile, key.name);
        if (!setSettingFromText(loaded, key, text, decimalSeparator)) {
            throw SettingsError(key.name, text, path);
        }
    }
    app.settings = loaded;
}

void saveSettings(const AppState& app, ProfileFile& profile, Ui& ui, char decimalSeparator) {
    bool ok = profile.beginUpdate();
    if (ok) {
        int last = 0;
        for (const SettingKey& key : kSettingKeys) {
            last = writeSetting(profile, key.name, settingText(app.settings, key, decimalSeparator));
        }
        // Whatever the earlier writes did, they reach the file together with the last one.
        const bool committed = profile.commitUpdate();
        ok = last != 0 && committed;
    }
    if (!ok) {
        ui.messageBox("Couldn't write to the setup file (" + settingsPath(app) +
                          "). Please check the permissions of the file.",
                      "Error", kMbOk);
    }
}

}  // namespace tl
