#pragma once

#include "lists/wallpaper_list.h"

namespace tl {

struct Settings;

// Resolves Auto for an image of the given size on a screen of the given size: Stretch when the
// proportions match the screen's within Settings.RatioTolerance, else Tile when the image is small in
// either direction (Settings.HalfRatio times it is below the screen's), else Center.
Orientation chooseAutoOrientation(int imageWidth,
                                  int imageHeight,
                                  int screenWidth,
                                  int screenHeight,
                                  const Settings& settings);

}  // namespace tl
