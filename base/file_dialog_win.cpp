#include "base/file_dialog_win.h"

#include <commdlg.h>

#include <vector>

#include "base/ui_win.h"
#include "base/unrepresentable_names.h"
#include "base/utf8_win.h"

namespace tl {
namespace {

std::optional<std::string> runDialog(HWND owner, const FileDialogRequest& request, bool save) {
    // "Name|pattern" pairs become the NUL-separated, double-NUL-ended list the dialog takes.
    std::wstring filter = widen(request.filter);
    for (wchar_t& c : filter) {
        if (c == L'|') {
            c = L'\0';
        }
    }
    filter.append(2, L'\0');
    std::string extension = request.defaultExtension;
    if (!extension.empty() && extension.front() == '.') {
        extension.erase(0, 1);
    }
    const std::wstring wideExtension = widen(extension);
    const std::wstring initialDirectory = widen(request.initialDirectory);
    const std::wstring title = widen(request.title);
    // Room for the longest path Windows has, so that a chosen name is never cut.
    std::vector<wchar_t> file(32768, L'\0');
    const std::wstring defaultName = widen(request.defaultName);
    defaultName.copy(file.data(), file.size() - 1);

    OPENFILENAMEW ofn{};
    ofn.lStructSize = sizeof ofn;
    ofn.hwndOwner = owner;
    ofn.lpstrFilter = filter.c_str();
    ofn.nFilterIndex = 1;
    ofn.lpstrFile = file.data();
    ofn.nMaxFile = static_cast<DWORD>(file.size());
    ofn.lpstrInitialDir = initialDirectory.empty() ? nullptr : initialDirectory.c_str();
    ofn.lpstrTitle = title.c_str();
    ofn.lpstrDefExt = wideExtension.empty() ? nullptr : wideExtension.c_str();
    ofn.Flags = OFN_EXPLORER | OFN_HIDEREADONLY | OFN_PATHMUSTEXIST | OFN_NOCHANGEDIR |
                (save ? OFN_OVERWRITEPROMPT : OFN_FILEMUSTEXIST);
    const BOOL chosen = save ? ::GetSaveFileNameW(&ofn) : ::GetOpenFileNameW(&ofn);
    if (!chosen) {
        return std::nullopt;
    }
    bool lost = false;
    std::string path = narrow(file.data(), &lost);
    if (lost) {
        // A name UTF-8 can't hold would be saved to or opened as another: the user is told, and it is
        // taken as no choice.
        Win32Ui(owner).messageBox(unrepresentableNamesMessage({path}), "Tessaline", MB_OK | MB_ICONEXCLAMATION);
        return std::nullopt;
    }
    return path;
}

}  // namespace

std::optional<std::string> showOpenDialog(HWND owner, const FileDialogRequest& request) {
    return runDialog(owner, request, false);
}

std::optional<std::string> showSaveDialog(HWND owner, const FileDialogRequest& request) {
    return runDialog(owner, request, true);
}

}  // namespace tl
