#include "base/ui_win.h"

#include <string>

namespace tl {

int Win32Ui::messageBox(std::string_view text, std::string_view title, unsigned style) {
    const std::string t(text);
    const std::string c(title);
    return ::MessageBoxA(owner_, t.c_str(), c.c_str(), style);
}

void Win32Ui::beep() {
    ::MessageBeep(MB_OK);
}

}  // namespace tl
