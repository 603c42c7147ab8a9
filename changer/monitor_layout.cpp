#include "changer/monitor_layout.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>

namespace tl {

namespace {

int32_t floorMod(int64_t value, int32_t divisor) {
    const int64_t m = value % divisor;
    return static_cast<int32_t>(m < 0 ? m + divisor : m);
}

// A side rounded to whole pixels and kept within [1, most].
int32_t side(double value, int32_t most) {
    if (!(value >= 1.0)) {
        return 1;
    }
    return value >= static_cast<double>(most) ? most : static_cast<int32_t>(std::llround(value));
}

// The offset that centres size in room: the odd pixel of a margin or an overflow goes right (or down).
int32_t centred(int32_t room, int32_t size) {
    return static_cast<int32_t>((static_cast<int64_t>(room) - size) / 2);
}

}  // namespace

ScreenRect intersection(ScreenRect a, ScreenRect b) {
    const int32_t left = std::max(a.left, b.left);
    const int32_t top = std::max(a.top, b.top);
    const int32_t right = std::min(a.right(), b.right());
    const int32_t bottom = std::min(a.bottom(), b.bottom());
    if (right <= left || bottom <= top) {
        return {};
    }
    return {left, top, right - left, bottom - top};
}

ScreenRect boundingRect(const std::vector<ScreenRect>& rects) {
    if (rects.empty()) {
        return {};
    }
    int32_t left = rects[0].left;
    int32_t top = rects[0].top;
    int32_t right = rects[0].right();
    int32_t bottom = rects[0].bottom();
    for (const ScreenRect& r : rects) {
        left = std::min(left, r.left);
        top = std::min(top, r.top);
        right = std::max(right, r.right());
        bottom = std::max(bottom, r.bottom());
    }
    return {left, top, right - left, bottom - top};
}

MonitorLayout resolvedMonitorLayout(int16_t setting, size_t monitorCount) {
    switch (setting) {
        case static_cast<int16_t>(MonitorLayout::SameOnEvery):
        case static_cast<int16_t>(MonitorLayout::EachOwn):
        case static_cast<int16_t>(MonitorLayout::Across):
            return static_cast<MonitorLayout>(setting);
        default:
            return monitorCount >= 2 ? MonitorLayout::EachOwn : MonitorLayout::SameOnEvery;
    }
}

std::vector<ScreenRect> monitorsInTurn(std::vector<ScreenRect> monitors) {
    std::stable_sort(monitors.begin(), monitors.end(), [](const ScreenRect& a, const ScreenRect& b) {
        return a.left != b.left ? a.left < b.left : a.top < b.top;
    });
    return monitors;
}

int picturesPerSwitch(MonitorLayout layout, size_t monitorCount) {
    return layout == MonitorLayout::EachOwn && monitorCount > 1 ? static_cast<int>(monitorCount) : 1;
}

Orientation orientationForArea(Orientation orientation,
                               int32_t pictureWidth,
                               int32_t pictureHeight,
                               ScreenRect area,
                               double ratioTolerance,
                               double halfRatio) {
    switch (orientation) {
        case kCenter:
        case kTile:
        case kStretch:
        case kScale:
        case kFill:
            return orientation;
        case kAuto:
            if (pictureWidth > 0 && pictureHeight > 0 && !area.empty()) {
                return chooseAutoOrientation(pictureWidth, pictureHeight, area.width, area.height, ratioTolerance,
                                             halfRatio);
            }
            return kCenter;
        default:
            return kCenter;
    }
}

ScreenSize requiredPictureSize(int32_t pictureWidth, int32_t pictureHeight, ScreenRect area, Orientation orientation) {
    if (pictureWidth <= 0 || pictureHeight <= 0 || area.empty()) {
        return {pictureWidth, pictureHeight};
    }
    const double w = pictureWidth;
    const double h = pictureHeight;
    switch (orientation) {
        case kStretch:
            return {area.width, area.height};
        case kScale: {
            const double f = scaleFactor(pictureWidth, pictureHeight, {area.width, area.height});
            return {side(w * f, area.width), side(h * f, area.height)};
        }
        case kFill: {
            // In whole numbers: the side that limits is the area's exactly, the other rounded up.
            const int64_t aw = area.width;
            const int64_t ah = area.height;
            if (aw * pictureHeight >= ah * pictureWidth) {
                return {area.width,
                        side(static_cast<double>((pictureHeight * aw + pictureWidth - 1) / pictureWidth), INT32_MAX)};
            }
            return {side(static_cast<double>((pictureWidth * ah + pictureHeight - 1) / pictureHeight), INT32_MAX),
                    area.height};
        }
        default:
            return {pictureWidth, pictureHeight};
    }
}

Placement placePicture(int32_t pictureWidth, int32_t pictureHeight, ScreenRect area, Orientation orientation) {
    if (pictureWidth <= 0 || pictureHeight <= 0 || area.empty()) {
        return {};
    }
    const ScreenRect whole{0, 0, pictureWidth, pictureHeight};
    const double w = pictureWidth;
    const double h = pictureHeight;
    switch (orientation) {
        case kTile:
            return {whole, area, true};
        case kStretch:
            return {whole, area, false};
        case kScale: {
            const double f = scaleFactor(pictureWidth, pictureHeight, {area.width, area.height});
            const int32_t sw = side(w * f, area.width);
            const int32_t sh = side(h * f, area.height);
            return {whole, {area.left + centred(area.width, sw), area.top + centred(area.height, sh), sw, sh}, false};
        }
        case kFill: {
            // The part of the picture that covers the area at the larger of the two factors, centred; it
            // is resampled to the area itself, so the result is never a pixel short or long.
            const double f = std::max(area.width / w, area.height / h);
            const int32_t cw = side(area.width / f, pictureWidth);
            const int32_t ch = side(area.height / f, pictureHeight);
            return {{centred(pictureWidth, cw), centred(pictureHeight, ch), cw, ch}, area, false};
        }
        default:  // Center: its own size, in the middle, cropped by the area
            return {whole,
                    {area.left + centred(area.width, pictureWidth), area.top + centred(area.height, pictureHeight),
                     pictureWidth, pictureHeight},
                    false};
    }
}

WallpaperPlan planWallpaper(MonitorLayout layout,
                            const std::vector<ScreenRect>& monitors,
                            const std::vector<WallpaperEntry>& shown,
                            double ratioTolerance,
                            double halfRatio) {
    WallpaperPlan plan;
    plan.desktop = boundingRect(monitors);
    plan.ratioTolerance = ratioTolerance;
    plan.halfRatio = halfRatio;
    if (monitors.empty() || shown.empty()) {
        return plan;
    }
    const auto add = [&plan](const WallpaperEntry& e, ScreenRect area, ScreenRect clip) {
        plan.pictures.push_back({e.path, e.orientation, e.width, e.height, area, clip});
    };
    const WallpaperEntry& current = shown.back();
    switch (layout) {
        case MonitorLayout::Across:
            add(current, plan.desktop, plan.desktop);
            break;
        case MonitorLayout::EachOwn:
            // The current line's picture is on the last monitor; the others take the switch's other
            // pictures in turn, and a monitor that came since the switch shows the current one too.
            for (size_t k = 0; k < monitors.size(); ++k) {
                const bool last = k + 1 == monitors.size();
                add(!last && k + 1 < shown.size() ? shown[k] : current, monitors[k], monitors[k]);
            }
            break;
        default:
            for (const ScreenRect& m : monitors) {
                add(current, m, m);
            }
            break;
    }
    return plan;
}

BitmapPoint bitmapPointOf(const ScreenRect& desktop, bool spanned, int32_t x, int32_t y) {
    // The desktop point the bitmap's top-left pixel lies on, and again every width and height from it.
    const int64_t ox = spanned ? desktop.left : 0;
    const int64_t oy = spanned ? desktop.top : 0;
    return {floorMod(x - ox, desktop.width), floorMod(y - oy, desktop.height)};
}

void copyPixels(const PixelView& from, ScreenRect source, const PixelView& to) {
    source = intersection(source, {0, 0, from.width, from.height});
    const int32_t rows = std::min(source.height, to.height);
    const auto bytes = static_cast<size_t>(std::min(source.width, to.width)) * 3;
    for (int32_t y = 0; y < rows; ++y) {
        std::memcpy(to.row(y), from.row(source.top + y) + static_cast<size_t>(source.left) * 3, bytes);
    }
}

void drawIntoWallpaper(const PixelView& wallpaper,
                       const ScreenRect& desktop,
                       bool spanned,
                       const PixelView& picture,
                       ScreenRect target,
                       bool tiled,
                       ScreenRect clip) {
    if (picture.width <= 0 || picture.height <= 0 || wallpaper.width != desktop.width ||
        wallpaper.height != desktop.height) {
        return;
    }
    if (!tiled) {
        target.width = picture.width;
        target.height = picture.height;
    }
    const ScreenRect visible = intersection(intersection(clip, desktop), target);
    for (int32_t y = visible.top; y < visible.bottom(); ++y) {
        const uint8_t* from = picture.row(floorMod(int64_t{y} - target.top, picture.height));
        uint8_t* to = wallpaper.row(bitmapPointOf(desktop, spanned, visible.left, y).y);
        // Runs that neither cross the edge of a tile nor the bitmap's wrap-around.
        for (int32_t x = visible.left; x < visible.right();) {
            const int32_t sx = floorMod(int64_t{x} - target.left, picture.width);
            const int32_t bx = bitmapPointOf(desktop, spanned, x, y).x;
            const int32_t run = std::min({visible.right() - x, picture.width - sx, desktop.width - bx});
            std::memcpy(to + static_cast<size_t>(bx) * 3, from + static_cast<size_t>(sx) * 3,
                        static_cast<size_t>(run) * 3);
            x += run;
        }
    }
}

}  // namespace tl
