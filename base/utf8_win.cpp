#include "base/utf8_win.h"

#include "base/utf8.h"

namespace tl {

// wchar_t is Windows' UTF-16 code unit; the copies to and from char16_t cost little beside the calls the
// text goes to.
static_assert(sizeof(wchar_t) == sizeof(char16_t));

std::wstring widen(std::string_view utf8) {
    const std::u16string wide = utf8ToUtf16(utf8);
    return std::wstring(wide.begin(), wide.end());
}

std::string narrow(std::wstring_view utf16, bool* unrepresentable) {
    const std::u16string wide(utf16.begin(), utf16.end());
    return utf16ToUtf8(wide, unrepresentable);
}

}  // namespace tl
