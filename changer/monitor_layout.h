#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "changer/apply_rules.h"
#include "lists/wallpaper_list.h"

// Where the pictures go when there is more than one monitor, or a picture is to be filled: the monitors'
// rectangles, which picture each one gets, and where in the one bitmap that spans them all each picture's
// pixels land.
namespace tl {

// A rectangle of the desktop in pixels. Desktop coordinates have the primary monitor's top-left corner at
// (0, 0); monitors to the left of it or above it have negative ones.
struct ScreenRect {
    int32_t left = 0;
    int32_t top = 0;
    int32_t width = 0;
    int32_t height = 0;
    int32_t right() const { return left + width; }
    int32_t bottom() const { return top + height; }
    bool empty() const { return width <= 0 || height <= 0; }
    bool operator==(const ScreenRect&) const = default;
};

ScreenRect intersection(ScreenRect a, ScreenRect b);
// The smallest rectangle holding all of them (the virtual screen).
ScreenRect boundingRect(const std::vector<ScreenRect>& rects);

// The setting MonitorMode. Automatic, the default, is "A picture for each monitor" with two or more
// monitors and today's single picture with one; any other stored number reads as Automatic.
enum class MonitorLayout : int16_t { Automatic = 0, SameOnEvery = 1, EachOwn = 2, Across = 3 };
MonitorLayout resolvedMonitorLayout(int16_t setting, size_t monitorCount);

// The monitors in the order they take pictures: left to right, and top to bottom where they share a left
// edge. The last one's picture is the list's current line.
std::vector<ScreenRect> monitorsInTurn(std::vector<ScreenRect> monitors);

// How many pictures one switch takes: one per monitor for EachOwn, else one.
int picturesPerSwitch(MonitorLayout layout, size_t monitorCount);

// Auto resolved for an area from the picture's proportions; codes that lay nothing out (unknown numbers)
// become Center, as an older program reads them.
Orientation orientationForArea(Orientation orientation,
                               int32_t pictureWidth,
                               int32_t pictureHeight,
                               ScreenRect area,
                               double ratioTolerance,
                               double halfRatio);

// The least size a decoded picture must have for an area: its own for Center and Tile, the area's for
// Stretch, the fitted size for Scale and the covering size for Fill. A decoder may hand out anything at
// least this large, in the same proportions.
ScreenSize requiredPictureSize(int32_t pictureWidth, int32_t pictureHeight, ScreenRect area, Orientation orientation);

// Where a picture of the given size lands in an area: the part of it that is used (picture pixels) and
// the rectangle of the desktop that part is drawn into, resampled when the sizes differ. With tiled, the
// source is drawn at its size again and again from the target's top-left corner across the target.
// The target may reach beyond the area (Center of a large picture); what shows is clipped to the area.
struct Placement {
    ScreenRect source;
    ScreenRect target;
    bool tiled = false;
    bool operator==(const Placement&) const = default;
};
// orientation must already be resolved (orientationForArea).
Placement placePicture(int32_t pictureWidth, int32_t pictureHeight, ScreenRect area, Orientation orientation);

// One picture of a composed wallpaper: laid out in area, showing only inside clip.
struct MonitorPicture {
    std::string path;
    Orientation orientation = kCenter;
    int32_t width = 0;  // the picture's size when known; 0 = read it
    int32_t height = 0;
    ScreenRect area;
    ScreenRect clip;
};

// The bitmap that spans the virtual screen and the pictures in it. It reaches the desktop one of two ways.
// Tiled, as every Windows before 8 lays a tile from the primary monitor's top-left corner: the bitmap, the
// size of the virtual screen, shows its pixel (x mod width, y mod height) at desktop point (x, y), so
// monitors left of or above the primary wrap around to the bitmap's far side. Spanned (Windows 8 and
// later, where tiling no longer starts there): the bitmap is laid over the virtual screen, its top-left
// pixel on the virtual screen's top-left corner, and at exactly that size nothing is resampled. Either
// way every desktop point has exactly one pixel.
struct WallpaperPlan {
    ScreenRect desktop;
    bool spanned = false;
    std::vector<MonitorPicture> pictures;
    double ratioTolerance = 0.25;
    double halfRatio = 1.5;
};

// The plan for the pictures on show: shown holds one entry per picture the switch took (its last is the
// current line's); monitors are in turn order.
WallpaperPlan planWallpaper(MonitorLayout layout,
                            const std::vector<ScreenRect>& monitors,
                            const std::vector<WallpaperEntry>& shown,
                            double ratioTolerance,
                            double halfRatio);

// The bitmap's pixel for a desktop point of the plan's desktop, tiled or spanned.
struct BitmapPoint {
    int32_t x = 0;
    int32_t y = 0;
    bool operator==(const BitmapPoint&) const = default;
};
BitmapPoint bitmapPointOf(const ScreenRect& desktop, bool spanned, int32_t x, int32_t y);

// 24-bit pixels (blue, green, red), the top row first, rows stride bytes apart (negative for a bottom-up
// bitmap, with top pointing at its last row in memory).
struct PixelView {
    uint8_t* top = nullptr;
    int32_t width = 0;
    int32_t height = 0;
    std::ptrdiff_t stride = 0;
    uint8_t* row(int32_t y) const { return top + static_cast<std::ptrdiff_t>(y) * stride; }
};

// Copies the source rectangle of a picture into a picture of that rectangle's size.
void copyPixels(const PixelView& from, ScreenRect source, const PixelView& to);
// Draws a picture of target's size (or, tiled, the tile repeated across target) into the wallpaper
// bitmap of the desktop, only inside clip, where the desktop shows each point (bitmapPointOf).
void drawIntoWallpaper(const PixelView& wallpaper,
                       const ScreenRect& desktop,
                       bool spanned,
                       const PixelView& picture,
                       ScreenRect target,
                       bool tiled,
                       ScreenRect clip);

}  // namespace tl
