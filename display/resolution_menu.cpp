#include "display/resolution_menu.h"

#include "base/convert.h"

namespace tl {

std::string modeCaption(int32_t width, int32_t height, int32_t bitsPerPixel) {
    return std::to_string(width) + "x" + std::to_string(height) + " (" + std::to_string(bitsPerPixel) + ")";
}

std::vector<ResolutionMenuItem> resolutionMenuItems(const std::vector<DisplayMode>& modes) {
    std::vector<ResolutionMenuItem> items;
    DisplayMode last;
    for (size_t i = 0; i < modes.size(); ++i) {
        const DisplayMode& m = modes[i];
        // Once a mode of 4 bits or fewer is in, nothing follows it; the rule is an old one, kept as it is.
        if (!((m.width != 0 && last.bitsPerPixel > 4) || last.bitsPerPixel == 0)) {
            continue;
        }
        if (m == last) {
            continue;  // the same mode at another refresh rate
        }
        if (last.width != 0 && m.width < last.width && m.bitsPerPixel <= last.bitsPerPixel) {
            continue;
        }
        if (m.bitsPerPixel > last.bitsPerPixel) {
            items.push_back({"-", "!"});
        }
        items.push_back({modeCaption(m.width, m.height, m.bitsPerPixel), std::to_string(i)});
        last = m;
    }
    return items;
}

void markCurrentMode(std::vector<ResolutionMenuItem>& items, const std::string& currentCaption) {
    for (ResolutionMenuItem& item : items) {
        const bool current = item.caption == currentCaption;
        item.checked = current;
        item.enabled = !current;
    }
}

int modeIndexOfTag(const std::string& tag) {
    if (tag.empty() || tag == "!") {
        return -1;
    }
    return toInt16Or(leadingNumber(tag), -1);
}

}  // namespace tl
