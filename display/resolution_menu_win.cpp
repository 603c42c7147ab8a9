#include "display/resolution_menu_win.h"

#include "app/resource_ids.h"
#include "base/utf8_win.h"
#include "display/screen_resolution.h"

namespace tl {

void ResolutionMenu::build() {
    clsScrRes res(platform_, ui_);
    items_ = resolutionMenuItems(res.displayModes());
    // Past the last id the commands can't be told apart; no display has that many modes.
    constexpr size_t kMaxItems = IDM_RESOLUTION_LAST - IDM_RESOLUTION_FIRST + 1;
    if (items_.size() > kMaxItems) {
        items_.resize(kMaxItems);
    }
}

void ResolutionMenu::fill(HMENU submenu, HWND window) {
    while (::GetMenuItemCount(submenu) > 0) {
        ::DeleteMenu(submenu, 0, MF_BYPOSITION);
    }
    const clsScrRes res(platform_, ui_);
    markCurrentMode(items_,
                    modeCaption(res.CurrentHRes(window), res.CurrentVRes(window), res.CurrentColorResolution(window)));
    for (size_t k = 0; k < items_.size(); ++k) {
        const ResolutionMenuItem& item = items_[k];
        const auto id = static_cast<UINT_PTR>(IDM_RESOLUTION_FIRST + k);
        if (item.isSeparator()) {
            ::AppendMenuW(submenu, MF_SEPARATOR, id, nullptr);
            continue;
        }
        UINT flags = MF_STRING;
        flags |= item.checked ? UINT{MF_CHECKED} : UINT{MF_UNCHECKED};
        flags |= item.enabled ? UINT{MF_ENABLED} : UINT{MF_GRAYED};
        ::AppendMenuW(submenu, flags, id, widen(item.caption).c_str());
    }
}

bool ResolutionMenu::onCommand(UINT id) {
    if (id < IDM_RESOLUTION_FIRST || id > IDM_RESOLUTION_LAST) {
        return false;
    }
    const size_t k = id - IDM_RESOLUTION_FIRST;
    if (k >= items_.size()) {
        return true;
    }
    clsScrRes res(platform_, ui_);
    const int index = modeIndexOfTag(items_[k].tag);
    if (index >= 0) {
        res.SetDisplay(index);
    }
    return true;
}

}  // namespace tl
