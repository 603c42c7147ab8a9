#pragma once

#include <string>
#include <vector>

#include "changer/monitor_layout.h"

namespace tl {

class Picture;

// The rectangles of the monitors attached to the desktop, as the system tells them (the primary's
// top-left at (0, 0)); the primary screen alone when it tells none.
std::vector<ScreenRect> displayMonitors();

// Whether this Windows lays a wallpaper over all monitors ("Span", Windows 8 and later). Before it, a
// tiled wallpaper starts at the primary monitor's corner; from it, tiling starts elsewhere, and spanning a
// bitmap of the virtual screen's size is what lays it pixel for pixel.
bool desktopSpansWallpaper();

// The plan's pictures decoded no larger than their monitors need, resampled, and drawn into one bitmap the
// size of the virtual screen (black where no picture lands), written as a BMP. A picture that can't be
// read leaves its monitor black; false when the bitmap can't be made or written. A picture already decoded
// whole (the preview's, of shownPath) is used as it is.
bool composeWallpaper(const WallpaperPlan& plan,
                      const std::string& bitmapPath,
                      const Picture* shown = nullptr,
                      const std::string& shownPath = {});

}  // namespace tl
