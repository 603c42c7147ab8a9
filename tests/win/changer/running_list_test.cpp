// The real program's running list as other programs and the user's dialogs change it: a tracked folder
// changed by another process, a wallpaper the browser set, and a hot key chosen in its dialog.
#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "base/window_win.h"
#include "changer/commands.h"
#include "changer/program_on_panel.h"
#include "hotkey/hot_key_input.h"
#include "support/window_driver.h"

namespace tl::wintest {
namespace {

using std::chrono::steady_clock;

class RunningList : public ProgramOnPanel {
  protected:
    bool listed(HWND form, const std::string& path) {
        const auto lines = listLines(::GetDlgItem(form, idList1));
        return std::find(lines.begin(), lines.end(), path) != lines.end();
    }
    bool settingIs(const std::string& line) {
        const auto lines = dir.lines("setup.pref");
        return std::find(lines.begin(), lines.end(), line) != lines.end();
    }
};

TEST_F(RunningList, ChangesToATrackedFolderByAnotherProgramReachTheListAndItsFile) {
    const std::string photos = dir.file("photos");
    const std::string outside = dir.file("outside");
    ASSERT_TRUE(::CreateDirectoryA(photos.c_str(), nullptr) && ::CreateDirectoryA(outside.c_str(), nullptr));
    write({{"a.bmp", "bmp", 64, 48, 0xCC3300}}, "UseTracker=True\r\n", "#" + photos + "\r\n");
    writePicture(outside + "\\new.jpg", "jpg", 200, 150, 0x3366CC);
    writePicture(outside + "\\moving.jpg", "jpg", 160, 120, 0x33CC33);
    RunningProgram tl(dir);
    HWND form = startOnThePanel(tl, 64, 48);
    ASSERT_NE(form, nullptr) << "the panel did not come up";
    const auto within2s = [](const std::function<bool()>& condition) {
        return waitFor(condition, std::chrono::seconds(2));
    };

    const std::string copied = photos + "\\new.jpg";
    ASSERT_TRUE(::CopyFileA((outside + "\\new.jpg").c_str(), copied.c_str(), TRUE));
    EXPECT_TRUE(within2s([&] { return listed(form, copied); })) << "a copied picture did not join the list";
    EXPECT_TRUE(bitmapBecomes(200, 150)) << "the tracker's new picture is applied";
    ASSERT_TRUE(::DeleteFileA(copied.c_str()));
    EXPECT_TRUE(within2s([&] { return !listed(form, copied); })) << "a deleted picture stayed on the list";

    const std::string inside = photos + "\\moving.jpg";
    ASSERT_TRUE(::MoveFileA((outside + "\\moving.jpg").c_str(), inside.c_str()));
    EXPECT_TRUE(within2s([&] { return listed(form, inside); })) << "renamed into the folder";
    ASSERT_TRUE(::MoveFileA(inside.c_str(), (outside + "\\moving.jpg").c_str()));
    EXPECT_TRUE(within2s([&] { return !listed(form, inside) && !listed(form, outside + "\\moving.jpg"); }))
        << "renamed out of the folder";
    ASSERT_TRUE(::MoveFileA((outside + "\\moving.jpg").c_str(), inside.c_str()));
    EXPECT_TRUE(within2s([&] { return listed(form, inside); })) << "renamed back into the folder";

    ASSERT_TRUE(chooseTrayMenuItem(form, trayMenuCaptions(), "Quit"));
    ASSERT_TRUE(tl.hasExited(seconds(10)));
    // 160 x 120 has the screen's proportions: Auto made it Stretch.
    EXPECT_EQ(dir.lines("MyWallpapers.wall"),
              (std::vector<std::string>{paths[0] + "\t0", inside + "\t2", "#" + photos}));
}

// The desktop's "Wallpaper" value, put back at the end.
class WallpaperValueGuard {
  public:
    WallpaperValueGuard() : old_(desktopValue("Wallpaper").value_or("")) {}
    ~WallpaperValueGuard() { set(old_); }
    static void set(const std::string& value) {
        ::RegSetKeyValueA(HKEY_CURRENT_USER, "Control Panel\\Desktop", "Wallpaper", REG_SZ, value.c_str(),
                          static_cast<DWORD>(value.size() + 1));
    }

  private:
    std::string old_;
};

// The file name box of the common save dialog.
HWND fileNameBox(HWND dialog) {
    for (int id : {0x480 /* edt1 */, 0x47c /* cmb13 */}) {
        if (HWND box = ::GetDlgItem(dialog, id)) {
            HWND edit = findChild(box, "Edit");
            return edit ? edit : box;
        }
    }
    return findChild(dialog, "Edit");
}

TEST_F(RunningList, AWallpaperTheBrowserSetIsOfferedForSavingAndTheCopyJoinsTheList) {
    write({{"a.bmp", "bmp", 64, 48, 0xCC3300}}, "WallpaperDirectory=" + dir.path() + "\\\r\n");
    WallpaperValueGuard restore;
    RunningProgram tl(dir);
    ASSERT_NE(started(tl, 64, 48), nullptr);
    ASSERT_TRUE(waitFor([&] { return desktopValue("Wallpaper") == bitmap(); }));

    const std::string caught = dir.file("Internet Explorer Wallpaper.bmp");
    writePicture(caught, "bmp", 40, 30, 0x9933CC);
    const auto set = steady_clock::now();
    WallpaperValueGuard::set(caught);
    HWND dialog = tl.waitForWindow("#32770", "Choose the destination for this image", seconds(5), true);
    const auto waited = std::chrono::duration_cast<std::chrono::milliseconds>(steady_clock::now() - set);
    ASSERT_NE(dialog, nullptr) << "the save dialog did not open";
    EXPECT_LT(waited.count(), 2000) << "the save dialog took " << waited.count() << " ms";

    const std::string kept = dir.file("kept.bmp");
    ::SendMessageA(fileNameBox(dialog), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(kept.c_str()));
    RunningProgram::pressButton(dialog, IDOK);
    EXPECT_TRUE(bitmapBecomes(40, 30)) << "the kept copy is applied";
    EXPECT_EQ(dir.read("kept.bmp"), dir.read("Internet Explorer Wallpaper.bmp"));
    // 40 x 30 has the screen's proportions: Auto made it Stretch. The list file is written at once.
    const auto lines = dir.lines("MyWallpapers.wall");
    EXPECT_NE(std::find(lines.begin(), lines.end(), kept + "\t2"), lines.end());
    EXPECT_TRUE(waitFor([&] { return desktopValue("Wallpaper") == bitmap(); }));
    EXPECT_EQ(tl.waitForWindow("#32770", nullptr, std::chrono::milliseconds(1500), true), nullptr)
        << "the catch must end once the program applies a wallpaper itself";
}

TEST_F(RunningList, AHotKeyChosenThroughThePanelIsStoredAndRegisteredAtTheNextStart) {
    write({{"one.bmp", "bmp", 200, 100, 0xCC3300}, {"two.bmp", "bmp", 240, 120, 0x3366CC}});
    {
        RunningProgram tl(dir);
        HWND form = startOnThePanel(tl, 200, 100);
        ASSERT_NE(form, nullptr) << "the panel did not come up";
        ASSERT_TRUE(clickAt(centreOf(::GetDlgItem(form, idImage4))));
        ASSERT_TRUE(chooseOpenMenuItem(4)) << "the preferences menu did not open";  // "Change paper hotkey..."
        HWND dialog = tl.waitForWindow("TessalineHotkey", "Hot key", seconds(10), true);
        ASSERT_NE(dialog, nullptr) << "the hot key dialog did not open";
        HWND field = ::FindWindowExA(::FindWindowExA(dialog, nullptr, "TessalineHotKey", nullptr), nullptr,
                                     HOTKEY_CLASSA, nullptr);
        ASSERT_TRUE(waitFor([&] { return ::GetForegroundWindow() == dialog; }));
        ASSERT_TRUE(pressKeys({VK_CONTROL}, VK_F9));
        EXPECT_TRUE(
            waitFor([&] { return ::SendMessageA(field, HKM_GETHOTKEY, 0, 0) == MAKEWORD(VK_F9, HOTKEYF_CONTROL); }));
        ASSERT_TRUE(clickAt(centreOf(::FindWindowExA(dialog, nullptr, "Button", "&Ok"))));
        ASSERT_TRUE(waitFor([&] { return !::IsWindow(dialog); }));
        EXPECT_TRUE(settingIs("HotKey=120") && settingIs("HotKeyMod=2")) << "Ctrl+F9 was not stored";
        ASSERT_TRUE(chooseTrayMenuItem(form, trayMenuCaptions(), "Quit"));
        ASSERT_TRUE(tl.hasExited(seconds(10)));
    }
    RunningProgram tl(dir);
    ASSERT_NE(started(tl, 200, 100), nullptr);
    const bool taken = !::RegisterHotKey(nullptr, 0x7001, MOD_CONTROL, VK_F9);
    if (!taken) {
        ::UnregisterHotKey(nullptr, 0x7001);
    }
    EXPECT_TRUE(taken) << "the program did not register Ctrl+F9 at its start";
    ASSERT_TRUE(pressKeys({VK_CONTROL}, VK_F9));
    EXPECT_TRUE(bitmapBecomes(240, 120)) << "Ctrl+F9 did not switch";
}

}  // namespace
}  // namespace tl::wintest
