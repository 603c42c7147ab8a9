// frmMain on several monitors, and Fill: the pictures each switch takes, the history, a change of the
// monitors, the setting and its menu, Fill in the cycle, the menus and the list file.
#include <gtest/gtest.h>

#include <set>

#include "changer/commands.h"
#include "changer/fake_changer_platform.h"

namespace tl::test {
namespace {

class Monitors : public ::testing::Test, public ChangerFixture {
  protected:
    const ScreenRect primary{0, 0, 1024, 768}, left{-800, 100, 800, 600}, portrait{1024, 0, 600, 800};
    std::string composed(const char* a, const char* b, const char* c) {
        return std::string("compose ") + a + ".jpg@-800,100 " + b + ".jpg@0,0 " + c + ".jpg@1024,0";
    }
};

TEST_F(Monitors, EachMonitorTakesTheNextPictureInTurnAndPreviousTakesThemAllBack) {
    fake.monitorRects = {primary, left, portrait};
    start({"a", "b", "c", "d"});
    EXPECT_EQ(fake.lastPlan.desktop, (ScreenRect{-800, 0, 2424, 800}));
    form.switchWallpaper(false);
    EXPECT_EQ(fake.log, (std::vector<std::string>{
                            "load " + pic("b"),
                            composed("d", "a", "b"),
                            "reg WallpaperStyle=0",
                            "reg TileWallpaper=1",
                            "spi " + bitmap(),
                            "reg Wallpaper=" + bitmap(),
                            "tray modify Tessaline - " + pic("b"),
                        }));
    EXPECT_EQ(fake.list.listIndex(), 1) << "the current line is the last monitor's picture";
    form.onPrevious();
    EXPECT_EQ(fake.matching("compose").back(), composed("a", "b", "c"));
    EXPECT_EQ(fake.list.listIndex(), 2);

    // Random: a picture per monitor, none twice while the list has enough.
    app.settings.Mode = 1;
    for (int i = 0; i < 20; ++i) {
        form.switchWallpaper(false);
        std::set<std::string> paths;
        for (const MonitorPicture& p : fake.lastPlan.pictures) {
            paths.insert(p.path);
        }
        EXPECT_EQ(paths.size(), 3u) << fake.matching("compose").back();
    }
    // Hold (any other Mode): every monitor keeps its picture.
    app.settings.Mode = 0;
    const std::string before = fake.matching("compose").back();
    fake.log.clear();
    form.switchWallpaper(false);
    EXPECT_EQ(fake.count("compose"), 0);
    EXPECT_EQ(fake.matching("reg Wallpaper="), std::vector<std::string>{"reg Wallpaper=" + bitmap()});
}

TEST_F(Monitors, AChangeOfMonitorsLaysThePicturesOutAgainAtOnceKeepingTheHistory) {
    fake.monitorRects = {primary, left, portrait};
    start({"a", "b", "c", "d"});
    form.switchWallpaper(false);
    const int previous = form.previousIndex();
    // The portrait one unplugged: the current line's picture stays, on the last monitor.
    fake.monitorRects = {primary, left};
    fake.log.clear();
    form.onDisplayChange();
    EXPECT_EQ(fake.matching("compose"), std::vector<std::string>{"compose d.jpg@-800,100 b.jpg@0,0"});
    EXPECT_EQ(form.previousIndex(), previous);
    // A new one plugged in shows the current picture until the next switch gives it its own.
    fake.monitorRects = {primary, left, portrait};
    form.onDisplayChange();
    EXPECT_EQ(fake.matching("compose").back(), composed("d", "b", "b"));
    form.switchWallpaper(false);
    EXPECT_EQ(fake.matching("compose").back(), composed("c", "d", "a"));
    // Back to one monitor: the picture as one monitor always had it, the bitmap its own again.
    fake.monitorRects = {primary};
    fake.log.clear();
    form.onDisplayChange();
    EXPECT_EQ(fake.log, (std::vector<std::string>{
                            "load " + pic("a"),
                            "save " + pic("a"),
                            "reg WallpaperStyle=0",
                            "reg TileWallpaper=0",
                            "spi " + bitmap(),
                            "reg Wallpaper=" + bitmap(),
                            "tray modify Tessaline - " + pic("a"),
                        }));
    // A new resolution of that one monitor re-applies nothing, as before.
    fake.monitorRects = {{0, 0, 800, 600}};
    fake.log.clear();
    form.onDisplayChange();
    EXPECT_TRUE(fake.log.empty());
}

TEST_F(Monitors, TheSettingIsChosenInTheDisplayMenuAndAutomaticFollowsTheMonitors) {
    fake.monitorRects = {primary, left};
    fake.spans = true;  // Windows 8 and later: spanned, not tiled
    start({"a", "b", "c"});
    EXPECT_TRUE(form.menus().checked(mnuDisplayMonitorsEach));
    EXPECT_EQ(app.settings.MonitorMode, 0);
    form.onMenuCommand(mnuDisplayMonitorsAcross);
    EXPECT_EQ(app.settings.MonitorMode, 3);
    EXPECT_EQ(fake.matching("save settings").size(), 1u);
    EXPECT_EQ(fake.matching("compose").back(), "compose b.jpg@-800,0");
    EXPECT_EQ(fake.lastPlan.pictures[0].area, (ScreenRect{-800, 0, 1824, 768}));
    EXPECT_TRUE(fake.lastPlan.spanned);
    EXPECT_EQ(fake.matching("reg WallpaperStyle="), std::vector<std::string>{"reg WallpaperStyle=22"});
    EXPECT_EQ(fake.matching("reg TileWallpaper="), std::vector<std::string>{"reg TileWallpaper=0"});
    form.onMenuCommand(mnuDisplayMonitorsSame);
    EXPECT_EQ(fake.matching("compose").back(), "compose b.jpg@-800,100 b.jpg@0,0");
    EXPECT_TRUE(form.menus().checked(mnuDisplayMonitorsSame));
    EXPECT_FALSE(form.menus().checked(mnuDisplayMonitorsEach));
    form.onMenuCommand(mnuDisplayMonitorsEach);
    EXPECT_EQ(fake.matching("compose").back(), "compose c.jpg@-800,100 a.jpg@0,0") << "a switch at once";

    ChangerFixture one;
    one.start({"a"});
    EXPECT_TRUE(one.form.menus().checked(mnuDisplayMonitorsSame)) << "automatic, with one monitor";
}

TEST_F(Monitors, FillComesAfterScaleInTheCycleAndIsComposedEvenOnOneMonitor) {
    load({pic("a") + "\t3", pic("b") + "\tFill..."});
    fake.log.clear();
    userClick(0);  // the line on show: Scale steps on to Fill
    EXPECT_EQ(form.entries()[0].orientation, kFill);
    EXPECT_EQ(fake.orType, 4) << "Fill is the fifth item of orType";
    EXPECT_TRUE(form.menus().checked(mnuTraySOFilled));
    EXPECT_EQ(fake.matching("compose"), std::vector<std::string>{"compose a.jpg@0,0"});
    EXPECT_EQ(fake.matching("reg TileWallpaper="), std::vector<std::string>{"reg TileWallpaper=1"});
    userClick(0);
    EXPECT_EQ(form.entries()[0].orientation, kCenter);
    EXPECT_EQ(fake.matching("save "), std::vector<std::string>{"save " + pic("a")}) << "its own bitmap again";
    form.onMenuCommand(mnuTraySOFilled);
    EXPECT_EQ(form.entries()[0].orientation, kFill);
    EXPECT_EQ(dir.read("MyWallpapers.wall"), pic("a") + "\tFill...\r\n" + pic("b") + "\tFill...\r\n");
}

}  // namespace
}  // namespace tl::test
