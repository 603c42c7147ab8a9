// The real program's list manager: a list built from a folder, a selection and a drop, its commands, and
// the list handed back to the changer.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/unique_handle_win.h"
#include "base/window_win.h"
#include "manager/manager_ids.h"
#include "manager/manager_menu.h"
#include "support/driver.h"
#include "support/program.h"

namespace tl::wintest {
namespace {

using ::testing::ElementsAre;

// frmManager of the real program started with /setup (a first run: every setting at its default).
struct Manager {
    explicit Manager(const ProgramDir& dir, const std::string& list = "")
        : program(dir, "/setup" + (list.empty() ? "" : " " + dir.file(list))),
          window(program.waitForWindow("TessalineManager", nullptr, seconds(15))),
          list1(findControl(window, IDC_LIST1)),
          dir1(findControl(window, IDC_DIR1)) {}
    std::vector<std::string> lines() const { return listLines(list1); }
    bool waitForLines(size_t n) const {
        return waitFor([&] { return lines().size() == n; }, seconds(15));
    }
    // The command of the menu item with that caption, as a click on the item sends it.
    void pickMenu(const std::string& caption) const {
        for (const auto* menu : {&managerMenuBar(), &managerContextMenu()}) {
            for (const MenuLine& line : *menu) {
                if (line.id != 0 && caption == line.caption) {
                    ::PostMessageA(window, WM_COMMAND, MAKEWPARAM(line.id, 0), 0);
                    return;
                }
            }
        }
        ADD_FAILURE() << "no menu item \"" << caption << "\"";
    }
    // The line of a folder or file list whose text, without its indent, is name; -1 for none.
    static int lineNamed(HWND listBox, const std::string& name) {
        const auto lines = listLines(listBox);
        for (size_t i = 0; i < lines.size(); ++i) {
            if (lines[i].substr(lines[i].find_first_not_of(' ')) == name) {
                return static_cast<int>(i);
            }
        }
        return -1;
    }
    // Answers a message box with that title with the button; its text, or "(no box)".
    std::string answer(const char* title, int button) const {
        HWND box = program.waitForWindow("#32770", title);
        if (!box) {
            return "(no box)";
        }
        const std::string text = staticTexts(box);
        pressButton(box, button);
        waitFor([&] { return !::IsWindow(box); });
        return text;
    }

    RunningProgram program;
    HWND window;
    HWND list1;
    HWND dir1;
};

TEST(ListManager, AFolderASelectionAndADropBuildAListThatSaveAsWrites) {
    ProgramDir dir;
    for (const char* folder : {"Photos", "Photos\\Sub", "Loose", "Dropped", "Dropped\\Inside"}) {
        dir.makeFolder(folder);
    }
    for (const char* picture : {"Photos\\p1.jpg", "Photos\\Sub\\p2.bmp", "Photos\\p3.gif", "Loose\\l1.jpg",
                                "Loose\\l2.gif", "Dropped\\d1.jpg", "Dropped\\Inside\\x.jpg"}) {
        const std::string name = picture;
        writePicture(dir.file(name), name.substr(name.size() - 3), 40, 30);
    }
    Manager m(dir);
    ASSERT_NE(m.window, nullptr) << "the list manager did not open";
    ASSERT_EQ(m.lines().size(), 0u);

    // A folder highlighted (not opened) in the folder list, and the add-folder button: GIFs left out.
    const int photos = Manager::lineNamed(m.dir1, "Photos");
    ASSERT_GE(photos, 0) << "the folder list starts in the program folder";
    clickListLine(m.dir1, photos);
    clickButton(findChild(m.window, "Button", "Add folder"));
    ASSERT_TRUE(m.waitForLines(2)) << ::testing::PrintToString(m.lines());
    EXPECT_THAT(m.lines(), ElementsAre(dir.file("Photos\\p1.jpg"), dir.file("Photos\\Sub\\p2.bmp")));

    // Two files selected in the opened folder, and the add-files button.
    HWND file1 = findControl(m.window, IDC_FILE1);
    doubleClickListLine(m.dir1, Manager::lineNamed(m.dir1, "Loose"));
    ASSERT_TRUE(waitFor([&] { return listLines(file1).size() == 2; })) << "the file list shows Loose";
    clickListLine(file1, 0);
    clickListLine(file1, 1);
    clickButton(findChild(m.window, "Button", "Add files"));
    ASSERT_TRUE(m.waitForLines(4)) << ::testing::PrintToString(m.lines());

    // A file and a folder dropped from the shell; the whole list is sorted once at the end.
    dropFiles(m.program.pid(), m.window, {dir.file("Dropped\\d1.jpg"), dir.file("Dropped\\Inside")});
    ASSERT_TRUE(m.waitForLines(6)) << ::testing::PrintToString(m.lines());
    const std::vector<std::string> sorted = {dir.file("Dropped\\d1.jpg"), dir.file("Dropped\\Inside\\x.jpg"),
                                             dir.file("Loose\\l1.jpg"),   dir.file("Loose\\l2.gif"),
                                             dir.file("Photos\\p1.jpg"),  dir.file("Photos\\Sub\\p2.bmp")};
    EXPECT_EQ(m.lines(), sorted);

    // A name without a dot gets ".wall".
    m.pickMenu("Save &As...");
    HWND dialog = m.program.waitForWindow("#32770", "Select a file to save list to");
    ASSERT_NE(dialog, nullptr) << "no save dialog";
    ASSERT_EQ(dir.path().find('.'), std::string::npos);
    chooseInFileDialog(dialog, dir.file("built"));
    ASSERT_TRUE(waitFor([&] { return windowText(m.window) == "Tessaline (" + dir.file("built.wall") + ")"; }));
    std::vector<std::string> expected;
    for (const auto& path : sorted) {
        expected.push_back(path + "\t0");
    }
    // The caption shows the new name before the list is written.
    EXPECT_TRUE(waitFor([&] { return dir.lines("built.wall") == expected; }))
        << ::testing::PrintToString(dir.lines("built.wall"));
}

TEST(ListManager, TheNamedListIsEditedAndSaveAndCloseHandsItToTheChanger) {
    ProgramDir dir;
    writePicture(dir.file("first.jpg"), "jpg", 64, 48);
    writePicture(dir.file("second.bmp"), "bmp", 80, 60);
    dir.write("Mine.wall", dir.file("first.jpg") + "\t2\r\n");
    Manager m(dir, "Mine.wall");
    ASSERT_NE(m.window, nullptr) << "/setup with a list must open the manager";
    EXPECT_EQ(windowText(m.window), "Tessaline (" + dir.file("Mine.wall") + ")");
    EXPECT_THAT(m.lines(), ElementsAre(dir.file("first.jpg")));
    EXPECT_EQ(m.program.window("TessalineMain"), nullptr) << "the changer must not load with /setup";
    dropFiles(m.program.pid(), m.window, {dir.file("second.bmp")});
    ASSERT_TRUE(m.waitForLines(2));
    ScreenShot().save("manager.bmp");  // to look at: the list as the user sees it

    m.pickMenu("Save and &close");
    ASSERT_NE(m.program.waitForLoaded("TessalineMain"), nullptr) << "frmMain did not load";
    EXPECT_TRUE(waitFor([&] { return m.program.window("TessalineManager") == nullptr; })) << "the manager stays";
    const auto settings = dir.lines("setup.pref");
    EXPECT_THAT(settings, ::testing::Contains("LastList=" + dir.file("Mine.wall")));
    EXPECT_THAT(dir.lines("Mine.wall"), ElementsAre(dir.file("first.jpg") + "\t2", dir.file("second.bmp") + "\t0"));
    // The changer read the list just written and put one of its pictures on the desktop.
    const std::string bitmap = dir.file("tl_current.bmp");
    EXPECT_TRUE(waitFor([&] {
        const auto size = bitmapFileSize(bitmap);
        return size && (size->width == 64 || size->width == 80) && desktopValue("Wallpaper") == bitmap;
    })) << "no wallpaper from the list was applied";
}

std::string classesValue(const std::string& key) {
    char value[1024] = {};
    LONG size = sizeof value;
    return ::RegQueryValueA(HKEY_CLASSES_ROOT, key.c_str(), value, &size) == ERROR_SUCCESS ? value : "(none)";
}

bool classesKeyExists(const std::string& key) {
    unique_hkey k;
    return ::RegOpenKeyExA(HKEY_CLASSES_ROOT, key.c_str(), 0, KEY_READ, k.put()) == ERROR_SUCCESS;
}

TEST(ListManager, AssociateThenUnassociateChangesTheClassesRoot) {
    ProgramDir dir;
    Manager m(dir);
    ASSERT_NE(m.window, nullptr);
    m.pickMenu("&Associate with WALL files");
    EXPECT_EQ(m.answer("Complete!", IDOK),
              "WALL files are now associated with Tessaline.\r\nTo undo this action, choose 'Un-associate'.");
    EXPECT_EQ(classesValue("Tessaline"), "Tessaline File");
    EXPECT_EQ(classesValue(".wall"), "Tessaline");
    EXPECT_EQ(classesValue("Tessaline\\shell\\open\\command"), "\"" + dir.path() + "\\tessaline.EXE\" %1");
    EXPECT_EQ(classesValue("Tessaline\\DefaultIcon"), dir.path() + "\\tessaline.exe,0");

    m.pickMenu("Un-associate");
    m.answer("Warning!", IDYES);
    EXPECT_EQ(m.answer("Complete!", IDOK), "Registry entries deleted.");
    EXPECT_FALSE(classesKeyExists(".wall"));
    // One RegDeleteKeyA each: the system keeps a key that still has sub-keys.
    EXPECT_TRUE(classesKeyExists("Tessaline")) << "deleted with its sub-keys";
    ::RegDeleteTreeA(HKEY_CLASSES_ROOT, "Tessaline");
}

}  // namespace
}  // namespace tl::wintest
