// The real program's panel: restored from the tray, its list, preview and facts, the clicks on its lines,
// and its remove and delete buttons on real files.
#include <windows.h>
// After windows.h, whose types it uses.
#include <versionhelpers.h>

#include <fstream>
#include <iterator>
#include <optional>

#include "base/window_win.h"
#include "changer/commands.h"
#include "support/program_test.h"

namespace tl::wintest {
namespace {

// The share of a window's pixels on the screen that are close to a colour.
double shareOfColour(HWND window, unsigned colour) {
    RECT r{};
    ::GetWindowRect(window, &r);
    const ScreenShot shot;
    int close = 0;
    int all = 0;
    for (int y = r.top; y < r.bottom; y += 2) {
        for (int x = r.left; x < r.right; x += 2, ++all) {
            close += closeColour(shot.pixel(x, y), colour, 40) ? 1 : 0;
        }
    }
    return all == 0 ? 0.0 : static_cast<double>(close) / all;
}

bool visible(HWND window) {
    return window && ::IsWindowVisible(window);
}

// The scaling that programs started from now on see (the user's "LogPixels"), put back at the end.
class ScalingGuard {
  public:
    explicit ScalingGuard(DWORD dpi) {
        DWORD size = sizeof old_;
        had_ = ::RegGetValueA(HKEY_CURRENT_USER, kKey, "LogPixels", RRF_RT_REG_DWORD, nullptr, &old_, &size) ==
               ERROR_SUCCESS;
        ::RegSetKeyValueA(HKEY_CURRENT_USER, kKey, "LogPixels", REG_DWORD, &dpi, sizeof dpi);
    }
    ~ScalingGuard() {
        if (had_) {
            ::RegSetKeyValueA(HKEY_CURRENT_USER, kKey, "LogPixels", REG_DWORD, &old_, sizeof old_);
        } else {
            ::RegDeleteKeyValueA(HKEY_CURRENT_USER, kKey, "LogPixels");
        }
    }

  private:
    static constexpr const char* kKey = "Control Panel\\Desktop";
    DWORD old_ = 0;
    bool had_ = false;
};

using Panel = ProgramTest;
class PanelScaling : public ProgramTest, public ::testing::WithParamInterface<int> {};

TEST_P(PanelScaling, RestoredFromTheTrayItShowsTheListThePreviewAndTheFacts) {
    const int dpi = GetParam();
    write({{"red.bmp", "bmp", 640, 480, 0xCC3300}, {"blue.jpg", "jpg", 300, 200, 0x3366CC}});
    std::optional<ScalingGuard> scaling;
    if (dpi != 96) {
        scaling.emplace(static_cast<DWORD>(dpi));
    }
    RunningProgram tl(dir);
    HWND form = startOnThePanel(tl, 640, 480);
    scaling.reset();
    ASSERT_NE(form, nullptr) << "the panel did not come up";
    // The taskbar takes the icon away in its own time.
    EXPECT_TRUE(waitFor([&] { return !trayHasIcon(form); })) << "on the panel the tray icon goes";

    HWND list = ::GetDlgItem(form, idList1);
    EXPECT_EQ(listLines(list), paths);
    EXPECT_GT(::SendMessageA(list, LB_GETSEL, 0, 0), 0) << "the line on show is selected";
    EXPECT_EQ(chosenItem(::GetDlgItem(form, idOrType)), "Center");
    const std::pair<int, const char*> texts[] = {{idLabel1, "Filesize:"},
                                                 {idLabel2, "Date:"},
                                                 {idLabel3, "Dimensions:"},
                                                 {idDimensions, "640 x 480 pixels"},
                                                 {idFsize, "900 KB"}};
    for (const auto& [id, text] : texts) {
        EXPECT_TRUE(visible(::GetDlgItem(form, id))) << text;
        EXPECT_EQ(windowText(::GetDlgItem(form, id)), text);
    }
    EXPECT_FALSE(windowText(::GetDlgItem(form, idFdate)).empty());
    for (int id : {idImage5, idImage1, idImage4, idImage3, idImage2}) {
        EXPECT_NE(::SendMessageA(::GetDlgItem(form, id), BM_GETIMAGE, IMAGE_ICON, 0), 0) << "button " << id;
    }
    // The picture is a chequer of its colour and light grey.
    EXPECT_GT(shareOfColour(::GetDlgItem(form, idPreview), 0xCC3300), 0.3) << "the preview does not show it";
    ScreenShot().save("panel-" + std::to_string(dpi) + "dpi.bmp");

    // Every control lies whole in the panel, apart from each other.
    RECT client{};
    ::GetClientRect(form, &client);
    EXPECT_GE(client.right, MulDiv(540, dpi, 96)) << "the panel is not sized for the scaling";
    std::vector<RECT> placed;
    for (int id : {idList1, idOrType, idPrevFrame, idPreview, idImage5, idImage1, idImage4, idImage3, idImage2}) {
        HWND control = ::GetDlgItem(form, id);
        EXPECT_TRUE(visible(control)) << "control " << id;
        RECT r{};
        ::GetWindowRect(control, &r);
        ::MapWindowPoints(nullptr, form, reinterpret_cast<POINT*>(&r), 2);
        EXPECT_TRUE(r.left >= 0 && r.top >= 0 && r.right <= client.right && r.bottom <= client.bottom)
            << "control " << id << " is cut off";
        for (const RECT& other : placed) {
            RECT both{};
            EXPECT_FALSE(::IntersectRect(&both, &r, &other)) << "control " << id << " overlaps another";
        }
        placed.push_back(r);
    }

    // Minimised, the program goes back to the tray alone.
    ::PostMessageA(form, WM_SYSCOMMAND, SC_MINIMIZE, 0);
    EXPECT_TRUE(waitFor([&] { return !visible(form) && trayHasIcon(form); }));
}

INSTANTIATE_TEST_SUITE_P(At100And150Percent, PanelScaling, ::testing::Values(96, 144));

TEST_F(Panel, ClickingTheLineOnShowCyclesItsOrientationAndReappliesIt) {
    write({{"small.bmp", "bmp", 120, 90, 0x33CC33}, {"other.bmp", "bmp", 200, 100, 0x3366CC}});
    RunningProgram tl(dir);
    HWND form = startOnThePanel(tl, 120, 90);
    ASSERT_NE(form, nullptr) << "the panel did not come up";
    HWND list = ::GetDlgItem(form, idList1);
    HWND orType = ::GetDlgItem(form, idOrType);
    struct Step {
        const char* name;
        const char* code;
        const char* style;
        const char* tile;
        int width, height;  // of tl_current.bmp
    };
    // Fill's screen-sized bitmap is spanned from Windows 8 on (Wine says 10), tiled before.
    const bool kSpans = ::IsWindows8OrGreater();
    const Step steps[] = {{"Tile", "1", "1", "1", 120, 90},
                          {"Stretch", "2", "2", "0", 120, 90},
                          {"Scale", "3", "0", "0", 1024, 768},
                          {"Fill", "Fill...", kSpans ? "22" : "0", kSpans ? "0" : "1", 1024, 768},
                          {"Center", "0", "0", "0", 120, 90}};
    for (const Step& step : steps) {
        pause(milliseconds(::GetDoubleClickTime() + 100));  // a second click, not a double click
        ASSERT_TRUE(clickAt(lineCentre(list, 0)));
        EXPECT_TRUE(waitFor([&] { return chosenItem(orType) == step.name; })) << step.name;
        EXPECT_TRUE(waitFor([&] {
            return desktopValue("WallpaperStyle") == step.style && desktopValue("TileWallpaper") == step.tile;
        })) << step.name;
        EXPECT_TRUE(bitmapBecomes(step.width, step.height)) << step.name;
        EXPECT_EQ(dir.lines("MyWallpapers.wall").at(0), paths[0] + "\t" + step.code) << "saved with the list at once";
    }
    pause(milliseconds(::GetDoubleClickTime() + 100));
    ASSERT_TRUE(clickAt(lineCentre(list, 1)));
    EXPECT_TRUE(bitmapBecomes(200, 100)) << "another line is applied as it stands";
    EXPECT_EQ(chosenItem(orType), "Center");
}

// Answers the shell's question about a file as the user would; false when none came.
bool answerTheShell(const RunningProgram& program, int answer, milliseconds timeout) {
    HWND question = program.waitForWindow("#32770", "Confirm file deletion", timeout);
    if (!question) {
        return false;
    }
    pressButton(question, answer);
    return waitFor([&] { return !::IsWindow(question); }, seconds(5));
}

// Whether the shell put a file of the folder into the desktop's trash. Wine keeps the freedesktop.org
// trash in the user's home, where an info file names each item's first place.
bool inTheTrash(const std::string& folderName, const std::string& fileName) {
    char home[MAX_PATH] = {};
    const DWORD n = ::GetEnvironmentVariableA("WINEHOMEDIR", home, MAX_PATH);  // "\??\Z:\root"
    std::string info = std::string(home, n < MAX_PATH ? n : 0);
    if (info.rfind("\\??\\", 0) == 0) {
        info.erase(0, 4);
    }
    info += "\\.local\\share\\Trash\\info\\";
    WIN32_FIND_DATAA found{};
    unique_hfind search(::FindFirstFileA((info + "*.trashinfo").c_str(), &found));
    bool there = false;
    while (search && !there) {
        std::ifstream file(info + found.cFileName);
        const std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
        there = text.find("/" + folderName + "/" + fileName) != std::string::npos;
        if (!::FindNextFileA(search.get(), &found)) {
            break;
        }
    }
    return there;
}

TEST_F(Panel, RemoveKeepsTheFileWhileDeleteRecyclesOrDeletesItAsTheKeysSay) {
    // Each picture has a width of its own, so that tl_current.bmp tells which one is on show.
    std::vector<TestPicture> pictures;
    for (int i = 0; i < 6; ++i) {
        pictures.push_back({std::string(1, static_cast<char>('a' + i)) + ".bmp", "bmp", 60 + 2 * i, 48, 0x3366CC});
    }
    write(pictures);
    RunningProgram tl(dir);
    HWND form = startOnThePanel(tl, 60, 48);
    ASSERT_NE(form, nullptr) << "the panel did not come up";
    HWND list = ::GetDlgItem(form, idList1);
    const POINT del = centreOf(::GetDlgItem(form, idImage2));
    const std::string folder = dir.path().substr(dir.path().rfind('\\') + 1);
    const auto listed = [&](const std::string& name) {
        const auto lines = listLines(list);
        return std::find(lines.begin(), lines.end(), dir.file(name)) != lines.end();
    };
    // The picture applied after a click: the next click waits for it.
    const auto shows = [&](char name) { return bitmapBecomes(60 + 2 * (name - 'a'), 48); };

    // Remove: the line goes, the file stays, and the next line is applied.
    ASSERT_TRUE(clickAt(lineCentre(list, 1)) && shows('b'));
    clickButton(::GetDlgItem(form, idImage3));
    EXPECT_TRUE(shows('c'));
    EXPECT_FALSE(listed("b.bmp")) << "Remove left the line";
    EXPECT_TRUE(dir.exists("b.bmp"));
    // The same from the list's own menu, whose fourth item is "Remove": the new last line is applied.
    ASSERT_TRUE(clickAt(lineCentre(list, 4)) && shows('f'));
    ASSERT_TRUE(rightClickAt(lineCentre(list, 4)));
    ASSERT_TRUE(chooseOpenMenuItem(3)) << "the list's menu did not open";
    EXPECT_TRUE(shows('e'));
    EXPECT_FALSE(listed("f.bmp")) << "the menu's Remove left the line";
    EXPECT_TRUE(dir.exists("f.bmp"));

    // No key: to the recycle bin, after the shell's question.
    ASSERT_TRUE(clickAt(lineCentre(list, 1)) && shows('c'));
    // Without a key the button's own click message does: a real click here was now and then lost under Wine.
    clickButton(::GetDlgItem(form, idImage2));
    EXPECT_TRUE(answerTheShell(tl, IDYES, seconds(10))) << "the shell did not ask before recycling";
    EXPECT_TRUE(shows('d'));
    EXPECT_TRUE(!listed("c.bmp") && !dir.exists("c.bmp"));
    EXPECT_TRUE(inTheTrash(folder, "c.bmp")) << "the file was not recycled";

    // Shift, on d now on show: for good, after the shell's question; a No keeps the file and its line.
    ASSERT_TRUE(clickAt(del, {VK_SHIFT}));
    EXPECT_TRUE(answerTheShell(tl, IDNO, seconds(10))) << "the shell did not ask before deleting";
    EXPECT_TRUE(waitFor([&] { return listed("d.bmp") && dir.exists("d.bmp"); })) << "a No keeps file and line";
    ASSERT_TRUE(clickAt(del, {VK_SHIFT}));
    EXPECT_TRUE(answerTheShell(tl, IDYES, seconds(10)));
    EXPECT_TRUE(shows('e'));
    EXPECT_TRUE(!listed("d.bmp") && !dir.exists("d.bmp"));
    EXPECT_FALSE(inTheTrash(folder, "d.bmp")) << "Shift deletes for good";

    // Ctrl, on e, the last line: for good at once, nothing asked; the new last line is applied.
    ASSERT_TRUE(clickAt(del, {VK_CONTROL}));
    EXPECT_TRUE(shows('a'));
    EXPECT_TRUE(!listed("e.bmp") && !dir.exists("e.bmp"));
    EXPECT_FALSE(answerTheShell(tl, IDYES, milliseconds(300))) << "Ctrl must not ask";
    EXPECT_FALSE(inTheTrash(folder, "e.bmp"));

    // The manager button writes the list and hands it over.
    ::DeleteFileA(listFile().c_str());
    clickButton(::GetDlgItem(form, idImage1));
    EXPECT_NE(tl.waitForWindow("TessalineManager"), nullptr) << "no manager";
    EXPECT_TRUE(waitFor([&] { return tl.window("TessalineMain") == nullptr; })) << "frmMain stayed loaded";
    EXPECT_EQ(dir.lines("MyWallpapers.wall"), std::vector<std::string>{dir.file("a.bmp") + "\t0"});
}

}  // namespace
}  // namespace tl::wintest
