#include <gtest/gtest.h>

#include <map>
#include <tuple>
#include <vector>

#include "changer/monitor_layout.h"

namespace tl {
namespace {

struct PlaceCase {
    const char* what;
    int32_t width, height;
    ScreenRect area;
    Orientation orientation;
    Placement expected;
};

const ScreenRect kMonitor{0, 0, 1920, 1080};

const PlaceCase kPlacements[] = {
    {"Fill, exact fit", 3840, 2160, kMonitor, kFill, {{0, 0, 3840, 2160}, kMonitor}},
    {"Fill, one column over", 1921, 1080, kMonitor, kFill, {{0, 0, 1920, 1080}, kMonitor}},
    {"Fill, one row over", 1920, 1081, kMonitor, kFill, {{0, 0, 1920, 1080}, kMonitor}},
    {"Fill, three columns over", 1923, 1080, kMonitor, kFill, {{1, 0, 1920, 1080}, kMonitor}},
    {"Fill, one column short", 1919, 1080, kMonitor, kFill, {{0, 0, 1919, 1079}, kMonitor}},
    {"Fill, a line", 10000, 1, kMonitor, kFill, {{4999, 0, 2, 1}, kMonitor}},
    {"Fill, a column", 1, 10000, kMonitor, kFill, {{0, 4999, 1, 1}, kMonitor}},
    {"Fill, 3:2 photo", 6000, 4000, kMonitor, kFill, {{0, 312, 6000, 3375}, kMonitor}},
    {"Fill, on a portrait monitor left of the primary",
     1600,
     900,
     {-1080, -200, 1080, 1920},
     kFill,
     {{547, 0, 506, 900}, {-1080, -200, 1080, 1920}}},
    {"Scale, wide picture", 2000, 500, {0, 0, 1024, 768}, kScale, {{0, 0, 2000, 500}, {0, 256, 1024, 256}}},
    {"Center, larger than the monitor", 1921, 1081, kMonitor, kCenter, {{0, 0, 1921, 1081}, {0, 0, 1921, 1081}}},
    {"Center, smaller", 401, 300, {100, -768, 1024, 768}, kCenter, {{0, 0, 401, 300}, {411, -534, 401, 300}}},
    {"Stretch", 10, 20, {5, 6, 7, 8}, kStretch, {{0, 0, 10, 20}, {5, 6, 7, 8}}},
    {"Tile", 10, 20, {5, 6, 7, 8}, kTile, {{0, 0, 10, 20}, {5, 6, 7, 8}, true}},
};

TEST(MonitorLayout, PlacesEachOrientationAndFillsToTheEdges) {
    for (const PlaceCase& c : kPlacements) {
        EXPECT_EQ(placePicture(c.width, c.height, c.area, c.orientation), c.expected) << c.what;
    }
}

TEST(MonitorLayout, ResolvesTheOrientationAndTheSizeToDecodePerArea) {
    const ScreenRect landscape{0, 0, 1920, 1080};
    const ScreenRect portrait{-1080, 0, 1080, 1920};
    // Auto: a 16:9 photo is stretched on a landscape monitor and centred on a portrait one.
    EXPECT_EQ(orientationForArea(kAuto, 3840, 2160, landscape, 0.25, 1.5), kStretch);
    EXPECT_EQ(orientationForArea(kAuto, 3840, 2160, portrait, 0.25, 1.5), kCenter);
    EXPECT_EQ(orientationForArea(7, 10, 10, landscape, 0.25, 1.5), kCenter);
    EXPECT_EQ(orientationForArea(kFill, 10, 10, landscape, 0.25, 1.5), kFill);

    using Size = std::tuple<int32_t, int32_t>;
    const auto need = [&](Orientation o, int32_t w, int32_t h) {
        const ScreenSize s = requiredPictureSize(w, h, landscape, o);
        return Size{s.width, s.height};
    };
    EXPECT_EQ(need(kFill, 6000, 4000), Size(1920, 1280));
    EXPECT_EQ(need(kFill, 10000, 1), Size(10800000, 1080));
    EXPECT_EQ(need(kScale, 6000, 4000), Size(1620, 1080));
    EXPECT_EQ(need(kStretch, 6000, 4000), Size(1920, 1080));
    EXPECT_EQ(need(kCenter, 6000, 4000), Size(6000, 4000));
    EXPECT_EQ(need(kTile, 64, 48), Size(64, 48));
}

TEST(MonitorLayout, ResolvesTheSettingAndTheTurnOrder) {
    using L = MonitorLayout;
    const std::tuple<int16_t, size_t, L, int> cases[] = {
        {0, 1, L::SameOnEvery, 1},  {0, 2, L::EachOwn, 2},     {0, 3, L::EachOwn, 3}, {9, 2, L::EachOwn, 2},
        {-1, 1, L::SameOnEvery, 1}, {1, 3, L::SameOnEvery, 1}, {2, 1, L::EachOwn, 1}, {3, 2, L::Across, 1},
    };
    for (const auto& [setting, monitors, layout, pictures] : cases) {
        EXPECT_EQ(resolvedMonitorLayout(setting, monitors), layout) << setting << " on " << monitors;
        EXPECT_EQ(picturesPerSwitch(layout, monitors), pictures) << setting << " on " << monitors;
    }
    const std::vector<ScreenRect> turn =
        monitorsInTurn({{0, 0, 1920, 1080}, {1920, 0, 1080, 1920}, {0, -1080, 1920, 1080}, {-1280, 100, 1280, 1024}});
    EXPECT_EQ(turn, (std::vector<ScreenRect>{
                        {-1280, 100, 1280, 1024}, {0, -1080, 1920, 1080}, {0, 0, 1920, 1080}, {1920, 0, 1080, 1920}}));
}

// A small picture of one colour with a frame of another, and the wallpaper it is composed into.
struct Image {
    int32_t width, height;
    std::vector<uint8_t> bytes;
    Image(int32_t w, int32_t h, uint32_t inside, uint32_t frame) : width(w), height(h), bytes(size_t(w) * h * 3) {
        for (int32_t y = 0; y < h; ++y) {
            for (int32_t x = 0; x < w; ++x) {
                const bool edge = x == 0 || y == 0 || x == w - 1 || y == h - 1;
                set(x, y, edge ? frame : inside);
            }
        }
    }
    // Bottom-up, as a DIB holds its rows.
    PixelView view() { return {bytes.data() + size_t(height - 1) * width * 3, width, height, -ptrdiff_t(width) * 3}; }
    uint32_t at(int32_t x, int32_t y) {
        const uint8_t* p = view().row(y) + size_t(x) * 3;
        return uint32_t(p[2]) << 16 | uint32_t(p[1]) << 8 | p[0];
    }
    void set(int32_t x, int32_t y, uint32_t c) {
        uint8_t* p = view().row(y) + size_t(x) * 3;
        p[0] = uint8_t(c);
        p[1] = uint8_t(c >> 8);
        p[2] = uint8_t(c >> 16);
    }
};

// Composes the plan the way the Win32 side does (the pictures' sizes are the monitors', so that Fill and
// Stretch need no resampling), and reads the wallpaper back at every desktop point as the desktop tiles it.
std::map<uint32_t, int> composeAndCount(const std::vector<ScreenRect>& monitors,
                                        bool spanned,
                                        MonitorLayout layout,
                                        std::vector<uint32_t> colours,
                                        std::vector<ScreenRect>* frames) {
    std::vector<WallpaperEntry> shown;
    for (size_t k = 0; k < colours.size(); ++k) {
        shown.push_back({"p" + std::to_string(k), kFill, 0, 0, 0});
    }
    const WallpaperPlan plan = planWallpaper(layout, monitorsInTurn(monitors), shown, 0.25, 1.5);
    Image wallpaper(plan.desktop.width, plan.desktop.height, 0, 0);
    for (const MonitorPicture& p : plan.pictures) {
        Image picture(p.area.width, p.area.height, colours[std::stoul(p.path.substr(1))], 0xFFFFFF);
        const Placement at = placePicture(picture.width, picture.height, p.area, p.orientation);
        EXPECT_EQ(at.source, (ScreenRect{0, 0, p.area.width, p.area.height}));
        drawIntoWallpaper(wallpaper.view(), plan.desktop, spanned, picture.view(), at.target, at.tiled, p.clip);
    }
    std::map<uint32_t, int> seen;
    for (const ScreenRect& m : monitors) {
        for (int32_t y = m.top; y < m.bottom(); ++y) {
            for (int32_t x = m.left; x < m.right(); ++x) {
                const BitmapPoint b = bitmapPointOf(plan.desktop, spanned, x, y);
                const uint32_t c = wallpaper.at(b.x, b.y);
                const bool edge = x == m.left || y == m.top || x == m.right() - 1 || y == m.bottom() - 1;
                if (frames && edge != (c == 0xFFFFFF)) {
                    frames->push_back(m);  // a frame pixel inside, or a monitor's edge without one
                }
                ++seen[c == 0xFFFFFF ? 0 : c];
            }
        }
    }
    return seen;
}

TEST(MonitorLayout, EveryArrangementShowsEachMonitorsPictureExactlyInItsRectangle) {
    struct Arrangement {
        const char* what;
        std::vector<ScreenRect> monitors;  // the primary at (0, 0)
    };
    const Arrangement arrangements[] = {
        {"one", {{0, 0, 40, 30}}},
        {"side by side", {{0, 0, 40, 30}, {40, 0, 40, 30}}},
        {"left of the primary", {{0, 0, 40, 30}, {-32, 0, 32, 24}}},
        {"above, offset to the left", {{0, 0, 40, 30}, {-10, -24, 32, 24}}},
        {"portrait on the right, lower", {{0, 0, 40, 30}, {40, 7, 24, 32}}},
        {"three: left and above, and portrait", {{0, 0, 40, 30}, {-30, -25, 30, 25}, {40, -5, 20, 36}}},
    };
    for (const bool spanned : {false, true}) {
        for (const Arrangement& a : arrangements) {
            std::vector<uint32_t> colours;
            for (size_t k = 0; k < a.monitors.size(); ++k) {
                colours.push_back(0x102030u * uint32_t(k + 1));
            }
            std::vector<ScreenRect> misplaced;
            const std::map<uint32_t, int> seen =
                composeAndCount(a.monitors, spanned, MonitorLayout::EachOwn, colours, &misplaced);
            EXPECT_TRUE(misplaced.empty())
                << a.what << (spanned ? ", spanned" : ", tiled") << ": a picture's frame is off its monitor's edges";
            // In turn order each monitor has its own colour on every pixel inside its frame.
            const std::vector<ScreenRect> turn = monitorsInTurn(a.monitors);
            int framePixels = 0;
            for (size_t k = 0; k < turn.size(); ++k) {
                const ScreenRect& m = turn[k];
                EXPECT_EQ(seen.count(colours[k]) ? seen.at(colours[k]) : 0, (m.width - 2) * (m.height - 2))
                    << a.what << (spanned ? ", spanned" : ", tiled") << ", monitor " << k;
                framePixels += 2 * (m.width + m.height) - 4;
            }
            EXPECT_EQ(seen.at(0), framePixels) << a.what << (spanned ? ", spanned" : ", tiled");
            EXPECT_EQ(seen.size(), turn.size() + 1)
                << a.what << (spanned ? ", spanned" : ", tiled") << ": a colour that belongs to no monitor";
        }
    }
}

TEST(MonitorLayout, OnePictureOnEveryMonitorOrAcrossThemAll) {
    const std::vector<ScreenRect> monitors = {{0, 0, 40, 30}, {-32, -20, 32, 24}};
    const std::map<uint32_t, int> every =
        composeAndCount(monitors, false, MonitorLayout::SameOnEvery, {0x123456}, nullptr);
    EXPECT_EQ(every.at(0x123456), 38 * 28 + 30 * 22);
    // Across: one picture the size of the virtual screen, its frame on the virtual screen's edges.
    const std::vector<WallpaperEntry> shown = {{"p", kStretch, 0, 0, 0}};
    const WallpaperPlan plan = planWallpaper(MonitorLayout::Across, monitorsInTurn(monitors), shown, 0.25, 1.5);
    ASSERT_EQ(plan.pictures.size(), 1u);
    EXPECT_EQ(plan.desktop, (ScreenRect{-32, -20, 72, 50}));
    EXPECT_EQ(plan.pictures[0].area, plan.desktop);
}

TEST(MonitorLayout, EachMonitorTakesTheSwitchsPicturesAndNewOnesShowTheCurrent) {
    const std::vector<ScreenRect> three = {{-10, 0, 10, 10}, {0, 0, 10, 10}, {10, 0, 10, 10}};
    const auto paths = [&](const std::vector<ScreenRect>& monitors, std::vector<const char*> names) {
        std::vector<WallpaperEntry> shown;
        for (const char* n : names) {
            shown.push_back({n, kFill, 0, 0, 0});
        }
        std::vector<std::string> out;
        for (const MonitorPicture& p : planWallpaper(MonitorLayout::EachOwn, monitors, shown, 0.25, 1.5).pictures) {
            out.push_back(p.path);
        }
        return out;
    };
    EXPECT_EQ(paths(three, {"a", "b", "c"}), (std::vector<std::string>{"a", "b", "c"}));
    EXPECT_EQ(paths(three, {"a", "c"}), (std::vector<std::string>{"a", "c", "c"}));                 // one plugged in
    EXPECT_EQ(paths({three[0], three[1]}, {"a", "b", "c"}), (std::vector<std::string>{"a", "c"}));  // one gone
}

TEST(MonitorLayout, TilesFromTheAreaCornerAndCropsACentredPicture) {
    // A 3 x 2 tile across a monitor left of the primary: the tile's corner is the monitor's corner.
    const ScreenRect desktop{-7, 0, 17, 5};
    // Tiled from the primary's corner, the left monitor wraps to the bitmap's far side; spanned, it doesn't.
    EXPECT_EQ(bitmapPointOf(desktop, false, -7, 4), (BitmapPoint{10, 4}));
    EXPECT_EQ(bitmapPointOf(desktop, true, -7, 4), (BitmapPoint{0, 4}));
    Image wallpaper(desktop.width, desktop.height, 0, 0);
    Image tile(3, 2, 0x0000FF, 0x0000FF);
    tile.set(0, 0, 0xFF0000);
    const ScreenRect left{-7, 0, 7, 5};
    drawIntoWallpaper(wallpaper.view(), desktop, false, tile.view(), left, true, left);
    for (int32_t y = 0; y < 5; ++y) {
        for (int32_t x = -7; x < 0; ++x) {
            const BitmapPoint b = bitmapPointOf(desktop, false, x, y);
            EXPECT_EQ(wallpaper.at(b.x, b.y), (x + 7) % 3 == 0 && y % 2 == 0 ? 0xFF0000u : 0x0000FFu) << x << "," << y;
        }
    }
    EXPECT_EQ(wallpaper.at(0, 0), 0u) << "the primary's pixels are untouched";
    // A centred picture larger than its monitor shows only its middle.
    Image big(12, 3, 0x00FF00, 0x00FF00);
    big.set(2, 1, 0xABCDEF);
    const ScreenRect primary{0, 0, 10, 5};
    const Placement at = placePicture(12, 3, primary, kCenter);
    drawIntoWallpaper(wallpaper.view(), desktop, false, big.view(), at.target, at.tiled, primary);
    EXPECT_EQ(wallpaper.at(1, 2), 0xABCDEFu);
    EXPECT_EQ(wallpaper.at(1, 0), 0u);
    EXPECT_EQ(wallpaper.at(16, 2), 0xFF0000u) << "the left monitor's last column keeps its tile";
}

}  // namespace
}  // namespace tl
