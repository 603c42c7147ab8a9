#pragma once

#include <cstdint>

#include "lists/wallpaper_list.h"

// The arithmetic of applying a wallpaper: the Auto rule and the Scale sizes.
namespace tl {

struct ScreenSize {
    int32_t width = 0;
    int32_t height = 0;
};

// Resolves Auto from the proportions of image and screen: Stretch when the ratios are within the tolerance
// (strictly) or equal, else Tile when the image is small in either direction (halfRatio times its side is
// under the screen's), else Center. A zero height gives an infinite or undefined ratio, which no test
// below matches as Stretch.
Orientation chooseAutoOrientation(int32_t imageWidth,
                                  int32_t imageHeight,
                                  int32_t screenWidth,
                                  int32_t screenHeight,
                                  double ratioTolerance,
                                  double halfRatio);

// The factor that fits a width x height picture into the screen with its proportions kept: the smaller
// of screenHeight / height and screenWidth / width. A side of 0 is taken as 1.
double scaleFactor(int32_t width, int32_t height, ScreenSize screen);

// A side multiplied by the factor, rounded to the nearest integer with halves to even, as the Scaler
// sizes its surface.
int32_t scaledSide(int32_t side, double factor);

}  // namespace tl
