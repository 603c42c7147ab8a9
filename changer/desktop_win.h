#pragma once

#include <windows.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "changer/changer_platform.h"
#include "changer/monitors_win.h"

namespace tl {

// Writes one value under HKEY_CURRENT_USER\subKey, which must exist: REG_SZ with the text (in UTF-16, as
// the registry keeps text) and its NUL.
// The key is opened, written and closed here; the result is the write's.
bool setRegistryValue(const char* subKey, const char* valueName, std::string_view text);
// The same for a REG_DWORD.
bool setRegistryValue(const char* subKey, const char* valueName, uint32_t value);

// Sets the wallpaper through the shell's IActiveDesktop, switching Active Desktop on first when asked. A
// shell without it (or a failing step) is passed over.
void setActiveDesktopWallpaper(const std::string& path, int style, bool enableActiveDesktop);

// Whether the window in front is maximised.
bool isSomethingMaximised();

// The desktop of the user's session.
class Win32Desktop : public Desktop {
  public:
    void setDesktopValue(std::string_view valueName, std::string_view text) override;
    void setDeskWallpaper(const std::string& path) override;
    void setActiveDesktopWallpaper(const std::string& path, int style, bool enableActiveDesktop) override;
    bool spansWallpaper() override { return desktopSpansWallpaper(); }
    bool isSomethingMaximised() override;
};

}  // namespace tl
