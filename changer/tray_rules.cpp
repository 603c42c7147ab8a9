#include "changer/tray_rules.h"

namespace tl {

std::string trayTip(std::string_view currentPath) {
    std::string tip = "Tessaline - ";
    tip += currentPath;
    if (tip.size() > kTrayTipLength) {
        tip.resize(kTrayTipLength);
    }
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
