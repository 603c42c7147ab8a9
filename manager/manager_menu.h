#pragma once

#include <vector>

namespace tl {

// One line of a menu as the window builds it: the design's name, its caption ("-" for a separator) and
// its command id (0 for separators and for items that open a submenu). The items of a submenu follow
// it, one level deeper.
struct MenuLine {
    int depth;
    const char* name;
    const char* caption;
    int id;
};

// The menu bar of frmManager: "&List" and "&Options" with everything under them, in order.
const std::vector<MenuLine>& managerMenuBar();
// The pop-up menu of the list ("context"; never shown in the bar).
const std::vector<MenuLine>& managerContextMenu();

}  // namespace tl
