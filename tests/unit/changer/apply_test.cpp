// The applier's decisions: which file goes to the desktop, with which style, through which call.
#include <gtest/gtest.h>

#include <algorithm>
#include <tuple>

#include "changer/fake_changer_platform.h"

namespace tl::test {
namespace {

const std::string kSea = "C:\\p\\sea.jpg";

// The desktop calls in the log, with the output bitmap written as "$bmp".
std::vector<std::string> desktopCalls(const ChangerFixture& f) {
    std::vector<std::string> out;
    for (std::string l : f.fake.log) {
        if (l.rfind("reg ", 0) == 0 || l.rfind("spi ", 0) == 0 || l.rfind("activedesktop ", 0) == 0) {
            if (const auto at = l.find(f.bitmap()); at != std::string::npos) {
                l.replace(at, f.bitmap().size(), "$bmp");
            }
            out.push_back(l);
        }
    }
    return out;
}

const std::vector<std::string> kCentred = {"reg WallpaperStyle=0", "reg TileWallpaper=0", "spi $bmp",
                                           "reg Wallpaper=$bmp"};

TEST(Apply, EachOrientationReachesTheDesktopAsItShould) {
    using enum PictureUse;
    const struct {
        Orientation orientation;
        bool activeDesktop;
        bool showOnDesktop;
        std::vector<std::string> expected;
        int saves;       // saveCurrentBitmap calls
        PictureUse use;  // what the picture was loaded for
    } cases[] = {
        {kCenter, false, true, kCentred, 1, whole},
        {kTile,
         false,
         true,
         {"reg WallpaperStyle=1", "reg TileWallpaper=1", "spi $bmp", "reg Wallpaper=$bmp"},
         1,
         whole},
        {kStretch,
         false,
         true,
         {"reg WallpaperStyle=2", "reg TileWallpaper=0", "spi $bmp", "reg Wallpaper=$bmp"},
         1,
         whole},
        // Scale writes its bitmap at the screen's size straight away.
        {kScale, false, true, kCentred, 0, fitted},
        // Without showing on the desktop the bitmap is still made, but the desktop is left alone.
        {kCenter, false, false, {}, 1, whole},
        {kScale, false, false, {}, 0, fitted},
        // Active Desktop takes the entry's own file, and Scale's scaled bitmap; the option to show on the
        // desktop is not consulted.
        {kCenter, true, true, {"activedesktop " + kSea + " style 0 on"}, 0, previewOnly},
        {kTile, true, false, {"activedesktop " + kSea + " style 1 on"}, 0, previewOnly},
        {kScale, true, false, {"activedesktop $bmp style 0 on"}, 0, fitted},
    };
    for (const auto& c : cases) {
        ChangerFixture f;
        f.app.settings.UseActiveDesktop = c.activeDesktop;
        f.app.settings.AutomaticShowOnDesktop = c.showOnDesktop;
        f.load({kSea + "\t" + std::to_string(c.orientation)}, true);
        const std::string what = "orientation " + std::to_string(c.orientation) +
                                 (c.activeDesktop ? ", Active Desktop" : "") +
                                 (c.showOnDesktop ? ", shown on the desktop" : "");
        EXPECT_EQ(desktopCalls(f), c.expected) << what;
        // The tag holds the entry's path, never the bitmap.
        EXPECT_EQ(
            std::tuple(f.fake.count("save "), f.fake.count("scale "), f.fake.lastUse, f.form.previewTag(), f.fake.tip),
            std::tuple(c.saves, c.orientation == kScale ? 1 : 0, c.use, kSea, "Tessaline - " + kSea))
            << what;
    }
}

TEST(Apply, ScaleTakesThePicturesSizeFromTheEntryElseFromThePictureOnShowElseOneByOne) {
    const struct {
        bool storeFacts;
        int width, height;
        const char* scaled;
    } cases[] = {
        {true, 800, 600, "scale 1024x768"}, {false, 2000, 500, "scale 1024x256"}, {false, 0, 0, "scale 768x768"}};
    for (const auto& c : cases) {
        ChangerFixture f;
        f.fake.storeFacts = c.storeFacts;
        f.fake.sizes[kSea] = {c.width, c.height};
        f.load({kSea + "\t3"}, true);
        EXPECT_EQ(f.fake.matching("scale "), std::vector<std::string>{c.scaled}) << c.width << "x" << c.height;
        EXPECT_EQ(f.fake.lastScaled, f.bitmap());
    }
}

TEST(Apply, TheEntryOnShowIsReloadedOnlyWhenForcedAndRedrawnOnlyWhenItsOrientationChanged) {
    const struct {
        const char* what;
        Orientation applied, now;
        bool force, activeDesktop;
        std::vector<std::string> calls;
        int loads, saves;
    } cases[] = {
        {"the same again: only Wallpaper is written", kTile, kTile, false, false, {"reg Wallpaper=$bmp"}, 0, 0},
        {"forced: everything", kCenter, kCenter, true, false, kCentred, 1, 1},
        {"another orientation",
         kCenter,
         kStretch,
         false,
         false,
         {"reg WallpaperStyle=2", "reg TileWallpaper=0", "spi $bmp", "reg Wallpaper=$bmp"},
         0,
         0},
        {"leaving Scale: the picture is saved at its own size again", kScale, kCenter, false, false, kCentred, 0, 1},
        {"the same with Active Desktop", kTile, kTile, false, true, {"reg Wallpaper=" + kSea}, 0, 0},
    };
    for (const auto& c : cases) {
        ChangerFixture f;
        f.app.settings.TransText = true;
        f.app.settings.UseActiveDesktop = c.activeDesktop;
        f.load({kSea + "\t" + std::to_string(c.applied)});
        f.form.entries()[0].orientation = c.now;
        bool force = c.force;
        f.form.changeWallpaper(0, force);
        EXPECT_EQ(desktopCalls(f), c.calls) << c.what;
        // The tip is updated and the icon text made transparent again all the same.
        EXPECT_EQ(
            std::tuple(f.fake.count("load "), f.fake.count("save "), f.fake.count("scale "),
                       f.fake.count("tray modify"), f.fake.count("icon text redraw"), f.form.lastAppliedOrientation()),
            std::tuple(c.loads, c.saves, 0, 1, 1, c.now))
            << c.what;
    }
}

TEST(Apply, UnloadablePicturesLeaveTheListAndTheNextIsAppliedWithoutRecursion) {
    // A list on an unplugged drive: every picture fails in turn. The stack must not grow with the run.
    ChangerFixture f;
    std::vector<std::string> lines;
    for (int i = 0; i < 1000; ++i) {
        const std::string p = "C:\\gone\\" + std::to_string(i) + ".jpg";
        f.fake.unloadable.insert(p);
        lines.push_back(p + "\t0");
    }
    lines.insert(lines.end(), {"C:\\p\\good.jpg\t1", "C:\\p\\last.jpg\t0"});
    f.load(lines, true);
    EXPECT_EQ(f.fake.list.lines(), (std::vector<std::string>{"C:\\p\\good.jpg", "C:\\p\\last.jpg"}));
    EXPECT_EQ(f.form.previewTag(), "C:\\p\\good.jpg");
    EXPECT_EQ(f.fake.list.listIndex(), 0);
    EXPECT_EQ(f.fake.count("spi "), 1);
    EXPECT_EQ(f.fake.count("reg TileWallpaper=1"), 1) << "the good entry is applied with its own orientation";
    ASSERT_EQ(f.fake.stackDepths.size(), 1001u);
    const auto [low, high] = std::minmax_element(f.fake.stackDepths.begin(), f.fake.stackDepths.end());
    EXPECT_LT(*high - *low, 16 * 1024u) << "the stack grew by " << (*high - *low) << " bytes over the run";

    ChangerFixture none;
    none.fake.unloadable = {"C:\\gone\\a.jpg", "C:\\gone\\b.jpg"};
    none.writeList({"C:\\gone\\a.jpg\t0", "C:\\gone\\b.jpg\t2"});
    const std::string before = none.dir.read("MyWallpapers.wall");
    none.form.onLoad();
    EXPECT_EQ(none.fake.list.count(), 0);
    EXPECT_EQ(none.fake.count("spi "), 0);
    none.form.unload();
    EXPECT_EQ(none.dir.read("MyWallpapers.wall"), before) << "an empty list never overwrites its file";
}

}  // namespace
}  // namespace tl::test
