#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// Number and truth-value conversions with the program's rules: integers round halves to the even
// neighbour, text numbers use the user's decimal separator, and a value that does not fit fails.
namespace tl {

double roundHalfEven(double value);

// Rounds (halves to even) into the integer type; nullopt when the result does not fit.
std::optional<int16_t> toInt16(double value);
std::optional<int32_t> toInt32(double value);
// As above, but a value that does not fit gives `fallback`.
int16_t toInt16Or(double value, int16_t fallback);

// A whole text read as a number: blanks around it, a sign, digits with at most one decimal separator,
// an exponent ("E" or "D"), or "&H" / "&O" for hexadecimal and octal. Anything else gives nullopt.
std::optional<double> parseNumber(std::string_view text, char decimalSeparator);

// The leading number of a text, as a forgiving reader of typed or stored fields wants it: blanks, TABs
// and line feeds anywhere are skipped, "&H"/"&O" read hexadecimal/octal, otherwise the longest leading
// decimal number (sign, digits, one point, exponent) is taken; text without one gives 0. The decimal
// point is always ".".
double leadingNumber(std::string_view text);

// "True"/"False" in any letter case, or a number (0 false, anything else true).
std::optional<bool> parseBool(std::string_view text, char decimalSeparator);

// The shortest text (up to 15 significant digits) that reads back as the value, with the separator.
std::string formatDouble(double value, char decimalSeparator);
const char* formatBool(bool value);

// A number with a leading blank when it is not negative (" 12", "-3"), as counts are shown.
std::string formatSigned(long long value);

}  // namespace tl
