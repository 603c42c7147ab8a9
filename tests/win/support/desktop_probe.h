#pragma once

#include <windows.h>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace tl::wintest {

// What a user sees and what the shell holds: the tray icon's callbacks and menu, the desktop's registry
// values, the screen, and BMP files.

// Posts frmMain's tray callback as the tray does: message 512 with the mouse message in lParam.
void postTrayMouse(HWND form, UINT mouseMessage);

// Opens the tray menu with the right button and chooses the item with that caption with the keyboard
// (arrow keys, then Enter), the way a user would. The pop-up's items can't be read from another process,
// so visibleCaptions lists the menu's items in order, "-" for a separator (a caption the program changes
// at run time, as "Delay (5)", may be given as designed). False when the menu did not open or close, or
// the caption is not in the list.
bool chooseTrayMenuItem(HWND form, const std::vector<std::string>& visibleCaptions, const std::string& caption);

// The tray menu's items in order, as the user sees them.
const std::vector<std::string>& trayMenuCaptions();

// Whether the tray holds frmMain's icon (uID 1): asked with a modification that changes nothing.
bool trayHasIcon(HWND form);
void removeTrayIconOf(HWND form);

// A REG_SZ value under HKEY_CURRENT_USER\Control Panel\Desktop; nullopt when missing.
std::optional<std::string> desktopValue(const char* name);

// Width and height from a BMP file's header; nullopt when it is not a BMP.
struct BitmapSize {
    int width = 0;
    int height = 0;
    int bitsPerPixel = 0;
};
std::optional<BitmapSize> bitmapFileSize(const std::string& path);

// The whole screen as 24-bit pixels.
class ScreenShot {
  public:
    ScreenShot();
    int width() const { return width_; }
    int height() const { return height_; }
    // 0xRRGGBB at (x, y) from the top left.
    unsigned pixel(int x, int y) const;
    // Writes it as a BMP file, for a person to look at.
    bool save(const std::string& path) const;

  private:
    int width_ = 0;
    int height_ = 0;
    std::vector<unsigned char> bits_;  // bottom-up rows of BGR, 4-byte aligned
};

// Whether two colours differ by at most tolerance in each channel.
bool closeColour(unsigned a, unsigned b, int tolerance = 24);

}  // namespace tl::wintest
