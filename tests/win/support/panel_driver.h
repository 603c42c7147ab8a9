#pragma once

#include <windows.h>

#include <initializer_list>
#include <string>
#include <vector>

#include "support/remote_window.h"

namespace tl::wintest {

class RunningProgram;

// Drives the running program's panel with the mouse and the keyboard, and reads its controls from this
// process.

// A click at a point of the screen (with the modifier keys held); returns once the window under the point
// has taken it in, so that the next input does not reach a thread still busy with this one (Wine loses
// such clicks).
bool clickAt(POINT at, std::initializer_list<WORD> keys = {});
bool rightClickAt(POINT at);
POINT centreOf(HWND window);
// The middle of a line of a list box, on the screen.
POINT lineCentre(HWND list, int line);

// The chosen item of another process's combo box (its list box lines: listLines in remote_window.h).
std::string chosenItem(HWND comboBox);

// Restores the panel from the tray ("Show panel...") and waits until it is in front.
bool showPanel(HWND form);
// Chooses the item at that position (separators not counted, from 0) of the pop-up menu now open, with
// the keyboard. False when no menu is open or it does not close.
bool chooseOpenMenuItem(int position);

}  // namespace tl::wintest
