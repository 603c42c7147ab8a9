// The switching engine: load, the clock, next, previous, pause, random, delay, lists, unload.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "changer/commands.h"
#include "changer/fake_changer_platform.h"

namespace tl::test {
namespace {

class Engine : public ::testing::Test, public ChangerFixture {};

TEST_F(Engine, LoadReadsTheListAndAppliesAFirstWallpaperInOrder) {
    writeList({"C:\\p\\a.jpg\t0", "#C:\\p"});
    ASSERT_TRUE(form.onLoad());
    EXPECT_EQ(fake.log, (std::vector<std::string>{
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
    EXPECT_TRUE(fake.timerEnabled);
    EXPECT_EQ(*form.menus().caption(mnuDelay), "Delay (1)");

    ChangerFixture autoStart;
    autoStart.app.startMode = "auto";
    autoStart.start({"a"});
    EXPECT_EQ(autoStart.fake.count("main mode"), 0) << "an automatic start leaves the panel as it is";
}

TEST_F(Engine, TheHotKeyAndTheClockWrapToTheFirstLineAndAnotherModeStaysPut) {
    start({"0", "1", "2"});
    EXPECT_EQ(fake.list.listIndex(), 0) << "from no selection the first line";
    form.onSwitchHotKey();
    form.switchWallpaper(false);
    EXPECT_EQ(fake.list.listIndex(), 2);
    form.switchWallpaper(false);
    EXPECT_EQ(fake.list.listIndex(), 0);
    EXPECT_EQ(form.previewTag(), pic("0"));
    EXPECT_EQ(fake.list.selectedLines(), std::vector<int>{0}) << "the old line is deselected";
    EXPECT_EQ(fake.count("spi "), 3);
    app.settings.Mode = 0;
    form.switchWallpaper(false);
    EXPECT_EQ(fake.list.listIndex(), 0);
}

TEST_F(Engine, RandomOrderDrawsFromTheWholeList) {
    app.settings.Mode = 1;
    start({"0", "1", "2", "3", "4", "5", "6", "7", "8", "9"});
    std::set<int> seen;
    for (int i = 0; i < 200; ++i) {
        form.switchWallpaper(false);
        seen.insert(fake.list.listIndex());
    }
    EXPECT_EQ(seen, (std::set<int>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9})) << "every line, the last included, and no other";

    ChangerFixture one;
    one.app.settings.Mode = 1;
    one.start({"only"});
    for (int i = 0; i < 5; ++i) {
        one.form.switchWallpaper(false);
    }
    EXPECT_EQ(one.form.entries()[0].orientation, kCenter) << "an engine move is not a click on the line on show";
    EXPECT_EQ(one.fake.count("reg Wallpaper="), 5) << "each draw on a one-line list goes through the applier";
    EXPECT_EQ(one.fake.count("load "), 0) << "and finds nothing to change";
}

TEST_F(Engine, PreviousRightAfterARandomStartAppliesTheFirstLine) {
    for (double seed = 0; seed < 100; seed += 1) {
        ChangerFixture f;
        f.app.settings.Mode = 1;
        f.fake.clock = seed;
        f.start({"0", "1", "2"});
        if (f.fake.list.listIndex() == 0) {
            continue;
        }
        f.form.onPrevious();
        EXPECT_EQ(f.fake.list.listIndex(), 0) << "the history still says line 0";
        EXPECT_EQ(f.form.previewTag(), pic("0"));
        return;
    }
    FAIL() << "no start away from line 0";
}

TEST_F(Engine, PreviousTwiceReturnsToWhereItStartedAndResetsTheMinuteCount) {
    app.settings.Delay = 5;
    start({"0", "1", "2", "3", "4"});
    form.switchWallpaper(false);
    form.switchWallpaper(false);  // line 2
    tick(3);
    fake.log.clear();
    form.onPrevious();
    EXPECT_EQ(fake.list.listIndex(), 1);
    EXPECT_EQ(form.minuteCount(), 0);
    form.onPrevious();
    EXPECT_EQ(fake.list.listIndex(), 2);
    EXPECT_EQ(form.previewTag(), pic("2"));
    EXPECT_EQ(fake.count("load "), 2) << "each step back is applied once, forced";
    EXPECT_EQ(fake.list.selectedLines(), std::vector<int>{2});
}

TEST_F(Engine, TheClockChangesEveryDelayMinutes) {
    for (int16_t delay : {int16_t{0}, int16_t{1}, int16_t{3}, int16_t{-2}}) {
        ChangerFixture f;
        f.app.settings.Delay = delay;
        f.start({"0", "1"});
        f.tick(6);
        EXPECT_EQ(f.fake.count("spi "), delay <= 1 ? 6 : 6 / delay) << "Delay " << delay;
    }
}

TEST_F(Engine, SmartSwitchHoldsAChangeWhileAWindowIsMaximisedAndReleasesItAtTheNextTick) {
    const struct {
        int16_t delay;
        int heldCount;  // the minute count while held: due again at the next tick
    } cases[] = {{3, 2}, {0, 0}};
    for (const auto& c : cases) {
        ChangerFixture f;
        f.app.settings.SmartSwitch = true;
        f.app.settings.Delay = c.delay;
        f.start({"0", "1", "2"});
        f.fake.maximised = true;
        f.tick(std::max<int>(c.delay, 1) + 1);
        EXPECT_EQ(f.fake.list.listIndex(), 0) << "held back, delay " << c.delay;
        EXPECT_EQ(f.form.minuteCount(), c.heldCount) << "delay " << c.delay;
        f.fake.maximised = false;
        f.form.onMinuteTimer();
        EXPECT_EQ(f.fake.list.listIndex(), 1) << "released at the first tick without a maximised window";
    }
}

TEST_F(Engine, EveryTenTicksTheIconIsReaddedAndListAndSettingsWritten) {
    app.settings.Delay = 100;
    load({"C:\\p\\a.jpg\tTile...", "C:\\p\\b.jpg\tStretch"});
    tick(9);
    EXPECT_EQ(fake.count("save settings"), 0);
    tick(1);
    EXPECT_EQ(fake.log,
              (std::vector<std::string>{"tray remove", "tray add Tessaline - C:\\p\\a.jpg", "save settings"}));
    EXPECT_EQ(dir.read("MyWallpapers.wall"), "C:\\p\\a.jpg\t1\r\nC:\\p\\b.jpg\t2\r\n")
        << "keywords are written as numbers";
}

TEST_F(Engine, PauseRandomAndDelayKeepThePanelAndTrayMenusAlike) {
    start({"0", "1"});
    form.onMenuCommand(mnuTrayPause);
    EXPECT_TRUE(app.paused);
    EXPECT_FALSE(fake.timerEnabled) << "no ticks, so neither changes nor ten-minute saves";
    EXPECT_TRUE(form.menus().checked(mnuPaused));
    EXPECT_EQ(fake.icon, TrayIconKind::Paused);
    form.onMenuCommand(mnuTrayNextPaper);
    EXPECT_EQ(fake.list.listIndex(), 1) << "Next still works while paused";
    EXPECT_EQ(fake.icon, TrayIconKind::Paused) << "and the icon stays the paused one";
    form.onMenuCommand(mnuPaused);
    EXPECT_TRUE(fake.timerEnabled);
    EXPECT_EQ(fake.icon, TrayIconKind::Normal);

    form.onMenuCommand(mnuTrayRandom);
    EXPECT_EQ(app.settings.Mode, 1);
    EXPECT_TRUE(form.menus().checked(mnuRandom));
    form.onMenuCommand(mnuRandom);
    EXPECT_EQ(app.settings.Mode, 2);
    EXPECT_FALSE(form.menus().checked(mnuTrayRandom));

    fake.newDelay = 15;
    form.onMenuCommand(mnuTrayDelay);
    EXPECT_EQ(*form.menus().caption(mnuDelay), "Delay (15)");
    EXPECT_EQ(*form.menus().caption(mnuTrayDelay), "Delay (15)");
}

TEST_F(Engine, TheTrayIconSwitchesOnALeftButtonAndShowsTheMenuOnARightOne) {
    start({"0", "1", "2"});
    form.onTrayMouse(513);
    EXPECT_EQ(fake.list.listIndex(), 1);
    form.onTrayMouse(515);  // the double click that follows a second button-down
    form.onTrayMouse(512);
    EXPECT_EQ(fake.list.listIndex(), 1);
    form.onTrayMouse(516);
    EXPECT_EQ(fake.count("pop up tray menu"), 1);
    EXPECT_EQ(fake.count("spi "), 1);
}

TEST_F(Engine, TheListSubmenuOffersTheProgramDirectorysListsAndMarksTheCurrentOne) {
    dir.write("Summer.wall", "C:\\s\\1.jpg\t0\r\nC:\\s\\2.jpg\t0\r\n");
    dir.write(" Spaced .wall", "C:\\x.jpg\t0\r\n");
    dir.write("notes.txt", "C:\\n.jpg\r\n");
    start({"0", "1"});
    std::vector<ListMenuItem> items = form.menus().listItems;
    std::sort(items.begin(), items.end(), [](auto& a, auto& b) { return a.caption < b.caption; });
    const std::string d = dir.path() + "\\";
    EXPECT_EQ(items, (std::vector<ListMenuItem>{{"MyWallpapers", d + "MyWallpapers.wall", true},
                                                {"Spaced", d + " Spaced .wall", false},
                                                {"Summer", d + "Summer.wall", false}}));

    const auto& listed = form.menus().listItems;
    const auto summer = std::find_if(listed.begin(), listed.end(), [](auto& i) { return i.caption == "Summer"; });
    form.onMenuCommand(mnuListItemFirst + static_cast<int>(summer - listed.begin()));
    EXPECT_EQ(app.listPath, d + "Summer.wall");
    EXPECT_EQ(fake.list.lines(), (std::vector<std::string>{"C:\\s\\1.jpg", "C:\\s\\2.jpg"}));
    EXPECT_EQ(form.previewTag(), "C:\\s\\1.jpg") << "a new list is applied at once, from its first line";
    for (const auto& item : form.menus().listItems) {
        EXPECT_EQ(item.current, item.caption == "Summer") << item.caption;
    }
}

TEST_F(Engine, UnloadRemovesTheIconAndWritesListAndSettingsOnce) {
    load({"C:\\p\\a.jpg\tScale..", "C:\\p\\b.jpg\tCentre.", "#C:\\p"});
    form.onMenuCommand(mnuTrayQuit);
    EXPECT_EQ(fake.log, (std::vector<std::string>{"allow tracker unload", "unload form", "tray remove", "save settings",
                                                  "unload tracker"}));
    EXPECT_EQ(dir.read("MyWallpapers.wall"), "C:\\p\\a.jpg\t3\r\nC:\\p\\b.jpg\t0\r\n#C:\\p\r\n");
    EXPECT_FALSE(fake.timerEnabled);
    fake.log.clear();
    form.unload();  // the window's WM_DESTROY, or the end of the session, after Quit
    EXPECT_TRUE(fake.log.empty()) << "the unload steps run once";

    form.resumeAfterCancelledShutdown();
    EXPECT_TRUE(fake.present) << "a cancelled shutdown puts the icon back";
    EXPECT_TRUE(fake.timerEnabled);
    EXPECT_FALSE(form.isUnloaded());
}

}  // namespace
}  // namespace tl::test
