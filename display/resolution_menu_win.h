#pragma once

#include <windows.h>

#include <vector>

#include "display/resolution_menu.h"

namespace tl {

class DisplayPlatform;
class Ui;

// The resolution submenu mnuRes of the tray menu's "Change Resolution". Its items are made once, when the
// main window loads (build); each time the tray menu is rebuilt, fill() puts them into the submenu with
// the current mode checked and disabled. Item k has the command id IDM_RESOLUTION_FIRST + k.
class ResolutionMenu {
  public:
    ResolutionMenu(DisplayPlatform& platform, Ui& ui) : platform_(platform), ui_(ui) {}

    // Enumerates the modes (a fresh clsScrRes) and makes the items.
    void build();
    const std::vector<ResolutionMenuItem>& items() const { return items_; }

    // Empties submenu and fills it with the items, marking the mode that window's screen is in.
    void fill(HMENU submenu, HWND window);

    // A command from the menu: for a mode's item a fresh clsScrRes switches to that mode; a separator does
    // nothing. False when the id is not one of this menu's.
    bool onCommand(UINT id);

  private:
    DisplayPlatform& platform_;
    Ui& ui_;
    std::vector<ResolutionMenuItem> items_;
};

}  // namespace tl
