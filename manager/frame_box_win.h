#pragma once

#include <windows.h>

namespace tl {

// A captioned frame, drawn as a group box is, that holds controls as its children, so that showing or
// hiding the frame takes its controls along (a group box is only drawn around its siblings).
// Notifications of the controls go on to the frame's parent, which handles them as if the controls were
// its own.
HWND createFrameBox(HWND parent, const char* caption, int id);

}  // namespace tl
