#pragma once

#include <cstdint>
#include <optional>

namespace tl {

struct PixelSize {
    int width = 0;
    int height = 0;
};

// Where the preview puts its picture, and the window size it asks for (mode 0 only).
struct PreviewLayout {
    bool stretch = false;
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
    std::optional<PixelSize> windowSize;
};

// The preview's display modes, the values of PreviewMode.
inline constexpr int16_t kPreviewNatural = 0;    // natural size, the window fitted around it
inline constexpr int16_t kPreviewStretched = 1;  // stretched to the window
inline constexpr int16_t kPreviewCentred = 2;    // natural size, centred

// Lays the picture out in the window's inner area. frame is what the window adds around its inner area
// (caption and borders), so that mode 0 fits the window to the picture exactly. Other modes: nullopt.
std::optional<PreviewLayout> layoutPreview(int16_t mode, PixelSize picture, PixelSize inner, PixelSize frame);

// The mode after a click on the picture: 0, 1, 2, then 0 again.
int16_t nextPreviewMode(int16_t mode);

// The preview keeps its position in twips: 1440 to the inch, at the screen's pixels per inch.
int twipsToPixels(int twips, int dpi);
int16_t pixelsToTwips(int pixels, int dpi);

}  // namespace tl
