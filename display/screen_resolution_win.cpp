#include "display/screen_resolution_win.h"

#include <windows.h>

#include <cstring>

#include "base/unique_handle_win.h"

namespace tl {

namespace {

// The record size and the fields asked for. The buffer is larger than the record, so that a system that
// writes a later version's fields never writes past it.
constexpr WORD kRecordSize = sizeof(DEVMODEW);
constexpr DWORD kFieldsAskedFor = DM_BITSPERPEL | DM_PELSWIDTH | DM_PELSHEIGHT;
constexpr size_t kBufferSize = 512;

}  // namespace

std::optional<DisplayModeRecord> Win32DisplayPlatform::enumerateMode(uint32_t n) {
    alignas(DEVMODEW) uint8_t buffer[kBufferSize] = {};
    auto* mode = reinterpret_cast<DEVMODEW*>(buffer);
    mode->dmSize = kRecordSize;
    mode->dmFields = kFieldsAskedFor;
    if (!::EnumDisplaySettingsW(nullptr, n, mode)) {
        return std::nullopt;
    }
    DisplayModeRecord record;
    record.width = mode->dmPelsWidth;
    record.height = mode->dmPelsHeight;
    record.bitsPerPixel = mode->dmBitsPerPel;
    record.platformRecord.assign(buffer, buffer + sizeof(DEVMODEW));
    return record;
}

long Win32DisplayPlatform::changeSettings(const DisplayModeRecord& mode, uint32_t flags) {
    alignas(DEVMODEW) uint8_t buffer[kBufferSize] = {};
    std::memcpy(buffer, mode.platformRecord.data(), std::min(mode.platformRecord.size(), sizeof buffer));
    return ::ChangeDisplaySettingsW(reinterpret_cast<DEVMODEW*>(buffer), flags);
}

std::optional<int32_t> Win32DisplayPlatform::deviceCaps(WindowHandle window, int index) {
    unique_window_dc dc(static_cast<HWND>(window));
    if (!dc.get()) {
        return std::nullopt;
    }
    return ::GetDeviceCaps(dc.get(), index);
}

void Win32DisplayPlatform::broadcastDisplayChange(uintptr_t wParam, intptr_t lParam) {
    ::SendMessageW(HWND_BROADCAST, WM_DISPLAYCHANGE, wParam, lParam);
}

bool Win32DisplayPlatform::exitWindows(uint32_t flags, uint32_t reason) {
    HANDLE token = nullptr;
    if (::OpenProcessToken(::GetCurrentProcess(), TOKEN_ADJUST_PRIVILEGES | TOKEN_QUERY, &token)) {
        unique_handle owned(token);
        TOKEN_PRIVILEGES privileges{};
        privileges.PrivilegeCount = 1;
        privileges.Privileges[0].Attributes = SE_PRIVILEGE_ENABLED;
        if (::LookupPrivilegeValueW(nullptr, SE_SHUTDOWN_NAME, &privileges.Privileges[0].Luid)) {
            ::AdjustTokenPrivileges(owned.get(), FALSE, &privileges, 0, nullptr, nullptr);
        }
    }
    return ::ExitWindowsEx(flags, reason) != 0;
}

}  // namespace tl
