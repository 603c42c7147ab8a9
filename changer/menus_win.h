#pragma once

#include <windows.h>

#include <map>
#include <span>

#include "base/unique_handle_win.h"
#include "changer/commands.h"

namespace tl {

class MenuState;

// frmMain's three pop-up menus, built from their tables. A submenu is reached by its item's id.
class MainMenus {
  public:
    MainMenus();

    HMENU file() const { return file_.get(); }
    HMENU options() const { return options_.get(); }
    HMENU tray() const { return tray_.get(); }
    // The submenu under the item with that id (mnuPickDifferentList, mnuChangeRes ...), or null.
    HMENU submenu(int id) const;

    // Puts the state's check marks and captions on the items, and the list files into "Pick different list".
    void apply(const MenuState& state);

  private:
    unique_hmenu build(std::span<const MenuItemDef> items);

    // Filled while the pop-ups are built, so declared before them.
    std::map<int, HMENU> submenus_;  // owned by the pop-up they belong to
    unique_hmenu file_;
    unique_hmenu options_;
    unique_hmenu tray_;
};

}  // namespace tl
