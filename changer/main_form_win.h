#pragma once

#include <windows.h>

namespace tl {

class frmMain;

// Loads frmMain hidden; its load handler reads the current list and starts switching.
void loadMainForm();

// frmMain's rules while the form is loaded, for the windows that call back into it (the folder tracker,
// the small windows); null otherwise.
frmMain* loadedMainForm();
// frmMain's window while it is loaded; null otherwise.
HWND mainFormWindow();

}  // namespace tl
