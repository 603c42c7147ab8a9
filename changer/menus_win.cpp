#include "changer/menus_win.h"

#include "base/utf8_win.h"
#include "changer/menu_state.h"

namespace tl {

namespace {

void appendItem(HMENU menu, const MenuItemDef& item, HMENU submenu) {
    std::wstring caption = widen(item.caption);
    MENUITEMINFOW info{};
    info.cbSize = sizeof info;
    info.fMask = MIIM_ID | MIIM_FTYPE;
    info.wID = static_cast<UINT>(item.id);
    if (std::string_view(item.caption) == "-") {
        info.fType = MFT_SEPARATOR;
    } else {
        info.fType = MFT_STRING;
        info.fMask |= MIIM_STRING;
        info.dwTypeData = caption.data();
    }
    if (submenu) {
        info.fMask |= MIIM_SUBMENU;
        info.hSubMenu = submenu;
    }
    ::InsertMenuItemW(menu, static_cast<UINT>(::GetMenuItemCount(menu)), TRUE, &info);
}

void setCaption(HMENU menu, int id, const std::string& caption) {
    std::wstring wide = widen(caption);
    MENUITEMINFOW info{};
    info.cbSize = sizeof info;
    info.fMask = MIIM_STRING;
    info.dwTypeData = wide.data();
    ::SetMenuItemInfoW(menu, static_cast<UINT>(id), FALSE, &info);
}

}  // namespace

MainMenus::MainMenus()
    : file_(build(fileMenuItems())), options_(build(optionsMenuItems())), tray_(build(trayMenuItems())) {}

unique_hmenu MainMenus::build(std::span<const MenuItemDef> items) {
    unique_hmenu menu(::CreatePopupMenu());
    for (size_t i = 0; i < items.size(); ++i) {
        const MenuItemDef& item = items[i];
        if (item.depth != 0) {
            continue;
        }
        HMENU sub = nullptr;
        // An item followed by deeper ones, or one whose items are made at run time, opens a submenu.
        const bool hasChildren = i + 1 < items.size() && items[i + 1].depth > 0;
        if (hasChildren || item.id == mnuPickDifferentList) {
            sub = ::CreatePopupMenu();
            for (size_t j = i + 1; j < items.size() && items[j].depth > 0; ++j) {
                HMENU subsub = items[j].id == mnuChangeRes ? ::CreatePopupMenu() : nullptr;
                appendItem(sub, items[j], subsub);
                if (subsub) {
                    submenus_[items[j].id] = subsub;
                }
            }
            submenus_[item.id] = sub;
        }
        appendItem(menu.get(), item, sub);
    }
    return menu;
}

HMENU MainMenus::submenu(int id) const {
    const auto it = submenus_.find(id);
    return it == submenus_.end() ? nullptr : it->second;
}

void MainMenus::apply(const MenuState& state) {
    for (HMENU menu : {file_.get(), options_.get(), tray_.get()}) {
        for (const auto& [id, checked] : state.checks()) {
            ::CheckMenuItem(menu, static_cast<UINT>(id),
                            UINT{MF_BYCOMMAND} | (checked ? UINT{MF_CHECKED} : UINT{MF_UNCHECKED}));
        }
        for (const auto& [id, caption] : state.captions()) {
            setCaption(menu, id, caption);
        }
    }
    if (HMENU lists = submenu(mnuPickDifferentList)) {
        while (::GetMenuItemCount(lists) > 0) {
            ::DeleteMenu(lists, 0, MF_BYPOSITION);
        }
        for (size_t k = 0; k < state.listItems.size(); ++k) {
            const ListMenuItem& item = state.listItems[k];
            const UINT flags =
                UINT{MF_STRING} | (item.current ? UINT{MF_CHECKED | MF_GRAYED} : UINT{MF_UNCHECKED | MF_ENABLED});
            ::AppendMenuW(lists, flags, static_cast<UINT_PTR>(mnuListItemFirst + static_cast<int>(k)),
                          widen(item.caption).c_str());
        }
    }
}

}  // namespace tl
