#include <windows.h>

#include <commctrl.h>

#include <gtest/gtest.h>
#include <cstdio>

#include <atomic>
#include <set>
#include <thread>

#include "app/program_win.h"
#include "base/window_win.h"
#include "support/running_program.h"
#include "tracker/tracker_form_win.h"
#include "tracker_session.h"

namespace tl::wintest {
namespace {

using std::chrono::milliseconds;

HWND childWithText(HWND parent, const std::string& text) {
    struct Search {
        std::string text;
        HWND found = nullptr;
    } search{text};
    ::EnumChildWindows(
        parent,
        [](HWND child, LPARAM lp) -> BOOL {
            auto* s = reinterpret_cast<Search*>(lp);
            if (windowText(child) == s->text) {
                s->found = child;
                return FALSE;
            }
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&search));
    return search.found;
}

HWND childOfClass(HWND parent, const char* className) {
    return ::FindWindowExA(parent, nullptr, className, nullptr);
}

std::vector<std::string> listLines(HWND list) {
    std::vector<std::string> out;
    const auto n = static_cast<int>(::SendMessageA(list, LB_GETCOUNT, 0, 0));
    for (int i = 0; i < n; ++i) {
        char line[1024] = {};
        ::SendMessageA(list, LB_GETTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(line));
        out.emplace_back(line);
    }
    return out;
}

std::string fontFace(HWND control) {
    const auto font = reinterpret_cast<HFONT>(::SendMessageA(control, WM_GETFONT, 0, 0));
    LOGFONTA lf{};
    if (!font || !::GetObjectA(font, sizeof lf, &lf)) {
        return "(system font)";
    }
    return lf.lfFaceName;
}

// The tool tip texts of the tool tip window that a window owns.
std::set<std::string> toolTipTexts(HWND owner) {
    std::set<std::string> out;
    HWND tips = nullptr;
    while ((tips = ::FindWindowExA(nullptr, tips, TOOLTIPS_CLASSA, nullptr)) != nullptr) {
        if (::GetWindow(tips, GW_OWNER) != owner) {
            continue;
        }
        const auto n = static_cast<int>(::SendMessageA(tips, TTM_GETTOOLCOUNT, 0, 0));
        for (int i = 0; i < n; ++i) {
            char text[512] = {};
            TTTOOLINFOA info{};
            info.cbSize = sizeof info;
            info.lpszText = text;
            if (::SendMessageA(tips, TTM_ENUMTOOLSA, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&info))) {
                out.insert(text);
            }
        }
    }
    return out;
}

// Clicks a button as the user's mouse would, and lets the window handle it.
void click(HWND button) {
    ASSERT_NE(button, nullptr);
    ::PostMessageA(button, BM_CLICK, 0, 0);
    pumpMessages(milliseconds(150));
}

// Clicks a line of a list box with the mouse.
void clickLine(HWND list, int index) {
    RECT r{};
    ::SendMessageA(list, LB_GETITEMRECT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&r));
    const LPARAM at = MAKELPARAM((r.left + r.right) / 2, (r.top + r.bottom) / 2);
    ::PostMessageA(list, WM_LBUTTONDOWN, MK_LBUTTON, at);
    ::PostMessageA(list, WM_LBUTTONUP, 0, at);
    pumpMessages(milliseconds(100));
}

class TrackerWindow : public ::testing::Test {
  protected:
    TrackerWindow() : session({"Pics", "Photos", "Shots"}) {
        window = session.window();
        list = childOfClass(window, "ListBox");
    }

    std::string folders(const std::vector<std::string>& names) const {
        std::string line = "folders";
        for (const auto& n : names) {
            line += " [" + (n.empty() ? n : session.folder(n)) + "]";
        }
        return line;
    }

    TrackerSession session;
    HWND window = nullptr;
    HWND list = nullptr;
};

TEST_F(TrackerWindow, LoadsHiddenWithEveryControlInTahomaAndItsTips) {
    ASSERT_NE(window, nullptr) << "no \"Folder Tracker\" window";
    EXPECT_FALSE(::IsWindowVisible(window)) << "the tracker loads hidden";
    EXPECT_EQ(listLines(list),
              (std::vector<std::string>{session.folder("Pics"), session.folder("Photos"), session.folder("Shots")}));
    const std::string texts[] = {
        "Tracked Folders",
        "&Add",
        "&Remove",
        "OK",
        "&Cancel",
        "Changes made to the contents of tracked folders (including sub-folders) while TL is running will "
        "automatically update the list file. In this version, TL will only respond to file move, copy, delete and "
        "rename actions."};
    for (const auto& text : texts) {
        HWND control = childWithText(window, text);
        ASSERT_NE(control, nullptr) << "no control \"" << text << "\"";
        EXPECT_EQ(fontFace(control), "Tahoma") << text;
    }
    EXPECT_EQ(fontFace(list), "Tahoma");
    EXPECT_EQ(toolTipTexts(window),
              (std::set<std::string>{"Folders currently being tracked", "Adds currently selected folder",
                                     "Removes a folder from the list", "Save changes and close window"}));
}

TEST_F(TrackerWindow, TheControlMenusCloseIsRefusedAndSavesTheFolders) {
    showTracker(session.host);
    ASSERT_TRUE(waitFor([&] { return ::IsWindowVisible(window) != FALSE; }));
    ::PostMessageA(window, WM_SYSCOMMAND, SC_CLOSE, 0);
    ASSERT_TRUE(waitFor([&] { return !::IsWindowVisible(window); })) << "the window should hide";
    EXPECT_TRUE(::IsWindow(window)) << "and stay loaded";
    EXPECT_TRUE(isTrackerLoaded());
    EXPECT_EQ(session.host.calls, std::vector<std::string>{folders({"Pics", "Photos", "Shots", ""})});
}

TEST_F(TrackerWindow, OkHidesAndSavesWhileCancelHidesAndWritesNothing) {
    showTracker(session.host);
    click(childWithText(window, "&Cancel"));
    EXPECT_FALSE(::IsWindowVisible(window));
    EXPECT_TRUE(session.host.calls.empty());
    showTracker(session.host);
    click(childWithText(window, "OK"));
    EXPECT_FALSE(::IsWindowVisible(window));
    EXPECT_EQ(session.host.calls, std::vector<std::string>{folders({"Pics", "Photos", "Shots", ""})});
}

TEST_F(TrackerWindow, RemoveTakesTheSelectedFolderAndStopsWatchingIt) {
    showTracker(session.host);
    HWND remove = childWithText(window, "&Remove");
    click(remove);
    EXPECT_EQ(listLines(list).size(), 3u) << "with nothing selected Remove only beeps";

    clickLine(list, 0);
    ASSERT_EQ(::SendMessageA(list, LB_GETCURSEL, 0, 0), 0);
    click(remove);
    EXPECT_EQ(listLines(list), (std::vector<std::string>{session.folder("Photos"), session.folder("Shots")}));
    EXPECT_EQ(::SendMessageA(list, LB_GETCURSEL, 0, 0), 0) << "the first folder left is selected";

    // Cancel keeps the change in the window, and the tracker acts on what the window shows.
    click(childWithText(window, "&Cancel"));
    EXPECT_TRUE(session.host.calls.empty());
    const std::string picture = session.folder("picture.jpg");
    writePicture(picture, "jpg", 16, 16);
    ASSERT_EQ(runOtherProgram("cmd.exe /c copy /y \"" + picture + "\" \"" + session.folder("Pics") + "\""), 0u);
    ASSERT_EQ(runOtherProgram("cmd.exe /c copy /y \"" + picture + "\" \"" + session.folder("Shots") + "\""), 0u);
    ASSERT_TRUE(session.host.waitForCall("add " + session.folder("Shots\\picture.jpg")));
    EXPECT_EQ(session.host.calls, std::vector<std::string>{"add " + session.folder("Shots\\picture.jpg")});

    showTracker(session.host);
    click(remove);
    click(remove);
    EXPECT_TRUE(listLines(list).empty());
    click(remove);
    click(childWithText(window, "OK"));
    EXPECT_EQ(session.host.calls.back(), "folders []");
}

// Stands in for the user at the folder browse dialog: waits for it on another thread, notes its texts
// and presses one of its buttons.
class BrowseDialogUser {
  public:
    // expectedSelection: the folder name the dialog must have selected before the button is pressed.
    explicit BrowseDialogUser(int button, std::string expectedSelection = "")
        : expected_(std::move(expectedSelection)), thread_([this, button] { run(button); }) {}
    ~BrowseDialogUser() { thread_.join(); }

    std::string caption;
    std::set<std::string> texts;
    std::atomic<bool> seen{false};
    // False when the dialog never reached the expected folder; the dialog was then cancelled.
    std::atomic<bool> matched{true};

  private:
    static std::string selectedFolderName(HWND dialog) {
        HWND tree = ::FindWindowExA(dialog, nullptr, "SysTreeView32", nullptr);
        if (!tree) {
            return {};
        }
        const auto item = reinterpret_cast<HTREEITEM>(::SendMessageA(tree, TVM_GETNEXTITEM, TVGN_CARET, 0));
        char text[MAX_PATH] = {};
        TVITEMA tv{};
        tv.mask = TVIF_TEXT;
        tv.hItem = item;
        tv.pszText = text;
        tv.cchTextMax = MAX_PATH;
        if (!item || !::SendMessageA(tree, TVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&tv))) {
            return {};
        }
        return text;
    }

    void run(int button) {
        HWND dialog = nullptr;
        const DWORD pid = ::GetCurrentProcessId();
        for (int i = 0; i < 400 && !dialog; ++i) {
            std::this_thread::sleep_for(milliseconds(25));
            HWND h = nullptr;
            while ((h = ::FindWindowExA(nullptr, h, "#32770", "Select a folder you want to track")) != nullptr) {
                DWORD owner = 0;
                ::GetWindowThreadProcessId(h, &owner);
                if (owner == pid) {
                    dialog = h;
                    break;
                }
            }
        }
        if (!dialog) {
            return;
        }
        // The starting folder is selected after the dialog shows, and later still on a busy machine.
        for (int i = 0; i < 200 && !expected_.empty() && selectedFolderName(dialog) != expected_; ++i) {
            std::this_thread::sleep_for(milliseconds(25));
        }
        if (expected_.empty()) {
            std::this_thread::sleep_for(milliseconds(300));
        } else if (selectedFolderName(dialog) != expected_) {
            matched = false;
            button = IDCANCEL;
        }
        caption = windowText(dialog);
        ::EnumChildWindows(
            dialog,
            [](HWND child, LPARAM lp) -> BOOL {
                reinterpret_cast<std::set<std::string>*>(lp)->insert(windowText(child));
                return TRUE;
            },
            reinterpret_cast<LPARAM>(&texts));
        seen = true;
        ::PostMessageA(dialog, WM_COMMAND, MAKEWPARAM(button, BN_CLICKED), 0);
    }

    std::string expected_;
    std::thread thread_;
};

TEST_F(TrackerWindow, AddBrowsesFromTheWallpaperDirectoryThenFromTheLastFolder) {
    const std::string walls = session.folder("Walls");
    makeFolder(walls);
    const std::string savedDirectory = program().app.settings.WallpaperDirectory;
    program().app.settings.WallpaperDirectory = walls + "\\";
    showTracker(session.host);
    HWND add = childWithText(window, "&Add");
    // Wine's folder dialog now and then fails to select the folder it is given when many folders have
    // come and gone in the session; a cancelled try changes nothing, so such a try is made again.
    auto browseUntilSelected = [&](const char* expected) {
        for (int attempt = 0; attempt < 3; ++attempt) {
            BrowseDialogUser user(IDOK, expected);
            click(add);
            if (!waitFor([&] { return user.seen.load(); })) {
                return std::string("no browse dialog");
            }
            if (user.matched) {
                if (user.caption != "Select a folder you want to track" || user.texts.count("Select a folder:") != 1) {
                    return "caption \"" + user.caption + "\" or the instruction line is wrong";
                }
                return std::string();
            }
            pumpMessages(milliseconds(200));
        }
        return std::string("the dialog never started at ") + expected;
    };
    EXPECT_EQ(browseUntilSelected("Walls"), "") << "the first browse starts at the wallpaper directory";
    program().app.settings.WallpaperDirectory = session.folder("Photos");
    EXPECT_EQ(browseUntilSelected("Walls"), "") << "the next starts at the folder chosen last";
    {
        BrowseDialogUser user(IDCANCEL);
        click(add);
        ASSERT_TRUE(waitFor([&] { return user.seen.load(); }));
    }
    program().app.settings.WallpaperDirectory = savedDirectory;
    pumpMessages(milliseconds(200));
    const auto lines = listLines(list);
    ASSERT_EQ(lines.size(), 5u) << ::testing::PrintToString(lines);
    EXPECT_EQ(lines[3], walls) << "the first browse starts at the wallpaper directory";
    EXPECT_EQ(lines[4], walls) << "the next starts at the folder chosen last, and duplicates are allowed";

    click(childWithText(window, "OK"));
    EXPECT_EQ(session.host.calls.back(), folders({"Pics", "Photos", "Shots", "Walls", "Walls", ""}));
    const std::string picture = session.folder("picture.jpg");
    writePicture(picture, "jpg", 16, 16);
    ASSERT_EQ(runOtherProgram("cmd.exe /c copy /y \"" + picture + "\" \"" + walls + "\""), 0u);
    EXPECT_TRUE(session.host.waitForCall("add " + walls + "\\picture.jpg")) << "an added folder is watched at once";
}

}  // namespace
}  // namespace tl::wintest
