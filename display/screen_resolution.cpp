#include "display/screen_resolution.h"

#include <algorithm>

#include "base/ui.h"

namespace tl {

namespace {

// The mode fields are 32-bit on the platform and 16-bit in the program; no display comes near the limit.
int16_t asInt16(uint32_t v) {
    return static_cast<int16_t>(static_cast<uint16_t>(v & 0xFFFF));
}

constexpr uintptr_t kDisplayChangeWParam = 42;

}  // namespace

std::string colorDepthName(int32_t bitsPerPixel) {
    switch (bitsPerPixel) {
        case 4:
            return "16 Color";
        case 8:
            return "256 Color";
        case 16:
            return "High Color";
        case 24:
        case 32:
            return "True Color";
        default:
            return "";
    }
}

clsScrRes::clsScrRes(DisplayPlatform& platform, Ui& ui) : platform_(platform), ui_(ui) {
    modes_.reserve(11);
    for (uint32_t n = 0;; ++n) {
        std::optional<DisplayModeRecord> mode = platform_.enumerateMode(n);
        if (!mode || n > 32767) {
            break;
        }
        modes_.push_back(std::move(*mode));
    }
}

int16_t clsScrRes::MaxColorResolution() const {
    int16_t best = 0;
    for (const DisplayModeRecord& m : modes_) {
        best = std::max(best, asInt16(m.bitsPerPixel));
    }
    return best;
}

std::string clsScrRes::MaxColorResolutionString() const {
    return colorDepthName(MaxColorResolution());
}

int16_t clsScrRes::MaxHRes() const {
    int16_t best = 0;
    for (const DisplayModeRecord& m : modes_) {
        best = std::max(best, asInt16(m.width));
    }
    return best;
}

int16_t clsScrRes::MaxVRes() const {
    int16_t best = 0;
    for (const DisplayModeRecord& m : modes_) {
        best = std::max(best, asInt16(m.height));
    }
    return best;
}

int16_t clsScrRes::AvailableDisplayModes() const {
    return static_cast<int16_t>(modes_.size());
}

DisplayMode clsScrRes::GetDisplayMode(int index) const {
    if (index < 0 || static_cast<size_t>(index) >= modes_.size()) {
        return {};
    }
    const DisplayModeRecord& m = modes_[static_cast<size_t>(index)];
    return {asInt16(m.width), asInt16(m.height), asInt16(m.bitsPerPixel)};
}

std::vector<DisplayMode> clsScrRes::displayModes() const {
    std::vector<DisplayMode> out;
    out.reserve(modes_.size());
    for (size_t i = 0; i < modes_.size(); ++i) {
        out.push_back(GetDisplayMode(static_cast<int>(i)));
    }
    return out;
}

void clsScrRes::SetDisplay(int index) {
    if (index < 0 || static_cast<size_t>(index) >= modes_.size()) {
        return;
    }
    const DisplayModeRecord& mode = modes_[static_cast<size_t>(index)];
    const long r = platform_.changeSettings(mode, DisplayPlatform::kFullScreen);
    if (r == DisplayPlatform::kChangeRestart) {
        const int answer =
            ui_.messageBox("You must restart your computer to apply these changes.\r\n\r\nDo you want to restart now?",
                           "Screen Resolution", kMbYesNo | kMbIconQuestion | kMbSystemModal);
        if (answer == kIdYes) {
            platform_.exitWindows(2, 0);  // EWX_REBOOT
        }
    } else if (r == DisplayPlatform::kChangeSuccessful) {
        // The mode is in effect for this session; record it so that it lasts, and tell every window.
        platform_.changeSettings(mode, DisplayPlatform::kUpdateRegistry);
        platform_.broadcastDisplayChange(kDisplayChangeWParam, 0);
    } else {
        ui_.messageBox("That resolution and bit depth is not supported", "Error",
                       kMbOk | kMbIconExclamation | kMbSystemModal);
    }
}

int32_t clsScrRes::CurrentHRes(WindowHandle window) const {
    return platform_.deviceCaps(window, DisplayPlatform::kHorzRes).value_or(0);
}

int32_t clsScrRes::CurrentVRes(WindowHandle window) const {
    return platform_.deviceCaps(window, DisplayPlatform::kVertRes).value_or(0);
}

int32_t clsScrRes::CurrentColorResolution(WindowHandle window) const {
    return platform_.deviceCaps(window, DisplayPlatform::kBitsPixel).value_or(0);
}

std::string clsScrRes::CurrentColorResolutionString(WindowHandle window) const {
    return colorDepthName(CurrentColorResolution(window));
}

}  // namespace tl
