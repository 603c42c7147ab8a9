#pragma once

#include <shlobj.h>
#include <windows.h>

#include <optional>
#include <string>

namespace tl {

// The file-system path of a shell item, whole however long (SHGetPathFromIDListEx, not the MAX_PATH
// buffer of SHGetPathFromIDList); empty when the item has none (a virtual folder). *unrepresentable tells
// whether it holds what UTF-8 can't, which the path then only shows.
std::string pathOfItem(PCIDLIST_ABSOLUTE item, bool* unrepresentable = nullptr);

// The shell's folder browse dialog with a title and a prompt, starting at start; nullopt when cancelled,
// when the folder has no path, or when its path can't be held in UTF-8 (which the user is told about).
std::optional<std::string> browseForFolder(HWND owner,
                                           const std::string& title,
                                           const std::string& prompt,
                                           const std::string& start);

}  // namespace tl
