// The switching engine: load, the clock, next, previous, pause, random, delay, lists, unload.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "changer/commands.h"
#include "changer/fake_changer_platform.h"

namespace tl::test {
namespace {

class Engine : public ::testing::Test, public ChangerFixture {
  protected:
    // A list of n pictures "C:\p\0.jpg" ... with orientation 0.
    void writePictures(int n) {
        std::vector<std::string> lines;
        for (int i = 0; i < n; ++i) {
            lines.push_back(picture(i) + "\t0");
        }
        writeList(lines);
    }
    static std::string picture(int i) { return "C:\\p\\" + std::to_string(i) + ".jpg"; }
    void tick(int times = 1) {
        for (int i = 0; i < times; ++i) {
            form.onMinuteTimer();
        }
    }
};

TEST_F(Engine, LoadReadsTheListAndAppliesAFirstWallpaperInOrder) {
    writeList({"C:\\p\\a.jpg\t0", "#C:\\p"});
    ASSERT_TRUE(form.onLoad());
    EXPECT_EQ(log.lines, (std::vector<std::string>{
                             "build resolution menu",
                             "fill orType",
                             "load tracker 1",
                             "main mode 0",
                             "prepare panel",
                             "icon text options",
                             "tray add Tessaline - ",
                             "register hot key",
                             "load C:\\p\\a.jpg",
                             "save C:\\p\\a.jpg",
                             "reg WallpaperStyle=0",
                             "reg TileWallpaper=0",
                             "spi " + bitmap(),
                             "reg Wallpaper=" + bitmap(),
                             "tray modify Tessaline - C:\\p\\a.jpg",
                         }));
    EXPECT_TRUE(host.timerEnabled);
    EXPECT_TRUE(form.hasTrackedFolders());
    EXPECT_EQ(*form.menus().caption(mnuDelay), "Delay (1)");
    EXPECT_EQ(*form.menus().caption(mnuTrayDelay), "Delay (1)");
}

TEST_F(Engine, AutoStartLeavesThePanelAsItIs) {
    app.startMode = "auto";
    writePictures(1);
    form.onLoad();
    EXPECT_EQ(log.count("main mode"), 0);
    EXPECT_EQ(log.count("spi "), 1);
}

TEST_F(Engine, AnEmptyOrMissingListHandsOverToTheManager) {
    for (bool missing : {true, false}) {
        ChangerFixture f;
        if (!missing) {
            f.writeList({"#C:\\only\\a folder"});
        }
        EXPECT_FALSE(f.form.onLoad());
        EXPECT_EQ(f.log.count("show manager"), 1);
        EXPECT_EQ(f.log.count("unload form"), 1);
        EXPECT_EQ(f.log.count("tray add"), 0) << "the icon never shows";
        EXPECT_EQ(f.log.count("spi "), 0);
        EXPECT_FALSE(f.host.timerEnabled);
        EXPECT_EQ(f.dir.exists("MyWallpapers.wall"), !missing) << "an empty list writes no file";
    }
}

TEST_F(Engine, SequentialOrderWrapsToTheFirstLine) {
    writePictures(3);
    form.onLoad();
    EXPECT_EQ(host.list.listIndex(), 0) << "from no selection the first line";
    form.switchWallpaper(false);
    form.switchWallpaper(false);
    EXPECT_EQ(host.list.listIndex(), 2);
    form.switchWallpaper(false);
    EXPECT_EQ(host.list.listIndex(), 0);
    EXPECT_EQ(form.previewTag(), picture(0));
    EXPECT_EQ(host.list.selectedLines(), std::vector<int>{0}) << "the old line is deselected";
    EXPECT_EQ(log.count("spi "), 4);
}

TEST_F(Engine, RandomOrderOnAOneLineListReappliesWithoutCyclingTheOrientation) {
    app.settings.Mode = 1;
    writeList({"C:\\p\\only.jpg\t1"});
    form.onLoad();
    log.clear();
    for (int i = 0; i < 5; ++i) {
        form.switchWallpaper(false);
    }
    EXPECT_EQ(form.entries()[0].orientation, kTile) << "an engine move is not a click on the line on show";
    EXPECT_EQ(log.count("reg Wallpaper="), 5) << "each draw goes through the applier";
    EXPECT_EQ(log.count("load "), 0) << "and finds nothing to change";
    EXPECT_EQ(host.list.listIndex(), 0);
}

TEST_F(Engine, RandomOrderDrawsFromTheWholeListReseedingEachTime) {
    app.settings.Mode = 1;
    writePictures(10);
    form.onLoad();
    std::set<int> seen;
    for (int i = 0; i < 200; ++i) {
        form.switchWallpaper(false);
        seen.insert(host.list.listIndex());
    }
    EXPECT_GT(seen.size(), 5u);
    EXPECT_GE(*seen.begin(), 0);
    EXPECT_LE(*seen.rbegin(), 9);
}

TEST_F(Engine, AnotherModeLeavesTheLineAsItIs) {
    writePictures(3);
    form.onLoad();
    app.settings.Mode = 0;
    form.switchWallpaper(false);
    EXPECT_EQ(host.list.listIndex(), 0);
}

TEST_F(Engine, PreviousRightAfterStartAppliesTheFirstLine) {
    // A random start on some line other than the first; the history then still says line 0.
    for (double seed = 0; seed < 100; seed += 1) {
        ChangerFixture f;
        f.app.settings.Mode = 1;
        f.host.clock = seed;
        f.writeList({picture(0) + "\t0", picture(1) + "\t0", picture(2) + "\t0"});
        f.form.onLoad();
        if (f.host.list.listIndex() == 0) {
            continue;
        }
        f.form.onPrevious();
        EXPECT_EQ(f.host.list.listIndex(), 0);
        EXPECT_EQ(f.form.previewTag(), picture(0));
        return;
    }
    FAIL() << "no start away from line 0";
}

TEST_F(Engine, PreviousTwiceReturnsToWhereItStarted) {
    writePictures(5);
    form.onLoad();                // line 0
    form.switchWallpaper(false);  // line 1
    form.switchWallpaper(false);  // line 2
    log.clear();
    form.onPrevious();
    EXPECT_EQ(host.list.listIndex(), 1);
    EXPECT_EQ(form.previewTag(), picture(1));
    form.onPrevious();
    EXPECT_EQ(host.list.listIndex(), 2);
    EXPECT_EQ(form.previewTag(), picture(2));
    EXPECT_EQ(log.count("load "), 2) << "each step back is applied once, forced";
    EXPECT_EQ(host.list.selectedLines(), std::vector<int>{2});
}

TEST_F(Engine, PreviousResetsTheMinuteCount) {
    app.settings.Delay = 5;
    writePictures(3);
    form.onLoad();
    tick(3);
    form.onPrevious();
    EXPECT_EQ(form.minuteCount(), 0);
}

TEST_F(Engine, TheClockChangesEveryDelayMinutes) {
    for (int16_t delay : {int16_t{0}, int16_t{1}, int16_t{3}, int16_t{-2}}) {
        ChangerFixture f;
        f.app.settings.Delay = delay;
        f.writeList({picture(0) + "\t0", picture(1) + "\t0"});
        f.form.onLoad();
        f.log.clear();
        for (int i = 0; i < 6; ++i) {
            f.form.onMinuteTimer();
        }
        const int expected = delay <= 1 ? 6 : 6 / delay;
        EXPECT_EQ(f.log.count("spi "), expected) << "Delay " << delay;
    }
}

TEST_F(Engine, SmartSwitchHoldsAChangeWhileAWindowIsMaximisedAndReleasesItAtTheNextTick) {
    app.settings.SmartSwitch = true;
    app.settings.Delay = 3;
    writePictures(3);
    form.onLoad();
    desktop.maximised = true;
    tick(3);
    EXPECT_EQ(host.list.listIndex(), 0) << "held back";
    EXPECT_EQ(form.minuteCount(), 2) << "asked again at the next tick";
    tick(1);
    EXPECT_EQ(host.list.listIndex(), 0) << "still maximised";
    desktop.maximised = false;
    tick(1);
    EXPECT_EQ(host.list.listIndex(), 1) << "released at the first tick without a maximised window";
}

TEST_F(Engine, SmartSwitchWithDelayZeroChecksAtEveryTick) {
    app.settings.SmartSwitch = true;
    app.settings.Delay = 0;
    writePictures(3);
    form.onLoad();
    desktop.maximised = true;
    tick(2);
    EXPECT_EQ(host.list.listIndex(), 0);
    EXPECT_EQ(form.minuteCount(), 0);
    desktop.maximised = false;
    tick(1);
    EXPECT_EQ(host.list.listIndex(), 1);
}

TEST_F(Engine, EveryTenTicksTheIconIsReaddedAndListAndSettingsWritten) {
    app.settings.Delay = 100;
    writeList({"C:\\p\\a.jpg\tTile...", "C:\\p\\b.jpg\tStretch"});
    form.onLoad();
    log.clear();
    tick(9);
    EXPECT_EQ(log.count("save settings"), 0);
    tick(1);
    EXPECT_EQ(log.lines,
              (std::vector<std::string>{"tray remove", "tray add Tessaline - C:\\p\\a.jpg", "save settings"}));
    EXPECT_EQ(dir.read("MyWallpapers.wall"), "C:\\p\\a.jpg\t1\r\nC:\\p\\b.jpg\t2\r\n")
        << "keywords are written as numbers";
    EXPECT_EQ(form.tenMinuteCount(), 0);
}

TEST_F(Engine, PauseStopsTheClockAndWithItTheTenMinuteSave) {
    writePictures(2);
    form.onLoad();
    log.clear();
    form.onMenuCommand(mnuTrayPause);
    EXPECT_TRUE(app.paused);
    EXPECT_FALSE(host.timerEnabled) << "no ticks, so neither changes nor ten-minute saves";
    EXPECT_TRUE(form.menus().checked(mnuPaused));
    EXPECT_TRUE(form.menus().checked(mnuTrayPause)) << "the tray item mirrors the panel's";
    EXPECT_EQ(tray.icon, TrayIconKind::Paused);
    EXPECT_EQ(tray.tip, "Tessaline - " + picture(0));
    form.onMenuCommand(mnuTrayNextPaper);
    EXPECT_EQ(host.list.listIndex(), 1) << "Next still works while paused";
    EXPECT_EQ(tray.icon, TrayIconKind::Paused) << "and the icon stays the paused one";
    form.onMenuCommand(mnuPaused);
    EXPECT_FALSE(app.paused);
    EXPECT_TRUE(host.timerEnabled);
    EXPECT_EQ(tray.icon, TrayIconKind::Normal);
}

TEST_F(Engine, RandomSwitchingTogglesTheMode) {
    writePictures(2);
    form.onLoad();
    EXPECT_FALSE(form.menus().checked(mnuRandom));
    form.onMenuCommand(mnuTrayRandom);
    EXPECT_EQ(app.settings.Mode, 1);
    EXPECT_TRUE(form.menus().checked(mnuRandom));
    EXPECT_TRUE(form.menus().checked(mnuTrayRandom));
    form.onMenuCommand(mnuRandom);
    EXPECT_EQ(app.settings.Mode, 2);
    EXPECT_FALSE(form.menus().checked(mnuTrayRandom));
}

TEST_F(Engine, ANewDelayRenamesTheDelayItems) {
    writePictures(1);
    form.onLoad();
    host.newDelay = 15;
    form.onMenuCommand(mnuTrayDelay);
    EXPECT_EQ(*form.menus().caption(mnuDelay), "Delay (15)");
    EXPECT_EQ(*form.menus().caption(mnuTrayDelay), "Delay (15)");
}

TEST_F(Engine, TheTrayIconSwitchesOnALeftButtonAndShowsTheMenuOnARightOne) {
    writePictures(3);
    form.onLoad();
    log.clear();
    form.onTrayMouse(513);
    EXPECT_EQ(host.list.listIndex(), 1);
    form.onTrayMouse(515);  // the double click that follows a second button-down
    form.onTrayMouse(512);
    EXPECT_EQ(host.list.listIndex(), 1);
    form.onTrayMouse(516);
    EXPECT_EQ(log.count("pop up tray menu"), 1);
    EXPECT_EQ(log.count("spi "), 1);
}

TEST_F(Engine, TheListSubmenuOffersTheProgramDirectorysListsAndMarksTheCurrentOne) {
    writePictures(2);
    dir.write("Summer.wall", "C:\\s\\1.jpg\t0\r\nC:\\s\\2.jpg\t0\r\n");
    dir.write(" Spaced .wall", "C:\\x.jpg\t0\r\n");
    dir.write("notes.txt", "C:\\n.jpg\r\n");
    form.onLoad();
    std::vector<ListMenuItem> items = form.menus().listItems;
    std::sort(items.begin(), items.end(), [](auto& a, auto& b) { return a.caption < b.caption; });
    const std::string d = dir.path() + "\\";
    EXPECT_EQ(items, (std::vector<ListMenuItem>{{"MyWallpapers", d + "MyWallpapers.wall", true},
                                                {"Spaced", d + " Spaced .wall", false},
                                                {"Summer", d + "Summer.wall", false}}));

    int summer = -1;
    for (size_t i = 0; i < form.menus().listItems.size(); ++i) {
        if (form.menus().listItems[i].caption == "Summer") {
            summer = static_cast<int>(i);
        }
    }
    log.clear();
    form.onMenuCommand(mnuListItemFirst + summer);
    EXPECT_EQ(app.listPath, d + "Summer.wall");
    EXPECT_EQ(host.list.lines(), (std::vector<std::string>{"C:\\s\\1.jpg", "C:\\s\\2.jpg"}));
    EXPECT_EQ(form.previewTag(), "C:\\s\\1.jpg") << "a new list is applied at once, from its first line";
    for (const auto& item : form.menus().listItems) {
        EXPECT_EQ(item.current, item.caption == "Summer") << item.caption;
    }
}

TEST_F(Engine, UnloadRemovesTheIconAndWritesListAndSettingsOnce) {
    writeList({"C:\\p\\a.jpg\tScale..", "C:\\p\\b.jpg\tCentre.", "#C:\\p"});
    form.onLoad();
    log.clear();
    form.onMenuCommand(mnuTrayQuit);
    EXPECT_EQ(log.lines, (std::vector<std::string>{"allow tracker unload", "unload form", "tray remove",
                                                   "save settings", "unload tracker"}));
    EXPECT_EQ(dir.read("MyWallpapers.wall"), "C:\\p\\a.jpg\t3\r\nC:\\p\\b.jpg\t0\r\n#C:\\p\r\n");
    EXPECT_FALSE(host.timerEnabled);
    log.clear();
    form.unload();  // the window's WM_DESTROY, or the end of the session, after Quit
    EXPECT_TRUE(log.lines.empty()) << "the unload steps run once";
}

TEST_F(Engine, ACancelledShutdownPutsTheIconBack) {
    writePictures(2);
    form.onLoad();
    form.unload();
    log.clear();
    form.resumeAfterCancelledShutdown();
    EXPECT_TRUE(tray.present);
    EXPECT_TRUE(host.timerEnabled);
    EXPECT_FALSE(form.isUnloaded());
}

TEST_F(Engine, ANewTaskbarGetsTheIconBackWhileTheProgramLivesInTheTray) {
    writePictures(2);
    form.onLoad();
    tray.present = false;
    form.onTaskbarCreated();
    EXPECT_TRUE(tray.present);
    EXPECT_EQ(tray.tip, "Tessaline - " + picture(0));
    tray.present = false;
    host.inTray = false;
    form.onTaskbarCreated();
    EXPECT_FALSE(tray.present) << "not while the panel is shown";
}

}  // namespace
}  // namespace tl::test
