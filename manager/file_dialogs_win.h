#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "manager/manager_view.h"

namespace tl {

// The common Open and Save dialogs (GetOpenFileNameA, GetSaveFileNameA) for a request whose filter is
// written "Name|pattern"; the chosen full path, or nullopt when the user cancels.
std::optional<std::string> showOpenDialog(HWND owner, const FileDialogRequest& request);
std::optional<std::string> showSaveDialog(HWND owner, const FileDialogRequest& request);

// "Name|pattern|Name2|pattern2" as the dialogs take it: NUL-separated, ended by two NULs.
std::string dialogFilter(const std::string& filter);

}  // namespace tl
