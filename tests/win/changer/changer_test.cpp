// The real program in the tray: applying, switching from the tray, the menu and the hot key, quitting.
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "hotkey/hot_key_input.h"
#include "support/desktop_probe.h"
#include "support/program_dir.h"
#include "support/running_program.h"

namespace tl::wintest {
namespace {

struct TestPicture {
    std::string name;
    std::string type;
    int width;
    int height;
    unsigned colour;  // web-safe, so that a GIF keeps it
};

class Changer : public ::testing::Test {
  protected:
    // setup.pref with sequential order, the desktop shown and Ctrl+Alt+S as the hot key.
    void writeSettings(const std::string& delay = "1") {
        dir.write("setup.pref", "[Tessaline]\r\nDelay=" + delay +
                                    "\r\nMode=2\r\nAutomaticShowOnDesktop=True\r\nLastList=" + list() +
                                    "\r\nOutputPath=" + bitmap() + "\r\nHotKey=83\r\nHotKeyMod=3\r\n");
    }
    // The pictures, and the list naming them with the given orientation fields, in order.
    void writeList(const std::vector<TestPicture>& pictures,
                   const std::vector<std::string>& orientations,
                   const std::string& extraLines = "") {
        std::string text;
        for (size_t i = 0; i < pictures.size(); ++i) {
            const TestPicture& p = pictures[i];
            if (p.type != "none") {
                writePicture(dir.file(p.name), p.type, p.width, p.height, p.colour);
            }
            text += dir.file(p.name) + "\t" + orientations[i] + "\r\n";
        }
        dir.write("MyWallpapers.wall", text + extraLines);
    }
    std::string list() const { return dir.file("MyWallpapers.wall"); }
    std::string bitmap() const { return dir.file("tl_current.bmp"); }

    // Waits until tl_current.bmp is a BMP of that size.
    bool bitmapBecomes(int width, int height, std::chrono::milliseconds timeout = std::chrono::seconds(10)) {
        return waitFor(
            [&] {
                const auto size = bitmapFileSize(bitmap());
                return size && size->width == width && size->height == height;
            },
            timeout);
    }
    std::string bitmapSizeText() {
        const auto size = bitmapFileSize(bitmap());
        return size ? std::to_string(size->width) + "x" + std::to_string(size->height) : "no bitmap";
    }
    HWND mainWindow(RunningProgram& program) { return program.waitForWindow("TessalineMain"); }

    ProgramDir dir;
};

TEST_F(Changer, EachKindOfPictureIsAppliedAsABitmapAndShowsOnTheDesktop) {
    const std::vector<TestPicture> pictures = {
        {"first.bmp", "bmp", 400, 300, 0xCC3300},
        {"second.jpg", "jpg", 500, 250, 0x3366CC},
        {"third.gif", "gif", 300, 200, 0x33CC33},
        {"fourth.png", "png", 640, 400, 0xFFCC00},
    };
    writeSettings();
    writeList(pictures, {"0", "0", "0", "0"});
    RunningProgram tl(dir);
    HWND form = mainWindow(tl);
    ASSERT_NE(form, nullptr) << "frmMain did not load";
    EXPECT_FALSE(::IsWindowVisible(form)) << "the program lives in the tray";

    for (size_t i = 0; i < pictures.size(); ++i) {
        const TestPicture& p = pictures[i];
        if (i > 0) {
            postTrayMouse(form, WM_LBUTTONDOWN);
        }
        ASSERT_TRUE(bitmapBecomes(p.width, p.height)) << p.name << ": tl_current.bmp is " << bitmapSizeText();
        EXPECT_EQ(bitmapFileSize(bitmap())->bitsPerPixel, 24) << p.name;
        EXPECT_EQ(desktopValue("Wallpaper"), bitmap()) << p.name;
        EXPECT_EQ(desktopValue("WallpaperStyle"), "0") << p.name;
        EXPECT_EQ(desktopValue("TileWallpaper"), "0") << p.name;

        // The picture is centred on the 1024 x 768 desktop; its top-left square has the picture's colour
        // and the square beside it is light grey.
        const int left = (1024 - p.width) / 2;
        const int top = (768 - p.height) / 2;
        unsigned seen = 0;
        const bool shown = waitFor([&] {
            ScreenShot shot;
            seen = shot.pixel(left + 6, top + 6);
            return closeColour(seen, p.colour) && closeColour(shot.pixel(left + 22, top + 6), 0xF0F0F0);
        });
        if (!shown) {
            ScreenShot().save(buildDirectory() + "\\changer-desktop-" + p.name + ".bmp");
        }
        EXPECT_TRUE(shown) << p.name << ": the desktop shows " << std::hex << seen << " where the picture has "
                           << p.colour;
    }
    ScreenShot().save(buildDirectory() + "\\changer-desktop.bmp");
}

TEST_F(Changer, ScaleFitsTheScreenAndEachOrientationHasItsDesktopValues) {
    const std::vector<TestPicture> pictures = {
        {"four-three.jpg", "jpg", 800, 600, 0x3366CC},
        {"wide.png", "png", 2000, 500, 0xCC3300},
        {"tiled.gif", "gif", 120, 90, 0x33CC33},
        {"stretched.bmp", "bmp", 160, 100, 0xFFCC00},
    };
    writeSettings();
    writeList(pictures, {"3", "Scale..", "Tile...", "Stretch"});
    RunningProgram tl(dir);
    HWND form = mainWindow(tl);
    ASSERT_NE(form, nullptr);

    struct Step {
        int width, height;
        const char* style;
        const char* tile;
    };
    const Step steps[] = {{1024, 768, "0", "0"}, {1024, 256, "0", "0"}, {120, 90, "1", "1"}, {160, 100, "2", "0"}};
    for (size_t i = 0; i < std::size(steps); ++i) {
        if (i > 0) {
            postTrayMouse(form, WM_LBUTTONDOWN);
        }
        ASSERT_TRUE(bitmapBecomes(steps[i].width, steps[i].height))
            << pictures[i].name << ": tl_current.bmp is " << bitmapSizeText();
        EXPECT_TRUE(waitFor([&] { return desktopValue("WallpaperStyle") == steps[i].style; })) << pictures[i].name;
        EXPECT_EQ(desktopValue("TileWallpaper"), steps[i].tile) << pictures[i].name;
        EXPECT_EQ(desktopValue("Wallpaper"), bitmap()) << pictures[i].name;
    }

    // A double click is not a further change; "Previous" goes back one step.
    postTrayMouse(form, WM_LBUTTONDBLCLK);
    ::Sleep(500);
    EXPECT_EQ(bitmapSizeText(), "160x100");
    ASSERT_TRUE(chooseTrayMenuItem(form, trayMenuCaptions(), "Previous"));
    EXPECT_TRUE(bitmapBecomes(120, 90)) << "tl_current.bmp is " << bitmapSizeText();
}

TEST_F(Changer, TheHotKeySwitchesToTheNextWallpaper) {
    writeSettings();
    writeList({{"one.bmp", "bmp", 200, 100, 0xCC3300}, {"two.jpg", "jpg", 240, 120, 0x3366CC}}, {"0", "0"});
    RunningProgram tl(dir);
    ASSERT_NE(mainWindow(tl), nullptr);
    ASSERT_TRUE(bitmapBecomes(200, 100)) << bitmapSizeText();
    // The combination is the program's: nobody else may register it now.
    const bool taken = !::RegisterHotKey(nullptr, 0x7000, MOD_CONTROL | MOD_ALT, 'S');
    if (!taken) {
        ::UnregisterHotKey(nullptr, 0x7000);
    }
    EXPECT_TRUE(taken) << "the program did not register Ctrl+Alt+S";
    ASSERT_TRUE(pressKeys({VK_CONTROL, VK_MENU}, 'S'));
    EXPECT_TRUE(bitmapBecomes(240, 120)) << "Ctrl+Alt+S did not switch: " << bitmapSizeText();
}

TEST_F(Changer, QuitFromTheTrayMenuWritesTheListAndTheSettings) {
    writeSettings("3.5");
    writeList({{"a.bmp", "bmp", 64, 48, 0xCC3300},
               {"b.jpg", "jpg", 64, 48, 0x3366CC},
               {"c.gif", "gif", 64, 48, 0x33CC33},
               {"d.png", "png", 64, 48, 0xFFCC00}},
              {"Tile...", "Stretch", "Centre.", "Scale.."}, "#" + dir.file("folder") + "\r\n");
    RunningProgram tl(dir);
    HWND form = mainWindow(tl);
    ASSERT_NE(form, nullptr);
    ASSERT_TRUE(waitFor([&] { return dir.exists("tl_current.bmp"); }));
    ASSERT_TRUE(chooseTrayMenuItem(form, trayMenuCaptions(), "Quit"));
    ASSERT_TRUE(tl.hasExited(seconds(10))) << "Quit did not end the program";
    EXPECT_EQ(tl.exitCode(), 0u);
    EXPECT_EQ(dir.lines("MyWallpapers.wall"),
              (std::vector<std::string>{dir.file("a.bmp") + "\t1", dir.file("b.jpg") + "\t2", dir.file("c.gif") + "\t0",
                                        dir.file("d.png") + "\t3", "#" + dir.file("folder")}));
    const std::vector<std::string> settings = dir.lines("setup.pref");
    EXPECT_EQ(settings.size(), 28u) << "the section and all 27 keys";
    EXPECT_NE(std::find(settings.begin(), settings.end(), "Delay=4"), settings.end()) << "3.5 loads as 4";
    EXPECT_NE(std::find(settings.begin(), settings.end(), "LastList=" + list()), settings.end());
}

// Replaces the text of the focused box with an entry, as typed, and presses Enter.
bool typeEntry(const std::string& entry) {
    bool ok = pressKeys({}, VK_HOME) && pressKeys({VK_SHIFT}, VK_END);
    for (char c : entry) {
        ok = ok && pressKeys({}, static_cast<WORD>(c));
    }
    return ok && pressKeys({}, VK_RETURN);
}

TEST_F(Changer, TheDelayDialogRefusesEntriesOutOfRangeAndTheAcceptedOneIsSavedAtQuit) {
    writeSettings();
    writeList({{"a.bmp", "bmp", 64, 48, 0xCC3300}}, {"0"});
    RunningProgram tl(dir);
    HWND form = mainWindow(tl);
    ASSERT_NE(form, nullptr);
    ASSERT_TRUE(waitFor([&] { return dir.exists("tl_current.bmp"); }));
    ASSERT_TRUE(chooseTrayMenuItem(form, trayMenuCaptions(), "Delay"));
    HWND dialog = tl.waitForWindow(nullptr, "Delay", seconds(10), true);
    ASSERT_NE(dialog, nullptr) << "the delay dialog did not open";
    for (const char* refused : {"0", "32001"}) {
        ASSERT_TRUE(waitFor([&] { return ::GetForegroundWindow() == dialog; })) << refused;
        ASSERT_TRUE(typeEntry(refused));
        HWND box = tl.waitForMessageBox("Error");
        ASSERT_NE(box, nullptr) << refused << " was not refused";
        EXPECT_EQ(RunningProgram::messageBoxText(box), "Please enter a number above zero, and under 32,000");
        RunningProgram::pressButton(box, IDOK);
        ASSERT_TRUE(waitFor([&] { return !::IsWindow(box); }));
        EXPECT_TRUE(::IsWindowVisible(dialog)) << "the dialog stays after refusing " << refused;
    }
    ASSERT_TRUE(waitFor([&] { return ::GetForegroundWindow() == dialog; }));
    ASSERT_TRUE(typeEntry("32000"));
    ASSERT_TRUE(waitFor([&] { return !::IsWindow(dialog) || !::IsWindowVisible(dialog); })) << "32000 was refused";
    ASSERT_TRUE(chooseTrayMenuItem(form, trayMenuCaptions(), "Quit"));
    ASSERT_TRUE(tl.hasExited(seconds(10)));
    const std::vector<std::string> settings = dir.lines("setup.pref");
    EXPECT_NE(std::find(settings.begin(), settings.end(), "Delay=32000"), settings.end());
}

TEST_F(Changer, AnUnloadablePictureLeavesTheListAndTheNextIsApplied) {
    writeSettings();
    dir.write("broken.jpg", "this is no picture at all");
    writeList({{"broken.jpg", "none", 0, 0, 0}, {"good.bmp", "bmp", 320, 240, 0x33CC33}}, {"0", "0"});
    RunningProgram tl(dir);
    HWND form = mainWindow(tl);
    ASSERT_NE(form, nullptr);
    EXPECT_TRUE(bitmapBecomes(320, 240)) << bitmapSizeText();
    EXPECT_EQ(desktopValue("Wallpaper"), bitmap());
    ASSERT_TRUE(chooseTrayMenuItem(form, trayMenuCaptions(), "Quit"));
    ASSERT_TRUE(tl.hasExited(seconds(10)));
    EXPECT_EQ(dir.lines("MyWallpapers.wall"), std::vector<std::string>{dir.file("good.bmp") + "\t0"});
    EXPECT_TRUE(dir.exists("broken.jpg")) << "the file itself stays";
}

TEST_F(Changer, AReadOnlySettingsFileIsReportedOnceWhenTheProgramSaves) {
    writeSettings();
    writeList({{"a.bmp", "bmp", 64, 48, 0xCC3300}}, {"0"});
    const std::string before = dir.read("setup.pref");
    ASSERT_TRUE(::SetFileAttributesA(dir.file("setup.pref").c_str(), FILE_ATTRIBUTE_READONLY));
    RunningProgram tl(dir);
    HWND form = mainWindow(tl);
    ASSERT_NE(form, nullptr);
    ASSERT_TRUE(waitFor([&] { return dir.exists("tl_current.bmp"); }));
    ASSERT_TRUE(chooseTrayMenuItem(form, trayMenuCaptions(), "Quit"));
    HWND box = tl.waitForMessageBox("Error");
    ASSERT_NE(box, nullptr) << "no message about the setup file";
    EXPECT_EQ(RunningProgram::messageBoxText(box), "Couldn't write to the setup file (" + dir.file("setup.pref") +
                                                       "). Please check the permissions of the file.");
    RunningProgram::pressButton(box, IDOK);
    ASSERT_TRUE(tl.hasExited(seconds(10)));
    EXPECT_EQ(tl.windows("#32770").size(), 0u);
    EXPECT_EQ(dir.read("setup.pref"), before);
}

TEST_F(Changer, TheEndOfTheSessionWritesEverythingOnce) {
    writeSettings();
    writeList({{"a.bmp", "bmp", 64, 48, 0xCC3300}, {"b.bmp", "bmp", 64, 48, 0x3366CC}}, {"Tile...", "0"});
    ASSERT_TRUE(::SetFileAttributesA(dir.file("setup.pref").c_str(), FILE_ATTRIBUTE_READONLY));
    RunningProgram tl(dir);
    HWND form = mainWindow(tl);
    ASSERT_NE(form, nullptr);
    ASSERT_TRUE(waitFor([&] { return dir.exists("tl_current.bmp"); }));

    ::PostMessageA(form, WM_QUERYENDSESSION, 0, ENDSESSION_LOGOFF);
    HWND box = tl.waitForMessageBox("Error");
    ASSERT_NE(box, nullptr) << "the settings were not saved when the session was asked to end";
    EXPECT_EQ(dir.lines("MyWallpapers.wall"),
              (std::vector<std::string>{dir.file("a.bmp") + "\t1", dir.file("b.bmp") + "\t0"}))
        << "the list is written before the session ends";
    RunningProgram::pressButton(box, IDOK);
    ASSERT_TRUE(waitFor([&] { return tl.windows("#32770").empty(); }));
    EXPECT_FALSE(trayHasIcon(form)) << "the icon goes with the unload steps";

    ::PostMessageA(form, WM_ENDSESSION, TRUE, ENDSESSION_LOGOFF);
    ASSERT_TRUE(tl.hasExited(seconds(10))) << "the program did not end with the session";
    EXPECT_EQ(tl.windows("#32770").size(), 0u) << "the unload steps ran a second time";
}

TEST_F(Changer, AnEmptyOrMissingListShowsTheManagerInstead) {
    for (bool missing : {true, false}) {
        ProgramDir d;
        d.write("setup.pref", "[Tessaline]\r\nMode=2\r\nLastList=" + d.file("MyWallpapers.wall") +
                                  "\r\nOutputPath=" + d.file("tl_current.bmp") + "\r\n");
        if (!missing) {
            d.write("MyWallpapers.wall", "#" + d.file("photos") + "\r\n");
        }
        RunningProgram tl(d);
        EXPECT_NE(tl.waitForWindow("TessalineManager", nullptr, seconds(10), true), nullptr)
            << (missing ? "missing" : "empty") << " list: the manager did not open";
        EXPECT_TRUE(waitFor([&] { return tl.window("TessalineMain") == nullptr; }))
            << "frmMain must unload when its list is empty";
        EXPECT_FALSE(d.exists("tl_current.bmp"));
    }
}

TEST_F(Changer, ANewTaskbarGetsTheIconBack) {
    writeSettings();
    writeList({{"a.bmp", "bmp", 64, 48, 0xCC3300}}, {"0"});
    RunningProgram tl(dir);
    HWND form = mainWindow(tl);
    ASSERT_NE(form, nullptr);
    ASSERT_TRUE(waitFor([&] { return trayHasIcon(form); })) << "no tray icon after start";
    removeTrayIconOf(form);  // as a shell that restarted has lost it
    ASSERT_FALSE(trayHasIcon(form));
    ::PostMessageA(form, ::RegisterWindowMessageA("TaskbarCreated"), 0, 0);
    EXPECT_TRUE(waitFor([&] { return trayHasIcon(form); })) << "the icon did not come back";
}

}  // namespace
}  // namespace tl::wintest
