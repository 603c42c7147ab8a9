#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "base/file_dialog.h"

namespace tl {

// The common Open and Save dialogs (GetOpenFileNameW, GetSaveFileNameW): the chosen full path, or
// nullopt when the user cancels (or chose a name UTF-8 can't hold, which the user is told about).
std::optional<std::string> showOpenDialog(HWND owner, const FileDialogRequest& request);
std::optional<std::string> showSaveDialog(HWND owner, const FileDialogRequest& request);

}  // namespace tl
