#pragma once

#include <string>
#include <string_view>

// Text helpers for the program's strings, which hold UTF-8.
namespace tl {

// Lower-cases the capital letters of ASCII, Latin-1, Latin Extended-A, Greek, Cyrillic, Armenian and
// full-width Latin; everything else (other letters, bytes that are not valid UTF-8) is kept. Each of
// these letters and its small one take the same number of bytes, so the result is exactly as long as the
// text and a position in one is the same position in the other.
std::string lowerCase(std::string_view text);
// The small letter of a code point under the same rule (the code point itself when it has none here).
char32_t lowerCaseLetter(char32_t c);

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
