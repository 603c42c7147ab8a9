#include "changer/tray_rules.h"

#include "base/utf8.h"

namespace tl {

std::string trayTip(std::string_view currentPath) {
    std::string tip = "Tessaline - ";
    tip += currentPath;
    // The tray counts UTF-16 units: a character beyond the first plane takes two. The cut falls between
    // characters, never inside one.
    size_t units = 0;
    size_t at = 0;
    while (at < tip.size()) {
        const Utf8Step step = decodeUtf8(tip, at);
        const size_t width = step.codePoint != kBadSequence && step.codePoint >= 0x10000 ? 2 : 1;
        if (units + width > kTrayTipLength) {
            break;
        }
        units += width;
        at += step.length;
    }
    tip.resize(at);
    return tip;
}

TrayEvent trayMessage(long x) {
    switch (x) {
        case 513:  // WM_LBUTTONDOWN
            return TrayEvent::LeftButtonDown;
        case 515:  // WM_LBUTTONDBLCLK
            return TrayEvent::DoubleClick;
        case 516:  // WM_RBUTTONDOWN
            return TrayEvent::RightButtonDown;
        default:
            return TrayEvent::None;
    }
}

}  // namespace tl
