// The real program's panel: restored from the tray, its list, preview and facts, the clicks on its lines,
// and its remove and delete buttons on real files.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "base/window_win.h"
#include "changer/commands.h"
#include "hotkey/hot_key_input.h"
#include "support/desktop_probe.h"
#include "support/program_dir.h"
#include "support/running_program.h"

namespace tl::wintest {
namespace {

// A left click at a point of the screen with the modifier keys held, as the user's hands do it.
bool clickAt(POINT at, std::initializer_list<WORD> keys = {}) {
    std::vector<INPUT> inputs;
    for (WORD k : keys) {
        INPUT in{};
        in.type = INPUT_KEYBOARD;
        in.ki.wVk = k;
        inputs.push_back(in);
    }
    const int width = ::GetSystemMetrics(SM_CXSCREEN);
    const int height = ::GetSystemMetrics(SM_CYSCREEN);
    for (DWORD flags : {MOUSEEVENTF_MOVE, MOUSEEVENTF_LEFTDOWN, MOUSEEVENTF_LEFTUP}) {
        INPUT in{};
        in.type = INPUT_MOUSE;
        in.mi.dx = MulDiv(at.x, 65535, width - 1);
        in.mi.dy = MulDiv(at.y, 65535, height - 1);
        in.mi.dwFlags = flags | MOUSEEVENTF_ABSOLUTE;
        inputs.push_back(in);
    }
    for (auto it = std::rbegin(keys); it != std::rend(keys); ++it) {
        INPUT in{};
        in.type = INPUT_KEYBOARD;
        in.ki.wVk = *it;
        in.ki.dwFlags = KEYEVENTF_KEYUP;
        inputs.push_back(in);
    }
    const bool sent = ::SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT)) == inputs.size();
    ::Sleep(100);
    // The window under the point has taken the click in once its thread answers again.
    HWND target = ::WindowFromPoint(at);
    DWORD_PTR ignored = 0;
    ::SendMessageTimeoutA(target, WM_NULL, 0, 0, SMTO_NORMAL, 10000, &ignored);
    return sent;
}

POINT centreOf(HWND window) {
    RECT r{};
    ::GetWindowRect(window, &r);
    return {(r.left + r.right) / 2, (r.top + r.bottom) / 2};
}

// An item's text from another process's list or combo box. Asked in UTF-16, which is what Wine carries
// between processes for these messages.
std::string itemText(HWND box, UINT lengthMessage, UINT textMessage, int index) {
    const auto length = ::SendMessageW(box, lengthMessage, static_cast<WPARAM>(index), 0);
    if (length < 0) {
        return {};
    }
    std::wstring wide(static_cast<size_t>(length) + 1, L'\0');
    ::SendMessageW(box, textMessage, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(wide.data()));
    wide.resize(wide.find(L'\0'));
    std::string text(wide.size() * 2 + 1, '\0');
    const int n = ::WideCharToMultiByte(CP_ACP, 0, wide.c_str(), static_cast<int>(wide.size()), text.data(),
                                        static_cast<int>(text.size()), nullptr, nullptr);
    text.resize(static_cast<size_t>(n > 0 ? n : 0));
    return text;
}

std::vector<std::string> listLines(HWND list) {
    std::vector<std::string> lines;
    const auto count = static_cast<int>(::SendMessageA(list, LB_GETCOUNT, 0, 0));
    for (int i = 0; i < count; ++i) {
        lines.push_back(itemText(list, LB_GETTEXTLEN, LB_GETTEXT, i));
    }
    return lines;
}

// The orientation box's chosen item.
std::string chosenOrientation(HWND orType) {
    const auto index = static_cast<int>(::SendMessageA(orType, CB_GETCURSEL, 0, 0));
    return index < 0 ? std::string() : itemText(orType, CB_GETLBTEXTLEN, CB_GETLBTEXT, index);
}

// The share of a window's pixels on the screen that are close to a colour.
double shareOfColour(HWND window, unsigned colour) {
    RECT r{};
    ::GetWindowRect(window, &r);
    const ScreenShot shot;
    int close = 0;
    int all = 0;
    for (int y = r.top; y < r.bottom; y += 2) {
        for (int x = r.left; x < r.right; x += 2) {
            close += closeColour(shot.pixel(x, y), colour, 40) ? 1 : 0;
            ++all;
        }
    }
    return all == 0 ? 0.0 : static_cast<double>(close) / all;
}

std::vector<int> selectedLines(HWND list) {
    std::vector<int> lines;
    const auto count = ::SendMessageA(list, LB_GETCOUNT, 0, 0);
    for (int i = 0; i < count; ++i) {
        if (::SendMessageA(list, LB_GETSEL, static_cast<WPARAM>(i), 0) > 0) {
            lines.push_back(i);
        }
    }
    return lines;
}

// The middle of a line of a list box, on the screen.
POINT lineCentre(HWND list, int line) {
    const auto height = static_cast<int>(::SendMessageA(list, LB_GETITEMHEIGHT, 0, 0));
    const auto top = static_cast<int>(::SendMessageA(list, LB_GETTOPINDEX, 0, 0));
    POINT at{40, (line - top) * height + height / 2};
    ::ClientToScreen(list, &at);
    return at;
}

bool visible(HWND window) {
    return window && ::IsWindowVisible(window);
}

struct Picture {
    std::string name;
    const char* type;
    int width, height;
    unsigned colour;
};

class Panel : public ::testing::Test {
  protected:
    void write(const std::vector<Picture>& pictures, const std::string& orientation = "0") {
        dir.write("setup.pref", "[Tessaline]\r\nDelay=5\r\nMode=2\r\nAutomaticShowOnDesktop=True\r\nLastList=" +
                                    dir.file("MyWallpapers.wall") + "\r\nOutputPath=" + bitmap() +
                                    "\r\nHotKey=83\r\nHotKeyMod=3\r\nDefaultAddOrientation=4\r\nRatioTolerance=0.25"
                                    "\r\nHalfRatio=1.5\r\n");
        std::string list;
        for (const Picture& p : pictures) {
            writePicture(dir.file(p.name), p.type, p.width, p.height, p.colour);
            list += dir.file(p.name) + "\t" + orientation + "\r\n";
        }
        dir.write("MyWallpapers.wall", list);
        paths.clear();
        for (const Picture& p : pictures) {
            paths.push_back(dir.file(p.name));
        }
    }
    std::string bitmap() const { return dir.file("tl_current.bmp"); }
    bool bitmapBecomes(int width, int height) {
        return waitFor([&] {
            const auto size = bitmapFileSize(bitmap());
            return size && size->width == width && size->height == height;
        });
    }
    // Starts the program and restores its panel from the tray.
    HWND startOnThePanel(RunningProgram& program, int firstWidth, int firstHeight) {
        HWND form = program.waitForWindow("TessalineMain");
        if (!form || !bitmapBecomes(firstWidth, firstHeight)) {
            return nullptr;
        }
        if (!chooseTrayMenuItem(form, trayMenuCaptions(), "Show panel...") ||
            !waitFor([&] { return visible(form) && ::GetForegroundWindow() == form; })) {
            return nullptr;
        }
        return form;
    }

    ProgramDir dir;
    std::vector<std::string> paths;
};

TEST_F(Panel, RestoredFromTheTrayItShowsTheListAndTheWallpaperOnShow) {
    write({{"red.bmp", "bmp", 640, 480, 0xCC3300}, {"blue.jpg", "jpg", 300, 200, 0x3366CC}});
    RunningProgram tl(dir);
    HWND form = startOnThePanel(tl, 640, 480);
    ASSERT_NE(form, nullptr) << "the panel did not come up";
    EXPECT_FALSE(trayHasIcon(form)) << "on the panel the tray icon goes";

    HWND list = ::GetDlgItem(form, idList1);
    EXPECT_EQ(listLines(list), paths);
    EXPECT_EQ(selectedLines(list), std::vector<int>{0});
    HWND orType = ::GetDlgItem(form, idOrType);
    EXPECT_TRUE(visible(orType));
    EXPECT_EQ(chosenOrientation(orType), "Center");
    for (int id : {idLabel1, idLabel2, idLabel3, idFsize, idFdate, idDimensions, idPrevFrame, idPreview}) {
        EXPECT_TRUE(visible(::GetDlgItem(form, id))) << "control " << id;
    }
    EXPECT_EQ(windowText(::GetDlgItem(form, idLabel1)), "Filesize:");
    EXPECT_EQ(windowText(::GetDlgItem(form, idLabel2)), "Date:");
    EXPECT_EQ(windowText(::GetDlgItem(form, idLabel3)), "Dimensions:");
    EXPECT_EQ(windowText(::GetDlgItem(form, idDimensions)), "640 x 480 pixels");
    EXPECT_EQ(windowText(::GetDlgItem(form, idFsize)), "900 KB");
    EXPECT_FALSE(windowText(::GetDlgItem(form, idFdate)).empty());
    for (int id : {idImage5, idImage1, idImage4, idImage3, idImage2}) {
        HWND button = ::GetDlgItem(form, id);
        EXPECT_TRUE(visible(button)) << "button " << id;
        EXPECT_NE(::SendMessageA(button, BM_GETIMAGE, IMAGE_ICON, 0), 0) << "button " << id << " has no icon";
    }
    // The picture is a chequer of its colour and light grey.
    EXPECT_GT(shareOfColour(::GetDlgItem(form, idPreview), 0xCC3300), 0.3) << "the preview does not show the picture";
    ScreenShot().save(buildDirectory() + "\\panel-96dpi.bmp");

    // Minimised, the program goes back to the tray alone.
    ::PostMessageA(form, WM_SYSCOMMAND, SC_MINIMIZE, 0);
    EXPECT_TRUE(waitFor([&] { return !visible(form) && trayHasIcon(form); }));
}

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
    const Step steps[] = {{"Tile", "1", "1", "1", 120, 90},
                          {"Stretch", "2", "2", "0", 120, 90},
                          {"Scale", "3", "0", "0", 1024, 768},
                          {"Center", "0", "0", "0", 120, 90}};
    for (const Step& step : steps) {
        ::Sleep(::GetDoubleClickTime() + 100);  // a second click, not a double click
        ASSERT_TRUE(clickAt(lineCentre(list, 0)));
        EXPECT_TRUE(waitFor([&] { return chosenOrientation(orType) == step.name; })) << step.name;
        EXPECT_TRUE(waitFor([&] {
            return desktopValue("WallpaperStyle") == step.style && desktopValue("TileWallpaper") == step.tile;
        })) << step.name;
        EXPECT_TRUE(bitmapBecomes(step.width, step.height)) << step.name;
        EXPECT_EQ(dir.lines("MyWallpapers.wall").at(0), paths[0] + "\t" + step.code) << "saved with the list at once";
    }
    ASSERT_TRUE(clickAt(lineCentre(list, 1)));
    EXPECT_TRUE(bitmapBecomes(200, 100)) << "another line is applied as it stands";
    EXPECT_EQ(chosenOrientation(orType), "Center");
}

// Answers the shell's question about a file as the user would; false when none came.
bool answerTheShell(const RunningProgram& program, int answer, std::chrono::milliseconds timeout) {
    HWND question = program.waitForWindow("#32770", "Confirm file deletion", timeout, true);
    if (!question) {
        return false;
    }
    RunningProgram::pressButton(question, answer);
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
    HANDLE search = ::FindFirstFileA((info + "*.trashinfo").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) {
        return false;
    }
    bool there = false;
    do {
        std::ifstream file(info + found.cFileName);
        const std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
        there = there || text.find("/" + folderName + "/" + fileName) != std::string::npos;
    } while (::FindNextFileA(search, &found));
    ::FindClose(search);
    return there;
}

TEST_F(Panel, RemoveKeepsTheFileWhileDeleteRecyclesOrDeletesItAsTheKeysSay) {
    write({{"a.bmp", "bmp", 64, 48, 0xCC3300},
           {"b.bmp", "bmp", 64, 48, 0x3366CC},
           {"c.bmp", "bmp", 64, 48, 0x33CC33},
           {"d.bmp", "bmp", 64, 48, 0xFFCC00},
           {"e.bmp", "bmp", 64, 48, 0x9933CC}});
    RunningProgram tl(dir);
    HWND form = startOnThePanel(tl, 64, 48);
    ASSERT_NE(form, nullptr) << "the panel did not come up";
    HWND list = ::GetDlgItem(form, idList1);
    const POINT remove = centreOf(::GetDlgItem(form, idImage3));
    const POINT del = centreOf(::GetDlgItem(form, idImage2));
    const std::string folder = dir.path().substr(dir.path().rfind('\\') + 1);
    const auto listed = [&](const std::string& name) {
        const auto lines = listLines(list);
        return std::find(lines.begin(), lines.end(), dir.file(name)) != lines.end();
    };

    // Remove: the line goes, the file stays.
    ASSERT_TRUE(clickAt(lineCentre(list, 1)));
    ASSERT_TRUE(clickAt(remove));
    EXPECT_TRUE(waitFor([&] { return !listed("b.bmp"); })) << "Remove left the line";
    EXPECT_TRUE(dir.exists("b.bmp"));

    // No key: to the recycle bin, after the shell's question.
    ASSERT_TRUE(clickAt(lineCentre(list, 1)));  // c.bmp now
    ASSERT_TRUE(clickAt(del));
    EXPECT_TRUE(answerTheShell(tl, IDYES, seconds(10))) << "the shell did not ask before recycling";
    EXPECT_TRUE(waitFor([&] { return !listed("c.bmp") && !dir.exists("c.bmp"); }));
    EXPECT_TRUE(inTheTrash(folder, "c.bmp")) << "the file was not recycled";

    // Shift: for good, after the shell's question; a No keeps file and line.
    ASSERT_TRUE(clickAt(lineCentre(list, 1)));  // d.bmp now
    ASSERT_TRUE(clickAt(del, {VK_SHIFT}));
    EXPECT_TRUE(answerTheShell(tl, IDNO, seconds(10))) << "the shell did not ask before deleting";
    EXPECT_TRUE(listed("d.bmp") && dir.exists("d.bmp")) << "a No keeps the file and its line";
    ASSERT_TRUE(clickAt(del, {VK_SHIFT}));
    EXPECT_TRUE(answerTheShell(tl, IDYES, seconds(10)));
    EXPECT_TRUE(waitFor([&] { return !listed("d.bmp") && !dir.exists("d.bmp"); }));
    EXPECT_FALSE(inTheTrash(folder, "d.bmp")) << "Shift deletes for good";

    // Ctrl: for good at once, nothing asked.
    const int eLine = static_cast<int>(listLines(list).size()) - 1;
    ASSERT_TRUE(clickAt(lineCentre(list, eLine)));
    ASSERT_TRUE(clickAt(del, {VK_CONTROL}));
    EXPECT_TRUE(waitFor([&] { return !listed("e.bmp") && !dir.exists("e.bmp"); }));
    EXPECT_FALSE(answerTheShell(tl, IDYES, milliseconds(500))) << "Ctrl must not ask";
    EXPECT_FALSE(inTheTrash(folder, "e.bmp"));

    ASSERT_TRUE(chooseTrayMenuItem(form, trayMenuCaptions(), "Quit") || tl.closeAndWait());
    ASSERT_TRUE(tl.hasExited(seconds(10)));
    EXPECT_EQ(dir.lines("MyWallpapers.wall"), std::vector<std::string>{dir.file("a.bmp") + "\t0"});
}

}  // namespace
}  // namespace tl::wintest
