#include "changer/panel_layout.h"

#include <algorithm>

namespace tl {

namespace {

// The design at 96 DPI. List1 is the inner size less 14 across and 134 down; the row under it holds
// orType over the five buttons on the left, the facts frame in the middle and the preview on the right.
constexpr int kMargin = 7;
constexpr int kListWidthLess = 14;
constexpr int kListHeightLess = 134;
constexpr int kButton = 44;
constexpr int kButtonGap = 4;
constexpr int kLeftColumn = 5 * kButton + 4 * kButtonGap;
constexpr int kComboHeight = 22;
constexpr int kColumnGap = 10;
constexpr int kFrameWidth = 150;
constexpr int kFrameHeight = 114;
constexpr int kPreviewWidth = 144;
constexpr int kPreviewHeight = 108;
constexpr int kFactsIndent = 10;
constexpr int kFactsLine = 14;
constexpr int kFactsFirst = 12;
constexpr int kFactsStep = 34;  // from one caption to the next
constexpr int kIcon = 32;
constexpr int kDefaultWidth = 564;
constexpr int kDefaultHeight = 420;
constexpr int kMinimumListHeight = 100;

int scaled(int pixels96, int dpi) {
    return (pixels96 * dpi + 48) / 96;
}

}  // namespace

PanelSize minimumPanelSize(int dpi) {
    return {scaled(kMargin + kLeftColumn + kColumnGap + kFrameWidth + kColumnGap + kPreviewWidth + kMargin, dpi),
            scaled(kMargin + kMinimumListHeight + kListHeightLess - kMargin, dpi)};
}

PanelSize defaultPanelSize(int dpi) {
    return {scaled(kDefaultWidth, dpi), scaled(kDefaultHeight, dpi)};
}

int panelIconSize(int dpi) {
    return scaled(kIcon, dpi);
}

PanelLayout layoutPanel(int clientWidth, int clientHeight, int dpi) {
    const PanelSize least = minimumPanelSize(dpi);
    const int w = std::max(clientWidth, least.width);
    const int h = std::max(clientHeight, least.height);
    const auto s = [dpi](int pixels96) { return scaled(pixels96, dpi); };

    PanelLayout l;
    l.list1 = {s(kMargin), s(kMargin), w - s(kListWidthLess), h - s(kListHeightLess)};

    const int rowBottom = h - s(kMargin);
    l.orType = {s(kMargin), h - s(119), s(kLeftColumn), s(kComboHeight)};
    for (int i = 0; i < 5; ++i) {
        l.buttons[static_cast<size_t>(i)] = {s(kMargin + i * (kButton + kButtonGap)), rowBottom - s(kButton),
                                             s(kButton), s(kButton)};
    }

    l.preview = {w - s(kMargin + kPreviewWidth), rowBottom - s(kPreviewHeight), s(kPreviewWidth), s(kPreviewHeight)};
    // The frame takes the room between the left column and the preview.
    const int frameLeft = s(kMargin + kLeftColumn + kColumnGap);
    l.prevFrame = {frameLeft, rowBottom - s(kFrameHeight), l.preview.x - s(kColumnGap) - frameLeft, s(kFrameHeight)};
    const int factsWidth = l.prevFrame.width - 2 * s(kFactsIndent);
    for (int i = 0; i < 3; ++i) {
        const int top = l.prevFrame.y + s(kFactsFirst + i * kFactsStep);
        l.captions[static_cast<size_t>(i)] = {l.prevFrame.x + s(kFactsIndent), top, factsWidth, s(kFactsLine)};
        l.values[static_cast<size_t>(i)] = {l.prevFrame.x + s(kFactsIndent), top + s(kFactsLine + 1), factsWidth,
                                            s(kFactsLine)};
    }
    return l;
}

}  // namespace tl
