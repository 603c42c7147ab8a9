#pragma once

namespace tl {

// Loads frmMain hidden; its load handler reads the current list and starts switching.
void loadMainForm();

}  // namespace tl
