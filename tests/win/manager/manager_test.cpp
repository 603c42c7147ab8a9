#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "app/app_state.h"
#include "app/profile_win.h"
#include "app/settings.h"
#include "base/file_system_win.h"
#include "base/ui.h"
#include "base/unique_handle_win.h"
#include "base/window_win.h"
#include "manager/manager_ids.h"
#include "manager/manager_menu.h"
#include "manager/manager_menu_win.h"
#include "support/desktop_probe.h"
#include "support/program_dir.h"
#include "support/remote_window.h"
#include "support/running_program.h"
#include "support/window_driver.h"

namespace tl::wintest {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

class QuietUi : public Ui {
  public:
    int messageBox(std::string_view, std::string_view, unsigned) override { return kIdOk; }
    void beep() override {}
};

// setup.pref with every default but what the test changes.
void writeSettings(const ProgramDir& dir, const std::function<void(Settings&)>& change = nullptr) {
    AppState app;
    app.programDir = dir.path();
    applyDefaultSettings(app);
    if (change) {
        change(app.settings);
    }
    Win32FileSystem fs;
    Win32ProfileFile profile(fs, dir.file("setup.pref"));
    QuietUi ui;
    saveSettings(app, profile, ui, '.');
}

void makeFolder(const ProgramDir& dir, const std::string& name) {
    ::CreateDirectoryA(dir.file(name).c_str(), nullptr);
}

// The menu command a caption stands for in the manager's menus, as a click on the item sends it.
void pickMenu(HWND window, const std::string& caption) {
    for (const auto* lines : {&managerMenuBar(), &managerContextMenu()}) {
        for (const MenuLine& line : *lines) {
            if (line.id != 0 && caption == line.caption) {
                ::PostMessageA(window, WM_COMMAND, MAKEWPARAM(line.id, 0), 0);
                return;
            }
        }
    }
    ADD_FAILURE() << "no menu item \"" << caption << "\"";
}

// The line of a list box whose text, without its indent, is the given name; -1 for none.
int lineNamed(HWND listBox, const std::string& name) {
    const auto lines = listLines(listBox);
    for (size_t i = 0; i < lines.size(); ++i) {
        if (lines[i].substr(lines[i].find_first_not_of(' ')) == name) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

std::string settingValue(const ProgramDir& dir, const char* key) {
    char value[512] = {};
    ::GetPrivateProfileStringA("Tessaline", key, "", value, sizeof value, dir.file("setup.pref").c_str());
    return value;
}

struct Manager {
    explicit Manager(const ProgramDir& dir, const std::string& arguments = "/setup") : program(dir, arguments) {
        window = program.waitForWindow("TessalineManager", nullptr, seconds(15), true);
        list1 = findControl(window, IDC_LIST1);
        dir1 = findControl(window, IDC_DIR1);
        file1 = findControl(window, IDC_FILE1);
    }
    std::vector<std::string> lines() const { return listLines(list1); }
    bool waitForLines(size_t n) const {
        return waitFor([&] { return lines().size() == n; }, seconds(15));
    }

    RunningProgram program;
    HWND window = nullptr;
    HWND list1 = nullptr;
    HWND dir1 = nullptr;
    HWND file1 = nullptr;
};

TEST(ListManager, SetupShowsTheListNamedOnTheCommandLine) {
    ProgramDir dir;
    writePicture(dir.file("sea.jpg"), "jpg", 64, 48);
    writePicture(dir.file("hills.bmp"), "bmp", 48, 64);
    dir.write("Summer.wall",
              dir.file("sea.jpg") + "\t2\r\n" + dir.file("hills.bmp") + "\t0\r\n#" + dir.path() + "\r\n");
    Manager m(dir, "/setup " + dir.file("Summer.wall"));
    ASSERT_NE(m.window, nullptr) << "the list manager did not open";
    EXPECT_EQ(windowText(m.window), "Tessaline (" + dir.file("Summer.wall") + ")");
    EXPECT_THAT(m.lines(), ElementsAre(dir.file("sea.jpg"), dir.file("hills.bmp")));
    EXPECT_EQ(windowText(findControl(m.window, IDC_FILE_COUNT)), " 2 total files.") << "File1 shows the program folder";
    for (const char* text : {"Browse for files", "Preview", "Control selected files"}) {
        EXPECT_NE(findChild(m.window, "TessalineFrame", text), nullptr) << text;
    }
}

TEST(ListManager, AFolderASelectionAndADropBuildAListThatSaveAsWrites) {
    ProgramDir dir;
    writeSettings(dir);
    for (const char* folder : {"Photos", "Photos\\Sub", "Loose", "Dropped", "Dropped\\Inside"}) {
        makeFolder(dir, folder);
    }
    writePicture(dir.file("Photos\\p1.jpg"), "jpg", 40, 30);
    writePicture(dir.file("Photos\\Sub\\p2.bmp"), "bmp", 40, 30);
    writePicture(dir.file("Photos\\p3.gif"), "gif", 40, 30);  // a folder add leaves GIFs out
    writePicture(dir.file("Loose\\l1.jpg"), "jpg", 40, 30);
    writePicture(dir.file("Loose\\l2.gif"), "gif", 40, 30);
    writePicture(dir.file("Dropped\\d1.jpg"), "jpg", 40, 30);
    writePicture(dir.file("Dropped\\Inside\\x.jpg"), "jpg", 40, 30);

    Manager m(dir);
    ASSERT_NE(m.window, nullptr);
    ASSERT_EQ(m.lines().size(), 0u);

    // A folder highlighted (not opened) in the folder list, and the add-folder button.
    const int photos = lineNamed(m.dir1, "Photos");
    ASSERT_GE(photos, 0) << "the folder list starts in the program folder";
    clickListLine(m.dir1, photos);
    clickButton(findChild(m.window, "Button", "Add folder"));
    ASSERT_TRUE(m.waitForLines(2)) << ::testing::PrintToString(m.lines());
    EXPECT_THAT(m.lines(), ElementsAre(dir.file("Photos\\p1.jpg"), dir.file("Photos\\Sub\\p2.bmp")));

    // Two files selected in the opened folder, and the add-files button.
    doubleClickListLine(m.dir1, lineNamed(m.dir1, "Loose"));
    ASSERT_TRUE(waitFor([&] { return listLines(m.file1).size() == 2; })) << "the file list shows Loose";
    clickListLine(m.file1, 0);
    clickListLine(m.file1, 1);
    clickButton(findChild(m.window, "Button", "Add files"));
    ASSERT_TRUE(m.waitForLines(4)) << ::testing::PrintToString(m.lines());

    // A file and a folder dropped from the shell; the whole list is sorted once at the end.
    dropFiles(m.program.pid(), m.window, {dir.file("Dropped\\d1.jpg"), dir.file("Dropped\\Inside")});
    ASSERT_TRUE(m.waitForLines(6)) << ::testing::PrintToString(m.lines());
    const std::vector<std::string> sorted = {dir.file("Dropped\\d1.jpg"), dir.file("Dropped\\Inside\\x.jpg"),
                                             dir.file("Loose\\l1.jpg"),   dir.file("Loose\\l2.gif"),
                                             dir.file("Photos\\p1.jpg"),  dir.file("Photos\\Sub\\p2.bmp")};
    EXPECT_THAT(m.lines(), ElementsAreArray(sorted));

    pickMenu(m.window, "Save &As...");
    const HWND dialog = m.program.waitForMessageBox("Select a file to save list to");
    ASSERT_NE(dialog, nullptr) << "no save dialog";
    const std::string typed = dir.file("built");
    ASSERT_TRUE(chooseInFileDialog(dialog, typed));
    // Without a dot anywhere in the path the list gets ".wall"; with one, the name is kept as typed.
    const std::string saved = typed.find('.') == std::string::npos ? typed + ".wall" : typed;
    ASSERT_TRUE(waitFor([&] { return ::GetFileAttributesA(saved.c_str()) != INVALID_FILE_ATTRIBUTES; }))
        << saved << " was not written";
    ASSERT_TRUE(waitFor([&] { return windowText(m.window) == "Tessaline (" + saved + ")"; }));
    std::vector<std::string> expected;
    for (const auto& path : sorted) {
        expected.push_back(path + "\t0");
    }
    std::vector<std::string> written;
    std::string line;
    std::istringstream in(dir.read(saved.substr(dir.path().size() + 1)));
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        written.push_back(line);
    }
    EXPECT_EQ(written, expected);
}

TEST(ListManager, SaveAndCloseHandsTheListBackToTheChangerWhichAppliesAWallpaperFromIt) {
    ProgramDir dir;
    writePicture(dir.file("first.jpg"), "jpg", 64, 48);
    writePicture(dir.file("second.bmp"), "bmp", 80, 60);
    dir.write("Mine.wall", dir.file("first.jpg") + "\t2\r\n");
    writeSettings(dir, [&](Settings& s) { s.LastList = dir.file("Other.wall"); });
    Manager m(dir, "/setup " + dir.file("Mine.wall"));
    ASSERT_NE(m.window, nullptr);
    dropFiles(m.program.pid(), m.window, {dir.file("second.bmp")});
    ASSERT_TRUE(m.waitForLines(2));

    pickMenu(m.window, "Save and &close");
    ASSERT_NE(m.program.waitForWindow("TessalineMain"), nullptr) << "frmMain did not load";
    EXPECT_TRUE(waitFor([&] { return m.program.window("TessalineManager") == nullptr; })) << "the manager stays";
    EXPECT_EQ(settingValue(dir, "LastList"), dir.file("Mine.wall"));
    EXPECT_THAT(dir.lines("Mine.wall"), ElementsAre(dir.file("first.jpg") + "\t2", dir.file("second.bmp") + "\t0"));

    // The changer read the list just written and put one of its pictures on the desktop.
    const std::string bitmap = dir.file("tl_current.bmp");
    ASSERT_TRUE(waitFor([&] {
        const auto size = bitmapFileSize(bitmap);
        return size && ((size->width == 64 && size->height == 48) || (size->width == 80 && size->height == 60));
    })) << "no wallpaper from the list was applied";
    EXPECT_TRUE(waitFor([&] { return desktopValue("Wallpaper") == bitmap; }));
}

TEST(ListManager, TheTrackedFoldersOfTheEditedListKeepItInStepUntilItIsHandedBack) {
    ProgramDir dir;
    makeFolder(dir, "Watched");
    writePicture(dir.file("Watched\\old.jpg"), "jpg", 64, 48);
    dir.write("Tracked.wall", dir.file("Watched\\old.jpg") + "\t0\r\n#" + dir.file("Watched") + "\r\n");
    Manager m(dir, "/setup " + dir.file("Tracked.wall"));
    ASSERT_NE(m.window, nullptr);
    ASSERT_NE(m.program.waitForWindow("TessalineTracker"), nullptr) << "the list's folders are not watched";

    writePicture(dir.file("Watched\\new.jpg"), "jpg", 64, 48);
    ASSERT_TRUE(m.waitForLines(2)) << "a picture that appeared in the tracked folder was not added";
    ::DeleteFileA(dir.file("Watched\\old.jpg").c_str());
    ASSERT_TRUE(waitFor([&] { return m.lines() == std::vector<std::string>{dir.file("Watched\\new.jpg")}; }))
        << ::testing::PrintToString(m.lines());

    pickMenu(m.window, "Save and &close");
    ASSERT_NE(m.program.waitForWindow("TessalineMain"), nullptr);
    EXPECT_TRUE(waitFor([&] { return m.program.window("TessalineTracker") == nullptr; }))
        << "the manager's tracker stays loaded";
    EXPECT_THAT(dir.lines("Tracked.wall"),
                ElementsAre(dir.file("Watched\\new.jpg") + "\t0", "#" + dir.file("Watched")));
}

std::string classesValue(const std::string& key) {
    char value[1024] = {};
    LONG size = sizeof value;
    if (::RegQueryValueA(HKEY_CLASSES_ROOT, key.c_str(), value, &size) != ERROR_SUCCESS) {
        return "(none)";
    }
    return value;
}

bool classesKeyExists(const std::string& key) {
    unique_hkey k;
    return ::RegOpenKeyExA(HKEY_CLASSES_ROOT, key.c_str(), 0, KEY_READ, k.put()) == ERROR_SUCCESS;
}

TEST(ListManager, AssociateThenUnassociateChangesTheClassesRoot) {
    ProgramDir dir;
    Manager m(dir);
    ASSERT_NE(m.window, nullptr);

    pickMenu(m.window, "&Associate with WALL files");
    HWND done = m.program.waitForMessageBox("Complete!");
    ASSERT_NE(done, nullptr);
    EXPECT_EQ(RunningProgram::messageBoxText(done),
              "WALL files are now associated with Tessaline.\r\nTo undo this action, choose 'Un-associate'.");
    RunningProgram::pressButton(done, IDOK);
    EXPECT_EQ(classesValue("Tessaline"), "Tessaline File");
    EXPECT_EQ(classesValue(".wall"), "Tessaline");
    EXPECT_EQ(classesValue("Tessaline\\shell\\open\\command"), "\"" + dir.path() + "\\tessaline.EXE\" %1");
    EXPECT_EQ(classesValue("Tessaline\\DefaultIcon"), dir.path() + "\\tessaline.exe,0");

    ASSERT_TRUE(waitFor([&] { return m.program.window("#32770", "Complete!") == nullptr; }));
    pickMenu(m.window, "Un-associate");
    HWND warning = m.program.waitForMessageBox("Warning!");
    ASSERT_NE(warning, nullptr);
    RunningProgram::pressButton(warning, IDYES);
    done = m.program.waitForMessageBox("Complete!");
    ASSERT_NE(done, nullptr);
    EXPECT_EQ(RunningProgram::messageBoxText(done), "Registry entries deleted.");
    RunningProgram::pressButton(done, IDOK);
    EXPECT_FALSE(classesKeyExists(".wall"));
    // One RegDeleteKeyA each: the system keeps a key that still has sub-keys.
    EXPECT_TRUE(classesKeyExists("Tessaline")) << "deleted with its sub-keys";
    ::RegDeleteTreeA(HKEY_CLASSES_ROOT, "Tessaline");
}

TEST(ListManager, TheTitleBarCloseIsRefusedWhileAnAddIsRunning) {
    ProgramDir dir;
    writeSettings(dir, [](Settings& s) { s.DefaultAddOrientation = 4; });  // Auto: every file is read
    makeFolder(dir, "Mixed");
    writePicture(dir.file("Mixed\\good.jpg"), "jpg", 64, 48);
    dir.write("Mixed\\broken.jpg", "not a picture");
    Manager m(dir);
    ASSERT_NE(m.window, nullptr);
    clickListLine(m.dir1, lineNamed(m.dir1, "Mixed"));
    clickButton(findChild(m.window, "Button", "Add folder"));
    const HWND error = m.program.waitForMessageBox("Error");
    ASSERT_NE(error, nullptr) << "the broken picture was not refused";
    EXPECT_EQ(RunningProgram::messageBoxText(error), "The file '" + dir.file("Mixed\\broken.jpg") +
                                                         "' seems to be invalid, or I can't open it for some "
                                                         "reason. I will not add it.");
    ::PostMessageA(m.window, WM_CLOSE, 0, 0);
    ::Sleep(500);
    EXPECT_TRUE(::IsWindow(m.window)) << "closed while busy";
    RunningProgram::pressButton(error, IDOK);
    ASSERT_TRUE(m.waitForLines(1));
    EXPECT_THAT(m.lines(), ElementsAre(dir.file("Mixed\\good.jpg")));
    EXPECT_TRUE(::IsWindow(m.window));
    ::PostMessageA(m.window, WM_CLOSE, 0, 0);
    EXPECT_TRUE(m.program.hasExited(seconds(10))) << "an idle manager closes from the title bar";
}

// The menus the window builds, read back item by item: captions in order, "-" for separators, and the
// items of a submenu indented below it.
void readMenu(HMENU menu, int depth, std::vector<std::string>& out) {
    for (int i = 0; i < ::GetMenuItemCount(menu); ++i) {
        char caption[128] = {};
        MENUITEMINFOA info{};
        info.cbSize = sizeof info;
        info.fMask = MIIM_FTYPE | MIIM_STRING | MIIM_SUBMENU;
        info.dwTypeData = caption;
        info.cch = sizeof caption;
        ::GetMenuItemInfoA(menu, static_cast<UINT>(i), TRUE, &info);
        out.push_back(std::string(static_cast<size_t>(depth) * 2, ' ') +
                      ((info.fType & MFT_SEPARATOR) ? std::string("-") : std::string(caption)));
        if (info.hSubMenu) {
            readMenu(info.hSubMenu, depth + 1, out);
        }
    }
}

TEST(ListManager, MenusCarryTheDesignsCaptionsInOrderAndOneDefaultOrientationCheck) {
    // A window's menu can be read only in its own process, so the menus are built here by the window's
    // own builder from its own tables, and read back.
    unique_hmenu bar = buildMenuBar(managerMenuBar());
    std::vector<std::string> items;
    readMenu(bar.get(), 0, items);
    EXPECT_THAT(items, ElementsAre("&List", "  &New", "  &Open...", "  -", "  &Save", "  Save &As...", "  -",
                                   "  So&rt List", "  File associations", "    &Associate with WALL files",
                                   "    Un-associate", "  A&bout...", "  -", "  Save and &close",
                                   "  Close without save", "&Options", "  Add &new files with this orientation",
                                   "    Centered", "    Tiled", "    Stretched", "    Scaled", "    -", "    Auto",
                                   "  &Check for duplicates", "  Auto &sort on folder insert"));
    unique_hmenu context = buildPopupMenu(managerContextMenu());
    items.clear();
    readMenu(context.get(), 0, items);
    EXPECT_THAT(items, ElementsAre("Remove from list", "Delete from disk", "-", "Sort list"));

    applyOptionChecks(bar.get(), {true, false, kScale});
    const auto checked = [&](UINT id) { return (::GetMenuState(bar.get(), id, MF_BYCOMMAND) & MF_CHECKED) != 0; };
    EXPECT_TRUE(checked(IDM_CHECK_DUPLICATES));
    EXPECT_FALSE(checked(IDM_AUTO_SORT_FOLDER));
    for (UINT id = IDM_DEFAULT_CENTER; id <= IDM_DEFAULT_AUTO; ++id) {
        EXPECT_EQ(checked(id), id == IDM_DEFAULT_SCALE) << "item " << id;
    }
}

}  // namespace
}  // namespace tl::wintest
