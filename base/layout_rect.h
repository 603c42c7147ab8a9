#pragma once

namespace tl {

// A control's place in a window's client area (or in the frame it sits in), in whatever units the layout
// works in: 96-DPI units before scaling, pixels after.
struct LayoutRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    int right() const { return x + width; }
    int bottom() const { return y + height; }
    bool operator==(const LayoutRect&) const = default;
};

}  // namespace tl
