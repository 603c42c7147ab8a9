#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "display/screen_resolution.h"

namespace tl {

// One item of the resolution submenu: a separator (caption "-", tag "!") or a mode (caption
// "1024x768 (16)", tag the mode's index in the mode table).
struct ResolutionMenuItem {
    std::string caption;
    std::string tag;
    bool checked = false;
    bool enabled = true;

    bool isSeparator() const { return caption == "-"; }
    bool operator==(const ResolutionMenuItem&) const = default;
};

// The submenu's items for the modes in table order: a separator before each deeper group, a mode only
// when it is not a repeat of the one before and not narrower without being deeper, and nothing at all
// after a mode of 4 bits or fewer.
std::vector<ResolutionMenuItem> resolutionMenuItems(const std::vector<DisplayMode>& modes);

// "1024x768 (32)": the caption the current mode's item has.
std::string modeCaption(int32_t width, int32_t height, int32_t bitsPerPixel);

// Checks and disables the item whose caption is currentCaption; every other item is enabled and unchecked.
void markCurrentMode(std::vector<ResolutionMenuItem>& items, const std::string& currentCaption);

// The mode index an item's tag names; -1 for a separator or an empty tag.
int modeIndexOfTag(const std::string& tag);

}  // namespace tl
