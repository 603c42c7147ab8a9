#pragma once

namespace tl {

// Shows frmManager (not modal); it loads the current list.
void showManager();

}  // namespace tl
