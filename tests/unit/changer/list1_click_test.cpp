// The user's clicks on List1 and orType, the tray's orientation items, and removing entries.
#include <gtest/gtest.h>

#include "changer/commands.h"
#include "changer/fake_changer_platform.h"

namespace tl::test {
namespace {

class List1Click : public ::testing::Test, public ChangerFixture {
  protected:
    void SetUp() override {
        writeList({"C:\\p\\a.jpg\t0", "C:\\p\\b.jpg\t1", "C:\\p\\c.jpg\t2"});
        loadQuietly();  // line 0 on show
    }
    // What the user's click does in a multiple-selection list box: only that line selected.
    void userClick(int line) {
        for (int i = 0; i < host.list.count(); ++i) {
            host.list.setSelected(i, false);
        }
        host.list.setListIndex(line);
        form.onList1Click();
    }
};

TEST_F(List1Click, ClickingAnotherLineAppliesItOnce) {
    userClick(1);
    EXPECT_EQ(form.previewTag(), "C:\\p\\b.jpg");
    EXPECT_EQ(log.count("load "), 1);
    EXPECT_EQ(log.count("spi "), 1);
    EXPECT_EQ(host.orType, kTile) << "orType shows the entry's orientation";
    EXPECT_EQ(form.entries()[1].orientation, kTile);
}

TEST_F(List1Click, ClickingTheLineOnShowCyclesItsOrientation) {
    const Orientation expected[] = {kTile, kStretch, kScale, kCenter, kTile};
    for (Orientation o : expected) {
        log.clear();
        userClick(0);
        EXPECT_EQ(form.entries()[0].orientation, o);
        EXPECT_EQ(form.lastAppliedOrientation(), o);
        EXPECT_EQ(host.orType, o);
        EXPECT_EQ(log.count("reg WallpaperStyle="), 1) << "re-applied with orientation " << o;
    }
    EXPECT_EQ(dir.read("MyWallpapers.wall"), "C:\\p\\a.jpg\t1\r\nC:\\p\\b.jpg\t1\r\nC:\\p\\c.jpg\t2\r\n")
        << "a new orientation is saved with the list at once";
}

TEST_F(List1Click, ChoosingTheOrientationAlreadyAppliedDoesNothing) {
    host.orType = kCenter;
    form.onOrTypeClick();
    EXPECT_TRUE(log.lines.empty());
    EXPECT_FALSE(dir.exists("MyWallpapers.wall.tmp"));
}

TEST_F(List1Click, TheTraysOrientationItemsReapplyTheCurrentEntry) {
    form.onMenuCommand(mnuTraySOScaled);
    EXPECT_EQ(form.entries()[0].orientation, kScale);
    EXPECT_EQ(log.count("scale "), 1);
    EXPECT_TRUE(form.menus().checked(mnuTraySOScaled));
    EXPECT_FALSE(form.menus().checked(mnuTraySOCentered));
    log.clear();
    form.onMenuCommand(mnuTraySOScaled);
    EXPECT_TRUE(log.lines.empty()) << "the orientation already applied";
}

TEST_F(List1Click, RemoveFromListDropsTheCurrentEntryAndAppliesItsNeighbour) {
    form.onMenuCommand(mnuTrayRemoveFromList);
    EXPECT_EQ(host.list.lines(), (std::vector<std::string>{"C:\\p\\b.jpg", "C:\\p\\c.jpg"}));
    EXPECT_EQ(form.previewTag(), "") << "the reselection leaves the tag clear, so the next apply is not skipped";
    EXPECT_EQ(log.matching("load "), std::vector<std::string>{"load C:\\p\\b.jpg"});
    EXPECT_EQ(host.list.listIndex(), 0);
}

TEST_F(List1Click, RemovingSeveralSelectedLinesAppliesTheOneAfterThem) {
    writeList({"C:\\p\\a.jpg\t0", "C:\\p\\b.jpg\t0", "C:\\p\\c.jpg\t0", "C:\\p\\d.jpg\t0"});
    form.readListFile(app.listPath);
    host.list.setSelected(1, true);
    host.list.setSelected(2, true);
    log.clear();
    form.removeSelectedEntries();
    EXPECT_EQ(host.list.lines(), (std::vector<std::string>{"C:\\p\\a.jpg", "C:\\p\\d.jpg"}));
    EXPECT_EQ(log.matching("load "), std::vector<std::string>{"load C:\\p\\d.jpg"});
}

TEST_F(List1Click, RemovingTheLastLineAppliesTheNewLastOne) {
    userClick(2);
    log.clear();
    form.removeSelectedEntries();
    EXPECT_EQ(log.matching("load "), std::vector<std::string>{"load C:\\p\\b.jpg"});
    EXPECT_EQ(host.list.listIndex(), 1);
}

TEST_F(List1Click, RemovingWithNothingSelectedOnlyBeeps) {
    host.list.setListIndex(-1);
    form.removeSelectedEntries();
    EXPECT_EQ(log.lines, std::vector<std::string>{"beep"});
    EXPECT_EQ(host.list.count(), 3);
}

TEST_F(List1Click, RemovingTheOnlyEntryEmptiesTheList) {
    writeList({"C:\\p\\a.jpg\t0"});
    form.readListFile(app.listPath);
    host.list.setListIndex(0);
    form.removeSelectedEntries();
    EXPECT_EQ(host.list.count(), 0);
    EXPECT_EQ(form.previewTag(), "");
    form.switchWallpaper(false);  // the clock on an empty list
    EXPECT_EQ(log.count("load "), 0);
}

}  // namespace
}  // namespace tl::test
