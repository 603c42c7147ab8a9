// frmTracker loaded on this process's thread over folders of the test's own, with a stand-in for frmMain
// that records what the tracker asks of it.
#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <string>
#include <vector>

#include "app/program_win.h"
#include "base/window_win.h"
#include "support/driver.h"
#include "tracker/tracker_form_win.h"
#include "tracker/tracker_host.h"

namespace tl::wintest {
namespace {

class RecordingHost : public TrackerHost {
  public:
    void addPaper(const std::string& path, bool, int16_t& result) override {
        calls.push_back("add " + path);
        result = 1;
    }
    void deletePaper(const std::string& path, bool) override { calls.push_back("delete " + path); }
    void setTrackerList(const TrackedFolders& folders) override {
        std::string line = "folders";
        for (const auto& f : folders) {
            line += " [" + f + "]";
        }
        calls.push_back(line);
    }
    std::vector<std::string> calls;
};

class TrackerWindow : public ::testing::Test {
  protected:
    TrackerWindow() {
        TrackedFolders folders{""};  // slot 0 is not read
        for (const char* name : {"Pics", "Photos", "Shots"}) {
            dir.makeFolder(name);
            folders.push_back(dir.file(name));
        }
        loadTracker(host, folders);
        window = trackerWindow();
        list = findChild(window, "ListBox");
    }
    ~TrackerWindow() override { unloadTracker(); }

    // The line setTrackerList gives for those folders ("" for the empty last slot).
    std::string folders(const std::vector<std::string>& names) const {
        std::string line = "folders";
        for (const auto& n : names) {
            line += " [" + (n.empty() ? n : dir.file(n)) + "]";
        }
        return line;
    }
    // Clicks one of the window's buttons and lets the window handle it.
    void click(const char* caption) const {
        HWND button = findChild(window, "Button", caption);
        ASSERT_NE(button, nullptr) << caption;
        clickButton(button);
        pause(milliseconds(150));
    }

    ProgramDir dir{false};
    RecordingHost host;
    HWND window = nullptr;
    HWND list = nullptr;
};

TEST_F(TrackerWindow, LoadsHiddenWithItsFoldersAndTheCloseBoxHidesItAndSaves) {
    ASSERT_NE(window, nullptr) << "no \"Folder Tracker\" window";
    EXPECT_EQ(windowText(window), "Folder Tracker");
    EXPECT_FALSE(::IsWindowVisible(window)) << "the tracker loads hidden";
    EXPECT_EQ(listLines(list), (std::vector<std::string>{dir.file("Pics"), dir.file("Photos"), dir.file("Shots")}));
    for (const char* caption : {"&Add", "&Remove", "OK", "&Cancel"}) {
        EXPECT_NE(findChild(window, "Button", caption), nullptr) << caption;
    }
    showTracker(host);
    ASSERT_TRUE(waitFor([&] { return ::IsWindowVisible(window) != FALSE; }));
    ::PostMessageA(window, WM_SYSCOMMAND, SC_CLOSE, 0);
    ASSERT_TRUE(waitFor([&] { return !::IsWindowVisible(window); })) << "the window should hide";
    EXPECT_TRUE(isTrackerLoaded()) << "and stay loaded";
    EXPECT_EQ(host.calls, std::vector<std::string>{folders({"Pics", "Photos", "Shots", ""})});
}

TEST_F(TrackerWindow, RemoveTakesTheSelectedFolderAndOkSavesWhatTheWindowShows) {
    showTracker(host);
    click("&Remove");
    EXPECT_EQ(listLines(list).size(), 3u) << "with nothing selected Remove only beeps";
    clickListLine(list, 0);
    click("&Remove");
    EXPECT_EQ(listLines(list), (std::vector<std::string>{dir.file("Photos"), dir.file("Shots")}));
    EXPECT_EQ(::SendMessageA(list, LB_GETCURSEL, 0, 0), 0) << "the first folder left is selected";

    // Cancel writes nothing, but the tracker watches what the window shows.
    click("&Cancel");
    EXPECT_FALSE(::IsWindowVisible(window));
    EXPECT_TRUE(host.calls.empty());
    writePicture(dir.file("picture.jpg"), "jpg", 16, 16);
    for (const char* folder : {"Pics", "Shots"}) {
        ASSERT_TRUE(
            ::CopyFileA(dir.file("picture.jpg").c_str(), dir.file(std::string(folder) + "\\a.jpg").c_str(), FALSE));
    }
    EXPECT_TRUE(waitFor([&] { return !host.calls.empty(); }));
    pause(milliseconds(300));
    EXPECT_EQ(host.calls, std::vector<std::string>{"add " + dir.file("Shots\\a.jpg")});

    showTracker(host);
    click("&Remove");
    click("&Remove");
    EXPECT_TRUE(listLines(list).empty());
    click("OK");
    EXPECT_FALSE(::IsWindowVisible(window));
    EXPECT_EQ(host.calls.back(), "folders []");
}

// The name of the folder the browse dialog has selected.
std::string selectedFolder(HWND dialog) {
    HWND tree = findChild(dialog, "SysTreeView32");
    char text[MAX_PATH] = {};
    TVITEMA item{};
    item.mask = TVIF_TEXT;
    item.hItem = reinterpret_cast<HTREEITEM>(::SendMessageA(tree, TVM_GETNEXTITEM, TVGN_CARET, 0));
    item.pszText = text;
    item.cchTextMax = MAX_PATH;
    return item.hItem && ::SendMessageA(tree, TVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&item)) ? text : "";
}

TEST_F(TrackerWindow, AddBrowsesFromTheWallpaperDirectoryThenFromTheLastFolder) {
    dir.makeFolder("Walls");
    const std::string savedDirectory = program().app.settings.WallpaperDirectory;
    program().app.settings.WallpaperDirectory = dir.file("Walls") + "\\";
    showTracker(host);
    // Plays the user at the browse dialog: OK once it has selected the expected folder. Wine's dialog now
    // and then fails to select the folder it is given when many folders have come and gone in the
    // session; a cancelled try changes nothing, so such a try is made again.
    const auto browse = [&](const std::string& expected) {
        for (int attempt = 0; attempt < 3; ++attempt) {
            std::atomic<bool> done{false};
            std::string problem = "no browse dialog";
            Driver user([&] {
                HWND dialog = waitForOwnWindow("#32770", "Select a folder you want to track");
                if (dialog) {
                    // The starting folder is selected after the dialog shows, and later still on a busy machine.
                    const bool there = waitFor([&] { return selectedFolder(dialog) == expected; }, seconds(5));
                    problem = !there ? "the dialog started at " + selectedFolder(dialog)
                              : findChild(dialog, "Static", "Select a folder:") ? ""
                                                                                : "no instruction line";
                    pressButton(dialog, there ? IDOK : IDCANCEL);
                }
                done = true;
            });
            clickButton(findChild(window, "Button", "&Add"));
            waitFor([&] { return done.load(); }, seconds(15));
            if (problem.rfind("the dialog started at", 0) != 0) {
                return problem;
            }
        }
        return std::string("the dialog never started at ") + expected;
    };
    EXPECT_EQ(browse("Walls"), "") << "the first browse starts at the wallpaper directory";
    program().app.settings.WallpaperDirectory = dir.file("Photos");
    EXPECT_EQ(browse("Walls"), "") << "the next starts at the folder chosen last";
    program().app.settings.WallpaperDirectory = savedDirectory;
    EXPECT_EQ(listLines(list).size(), 5u) << "duplicates are allowed";
    EXPECT_EQ(listLines(list).back(), dir.file("Walls"));

    click("OK");
    EXPECT_EQ(host.calls.back(), folders({"Pics", "Photos", "Shots", "Walls", "Walls", ""}));
    writePicture(dir.file("Walls\\picture.jpg"), "jpg", 16, 16);
    EXPECT_TRUE(waitFor([&] {
        return std::find(host.calls.begin(), host.calls.end(), "add " + dir.file("Walls\\picture.jpg")) !=
               host.calls.end();
    })) << "an added folder is watched at once";
}

}  // namespace
}  // namespace tl::wintest
