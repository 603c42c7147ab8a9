#include "lists/list_tools_win.h"

#include <shellapi.h>

namespace tl {

int findListItem(HWND control, std::string_view text, int startAfter, bool exact) {
    char className[32] = {};
    ::GetClassNameA(control, className, sizeof className);
    UINT message = 0;
    if (::lstrcmpiA(className, "ListBox") == 0) {
        message = exact ? LB_FINDSTRINGEXACT : LB_FINDSTRING;
    } else if (::lstrcmpiA(className, "ComboBox") == 0) {
        message = exact ? CB_FINDSTRINGEXACT : CB_FINDSTRING;
    } else {
        return 0;
    }
    const std::string z(text);
    return static_cast<int>(
        ::SendMessageA(control, message, static_cast<WPARAM>(startAfter), reinterpret_cast<LPARAM>(z.c_str())));
}

bool removeFileFromDisk(const std::string& path, bool recycle, bool useShell, HWND owner) {
    if (!useShell) {
        ::DeleteFileA(path.c_str());
        return true;
    }
    std::string from = path;
    from.push_back('\0');  // the shell takes a list of names ended by an empty one
    SHFILEOPSTRUCTA op{};
    op.hwnd = owner;
    op.wFunc = FO_DELETE;
    op.pFrom = from.c_str();
    op.fFlags = recycle ? FOF_ALLOWUNDO : 0;
    ::SHFileOperationA(&op);
    return ::GetFileAttributesA(path.c_str()) == INVALID_FILE_ATTRIBUTES;
}

}  // namespace tl
