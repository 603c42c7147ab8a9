#include <gtest/gtest.h>

#include "app/app_state.h"
#include "app/profile_win.h"
#include "app/settings.h"
#include "app/startup.h"
#include "base/file_system_win.h"
#include "base/ui.h"
#include "support/program_dir.h"
#include "support/running_program.h"

namespace tl::wintest {
namespace {

// Records message boxes instead of showing them.
class RecordingUi : public Ui {
public:
    int messageBox(std::string_view text, std::string_view title, unsigned) override {
        messages.push_back(std::string(title) + ": " + std::string(text));
        return kIdOk;
    }
    void beep() override {}
    std::vector<std::string> messages;
};

TEST(StartUp, FirstRunWritesEverySettingInOrderWithItsDefault) {
    ProgramDir dir;
    RunningProgram tl(dir);
    ASSERT_TRUE(waitFor([&] { return dir.exists("setup.pref"); })) << "setup.pref was not written";
    const std::string d = dir.path();
    const std::vector<std::string> expected = {
        "[Tessaline]",
        "AutomaticShutdown=False",
        "OutputPath=" + d + "\\tl_current.bmp",
        "DefaultOrientation=0",
        "Delay=1",
        "LastList=" + d + "\\MyWallpapers.wall",
        "Mode=1",
        "PreviewLeft=0",
        "PreviewTop=0",
        "PreviewMode=0",
        "MainMode=0",
        "AutomaticShowOnDesktop=True",
        "AutoSortFolder=True",
        "DefaultAddOrientation=0",
        "CheckForDuplicates=True",
        "RatioTolerance=0.25",
        "HalfRatio=1.5",
        "UseActiveDesktop=False",
        "SmartSwitch=False",
        "IconTextColour=0",
        "TransText=False",
        "ScreenSaver=-1",
        "WallpaperDirectory=" + d + "\\",
        "TrapIEWallpaper=True",
        "UseTracker=True",
        "HotKey=83",
        "HotKeyMod=3",
        "HideDesktopIcons=False",
    };
    EXPECT_EQ(dir.lines("setup.pref"), expected);
    EXPECT_FALSE(dir.exists("setup.pref.new")) << "the working copy must not be left behind";
}

TEST(StartUp, SetupSwitchShowsTheManagerEvenWithAList) {
    ProgramDir dir;
    dir.write("Summer.wall", "C:\\a.jpg\t0\r\n");
    RunningProgram tl(dir, "/setup " + dir.file("Summer.wall"));
    HWND manager = tl.waitForWindow("TessalineManager", nullptr, seconds(10), true);
    ASSERT_NE(manager, nullptr) << "the list manager did not open";
    EXPECT_EQ(tl.window("TessalineMain"), nullptr) << "the changer must not load with /setup";
}

TEST(StartUp, ValueWithAHalfIsRoundedToEven) {
    ProgramDir dir(false);
    dir.write("setup.pref", "[Tessaline]\r\nDelay=3.5\r\nMode=2.5\r\nHotKey=84.5\r\n");
    AppState app;
    app.programDir = dir.path();
    Win32FileSystem fs;
    Win32ProfileFile profile(fs, dir.file("setup.pref"));
    RecordingUi ui;
    startUp(app, "", profile, fs, ui, '.');
    EXPECT_EQ(app.settings.Delay, 4);
    EXPECT_EQ(app.settings.Mode, 2);
    EXPECT_EQ(app.settings.HotKey, 84);
    EXPECT_EQ(app.settings.OutputPath, "0") << "a missing text key reads as \"0\"";
}

TEST(StartUp, ReadOnlySettingsFileIsReportedOnceAndKept) {
    ProgramDir dir(false);
    dir.write("setup.pref", "[Tessaline]\r\nDelay=7\r\n");
    ASSERT_TRUE(::SetFileAttributesA(dir.file("setup.pref").c_str(), FILE_ATTRIBUTE_READONLY));
    AppState app;
    app.programDir = dir.path();
    Win32FileSystem fs;
    Win32ProfileFile profile(fs, dir.file("setup.pref"));
    RecordingUi ui;
    loadSettings(app, profile, fs, ui, '.');
    app.settings.Delay = 9;
    saveSettings(app, profile, ui, '.');
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0], "Error: Couldn't write to the setup file (" + dir.file("setup.pref") +
                                  "). Please check the permissions of the file.");
    EXPECT_EQ(dir.read("setup.pref"), "[Tessaline]\r\nDelay=7\r\n");
    EXPECT_FALSE(dir.exists("setup.pref.new"));
}

TEST(StartUp, SavingReplacesTheFileWhole) {
    ProgramDir dir(false);
    dir.write("setup.pref", "[Tessaline]\r\nDelay=7\r\n\r\n[Mine]\r\nkeep=1\r\n");
    AppState app;
    app.programDir = dir.path();
    Win32FileSystem fs;
    Win32ProfileFile profile(fs, dir.file("setup.pref"));
    RecordingUi ui;
    loadSettings(app, profile, fs, ui, '.');
    app.settings.Delay = 12;
    saveSettings(app, profile, ui, '.');
    EXPECT_TRUE(ui.messages.empty());
    AppState again;
    again.programDir = dir.path();
    loadSettings(again, profile, fs, ui, '.');
    EXPECT_EQ(again.settings.Delay, 12);
    EXPECT_NE(dir.read("setup.pref").find("keep=1"), std::string::npos);
    EXPECT_FALSE(dir.exists("setup.pref.new"));
}

TEST(StartUp, UnreadableValueStopsTheProgramWithoutTouchingFiles) {
    ProgramDir dir;
    const std::string original = "[Tessaline]\r\nSmartSwitch=yes\r\n";
    dir.write("setup.pref", original);
    RunningProgram tl(dir);
    HWND box = tl.waitForMessageBox("Tessaline");
    ASSERT_NE(box, nullptr) << "no message about the bad value";
    const std::string text = RunningProgram::messageBoxText(box);
    EXPECT_NE(text.find("SmartSwitch"), std::string::npos) << text;
    EXPECT_NE(text.find("\"yes\""), std::string::npos) << text;
    EXPECT_NE(text.find(dir.file("setup.pref")), std::string::npos) << text;
    RunningProgram::pressButton(box, IDOK);
    ASSERT_TRUE(tl.hasExited(seconds(10)));
    EXPECT_EQ(tl.exitCode(), 1u);
    EXPECT_EQ(dir.read("setup.pref"), original);
    EXPECT_FALSE(dir.exists("MyWallpapers.wall"));
    EXPECT_FALSE(dir.exists("tl_current.bmp"));
}

}  // namespace
}  // namespace tl::wintest
