#include "changer/preview_layout.h"

#include <algorithm>

#include "base/convert.h"

namespace tl {

std::optional<PreviewLayout> layoutPreview(int16_t mode, PixelSize picture, PixelSize inner, PixelSize frame) {
    PreviewLayout layout;
    switch (mode) {
        case kPreviewNatural:
            layout.width = picture.width;
            layout.height = picture.height;
            layout.windowSize = PixelSize{picture.width + frame.width, picture.height + frame.height};
            return layout;
        case kPreviewStretched:
            layout.stretch = true;
            layout.width = inner.width;
            layout.height = inner.height;
            return layout;
        case kPreviewCentred:
            layout.width = picture.width;
            layout.height = picture.height;
            layout.left = toInt16Or(roundHalfEven(inner.width / 2.0 - picture.width / 2.0), 0);
            layout.top = toInt16Or(roundHalfEven(inner.height / 2.0 - picture.height / 2.0), 0);
            return layout;
        default:
            return std::nullopt;
    }
}

int16_t nextPreviewMode(int16_t mode) {
    return mode + 1 > kPreviewCentred ? kPreviewNatural : static_cast<int16_t>(mode + 1);
}

int twipsToPixels(int twips, int dpi) {
    return static_cast<int>(roundHalfEven(static_cast<double>(twips) * dpi / 1440.0));
}

int16_t pixelsToTwips(int pixels, int dpi) {
    // A 16-bit setting holds about 2,200 pixels at 96 DPI: a window further out is kept at the limit.
    const double twips = roundHalfEven(static_cast<double>(pixels) * 1440.0 / (dpi > 0 ? dpi : 96));
    return static_cast<int16_t>(std::clamp(twips, -32768.0, 32767.0));
}

}  // namespace tl
