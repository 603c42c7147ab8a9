#include "base/file_dialog_win.h"

#include <commdlg.h>

#include <vector>

namespace tl {
namespace {

std::optional<std::string> runDialog(HWND owner, const FileDialogRequest& request, bool save) {
    // "Name|pattern" pairs become the NUL-separated, double-NUL-ended list the dialog takes.
    std::string filter = request.filter;
    for (char& c : filter) {
        if (c == '|') {
            c = '\0';
        }
    }
    filter.append(2, '\0');
    std::string extension = request.defaultExtension;
    if (!extension.empty() && extension.front() == '.') {
        extension.erase(0, 1);
    }
    std::vector<char> file(32768, '\0');
    request.defaultName.copy(file.data(), file.size() - 1);

    OPENFILENAMEA ofn{};
    ofn.lStructSize = sizeof ofn;
    ofn.hwndOwner = owner;
    ofn.lpstrFilter = filter.c_str();
    ofn.nFilterIndex = 1;
    ofn.lpstrFile = file.data();
    ofn.nMaxFile = static_cast<DWORD>(file.size());
    ofn.lpstrInitialDir = request.initialDirectory.empty() ? nullptr : request.initialDirectory.c_str();
    ofn.lpstrTitle = request.title.c_str();
    ofn.lpstrDefExt = extension.empty() ? nullptr : extension.c_str();
    ofn.Flags = OFN_EXPLORER | OFN_HIDEREADONLY | OFN_PATHMUSTEXIST | OFN_NOCHANGEDIR |
                (save ? OFN_OVERWRITEPROMPT : OFN_FILEMUSTEXIST);
    const BOOL chosen = save ? ::GetSaveFileNameA(&ofn) : ::GetOpenFileNameA(&ofn);
    if (!chosen) {
        return std::nullopt;
    }
    return std::string(file.data());
}

}  // namespace

std::optional<std::string> showOpenDialog(HWND owner, const FileDialogRequest& request) {
    return runDialog(owner, request, false);
}

std::optional<std::string> showSaveDialog(HWND owner, const FileDialogRequest& request) {
    return runDialog(owner, request, true);
}

}  // namespace tl
