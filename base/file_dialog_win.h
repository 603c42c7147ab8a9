#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "base/file_dialog.h"

namespace tl {

// The common Open and Save dialogs (GetOpenFileNameA, GetSaveFileNameA): the chosen full path, or
// nullopt when the user cancels.
std::optional<std::string> showOpenDialog(HWND owner, const FileDialogRequest& request);
std::optional<std::string> showSaveDialog(HWND owner, const FileDialogRequest& request);

}  // namespace tl
