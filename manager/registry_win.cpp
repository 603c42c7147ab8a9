#include "manager/registry_win.h"

#include <windows.h>

#include "base/unique_handle_win.h"

namespace tl {

void Win32ClassesRegistry::setDefaultValue(const std::string& subKey, const std::string& value) {
    unique_hkey key;
    if (::RegCreateKeyA(HKEY_CLASSES_ROOT, subKey.c_str(), key.put()) != ERROR_SUCCESS) {
        return;
    }
    ::RegSetValueA(key.get(), nullptr, REG_SZ, value.c_str(), static_cast<DWORD>(value.size()));
}

void Win32ClassesRegistry::deleteKey(const std::string& subKey) {
    ::RegDeleteKeyA(HKEY_CLASSES_ROOT, subKey.c_str());
}

}  // namespace tl
