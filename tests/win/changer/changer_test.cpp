// The real program in the tray: each kind of picture on the desktop, the tray menu's Delay and Quit, the
// tray icon and the end of the session.
#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "changer/scaler_win.h"
#include "lists/picture_win.h"
#include "shared/default_settings_file.h"
#include "support/program_test.h"

namespace tl::wintest {
namespace {

using Changer = ProgramTest;

TEST_F(Changer, EachKindOfPictureIsAppliedAsABitmapAndShowsOnTheDesktop) {
    const std::vector<TestPicture> pictures = {
        {"first.bmp", "bmp", 400, 300, 0xCC3300},
        {"second.jpg", "jpg", 500, 250, 0x3366CC},
        {"third.gif", "gif", 300, 200, 0x33CC33},
        {"fourth.png", "png", 640, 400, 0xFFCC00},
    };
    write(pictures);
    RunningProgram tl(dir);
    HWND form = tl.waitForLoaded("TessalineMain");
    ASSERT_NE(form, nullptr) << "frmMain did not load";
    for (size_t i = 0; i < pictures.size(); ++i) {
        const TestPicture& p = pictures[i];
        if (i > 0) {
            postTrayMouse(form, WM_LBUTTONDOWN);  // a click on the icon: the next wallpaper
        }
        ASSERT_TRUE(bitmapBecomes(p.width, p.height)) << p.name << ": tl_current.bmp is " << bitmapSizeText();
        EXPECT_EQ(bitmapFileSize(bitmap())->bitsPerPixel, 24) << p.name;
        EXPECT_EQ(desktopValue("Wallpaper"), bitmap()) << p.name;
        EXPECT_EQ(desktopValue("WallpaperStyle"), "0") << p.name;
        EXPECT_EQ(desktopValue("TileWallpaper"), "0") << p.name;
        // Centred on the 1024 x 768 desktop: the top-left square has the picture's colour, the one beside
        // it is light grey.
        const int left = (1024 - p.width) / 2;
        const int top = (768 - p.height) / 2;
        unsigned seen = 0;
        const bool shown = waitFor([&] {
            ScreenShot shot;
            seen = shot.pixel(left + 6, top + 6);
            return closeColour(seen, p.colour) && closeColour(shot.pixel(left + 22, top + 6), 0xF0F0F0);
        });
        if (!shown) {
            ScreenShot().save("changer-desktop-" + p.name + ".bmp");
        }
        EXPECT_TRUE(shown) << p.name << ": the desktop shows " << std::hex << seen << " for " << p.colour;
    }
    ScreenShot().save("changer-desktop.bmp");
}

TEST_F(Changer, TheDelayDialogRefusesOutOfRangeAndQuitWritesTheListAndTheSettings) {
    // An unloadable first line leaves the list; odd orientation fields are read by their first letters.
    write({{"broken.jpg", nullptr, 0, 0, 0},
           {"a.bmp", "bmp", 64, 48, 0xCC3300, "Tile..."},
           {"b.jpg", "jpg", 64, 48, 0x3366CC, "Stretch"},
           {"c.gif", "gif", 64, 48, 0x33CC33, "Centre."},
           {"d.png", "png", 64, 48, 0xFFCC00, "Scale.."}},
          "", "#" + dir.file("folder") + "\r\n");
    dir.write("broken.jpg", "this is no picture at all");
    RunningProgram tl(dir);
    HWND form = started(tl, 64, 48);
    ASSERT_NE(form, nullptr);

    ASSERT_TRUE(chooseTrayMenuItem(form, "Delay"));
    HWND dialog = tl.waitForWindow("TessalineDelay", "Delay");
    ASSERT_NE(dialog, nullptr) << "the delay dialog did not open";
    HWND edit = findChild(dialog, "Edit");
    HWND ok = findChild(dialog, "Button", "&Ok");
    for (const char* refused : {"0", "32001"}) {
        typeText(edit, refused);
        clickButton(ok);
        HWND box = tl.waitForWindow("#32770", "Error");
        ASSERT_NE(box, nullptr) << refused << " was not refused";
        EXPECT_EQ(staticTexts(box), "Please enter a number above zero, and under 32,000");
        pressButton(box, IDOK);
        ASSERT_TRUE(waitFor([&] { return !::IsWindow(box) && ::IsWindowEnabled(dialog); }));
        EXPECT_TRUE(::IsWindowVisible(dialog)) << "the dialog stays after refusing " << refused;
    }
    typeText(edit, "32000");
    clickButton(ok);
    ASSERT_TRUE(waitFor([&] { return !::IsWindow(dialog) || !::IsWindowVisible(dialog); })) << "32000 was refused";

    ASSERT_TRUE(quit(tl, form)) << "Quit did not end the program";
    EXPECT_EQ(tl.exitCode(), 0u);
    EXPECT_EQ(dir.lines("MyWallpapers.wall"),
              (std::vector<std::string>{paths[1] + "\t1", paths[2] + "\t2", paths[3] + "\t0", paths[4] + "\t3",
                                        "#" + dir.file("folder")}));
    EXPECT_TRUE(dir.exists("broken.jpg")) << "the file itself stays";
    EXPECT_EQ(dir.lines("setup.pref").size(), 29u) << "the section and all 28 keys";
    EXPECT_TRUE(settingIs("Delay=32000"));
    EXPECT_TRUE(settingIs("LastList=" + listFile()));
}

TEST_F(Changer, TheIconComesBackWithANewTaskbarAndTheEndOfTheSessionWritesOnce) {
    write({{"a.bmp", "bmp", 64, 48, 0xCC3300, "Tile..."}, {"b.bmp", "bmp", 64, 48, 0x3366CC}});
    const std::string settings = dir.read("setup.pref");
    // A settings file that can't be written: its message shows when, and how often, the program saves.
    ASSERT_TRUE(::SetFileAttributesA(dir.file("setup.pref").c_str(), FILE_ATTRIBUTE_READONLY));
    RunningProgram tl(dir);
    HWND form = started(tl, 64, 48);
    ASSERT_NE(form, nullptr);

    ASSERT_TRUE(waitFor([&] { return trayHasIcon(form); })) << "no tray icon after start";
    removeTrayIcon(form);  // as a shell that restarted has lost it
    ASSERT_FALSE(trayHasIcon(form));
    ::PostMessageA(form, ::RegisterWindowMessageA("TaskbarCreated"), 0, 0);
    EXPECT_TRUE(waitFor([&] { return trayHasIcon(form); })) << "the icon did not come back";

    ::PostMessageA(form, WM_QUERYENDSESSION, 0, ENDSESSION_LOGOFF);
    HWND box = tl.waitForWindow("#32770", "Error");
    ASSERT_NE(box, nullptr) << "the settings were not saved when the session was asked to end";
    EXPECT_EQ(staticTexts(box), "Couldn't write to the setup file (" + dir.file("setup.pref") +
                                    "). Please check the permissions of the file.");
    EXPECT_EQ(dir.lines("MyWallpapers.wall"), (std::vector<std::string>{paths[0] + "\t1", paths[1] + "\t0"}))
        << "the list is written before the session ends";
    pressButton(box, IDOK);
    ASSERT_TRUE(waitFor([&] { return !::IsWindow(box); }));
    EXPECT_TRUE(waitFor([&] { return !trayHasIcon(form); })) << "the icon goes with the unload steps";
    // A second run of the unload steps would show the message again and keep the program from ending.
    ::PostMessageA(form, WM_ENDSESSION, TRUE, ENDSESSION_LOGOFF);
    EXPECT_TRUE(tl.hasExited()) << "the program did not end with the session";
    EXPECT_EQ(dir.read("setup.pref"), settings);
}

TEST_F(Changer, OnOneMonitorEverythingWrittenIsWhatVersionOneWrote) {
    // A settings file as 1.0 wrote it (every key but the newest), in sequence.
    std::vector<std::string> settings = test::defaultSettingsFile(dir.path());
    settings.pop_back();
    std::replace(settings.begin(), settings.end(), std::string("Mode=1"), std::string("Mode=2"));
    std::string text;
    for (const std::string& line : settings) {
        text += line + "\r\n";
    }
    const std::vector<TestPicture> pictures = {{"a.jpg", "jpg", 500, 250, 0x3366CC, "0"},
                                               {"b.bmp", "bmp", 64, 48, 0xCC3300, "1"},
                                               {"c.gif", "gif", 300, 200, 0x33CC33, "2"},
                                               {"d.png", "png", 640, 400, 0xFFCC00, "3"}};
    write(pictures);
    dir.write("setup.pref", text);
    const std::string list = dir.read("MyWallpapers.wall");
    // The picture decoded and written as the one BMP it always was.
    const struct {
        const char* style;
        const char* tile;
    } values[] = {{"0", "0"}, {"1", "1"}, {"2", "0"}, {"0", "0"}};
    RunningProgram tl(dir);
    HWND form = started(tl, 500, 250);
    ASSERT_NE(form, nullptr);
    for (size_t i = 0; i < pictures.size(); ++i) {
        const TestPicture& p = pictures[i];
        // Made before the click, so that this process's decode can't keep the program from the file.
        const std::optional<Picture> decoded = loadPicture(paths[i]);
        ASSERT_TRUE(decoded);
        // Scale's bitmap is the picture resampled to fit the screen: 640 x 400 by 1.6 on 1024 x 768.
        const Picture scaled = i == 3 ? resampledPicture(*decoded, 1024, 640) : Picture();
        ASSERT_TRUE(writeBitmapFile(i == 3 ? scaled : *decoded, dir.file("expected.bmp")));
        if (i > 0) {
            postTrayMouse(form, WM_LBUTTONDOWN);
        }
        const std::string expected = dir.read("expected.bmp");
        EXPECT_TRUE(waitFor([&] { return dir.read("tl_current.bmp") == expected; })) << p.name;
        EXPECT_EQ(desktopValue("WallpaperStyle"), values[i].style) << p.name;
        EXPECT_EQ(desktopValue("TileWallpaper"), values[i].tile) << p.name;
        EXPECT_EQ(desktopValue("Wallpaper"), bitmap()) << p.name;
    }
    ASSERT_TRUE(quit(tl, form));
    EXPECT_EQ(dir.read("MyWallpapers.wall"), list);
    settings.push_back("MonitorMode=0");
    EXPECT_EQ(dir.lines("setup.pref"), settings) << "1.0's keys as they were, and the new one after them";
}

}  // namespace
}  // namespace tl::wintest
