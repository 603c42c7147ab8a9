#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tl {

// The tray icon's tip holds at most 63 UTF-16 units and its NUL in the first version of the record.
inline constexpr size_t kTrayTipLength = 63;

// "Tessaline - " and the path of the wallpaper on show (the list entry's own path), cut to what the
// tray accepts.
std::string trayTip(std::string_view currentPath);

// What a tray callback means. The tray sends its mouse message where a mouse move carries its X
// coordinate, so the "coordinate" is the message number.
enum class TrayEvent { None = 0, DoubleClick = 1, RightButtonDown = 2, LeftButtonDown = 3 };
TrayEvent trayMessage(long x);

}  // namespace tl
