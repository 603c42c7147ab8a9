#include "changer/apply_rules.h"

#include "base/convert.h"

namespace tl {

Orientation chooseAutoOrientation(int32_t imageWidth,
                                  int32_t imageHeight,
                                  int32_t screenWidth,
                                  int32_t screenHeight,
                                  double ratioTolerance,
                                  double halfRatio) {
    const double screenRatio = static_cast<double>(screenWidth) / static_cast<double>(screenHeight);
    const double imageRatio = static_cast<double>(imageWidth) / static_cast<double>(imageHeight);
    if ((screenRatio - ratioTolerance < imageRatio && imageRatio < screenRatio + ratioTolerance) ||
        imageRatio == screenRatio) {
        return kStretch;
    }
    if (halfRatio * imageHeight < screenHeight || halfRatio * imageWidth < screenWidth) {
        return kTile;
    }
    return kCenter;
}

double scaleFactor(int32_t width, int32_t height, ScreenSize screen) {
    const double h = height == 0 ? 1.0 : static_cast<double>(height);
    const double w = width == 0 ? 1.0 : static_cast<double>(width);
    const double f1 = screen.height / h;
    const double f2 = screen.width / w;
    return f1 >= f2 ? f2 : f1;
}

int32_t scaledSide(int32_t side, double factor) {
    return toInt32(static_cast<double>(side) * factor).value_or(0);
}

}  // namespace tl
