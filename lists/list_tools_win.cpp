#include "lists/list_tools_win.h"

#include <shellapi.h>

#include "base/utf8_win.h"

namespace tl {

int findListItem(HWND control, std::string_view text, int startAfter, bool exact) {
    wchar_t className[32] = {};
    ::GetClassNameW(control, className, 32);
    UINT message = 0;
    if (::lstrcmpiW(className, L"ListBox") == 0) {
        message = exact ? LB_FINDSTRINGEXACT : LB_FINDSTRING;
    } else if (::lstrcmpiW(className, L"ComboBox") == 0) {
        message = exact ? CB_FINDSTRINGEXACT : CB_FINDSTRING;
    } else {
        return 0;
    }
    return static_cast<int>(::SendMessageW(control, message, static_cast<WPARAM>(startAfter),
                                           reinterpret_cast<LPARAM>(widen(text).c_str())));
}

bool removeFileFromDisk(const std::string& path, bool recycle, bool useShell, HWND owner) {
    const std::wstring wide = widen(path);
    if (!useShell) {
        ::DeleteFileW(wide.c_str());
        return true;
    }
    std::wstring from = wide;
    from.push_back(L'\0');  // the shell takes a list of names ended by an empty one
    SHFILEOPSTRUCTW op{};
    op.hwnd = owner;
    op.wFunc = FO_DELETE;
    op.pFrom = from.c_str();
    op.fFlags = recycle ? FOF_ALLOWUNDO : 0;
    ::SHFileOperationW(&op);
    return ::GetFileAttributesW(wide.c_str()) == INVALID_FILE_ATTRIBUTES;
}

}  // namespace tl
