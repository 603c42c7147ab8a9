#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tl {

class Ui;

// A display mode as the platform enumerates it: the fields the program reads, and the platform's own
// record (DEVMODEW bytes on Windows) handed back unchanged when the mode is applied.
struct DisplayModeRecord {
    uint32_t width = 0;
    uint32_t height = 0;
    uint32_t bitsPerPixel = 0;
    std::vector<uint8_t> platformRecord;
};

// A mode as clsScrRes hands it out: width, height and bits per pixel as 16-bit numbers.
struct DisplayMode {
    int16_t width = 0;
    int16_t height = 0;
    int16_t bitsPerPixel = 0;
    bool operator==(const DisplayMode&) const = default;
};

// A window whose device context tells the current mode (an HWND on Windows; null for the screen).
using WindowHandle = void*;

// What the display-mode class needs from the platform.
class DisplayPlatform {
  public:
    // The answers of a mode change, with the platform's numbers.
    static constexpr long kChangeSuccessful = 0;  // DISP_CHANGE_SUCCESSFUL
    static constexpr long kChangeRestart = 1;     // DISP_CHANGE_RESTART
    // Flags of a mode change.
    static constexpr uint32_t kUpdateRegistry = 1;  // CDS_UPDATEREGISTRY
    static constexpr uint32_t kFullScreen = 4;      // CDS_FULLSCREEN
    // Device capability indices.
    static constexpr int kHorzRes = 8;
    static constexpr int kVertRes = 10;
    static constexpr int kBitsPixel = 12;

    virtual ~DisplayPlatform() = default;
    // Mode number n of the primary display (EnumDisplaySettingsA); nullopt past the last.
    virtual std::optional<DisplayModeRecord> enumerateMode(uint32_t n) = 0;
    // ChangeDisplaySettingsA with the mode's record and the flags; its answer.
    virtual long changeSettings(const DisplayModeRecord& mode, uint32_t flags) = 0;
    // GetDeviceCaps on the window's device context; nullopt when it can't be asked.
    virtual std::optional<int32_t> deviceCaps(WindowHandle window, int index) = 0;
    // Tells every top-level window that the display changed (WM_DISPLAYCHANGE, with the given wParam).
    virtual void broadcastDisplayChange(uintptr_t wParam, intptr_t lParam) = 0;
    // ExitWindowsEx.
    virtual bool exitWindows(uint32_t flags, uint32_t reason) = 0;
};

// "16 Color", "256 Color", "High Color", "True Color" for 4, 8, 16, 24 and 32 bits; empty otherwise.
std::string colorDepthName(int32_t bitsPerPixel);

// The display modes of the primary display, the current screen size and depth, and switching to a mode.
// The mode table is enumerated when the object is made, in the system's order, repeats kept.
class clsScrRes {
  public:
    clsScrRes(DisplayPlatform& platform, Ui& ui);

    int16_t MaxColorResolution() const;
    std::string MaxColorResolutionString() const;
    int16_t MaxHRes() const;
    int16_t MaxVRes() const;
    int16_t AvailableDisplayModes() const;
    // The mode at index (all zero outside the table).
    DisplayMode GetDisplayMode(int index) const;
    // Switches to the mode at index: for good when the system can do it at once; asks to restart when
    // the system needs it; says so when the system refuses the mode. An index outside the table does nothing.
    void SetDisplay(int index);

    // The current mode, read from the window's device context; 0 when it can't be read.
    int32_t CurrentHRes(WindowHandle window) const;
    int32_t CurrentVRes(WindowHandle window) const;
    int32_t CurrentColorResolution(WindowHandle window) const;
    std::string CurrentColorResolutionString(WindowHandle window) const;

    // Every mode of the table, in order.
    std::vector<DisplayMode> displayModes() const;

  private:
    DisplayPlatform& platform_;
    Ui& ui_;
    std::vector<DisplayModeRecord> modes_;
};

}  // namespace tl
