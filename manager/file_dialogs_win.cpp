#include "manager/file_dialogs_win.h"

#include <commdlg.h>

#include <vector>

namespace tl {

std::string dialogFilter(const std::string& filter) {
    std::string out = filter;
    for (char& c : out) {
        if (c == '|') {
            c = '\0';
        }
    }
    out.push_back('\0');
    out.push_back('\0');
    return out;
}

namespace {

std::optional<std::string> runDialog(HWND owner, const FileDialogRequest& request, bool save) {
    const std::string filter = dialogFilter(request.filter);
    std::vector<char> file(32768, '\0');
    request.defaultName.copy(file.data(), file.size() - 1);
    OPENFILENAMEA ofn{};
    ofn.lStructSize = sizeof ofn;
    ofn.hwndOwner = owner;
    ofn.lpstrFilter = filter.c_str();
    ofn.nFilterIndex = 1;
    ofn.lpstrFile = file.data();
    ofn.nMaxFile = static_cast<DWORD>(file.size());
    ofn.lpstrTitle = request.title.c_str();
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
