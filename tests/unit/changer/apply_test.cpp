// The applier's decisions: which file goes to the desktop, with which style, through which call.
#include <gtest/gtest.h>

#include <algorithm>

#include "changer/fake_changer_platform.h"

namespace tl::test {
namespace {

class Apply : public ::testing::Test, public ChangerFixture {
  protected:
    // A one-entry list with that orientation, loaded; the load's own apply is forgotten.
    void loadOne(Orientation orientation, const std::string& path = "C:\\p\\sea.jpg") {
        writeList({path + "\t" + std::to_string(orientation)});
        loadQuietly();
    }
    std::vector<std::string> desktopCalls() const {
        std::vector<std::string> out;
        for (const auto& l : log.lines) {
            if (l.rfind("reg ", 0) == 0 || l.rfind("spi ", 0) == 0 || l.rfind("activedesktop ", 0) == 0) {
                out.push_back(l);
            }
        }
        return out;
    }
};

struct DesktopCase {
    Orientation orientation;
    bool activeDesktop;
    bool showOnDesktop;
    std::vector<std::string> expected;  // "$bmp" stands for the output bitmap
    int saves;                          // saveCurrentBitmap calls
};

TEST_F(Apply, EachOrientationReachesTheDesktopAsItShould) {
    const std::string pic = "C:\\p\\sea.jpg";
    const DesktopCase cases[] = {
        {kCenter, false, true, {"reg WallpaperStyle=0", "reg TileWallpaper=0", "spi $bmp", "reg Wallpaper=$bmp"}, 1},
        {kTile, false, true, {"reg WallpaperStyle=1", "reg TileWallpaper=1", "spi $bmp", "reg Wallpaper=$bmp"}, 1},
        {kStretch, false, true, {"reg WallpaperStyle=2", "reg TileWallpaper=0", "spi $bmp", "reg Wallpaper=$bmp"}, 1},
        {kScale, false, true, {"reg WallpaperStyle=0", "reg TileWallpaper=0", "spi $bmp", "reg Wallpaper=$bmp"}, 1},
        // Without showing on the desktop the bitmap is still made, but the desktop is left alone.
        {kCenter, false, false, {}, 1},
        {kScale, false, false, {}, 1},
        // Active Desktop takes the entry's own file, and Scale's scaled bitmap; the option to show on the
        // desktop is not consulted.
        {kCenter, true, true, {"activedesktop " + pic + " style 0 on"}, 0},
        {kTile, true, false, {"activedesktop " + pic + " style 1 on"}, 0},
        {kStretch, true, true, {"activedesktop " + pic + " style 2 on"}, 0},
        {kScale, true, false, {"activedesktop $bmp style 0 on"}, 1},
    };
    for (const auto& c : cases) {
        ChangerFixture f;
        f.app.settings.UseActiveDesktop = c.activeDesktop;
        f.app.settings.AutomaticShowOnDesktop = c.showOnDesktop;
        f.writeList({pic + "\t" + std::to_string(c.orientation)});
        f.form.onLoad();
        std::vector<std::string> expected;
        for (auto e : c.expected) {
            if (auto at = e.find("$bmp"); at != std::string::npos) {
                e.replace(at, 4, f.bitmap());
            }
            expected.push_back(e);
        }
        std::vector<std::string> calls;
        for (const auto& l : f.log.lines) {
            if (l.rfind("reg ", 0) == 0 || l.rfind("spi ", 0) == 0 || l.rfind("activedesktop ", 0) == 0) {
                calls.push_back(l);
            }
        }
        const std::string what = "orientation " + std::to_string(c.orientation) +
                                 (c.activeDesktop ? ", Active Desktop" : "") +
                                 (c.showOnDesktop ? ", shown on the desktop" : "");
        EXPECT_EQ(calls, expected) << what;
        EXPECT_EQ(f.log.count("save "), c.saves) << what;
        EXPECT_EQ(f.log.count("scale "), c.orientation == kScale ? 1 : 0) << what;
        EXPECT_EQ(f.form.previewTag(), pic) << "the tag holds the entry's path, never the bitmap: " << what;
        EXPECT_EQ(f.tray.tip, "Tessaline - " + pic) << what;
    }
}

TEST_F(Apply, ScaleSizesThePictureToTheScreenAndCentresIt) {
    struct Case {
        int width, height;
        double factor;
    };
    for (const Case c : {Case{800, 600, 1.28}, Case{2000, 500, 0.512}}) {
        ChangerFixture f;
        f.pictures.sizes["C:\\p\\a.jpg"] = {c.width, c.height};
        f.writeList({"C:\\p\\a.jpg\t3"});
        f.form.onLoad();
        EXPECT_DOUBLE_EQ(f.pictures.lastScale.factor, c.factor) << c.width << "x" << c.height;
        EXPECT_EQ(f.pictures.lastScale.width, c.width);
        EXPECT_EQ(f.pictures.lastScale.height, c.height);
        EXPECT_EQ(f.pictures.lastScale.source, f.bitmap()) << "the loader reads the saved bitmap";
        EXPECT_EQ(f.pictures.lastScale.target, f.bitmap());
        EXPECT_EQ(f.log.count("scale " + std::to_string(c.width) + "x" + std::to_string(c.height)), 1)
            << "scaled once, with the loader resampling";
        EXPECT_EQ(f.log.count("reg WallpaperStyle=0"), 1);
    }
}

TEST_F(Apply, ScaleReadsTheSizeFromTheBitmapWhenTheEntryHasNone) {
    pictures.storeFacts = false;
    pictures.sizes["C:\\p\\a.jpg"] = {2000, 500};
    writeList({"C:\\p\\a.jpg\t3"});
    form.onLoad();
    EXPECT_EQ(pictures.lastScale.width, 2000);
    EXPECT_EQ(pictures.lastScale.height, 500);
    EXPECT_DOUBLE_EQ(pictures.lastScale.factor, 0.512);
}

TEST_F(Apply, ScaleOfAnUnreadableBitmapIsTakenAsOneByOne) {
    pictures.storeFacts = false;
    pictures.sizes["C:\\p\\a.jpg"] = {0, 0};
    writeList({"C:\\p\\a.jpg\t3"});
    form.onLoad();
    EXPECT_EQ(pictures.lastScale.width, 1);
    EXPECT_EQ(pictures.lastScale.height, 1);
    EXPECT_DOUBLE_EQ(pictures.lastScale.factor, 768.0);
}

TEST_F(Apply, TheSameEntryAgainLoadsNothingButStillWritesWallpaper) {
    app.settings.TransText = true;
    loadOne(kTile);
    bool force = false;
    form.changeWallpaper(0, force);
    EXPECT_EQ(desktopCalls(), std::vector<std::string>{"reg Wallpaper=" + bitmap()});
    EXPECT_EQ(log.count("load "), 0);
    EXPECT_EQ(log.count("save "), 0);
    EXPECT_EQ(log.count("tray modify"), 1) << "the tip is updated all the same";
    EXPECT_EQ(log.count("icon text redraw"), 1) << "and the icon text made transparent again";
}

TEST_F(Apply, ForcedReapplyOfTheSameEntryDoesEverything) {
    loadOne(kCenter);
    bool force = true;
    form.changeWallpaper(0, force);
    EXPECT_EQ(log.count("load "), 1);
    EXPECT_EQ(log.count("spi "), 1);
}

TEST_F(Apply, OnlyAnOrientationChangeReappliesWithoutReloading) {
    loadOne(kCenter);
    form.entries()[0].orientation = kStretch;
    bool force = false;
    form.changeWallpaper(0, force);
    EXPECT_EQ(log.count("load "), 0) << "the picture on show is not decoded again";
    EXPECT_EQ(desktopCalls(), (std::vector<std::string>{"reg WallpaperStyle=2", "reg TileWallpaper=0",
                                                        "spi " + bitmap(), "reg Wallpaper=" + bitmap()}));
    EXPECT_EQ(form.lastAppliedOrientation(), kStretch);
}

TEST_F(Apply, LeavingScaleSavesThePictureAtItsOwnSizeAgain) {
    loadOne(kScale);
    log.clear();
    form.entries()[0].orientation = kCenter;
    bool force = false;
    form.changeWallpaper(0, force);
    EXPECT_EQ(log.count("load "), 0);
    EXPECT_EQ(log.count("save "), 1) << "the scaled bitmap must not stay on the desktop";
    EXPECT_EQ(log.count("scale "), 0);
}

TEST_F(Apply, ActiveDesktopWithNothingToApplyWritesOnlyWallpaper) {
    app.settings.UseActiveDesktop = true;
    loadOne(kTile);
    bool force = false;
    form.changeWallpaper(0, force);
    EXPECT_EQ(desktopCalls(), std::vector<std::string>{"reg Wallpaper=C:\\p\\sea.jpg"});
}

TEST_F(Apply, AnUnloadablePictureLeavesTheListAndTheNextIsApplied) {
    pictures.unloadable = {"C:\\p\\bad.jpg"};
    writeList({"C:\\p\\bad.jpg\t0", "C:\\p\\good.jpg\t1", "C:\\p\\last.jpg\t0"});
    form.onLoad();
    EXPECT_EQ(host.list.lines(), (std::vector<std::string>{"C:\\p\\good.jpg", "C:\\p\\last.jpg"}));
    EXPECT_EQ(log.matching("load "), (std::vector<std::string>{"load C:\\p\\bad.jpg", "load C:\\p\\good.jpg"}));
    EXPECT_EQ(log.count("spi "), 1);
    EXPECT_EQ(log.count("reg TileWallpaper=1"), 1) << "the good entry is applied with its own orientation";
    EXPECT_EQ(form.previewTag(), "C:\\p\\good.jpg");
    EXPECT_EQ(host.list.listIndex(), 0);
}

TEST_F(Apply, ALongRunOfUnloadablePicturesIsWalkedWithoutRecursion) {
    // A list on an unplugged drive: every picture fails in turn. The stack must not grow with the run.
    std::vector<std::string> lines;
    for (int i = 0; i < 1000; ++i) {
        const std::string p = "C:\\gone\\" + std::to_string(i) + ".jpg";
        pictures.unloadable.insert(p);
        lines.push_back(p + "\t0");
    }
    lines.push_back("C:\\p\\good.jpg\t0");
    writeList(lines);
    form.onLoad();
    EXPECT_EQ(host.list.lines(), std::vector<std::string>{"C:\\p\\good.jpg"});
    EXPECT_EQ(form.previewTag(), "C:\\p\\good.jpg");
    EXPECT_EQ(log.count("spi "), 1);
    ASSERT_EQ(pictures.stackDepths.size(), 1001u);
    const auto [low, high] = std::minmax_element(pictures.stackDepths.begin(), pictures.stackDepths.end());
    EXPECT_LT(*high - *low, 16 * 1024u) << "the stack grew by " << (*high - *low) << " bytes over the run";
}

TEST_F(Apply, AListOfOnlyUnloadablePicturesEndsEmptyAndIsNotWrittenOver) {
    pictures.unloadable = {"C:\\gone\\a.jpg", "C:\\gone\\b.jpg"};
    writeList({"C:\\gone\\a.jpg\t0", "C:\\gone\\b.jpg\t2"});
    const std::string before = dir.read("MyWallpapers.wall");
    form.onLoad();
    EXPECT_EQ(host.list.count(), 0);
    EXPECT_EQ(log.count("spi "), 0);
    form.unload();
    EXPECT_EQ(dir.read("MyWallpapers.wall"), before) << "an empty list never overwrites its file";
}

}  // namespace
}  // namespace tl::test
