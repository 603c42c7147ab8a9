#pragma once

#include "display/screen_resolution.h"

namespace tl {

// The primary display through EnumDisplaySettingsA, ChangeDisplaySettingsA and GetDeviceCaps.
class Win32DisplayPlatform : public DisplayPlatform {
  public:
    std::optional<DisplayModeRecord> enumerateMode(uint32_t n) override;
    long changeSettings(const DisplayModeRecord& mode, uint32_t flags) override;
    std::optional<int32_t> deviceCaps(WindowHandle window, int index) override;
    void broadcastDisplayChange(uintptr_t wParam, intptr_t lParam) override;
    // Asks for the shutdown privilege first: without it Windows refuses a restart.
    bool exitWindows(uint32_t flags, uint32_t reason) override;
};

}  // namespace tl
