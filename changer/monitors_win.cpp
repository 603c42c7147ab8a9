#include "changer/monitors_win.h"

#include <windows.h>
// After windows.h, whose types it uses.
#include <versionhelpers.h>

#include <optional>

#include "app/program_win.h"
#include "changer/scaler_win.h"
#include "lists/image_info.h"
#include "lists/picture_win.h"

namespace tl {

namespace {

BOOL CALLBACK addMonitor(HMONITOR monitor, HDC, LPRECT, LPARAM data) {
    MONITORINFO info{};
    info.cbSize = sizeof info;
    if (::GetMonitorInfoW(monitor, &info)) {
        const RECT& r = info.rcMonitor;
        reinterpret_cast<std::vector<ScreenRect>*>(data)->push_back(
            {r.left, r.top, r.right - r.left, r.bottom - r.top});
    }
    return TRUE;
}

// The view of a picture; one that is only read from is drawn from, never into.
PixelView viewOf(const Picture& picture) {
    // A DIB keeps its bottom row first: the view starts at the last row in memory and walks back.
    const auto stride = static_cast<std::ptrdiff_t>(picture.stride());
    BYTE* bits = const_cast<BYTE*>(picture.bits());
    return {bits + (picture.height() - 1) * stride, picture.width(), picture.height(), -stride};
}

}  // namespace

std::vector<ScreenRect> displayMonitors() {
    std::vector<ScreenRect> monitors;
    ::EnumDisplayMonitors(nullptr, nullptr, addMonitor, reinterpret_cast<LPARAM>(&monitors));
    if (monitors.empty()) {
        monitors.push_back({0, 0, ::GetSystemMetrics(SM_CXSCREEN), ::GetSystemMetrics(SM_CYSCREEN)});
    }
    return monitors;
}

bool desktopSpansWallpaper() {
    // Without a manifest naming later versions the system says 6.2 from 8.1 on: still 8 or later.
    static const bool spans = ::IsWindows8OrGreater();
    return spans;
}

bool composeWallpaper(const WallpaperPlan& plan,
                      const std::string& bitmapPath,
                      const Picture* shown,
                      const std::string& shownPath) {
    Picture wallpaper = Picture::create(plan.desktop.width, plan.desktop.height);  // a DIB starts black
    if (!wallpaper) {
        return false;
    }
    const PixelView canvas = viewOf(wallpaper);
    // The decoded picture stays while the next monitor shows the same one ("One picture on every
    // monitor"), unless that one needs it larger.
    std::string decodedPath;
    std::optional<Picture> decoded;
    for (const MonitorPicture& p : plan.pictures) {
        int32_t width = p.width;
        int32_t height = p.height;
        if (width <= 0 || height <= 0) {
            cImageInfo info(program().fs);
            try {
                info.ReadImageInfo(p.path);
            } catch (const ImageReadError&) {
                continue;
            }
            width = info.Width();
            height = info.Height();
        }
        const Orientation orientation =
            orientationForArea(p.orientation, width, height, p.area, plan.ratioTolerance, plan.halfRatio);
        const ScreenSize need = requiredPictureSize(width, height, p.area, orientation);
        const Picture* picture = shown && *shown && p.path == shownPath ? shown : nullptr;
        if (!picture) {
            if (!decoded || decodedPath != p.path || decoded->width() < need.width || decoded->height() < need.height) {
                decoded.reset();
                decoded = loadPictureAtLeast(p.path, need.width, need.height);
                decodedPath = p.path;
            }
            if (!decoded) {
                continue;
            }
            picture = &*decoded;
        }
        // Laid out on the size decoded: the orientations that resample keep their proportions at any size,
        // and Center and Tile were decoded whole.
        const Placement at = placePicture(picture->width(), picture->height(), p.area, orientation);
        const Picture* source = picture;
        Picture part;
        Picture scaled;
        if (at.source != ScreenRect{0, 0, source->width(), source->height()}) {
            part = Picture::create(at.source.width, at.source.height);
            if (!part) {
                continue;
            }
            copyPixels(viewOf(*source), at.source, viewOf(part));
            source = &part;
        }
        if (!at.tiled && (at.target.width != source->width() || at.target.height != source->height())) {
            // A picture twice the size or more (the whole photo the preview loaded) is averaged down, the
            // area filter a large shrink wants; nearer sizes and enlargements go through the sharp resampler.
            const bool farLarger =
                source->width() >= 2 * at.target.width && source->height() >= 2 * at.target.height;
            scaled = farLarger ? scaledPicture(*source, at.target.width, at.target.height)
                               : resampledPicture(*source, at.target.width, at.target.height);
            if (!scaled) {
                continue;
            }
            source = &scaled;
        }
        drawIntoWallpaper(canvas, plan.desktop, plan.spanned, viewOf(*source), at.target, at.tiled, p.clip);
    }
    decoded.reset();
    return writeBitmapFile(wallpaper, bitmapPath);
}

}  // namespace tl
