#pragma once

#include <windows.h>

#include <string>

namespace tl {

struct Settings;

// frmPreview: the large preview of a wallpaper, a window of its own in the taskbar. One window, created on
// first use; each call shows the picture at path in the mode settings.PreviewMode, at (PreviewLeft, PreviewTop). A
// click on the picture steps the mode on; closing the window stores its position and sets PreviewMode back to 0.
void showPreview(const std::string& path, Settings& settings);

// The preview window while it is open, else null.
HWND previewWindow();

}  // namespace tl
