#pragma once

#include <windows.h>

#include <string>
#include <vector>

// Driving another process's windows the way a user's actions do: choices in lists, files dropped from the
// shell, a name typed into a file dialog; and reading what the windows show. (Clicks on buttons and the
// search of a child by its class and text are in support/window_driver.h.)
namespace tl::wintest {

// A descendant window with the given control id.
HWND findControl(HWND parent, int id);

// The lines of a list box (also of another process's).
std::vector<std::string> listLines(HWND listBox);

// A click on a line of a list box, as the list box reports it to its parent (LBN_SELCHANGE); in a list
// box of several selections the line is added to the selection.
void clickListLine(HWND listBox, int line);
// A double click on a line (LBN_DBLCLK after the selection).
void doubleClickListLine(HWND listBox, int line);
// Tells the control's parent that the control changed (WM_COMMAND with the notification code).
void notifyParent(HWND control, int code);

// Drops files and folders on a window as the shell's drop handler does: a DROPFILES block, with wide
// names, in the receiving process's memory, handed over in WM_DROPFILES.
void dropFiles(DWORD processId, HWND target, const std::vector<std::string>& paths);

// Types a name into a common file dialog's file name box and presses its OK button.
bool chooseInFileDialog(HWND dialog, const std::string& path);

}  // namespace tl::wintest
