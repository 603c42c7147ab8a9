#pragma once

#include <string>
#include <string_view>

// The program holds every name as UTF-8; Windows takes and gives UTF-16. These two are the crossing,
// used wherever text goes to or comes from a W function (the rules are base/utf8.h's).
namespace tl {

std::wstring widen(std::string_view utf8);
// An unpaired surrogate (a name NTFS allows and UTF-8 can't hold) comes out as U+FFFD; *unrepresentable,
// when given, tells whether that happened, so that such a name is never taken for the file it shows.
std::string narrow(std::wstring_view utf16, bool* unrepresentable = nullptr);

}  // namespace tl
