#include "base/text_file_win.h"

#include <windows.h>

#include <climits>

#include "base/utf8_win.h"

namespace tl {

std::string Win32AnsiCodePage::toUtf8(std::string_view ansi) const {
    if (ansi.empty() || ansi.size() > INT_MAX) {
        return {};
    }
    const int size = static_cast<int>(ansi.size());
    const int n = ::MultiByteToWideChar(CP_ACP, 0, ansi.data(), size, nullptr, 0);
    std::wstring wide(static_cast<size_t>(n > 0 ? n : 0), L'\0');
    ::MultiByteToWideChar(CP_ACP, 0, ansi.data(), size, wide.data(), n);
    return narrow(wide);
}

}  // namespace tl
