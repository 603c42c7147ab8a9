#include "changer/auto_orientation.h"

#include "app/settings.h"

namespace tl {

Orientation chooseAutoOrientation(int imageWidth,
                                  int imageHeight,
                                  int screenWidth,
                                  int screenHeight,
                                  const Settings& settings) {
    const double screenRatio = static_cast<double>(screenWidth) / static_cast<double>(screenHeight);
    const double imageRatio = static_cast<double>(imageWidth) / static_cast<double>(imageHeight);
    // Both bounds are strict, so a tolerance of 0 stretches only an exact match, which the second test keeps.
    if ((screenRatio - settings.RatioTolerance < imageRatio && imageRatio < screenRatio + settings.RatioTolerance) ||
        imageRatio == screenRatio) {
        return kStretch;
    }
    if (settings.HalfRatio * imageHeight < screenHeight || settings.HalfRatio * imageWidth < screenWidth) {
        return kTile;
    }
    return kCenter;
}

}  // namespace tl
