#pragma once

#include <string>
#include <string_view>

// The program holds every name as UTF-8; Windows takes and gives UTF-16. These two are the crossing,
// used wherever text goes to or comes from a W function.
namespace tl {

std::wstring widen(std::string_view utf8);
std::string narrow(std::wstring_view utf16);

}  // namespace tl
