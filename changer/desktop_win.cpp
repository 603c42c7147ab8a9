#include "changer/desktop_win.h"

// IActiveDesktop and its records are declared only after the internet headers.
// clang-format off
#include <wininet.h>
#include <shlobj.h>
// clang-format on

#include "base/unique_handle_win.h"
#include "base/utf8_win.h"

namespace tl {

namespace {

// IID_IActiveDesktop, which the import libraries at hand do not carry.
constexpr GUID kIidActiveDesktop = {0xf490eb00, 0x1240, 0x11d1, {0x98, 0x88, 0x00, 0x60, 0x97, 0xde, 0xac, 0xf9}};

constexpr const char* kDesktopKey = "Control Panel\\desktop";
// KEY_QUERY_VALUE | KEY_SET_VALUE | KEY_CREATE_SUB_KEY | KEY_ENUMERATE_SUB_KEYS | KEY_NOTIFY | KEY_CREATE_LINK
constexpr REGSAM kDesktopKeyAccess = 0x3F;

bool writeValue(const char* subKey, const char* valueName, DWORD type, const BYTE* data, DWORD size) {
    unique_hkey key;
    if (::RegOpenKeyExW(HKEY_CURRENT_USER, widen(subKey).c_str(), 0, kDesktopKeyAccess, key.put()) != ERROR_SUCCESS) {
        return false;
    }
    return ::RegSetValueExW(key.get(), widen(valueName).c_str(), 0, type, data, size) == ERROR_SUCCESS;
}

}  // namespace

bool setRegistryValue(const char* subKey, const char* valueName, std::string_view text) {
    const std::wstring value = widen(text);  // with its NUL, which the length counts
    return writeValue(subKey, valueName, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()),
                      static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
}

bool setRegistryValue(const char* subKey, const char* valueName, uint32_t value) {
    const DWORD v = value;
    return writeValue(subKey, valueName, REG_DWORD, reinterpret_cast<const BYTE*>(&v), sizeof v);
}

void setActiveDesktopWallpaper(const std::string& path, int style, bool enableActiveDesktop) {
    scoped_com_init com;
    com_ptr<IActiveDesktop> desktop;
    if (FAILED(::CoCreateInstance(CLSID_ActiveDesktop, nullptr, CLSCTX_INPROC_SERVER, kIidActiveDesktop,
                                  desktop.put_void()))) {
        return;
    }
    COMPONENTSOPT options{};
    options.dwSize = sizeof options;
    if (SUCCEEDED(desktop->GetDesktopItemOptions(&options, 0)) && !options.fActiveDesktop && enableActiveDesktop) {
        options.fActiveDesktop = TRUE;
        desktop->SetDesktopItemOptions(&options, 0);
    }
    WALLPAPEROPT wallpaperOptions{};
    wallpaperOptions.dwSize = sizeof wallpaperOptions;
    wallpaperOptions.dwStyle = static_cast<DWORD>(style);  // WPSTYLE_CENTER, _TILE, _STRETCH
    desktop->SetWallpaperOptions(&wallpaperOptions, 0);
    const std::wstring wide = widen(path);
    desktop->SetWallpaper(wide.c_str(), 0);
    desktop->ApplyChanges(AD_APPLY_SAVE | AD_APPLY_HTMLGEN | AD_APPLY_REFRESH);
}

bool isSomethingMaximised() {
    HWND front = ::GetForegroundWindow();
    // Only the maximised state counts; the window's title is of no use here.
    return front != nullptr && ::IsZoomed(front) != FALSE;
}

void Win32Desktop::setDesktopValue(std::string_view valueName, std::string_view text) {
    setRegistryValue(kDesktopKey, std::string(valueName).c_str(), text);
}

void Win32Desktop::setDeskWallpaper(const std::string& path) {
    // Only the user's profile is updated; no change is broadcast to other programs.
    std::wstring wide = widen(path);
    ::SystemParametersInfoW(SPI_SETDESKWALLPAPER, 0, wide.data(), SPIF_UPDATEINIFILE);
}

void Win32Desktop::setActiveDesktopWallpaper(const std::string& path, int style, bool enableActiveDesktop) {
    tl::setActiveDesktopWallpaper(path, style, enableActiveDesktop);
}

bool Win32Desktop::isSomethingMaximised() {
    return tl::isSomethingMaximised();
}

}  // namespace tl
