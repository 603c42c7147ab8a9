#pragma once

#include <windows.h>

#include <vector>

#include "base/unique_handle_win.h"
#include "manager/manager_menu.h"
#include "manager/manager_view.h"

namespace tl {

// A menu bar built from lines (depth 0 are the bar's menus) and a pop-up menu from lines at one level.
unique_hmenu buildMenuBar(const std::vector<MenuLine>& lines);
unique_hmenu buildPopupMenu(const std::vector<MenuLine>& lines);

// The Options menu's check marks.
void applyOptionChecks(HMENU menu, const OptionChecks& checks);

}  // namespace tl
