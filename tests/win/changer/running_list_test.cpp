// The real program's running list as other programs and the user's dialogs change it: a tracked folder
// changed by another process, a wallpaper the browser set, and a hot key chosen in its dialog.
#include <windows.h>

#include <commctrl.h>

#include <chrono>

#include "changer/commands.h"
#include "support/program_test.h"

namespace tl::wintest {
namespace {

using RunningList = ProgramTest;

TEST_F(RunningList, ChangesToATrackedFolderByAnotherProgramReachTheListAndItsFile) {
    const std::string photos = dir.file("photos");
    const std::string outside = dir.file("outside");
    dir.makeFolder("photos");
    dir.makeFolder("outside");
    write({{"a.bmp", "bmp", 64, 48, 0xCC3300}}, "UseTracker=True\r\n", "#" + photos + "\r\n");
    writePicture(outside + "\\new.jpg", "jpg", 200, 150, 0x3366CC);
    writePicture(outside + "\\moving.jpg", "jpg", 160, 120, 0x33CC33);
    RunningProgram tl(dir);
    HWND form = startOnThePanel(tl, 64, 48);
    ASSERT_NE(form, nullptr) << "the panel did not come up";
    const auto within2s = [&](const std::string& path, bool listed) {
        return waitFor(
            [&] {
                const auto lines = listLines(::GetDlgItem(form, idList1));
                return (std::find(lines.begin(), lines.end(), path) != lines.end()) == listed;
            },
            seconds(2));
    };

    // Made after the start: Wine's recursive watch follows the folders made while it runs only.
    dir.makeFolder("photos\\sub");
    const std::string copied = photos + "\\sub\\new.jpg";
    ASSERT_TRUE(::CopyFileA((outside + "\\new.jpg").c_str(), copied.c_str(), TRUE));
    EXPECT_TRUE(within2s(copied, true)) << "a picture copied into a sub-folder did not join the list";
    EXPECT_TRUE(bitmapBecomes(200, 150)) << "the tracker's new picture is applied";
    ASSERT_TRUE(::DeleteFileA(copied.c_str()));
    EXPECT_TRUE(within2s(copied, false)) << "a deleted picture stayed on the list";

    const std::string inside = photos + "\\moving.jpg";
    ASSERT_TRUE(::MoveFileA((outside + "\\moving.jpg").c_str(), inside.c_str()));
    EXPECT_TRUE(within2s(inside, true)) << "renamed into the folder";
    ASSERT_TRUE(::MoveFileA(inside.c_str(), (outside + "\\moving.jpg").c_str()));
    EXPECT_TRUE(within2s(inside, false)) << "renamed out of the folder";
    EXPECT_TRUE(within2s(outside + "\\moving.jpg", false)) << "followed out of the folder";
    ASSERT_TRUE(::MoveFileA((outside + "\\moving.jpg").c_str(), inside.c_str()));
    EXPECT_TRUE(within2s(inside, true)) << "renamed back into the folder";

    ASSERT_TRUE(quit(tl, form));
    // 160 x 120 has the screen's proportions: Auto made it Stretch.
    EXPECT_EQ(dir.lines("MyWallpapers.wall"),
              (std::vector<std::string>{paths[0] + "\t0", inside + "\t2", "#" + photos}));
}

TEST_F(RunningList, AWallpaperTheBrowserSetIsOfferedForSavingAndTheCopyJoinsTheList) {
    write({{"a.bmp", "bmp", 64, 48, 0xCC3300}}, "WallpaperDirectory=" + dir.path() + "\\\r\n");
    DesktopValueGuard restore("Wallpaper");
    RunningProgram tl(dir);
    ASSERT_NE(started(tl, 64, 48), nullptr);
    ASSERT_TRUE(waitFor([&] { return desktopValue("Wallpaper") == bitmap(); }));

    const std::string caught = dir.file("Internet Explorer Wallpaper.bmp");
    writePicture(caught, "bmp", 40, 30, 0x9933CC);
    const auto set = std::chrono::steady_clock::now();
    setDesktopValue("Wallpaper", caught);
    HWND dialog = tl.waitForWindow("#32770", "Choose the destination for this image", seconds(5));
    const auto waited = std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - set);
    ASSERT_NE(dialog, nullptr) << "the save dialog did not open";
    EXPECT_LT(waited.count(), 2000) << "the save dialog took " << waited.count() << " ms";

    const std::string kept = dir.file("kept.bmp");
    EXPECT_EQ(controlText(fileNameBox(dialog)), "wallpaper.bmp") << "the name offered";
    chooseInFileDialog(dialog, kept);
    EXPECT_TRUE(bitmapBecomes(40, 30)) << "the kept copy is applied";
    EXPECT_EQ(dir.read("kept.bmp"), dir.read("Internet Explorer Wallpaper.bmp"));
    // 40 x 30 has the screen's proportions: Auto made it Stretch. The list file is written at once.
    const auto lines = dir.lines("MyWallpapers.wall");
    EXPECT_NE(std::find(lines.begin(), lines.end(), kept + "\t2"), lines.end());
    EXPECT_TRUE(waitFor([&] { return desktopValue("Wallpaper") == bitmap(); }));
    EXPECT_EQ(tl.waitForWindow("#32770", nullptr, milliseconds(1500)), nullptr)
        << "the catch must end once the program applies a wallpaper itself";
}

TEST_F(RunningList, AHotKeyChosenInItsDialogIsStoredAndSwitchesAfterTheNextStart) {
    write({{"one.bmp", "bmp", 200, 100, 0xCC3300}, {"two.bmp", "bmp", 240, 120, 0x3366CC}});
    // A Delay with a fraction is read as a whole number of minutes, halves to even.
    std::string settings = dir.read("setup.pref");
    settings.replace(settings.find("Delay=5"), 7, "Delay=3.5");
    dir.write("setup.pref", settings);
    {
        RunningProgram tl(dir);
        HWND form = startOnThePanel(tl, 200, 100);
        ASSERT_NE(form, nullptr) << "the panel did not come up";
        clickButton(::GetDlgItem(form, idImage4));
        ASSERT_TRUE(chooseOpenMenuItem(4)) << "the preferences menu did not open";  // "Change paper hotkey..."
        HWND dialog = tl.waitForWindow("TessalineHotkey", "Hot key");
        ASSERT_NE(dialog, nullptr) << "the hot key dialog did not open";
        HWND field = ::FindWindowExA(::FindWindowExA(dialog, nullptr, "TessalineHotKey", nullptr), nullptr,
                                     HOTKEY_CLASSA, nullptr);
        ASSERT_TRUE(waitFor([&] {
            GUITHREADINFO info{};
            info.cbSize = sizeof info;
            return ::GetForegroundWindow() == dialog &&
                   ::GetGUIThreadInfo(::GetWindowThreadProcessId(dialog, nullptr), &info) && info.hwndFocus == field;
        })) << "the key field never had the focus";
        ASSERT_TRUE(pressKeys({VK_CONTROL}, VK_F9));
        EXPECT_TRUE(
            waitFor([&] { return ::SendMessageA(field, HKM_GETHOTKEY, 0, 0) == MAKEWORD(VK_F9, HOTKEYF_CONTROL); }));
        clickButton(findChild(dialog, "Button", "&Ok"));
        ASSERT_TRUE(waitFor([&] { return !::IsWindow(dialog); }));
        EXPECT_TRUE(settingIs("HotKey=120") && settingIs("HotKeyMod=2")) << "Ctrl+F9 was not stored";
        ASSERT_TRUE(quit(tl, form));
        EXPECT_TRUE(settingIs("Delay=4")) << "Delay=3.5 did not load as 4";
    }
    RunningProgram tl(dir);
    ASSERT_NE(started(tl, 200, 100), nullptr);
    // The combination is the program's: nobody else may register it now.
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
