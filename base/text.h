#pragma once

#include <string>
#include <string_view>

// Text helpers for the program's 8-bit strings (the system code page, treated as Windows-1252).
namespace tl {

// Lower-cases ASCII and the Windows-1252 capital letters; other bytes are kept.
std::string lowerCase(std::string_view text);
char lowerCaseChar(char c);

// Removes leading and trailing blanks (spaces only, as the program's trims always did).
std::string_view trimBlanks(std::string_view text);

bool startsWith(std::string_view text, std::string_view prefix);
bool endsWith(std::string_view text, std::string_view suffix);
// Case-insensitive substring test.
bool containsNoCase(std::string_view haystack, std::string_view needle);
bool equalsNoCase(std::string_view a, std::string_view b);

// The text up to (not including) its first NUL character; the whole text when it has none.
std::string_view cutAtNul(std::string_view text);

// Joins a directory and a name with exactly the separator the program uses ("\").
std::string joinPath(std::string_view dir, std::string_view name);

}  // namespace tl
