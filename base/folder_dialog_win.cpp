#include "base/folder_dialog_win.h"

#include <utility>
#include <vector>

#include "base/ui_win.h"
#include "base/unique_handle_win.h"
#include "base/unrepresentable_names.h"
#include "base/utf8_win.h"

namespace tl {

namespace {

int CALLBACK folderBrowseCallback(HWND dialog, UINT message, LPARAM, LPARAM data) {
    if (message == BFFM_INITIALIZED) {
        const auto* texts = reinterpret_cast<const std::pair<std::wstring, std::wstring>*>(data);
        ::SetWindowTextW(dialog, texts->first.c_str());
        ::SendMessageW(dialog, BFFM_SETSELECTIONW, TRUE, reinterpret_cast<LPARAM>(texts->second.c_str()));
    }
    return 0;
}

}  // namespace

std::string pathOfItem(PCIDLIST_ABSOLUTE item, bool* unrepresentable) {
    if (unrepresentable) {
        *unrepresentable = false;
    }
    std::vector<wchar_t> buffer(32768, L'\0');
    if (!item || !::SHGetPathFromIDListEx(item, buffer.data(), static_cast<DWORD>(buffer.size()), GPFIDL_DEFAULT)) {
        return {};
    }
    return narrow(buffer.data(), unrepresentable);
}

std::optional<std::string> browseForFolder(HWND owner,
                                           const std::string& title,
                                           const std::string& prompt,
                                           const std::string& start) {
    scoped_com_init com;
    const std::pair<std::wstring, std::wstring> texts{widen(title), widen(start)};
    const std::wstring instruction = widen(prompt);
    // The display name is only the folder's own name, which a MAX_PATH buffer holds.
    wchar_t displayName[MAX_PATH] = {};
    BROWSEINFOW info{};
    info.hwndOwner = owner;
    info.pszDisplayName = displayName;
    info.lpszTitle = instruction.c_str();
    info.ulFlags = BIF_RETURNONLYFSDIRS | BIF_NEWDIALOGSTYLE;
    info.lpfn = &folderBrowseCallback;
    info.lParam = reinterpret_cast<LPARAM>(&texts);
    unique_cotaskmem chosen(::SHBrowseForFolderW(&info));
    if (!chosen) {
        return std::nullopt;
    }
    bool lost = false;
    std::string path = pathOfItem(static_cast<PCIDLIST_ABSOLUTE>(chosen.get()), &lost);
    if (lost) {
        Win32Ui(owner).messageBox(unrepresentableNamesMessage({path}), "Tessaline", MB_OK | MB_ICONEXCLAMATION);
        return std::nullopt;
    }
    if (path.empty()) {
        return std::nullopt;  // a virtual folder has no path
    }
    return path;
}

}  // namespace tl
