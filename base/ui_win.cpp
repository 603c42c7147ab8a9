#include "base/ui_win.h"

#include <string>

#include "base/utf8_win.h"

namespace tl {

int Win32Ui::messageBox(std::string_view text, std::string_view title, unsigned style) {
    return ::MessageBoxW(owner_, widen(text).c_str(), widen(title).c_str(), style);
}

void Win32Ui::beep() {
    ::MessageBeep(MB_OK);
}

}  // namespace tl
