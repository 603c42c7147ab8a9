#include "app/settings.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <functional>
#include <optional>
#include <sstream>
#include <utility>

#include "app/app_state.h"
#include "app/ini_profile.h"
#include "base/file_system_posix.h"
#include "base/text_file.h"
#include "shared/default_settings_file.h"
#include "support/fake_ui.h"
#include "support/temp_dir.h"

namespace tl {
namespace {

class SettingsFile : public testing::Test {
  protected:
    SettingsFile() : profile(fs, ansi, dir.file("setup.pref")) { app.programDir = dir.path(); }

    std::vector<std::string> fileLines() {
        std::istringstream text(dir.read("setup.pref"));
        std::vector<std::string> lines;
        for (std::string line; std::getline(text, line);) {
            lines.push_back(line.substr(0, line.find('\r')));
        }
        return lines;
    }

    void load() { loadSettings(app, profile, fs, ui, '.'); }

    test::TempDir dir;
    PosixFileSystem fs;
    Windows1252 ansi;
    IniProfile profile;
    test::FakeUi ui;
    AppState app;
};

TEST_F(SettingsFile, FirstRunWritesEveryKeyInOrderWithItsDefault) {
    load();
    EXPECT_EQ(fileLines(), test::defaultSettingsFile(dir.path()));
    EXPECT_EQ(app.listPath, dir.path() + "\\MyWallpapers.wall");
    EXPECT_TRUE(ui.messages.empty());
}

TEST_F(SettingsFile, ValuesRoundTrip) {
    applyDefaultSettings(app);
    app.settings.Delay = 32000;
    app.settings.RatioTolerance = 0.125;
    app.settings.IconTextColour = -16777216;
    app.settings.OutputPath = "D:\\out put\\w.bmp";
    app.settings.LastList = "C:\\Été 2024\\東京 夜景 \U0001F305.wall";
    app.settings.WallpaperDirectory = "D:\\Москва\\";
    app.settings.SmartSwitch = true;
    saveSettings(app, profile, ui, '.');
    AppState again;
    again.programDir = dir.path();
    loadSettings(again, profile, fs, ui, '.');
    for (const SettingKey& key : kSettingKeys) {
        EXPECT_EQ(settingText(again.settings, key, '.'), settingText(app.settings, key, '.')) << key.name;
    }
}

struct ValueCase {
    std::string line;
    const char* key;
    std::string expectedText;  // the field as saveSettings would write it
    char separator = '.';
};

class ReadingValues : public SettingsFile, public testing::WithParamInterface<ValueCase> {};

TEST_P(ReadingValues, ConvertsTextToTheKeysType) {
    const ValueCase& c = GetParam();
    dir.write("setup.pref", "[Tessaline]\r\n" + c.line + "\r\n");
    loadSettings(app, profile, fs, ui, c.separator);
    for (const SettingKey& key : kSettingKeys) {
        if (std::string(key.name) == c.key) {
            EXPECT_EQ(settingText(app.settings, key, c.separator), c.expectedText) << c.line;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Table,
                         ReadingValues,
                         testing::Values(ValueCase{"Delay=2.5", "Delay", "2"},
                                         ValueCase{"Delay=3.5", "Delay", "4"},
                                         ValueCase{"Delay= 7 ", "Delay", "7"},
                                         ValueCase{"Delay=-1", "Delay", "-1"},
                                         ValueCase{"smartswitch=TRUE", "SmartSwitch", "True"},
                                         ValueCase{"SmartSwitch=0", "SmartSwitch", "False"},
                                         ValueCase{"HotKey=2147483647", "HotKey", "2147483647"},
                                         ValueCase{"HalfRatio=2", "HalfRatio", "2"},
                                         ValueCase{"RatioTolerance=0,125", "RatioTolerance", "0,125", ','},
                                         // A path is read whole, however long.
                                         ValueCase{"OutputPath=" + std::string(300, 'x'), "OutputPath",
                                                   std::string(300, 'x')},
                                         // A missing key reads as "0".
                                         ValueCase{"Mode=2", "Delay", "0"},
                                         ValueCase{"Mode=2", "OutputPath", "0"},
                                         ValueCase{"Mode=2", "UseTracker", "False"}));

class BadValues : public SettingsFile, public testing::WithParamInterface<const char*> {};

TEST_P(BadValues, StopTheStartNamingKeyValueAndFileWithoutWriting) {
    const std::string original = std::string("[Tessaline]\r\nMode=2\r\n") + GetParam() + "\r\n";
    dir.write("setup.pref", original);
    try {
        load();
        FAIL() << "expected a SettingsError for " << GetParam();
    } catch (const SettingsError& e) {
        const std::string line = GetParam();
        EXPECT_EQ(e.key, line.substr(0, line.find('=')));
        EXPECT_EQ(e.value, line.substr(line.find('=') + 1));
        EXPECT_NE(e.userMessage().find(e.key), std::string::npos);
        EXPECT_NE(e.userMessage().find("\"" + e.value + "\""), std::string::npos);
        EXPECT_NE(e.userMessage().find(dir.path() + "\\setup.pref"), std::string::npos);
    }
    EXPECT_EQ(dir.read("setup.pref"), original);
    EXPECT_EQ(app.settings.Delay, 0) << "nothing is half-read";
}

INSTANTIATE_TEST_SUITE_P(Table,
                         BadValues,
                         testing::Values("SmartSwitch=yes",
                                         "Delay=abc",
                                         "Delay=40000",
                                         "HotKeyMod=",
                                         "HotKey=99999999999",
                                         "RatioTolerance=0,5"));

TEST_F(SettingsFile, AFolderNamedLikeTheFileIsNoSettingsFile) {
    // Only a normal file is a settings file; the defaults are applied, and writing them fails.
    ASSERT_EQ(::mkdir(dir.file("setup.pref").c_str(), 0755), 0);
    load();
    EXPECT_EQ(app.settings.Delay, 1);
    EXPECT_EQ(ui.messages.size(), 1u);
}

TEST_F(SettingsFile, AnEarlierVersionsAnsiFileIsReadInItsCodePageAndSavedInUtf8) {
    dir.write("setup.pref", "[Tessaline]\r\nLastList=C:\\\xC9t\xE9\\a.wall\r\n");
    load();
    EXPECT_EQ(app.listPath, "C:\\Été\\a.wall");
    saveSettings(app, profile, ui, '.');
    EXPECT_NE(dir.read("setup.pref").find("\r\nLastList=C:\\Été\\a.wall\r\n"), std::string::npos);
}

TEST_F(SettingsFile, UnknownKeysAndOtherSectionsSurviveASave) {
    dir.write("setup.pref", "[Other]\r\nA=1\r\n\r\n[Tessaline]\r\nDelay=5\r\nExtra=keep\r\n");
    load();
    saveSettings(app, profile, ui, '.');
    const std::string text = dir.read("setup.pref");
    EXPECT_NE(text.find("[Other]\r\nA=1\r\n"), std::string::npos);
    EXPECT_NE(text.find("Extra=keep"), std::string::npos);
    EXPECT_NE(text.find("Delay=5"), std::string::npos);
}

// Another copy of the program saves its settings while this one is reading them.
class SavedMeanwhile : public PosixFileSystem {
  public:
    std::function<void()> save;
    std::optional<std::string> readFile(const std::string& path, size_t maxBytes) override {
        auto data = PosixFileSystem::readFile(path, maxBytes);
        if (save) {
            std::exchange(save, nullptr)();
        }
        return data;
    }
};

TEST_F(SettingsFile, ALoadTakesEveryKeyFromOneVersionOfTheFile) {
    applyDefaultSettings(app);
    app.settings.Delay = 111;
    app.settings.LastList = "C:\\ours.wall";
    saveSettings(app, profile, ui, '.');
    const std::string ours = dir.read("setup.pref");
    app.settings.Delay = 222;
    app.settings.LastList = "C:\\theirs.wall";
    saveSettings(app, profile, ui, '.');
    const std::string theirs = dir.read("setup.pref");
    dir.write("setup.pref", ours);

    SavedMeanwhile meanwhile;
    meanwhile.save = [&] { dir.write("setup.pref", theirs); };
    IniProfile reading(meanwhile, ansi, dir.file("setup.pref"));
    AppState again;
    again.programDir = dir.path();
    loadSettings(again, reading, meanwhile, ui, '.');
    EXPECT_EQ(again.settings.Delay, 111);
    EXPECT_EQ(again.settings.LastList, "C:\\ours.wall");
    EXPECT_EQ(dir.read("setup.pref"), theirs);
}

}  // namespace
}  // namespace tl
