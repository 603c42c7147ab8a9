// Names in any script, beyond the first plane too, through the real program: the program's own folder, the
// manager's browser, folder adds and drops, lists saved and opened, the command line, the applier (its
// bitmap and the desktop's registry values), the tracker and setup.pref. None of these names is in the
// ANSI code page of the session, so a single A call on their way would turn them into '?'.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/utf8_win.h"
#include "base/window_win.h"
#include "changer/commands.h"
#include "manager/manager_ids.h"
#include "support/driver.h"
#include "support/program.h"

namespace tl::wintest {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;

// The program's folder itself: a user profile named in another script holds the program, its settings and
// its bitmap.
const std::string kProgramFolder = "Été Москва 東京 \U0001F305 ";

bool inAnsiCodePage(const std::string& text) {
    BOOL usedDefault = FALSE;
    const std::wstring wide = widen(text);
    ::WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, wide.c_str(), -1, nullptr, 0, nullptr, &usedDefault);
    return !usedDefault;
}

void expectOutsideAnsiCodePage() {
    for (const char* name : {"東京", "Москва", "Ελλάδα", "\U0001F305"}) {
        ASSERT_FALSE(inAnsiCodePage(name))
            << name << " is in code page " << ::GetACP() << ": run the tests in a locale whose code page lacks it";
    }
}

// The line of a list box whose text, without its indent, is name; -1 for none.
int lineNamed(HWND listBox, const std::string& name) {
    const auto lines = listLines(listBox);
    for (size_t i = 0; i < lines.size(); ++i) {
        if (lines[i].substr(lines[i].find_first_not_of(' ')) == name) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

TEST(UnicodeNames, TheManagerBrowsesAddsDropsAndSavesNamesOfEveryScript) {
    expectOutsideAnsiCodePage();
    ProgramDir dir(true, kProgramFolder);
    dir.makeFolder("Été 2024");
    dir.makeFolder("Москва");
    writePicture(dir.file("Été 2024\\plage.jpg"), "jpg", 40, 30);
    writePicture(dir.file("Été 2024\\東京 夜景.jpg"), "jpg", 48, 36);
    writePicture(dir.file("Été 2024\\\U0001F305 sunset.bmp"), "bmp", 56, 42);
    writePicture(dir.file("Москва\\Кремль.jpg"), "jpg", 64, 48);
    writePicture(dir.file("Ελλάδα.gif"), "gif", 72, 54);

    RunningProgram tl(dir, "/setup");
    HWND window = tl.waitForWindow("TessalineManager", nullptr, seconds(15));
    ASSERT_NE(window, nullptr) << "the list manager did not open";
    HWND list1 = findControl(window, IDC_LIST1);
    HWND dir1 = findControl(window, IDC_DIR1);
    HWND file1 = findControl(window, IDC_FILE1);

    // The browser opens in the program's folder and shows the names as they are.
    ASSERT_GE(lineNamed(dir1, "Москва"), 0) << ::testing::PrintToString(listLines(dir1));
    doubleClickListLine(dir1, lineNamed(dir1, "Été 2024"));
    ASSERT_TRUE(waitFor([&] { return listLines(file1).size() == 3; })) << ::testing::PrintToString(listLines(file1));
    EXPECT_THAT(listLines(file1), ElementsAre("plage.jpg", "東京 夜景.jpg", "\U0001F305 sunset.bmp"));
    clickListLine(file1, 1);
    EXPECT_TRUE(waitFor([&] { return controlText(findControl(window, IDC_DIMENSIONS)) == "48 x 36 pixels"; }))
        << "the browsed picture was not previewed";

    // The open folder added, then a folder and a file dropped; each add sorts the list.
    clickButton(findChild(window, "Button", "Add folder"));
    ASSERT_TRUE(waitFor([&] { return listLines(list1).size() == 3; })) << ::testing::PrintToString(listLines(list1));
    dropFiles(tl.pid(), window, {dir.file("Москва"), dir.file("Ελλάδα.gif")});
    ASSERT_TRUE(waitFor([&] { return listLines(list1).size() == 5; })) << ::testing::PrintToString(listLines(list1));
    const std::vector<std::string> listed = {dir.file("Été 2024\\plage.jpg"), dir.file("Été 2024\\東京 夜景.jpg"),
                                             dir.file("Été 2024\\\U0001F305 sunset.bmp"), dir.file("Ελλάδα.gif"),
                                             dir.file("Москва\\Кремль.jpg")};
    EXPECT_EQ(listLines(list1), listed);

    // Saved under a name of its own script, in UTF-8 without a byte order mark.
    ::PostMessageW(window, WM_COMMAND, MAKEWPARAM(IDM_SAVE_AS, 0), 0);
    HWND dialog = tl.waitForWindow("#32770", "Select a file to save list to");
    ASSERT_NE(dialog, nullptr) << "no save dialog";
    const std::string saved = dir.file("Списки \U0001F4CB.wall");
    chooseInFileDialog(dialog, dir.file("Списки \U0001F4CB"));
    ASSERT_TRUE(waitFor([&] { return windowText(window) == "Tessaline (" + saved + ")"; })) << windowText(window);
    std::string text;
    for (const std::string& path : listed) {
        text += path + "\t0\r\n";
    }
    EXPECT_TRUE(waitFor([&] { return dir.read("Списки \U0001F4CB.wall") == text; }))
        << dir.read("Списки \U0001F4CB.wall");

    // The changer takes it up, from the settings that name it, and applies one of its pictures.
    ::PostMessageW(window, WM_COMMAND, MAKEWPARAM(IDM_CLOSE, 0), 0);
    ASSERT_NE(tl.waitForLoaded("TessalineMain"), nullptr) << "frmMain did not load";
    EXPECT_THAT(dir.lines("setup.pref"), Contains("LastList=" + saved));
    EXPECT_THAT(dir.lines("setup.pref"), Contains("WallpaperDirectory=" + dir.path() + "\\"));
    const std::string bitmap = dir.file("tl_current.bmp");
    EXPECT_TRUE(waitFor([&] {
        const auto size = bitmapFileSize(bitmap);
        return size && size->width >= 40 && size->width <= 72 && desktopValue("Wallpaper") == bitmap;
    })) << "no wallpaper from the list was applied: "
        << desktopValue("Wallpaper").value_or("(none)");
}

TEST(UnicodeNames, TheChangerOpensAppliesTracksAndWritesBackNamesOfEveryScript) {
    expectOutsideAnsiCodePage();
    ProgramDir dir(true, kProgramFolder);
    const std::string tracked = dir.file("Été 2024");
    dir.makeFolder("Été 2024");
    dir.makeFolder("outside");
    writePicture(dir.file("Москва.png"), "png", 64, 48);
    writePicture(dir.file("東京 夜景.jpg"), "jpg", 80, 60);
    writePicture(dir.file("outside\\new.jpg"), "jpg", 96, 72);
    const std::string list = dir.file("Списки \U0001F4CB.wall");
    dir.write("Списки \U0001F4CB.wall",
              dir.file("Москва.png") + "\t0\r\n" + dir.file("東京 夜景.jpg") + "\t1\r\n#" + tracked + "\r\n");
    dir.write("setup.pref",
              "[Tessaline]\r\nDelay=5\r\nMode=2\r\nAutomaticShowOnDesktop=True\r\nLastList=" + dir.file("none.wall") +
                  "\r\nOutputPath=" + dir.file("tl_current.bmp") + "\r\nWallpaperDirectory=" + tracked +
                  "\\\r\nUseTracker=True\r\nDefaultAddOrientation=0\r\nHotKey=83\r\nHotKeyMod=3\r\n");
    DesktopValueGuard wallpaper("Wallpaper");
    DesktopValueGuard style("WallpaperStyle");
    DesktopValueGuard tile("TileWallpaper");

    // The list named on the command line, quoted, after a switch.
    RunningProgram tl(dir, "/auto \"" + list + "\"");
    HWND form = tl.waitForLoaded("TessalineMain");
    ASSERT_NE(form, nullptr) << "the changer did not load the list named on the command line";
    const std::string bitmap = dir.file("tl_current.bmp");
    const auto applied = [&](int width, int height, const char* wallpaperStyle, const char* tileWallpaper) {
        return waitFor([&] {
            const auto size = bitmapFileSize(bitmap);
            return size && size->width == width && size->height == height && size->bitsPerPixel == 24 &&
                   desktopValue("Wallpaper") == bitmap && desktopValue("WallpaperStyle") == wallpaperStyle &&
                   desktopValue("TileWallpaper") == tileWallpaper;
        });
    };
    EXPECT_TRUE(applied(64, 48, "0", "0")) << "Москва.png: " << desktopValue("Wallpaper").value_or("(none)");
    ASSERT_TRUE(chooseTrayMenuItem(form, "Next"));
    EXPECT_TRUE(applied(80, 60, "1", "1")) << "東京 夜景.jpg, tiled";

    ASSERT_TRUE(showPanel(form));
    HWND panelList = ::GetDlgItem(form, idList1);
    EXPECT_THAT(listLines(panelList), ElementsAre(dir.file("Москва.png"), dir.file("東京 夜景.jpg")));

    // A picture copied into the tracked folder under a name beyond the first plane, then renamed.
    const std::string copied = tracked + "\\\U0001F305 sunset.jpg";
    const std::string renamed = tracked + "\\夜.jpg";
    const auto listed = [&](const std::string& path) {
        const auto lines = listLines(panelList);
        return std::find(lines.begin(), lines.end(), path) != lines.end();
    };
    ASSERT_TRUE(::CopyFileW(widen(dir.file("outside\\new.jpg")).c_str(), widen(copied).c_str(), TRUE));
    EXPECT_TRUE(waitFor([&] { return listed(copied); })) << ::testing::PrintToString(listLines(panelList));
    EXPECT_TRUE(applied(96, 72, "0", "0")) << "the tracker's new picture is applied";
    ASSERT_TRUE(::MoveFileW(widen(copied).c_str(), widen(renamed).c_str()));
    EXPECT_TRUE(waitFor([&] { return listed(renamed) && !listed(copied); }))
        << ::testing::PrintToString(listLines(panelList));

    ASSERT_TRUE(chooseTrayMenuItem(form, "Quit") && tl.hasExited(seconds(10)));
    EXPECT_EQ(dir.lines("Списки \U0001F4CB.wall"),
              (std::vector<std::string>{dir.file("Москва.png") + "\t0", dir.file("東京 夜景.jpg") + "\t1",
                                        renamed + "\t0", "#" + tracked}));
    EXPECT_THAT(dir.lines("setup.pref"), Contains("LastList=" + list));
    EXPECT_THAT(dir.lines("setup.pref"), Contains("WallpaperDirectory=" + tracked + "\\"));
}

// A 1.0 install wrote its settings and lists in the ANSI code page: they load as they are, and the
// settings are written back in UTF-8.
TEST(UnicodeNames, AnEarlierVersionsAnsiSettingsAndListStillLoad) {
    ProgramDir dir(true, "Été ");
    const std::string list = dir.file("Vacances à Noël.wall");
    const std::string picture = dir.file("Noël.jpg");
    writePicture(picture, "jpg", 88, 66);
    const auto ansi = [](const std::string& text) {
        const std::wstring wide = widen(text);
        std::string out(wide.size() * 2, '\0');
        out.resize(
            static_cast<size_t>(::WideCharToMultiByte(CP_ACP, 0, wide.data(), static_cast<int>(wide.size()), out.data(),
                                                      static_cast<int>(out.size()), nullptr, nullptr)));
        return out;
    };
    ASSERT_TRUE(inAnsiCodePage(list)) << "code page " << ::GetACP();
    dir.write("Vacances à Noël.wall", ansi(picture + "\t0\r\n"));
    dir.write("setup.pref", ansi("[Tessaline]\r\nDelay=5\r\nMode=2\r\nAutomaticShowOnDesktop=True\r\nLastList=" + list +
                                 "\r\nOutputPath=" + dir.file("tl_current.bmp") +
                                 "\r\nWallpaperDirectory=" + dir.path() + "\\\r\nHotKey=83\r\nHotKeyMod=3\r\n"));
    ASSERT_NE(dir.read("setup.pref").find("\xEB"), std::string::npos) << "not written in Windows-1252";
    DesktopValueGuard wallpaper("Wallpaper");
    DesktopValueGuard style("WallpaperStyle");
    DesktopValueGuard tile("TileWallpaper");

    RunningProgram tl(dir);
    HWND form = tl.waitForLoaded("TessalineMain");
    ASSERT_NE(form, nullptr) << "the changer did not load";
    const std::string bitmap = dir.file("tl_current.bmp");
    EXPECT_TRUE(waitFor([&] {
        const auto size = bitmapFileSize(bitmap);
        return size && size->width == 88 && desktopValue("Wallpaper") == bitmap;
    })) << "Noël.jpg from the old list was not applied";
    ASSERT_TRUE(showPanel(form));
    EXPECT_THAT(listLines(::GetDlgItem(form, idList1)), ElementsAre(picture));
    ASSERT_TRUE(chooseTrayMenuItem(form, "Quit") && tl.hasExited(seconds(10)));
    EXPECT_THAT(dir.lines("setup.pref"), Contains("LastList=" + list));
    EXPECT_THAT(dir.lines("setup.pref"), Contains("WallpaperDirectory=" + dir.path() + "\\"));
}

}  // namespace
}  // namespace tl::wintest
