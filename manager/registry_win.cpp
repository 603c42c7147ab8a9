#include "manager/registry_win.h"

#include <windows.h>

#include "base/unique_handle_win.h"
#include "base/utf8_win.h"

namespace tl {

void Win32ClassesRegistry::setDefaultValue(const std::string& subKey, const std::string& value) {
    unique_hkey key;
    if (::RegCreateKeyW(HKEY_CLASSES_ROOT, widen(subKey).c_str(), key.put()) != ERROR_SUCCESS) {
        return;
    }
    // The open command names the program's own path, which may be in any script.
    const std::wstring wide = widen(value);
    ::RegSetValueW(key.get(), nullptr, REG_SZ, wide.c_str(), static_cast<DWORD>(wide.size() * sizeof(wchar_t)));
}

void Win32ClassesRegistry::deleteKey(const std::string& subKey) {
    ::RegDeleteKeyW(HKEY_CLASSES_ROOT, widen(subKey).c_str());
}

}  // namespace tl
