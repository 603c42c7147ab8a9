#pragma once

#include <array>

// Where the controls of frmMain's panel go. Sizes are designed at 96 DPI and scaled; the list takes what
// the window gives it, and the row under it keeps its size.
namespace tl {

struct PanelRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    int right() const { return x + width; }
    int bottom() const { return y + height; }
};

struct PanelSize {
    int width = 0;
    int height = 0;
};

struct PanelLayout {
    PanelRect list1;
    PanelRect orType;                  // the closed box; its drop-down list opens below
    std::array<PanelRect, 5> buttons;  // Image5, Image1, Image4, Image3, Image2, left to right
    PanelRect prevFrame;
    std::array<PanelRect, 3> captions;  // "Filesize:", "Date:", "Dimensions:"
    std::array<PanelRect, 3> values;    // fsize, fdate, dimensions
    PanelRect preview;                  // the box the preview picture is fitted and centred in
};

// The panel's controls for an inner size in pixels at a DPI. An inner size below the minimum is laid out
// as the minimum.
PanelLayout layoutPanel(int clientWidth, int clientHeight, int dpi);
// The smallest inner size that keeps every control whole, and the size the panel first opens at.
PanelSize minimumPanelSize(int dpi);
PanelSize defaultPanelSize(int dpi);
// The image buttons' icons, in pixels.
int panelIconSize(int dpi);

}  // namespace tl
