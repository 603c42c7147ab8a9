// How the real program starts: the hand-over to the list manager when there is no list to show, and a
// setting it can't read.
#include <gtest/gtest.h>

#include "shared/default_settings_file.h"
#include "support/driver.h"
#include "support/program.h"

namespace tl::wintest {
namespace {

TEST(StartUp, TheManagerTakesOverWhenTheListIsMissingOrEmptyAndTheTrayOtherwise) {
    ProgramDir dir;
    writePicture(dir.file("a.bmp"), "bmp", 64, 48);
    dir.makeFolder("photos");
    struct Case {
        const char* name;
        std::string list;  // MyWallpapers.wall, written unless empty
        bool manager;
    };
    const Case cases[] = {{"no list", "", true},
                          {"only a folder", "#" + dir.file("photos") + "\r\n", true},
                          {"a picture", dir.file("a.bmp") + "\t0\r\n", false}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        if (!c.list.empty()) {
            dir.write("MyWallpapers.wall", c.list);
        }
        RunningProgram tl(dir);
        if (c.manager) {
            EXPECT_NE(tl.waitForWindow("TessalineManager"), nullptr) << "the manager did not open";
            EXPECT_TRUE(waitFor([&] { return tl.window("TessalineMain") == nullptr; })) << "frmMain stayed loaded";
            EXPECT_FALSE(dir.exists("tl_current.bmp"));
        } else {
            HWND form = tl.waitForLoaded("TessalineMain");
            ASSERT_NE(form, nullptr);
            EXPECT_TRUE(waitFor([&] { return dir.exists("tl_current.bmp"); })) << "no wallpaper applied";
            EXPECT_FALSE(::IsWindowVisible(form)) << "frmMain lives in the tray";
            EXPECT_EQ(tl.window("TessalineManager"), nullptr);
        }
        if (c.list.empty()) {
            ASSERT_TRUE(waitFor([&] { return dir.exists("setup.pref"); })) << "a first run writes setup.pref";
            EXPECT_EQ(dir.lines("setup.pref"), test::defaultSettingsFile(dir.path()));
            EXPECT_FALSE(dir.exists("setup.pref.new")) << "the working copy must not be left behind";
        }
    }
}

TEST(StartUp, AValueThatCannotBeReadStopsTheProgramWithAMessageAndTouchesNoFile) {
    ProgramDir dir;
    const std::string original = "[Tessaline]\r\nSmartSwitch=yes\r\n";
    dir.write("setup.pref", original);
    RunningProgram tl(dir);
    HWND box = tl.waitForWindow("#32770", "Tessaline");
    ASSERT_NE(box, nullptr) << "no message about the bad value";
    const std::string text = staticTexts(box);
    for (const std::string& part : {std::string("SmartSwitch"), std::string("\"yes\""), dir.file("setup.pref")}) {
        EXPECT_NE(text.find(part), std::string::npos) << part << " is not named in: " << text;
    }
    pressButton(box, IDOK);
    ASSERT_TRUE(tl.hasExited());
    EXPECT_EQ(tl.exitCode(), 1u);
    EXPECT_EQ(dir.read("setup.pref"), original);
    EXPECT_FALSE(dir.exists("MyWallpapers.wall"));
    EXPECT_FALSE(dir.exists("tl_current.bmp"));
}

}  // namespace
}  // namespace tl::wintest
