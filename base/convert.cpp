#include "base/convert.h"

#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>

#include "base/text.h"

namespace tl {

double roundHalfEven(double value) {
    return std::nearbyint(value);  // the default rounding mode is to nearest, ties to even
}

namespace {

template <typename Int>
std::optional<Int> roundInto(double value) {
    if (!std::isfinite(value)) {
        return std::nullopt;
    }
    const double r = roundHalfEven(value);
    if (r < static_cast<double>(std::numeric_limits<Int>::min()) ||
        r > static_cast<double>(std::numeric_limits<Int>::max())) {
        return std::nullopt;
    }
    return static_cast<Int>(r);
}

bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

// Reads "&H..." or "&O..." at the start of text; the value follows the 16/32-bit reading of such
// literals (&HFFFF is -1, &H10000 is 65536).
std::optional<double> radixNumber(std::string_view text, size_t* used) {
    if (text.size() < 2 || text[0] != '&') {
        return std::nullopt;
    }
    const char kind = static_cast<char>(std::toupper(static_cast<unsigned char>(text[1])));
    int base = 0;
    if (kind == 'H') {
        base = 16;
    } else if (kind == 'O') {
        base = 8;
    } else {
        return std::nullopt;
    }
    uint64_t v = 0;
    size_t i = 2;
    for (; i < text.size(); ++i) {
        const int c = std::toupper(static_cast<unsigned char>(text[i]));
        int digit = -1;
        if (c >= '0' && c <= '9') {
            digit = c - '0';
        } else if (base == 16 && c >= 'A' && c <= 'F') {
            digit = c - 'A' + 10;
        }
        if (digit < 0 || digit >= base) {
            break;
        }
        v = v * static_cast<uint64_t>(base) + static_cast<uint64_t>(digit);
        if (v > 0xFFFFFFFFull) {
            return std::nullopt;
        }
    }
    *used = i;
    if (v <= 0xFFFF) {
        return static_cast<double>(static_cast<int16_t>(static_cast<uint16_t>(v)));
    }
    return static_cast<double>(static_cast<int32_t>(static_cast<uint32_t>(v)));
}

// Longest decimal number at the start of text: sign, digits, one separator, exponent.
size_t scanDecimal(std::string_view text, char separator) {
    size_t i = 0;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) {
        ++i;
    }
    size_t digits = 0;
    while (i < text.size() && std::isdigit(static_cast<unsigned char>(text[i]))) {
        ++i;
        ++digits;
    }
    if (i < text.size() && text[i] == separator) {
        ++i;
        while (i < text.size() && std::isdigit(static_cast<unsigned char>(text[i]))) {
            ++i;
            ++digits;
        }
    }
    if (digits == 0) {
        return 0;
    }
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E' || text[i] == 'd' || text[i] == 'D')) {
        size_t j = i + 1;
        if (j < text.size() && (text[j] == '+' || text[j] == '-')) {
            ++j;
        }
        const size_t expStart = j;
        while (j < text.size() && std::isdigit(static_cast<unsigned char>(text[j]))) {
            ++j;
        }
        if (j > expStart) {
            i = j;
        }
    }
    return i;
}

double decimalValue(std::string_view number, char separator) {
    std::string c(number);
    for (char& ch : c) {
        if (ch == separator) {
            ch = '.';
        } else if (ch == 'd' || ch == 'D') {
            ch = 'e';
        }
    }
    return std::strtod(c.c_str(), nullptr);
}

}  // namespace

std::optional<int16_t> toInt16(double value) {
    return roundInto<int16_t>(value);
}

std::optional<int32_t> toInt32(double value) {
    return roundInto<int32_t>(value);
}

int16_t toInt16Or(double value, int16_t fallback) {
    return toInt16(value).value_or(fallback);
}

std::optional<double> parseNumber(std::string_view text, char decimalSeparator) {
    size_t b = 0;
    size_t e = text.size();
    while (b < e && isBlank(text[b])) {
        ++b;
    }
    while (e > b && isBlank(text[e - 1])) {
        --e;
    }
    const std::string_view t = text.substr(b, e - b);
    if (t.empty()) {
        return std::nullopt;
    }
    size_t used = 0;
    if (auto r = radixNumber(t, &used)) {
        return used == t.size() && used > 2 ? r : std::nullopt;
    }
    used = scanDecimal(t, decimalSeparator);
    if (used == 0 || used != t.size()) {
        return std::nullopt;
    }
    const double v = decimalValue(t, decimalSeparator);
    return std::isfinite(v) ? std::optional<double>(v) : std::nullopt;
}

double leadingNumber(std::string_view text) {
    std::string packed;
    packed.reserve(text.size());
    for (char c : text) {
        if (c != ' ' && c != '\t' && c != '\n') {
            packed += c;
        }
    }
    size_t used = 0;
    if (auto r = radixNumber(packed, &used)) {
        return *r;
    }
    used = scanDecimal(packed, '.');
    if (used == 0) {
        return 0.0;
    }
    const double v = decimalValue(std::string_view(packed).substr(0, used), '.');
    return std::isfinite(v) ? v : 0.0;
}

std::optional<bool> parseBool(std::string_view text, char decimalSeparator) {
    const std::string_view t = trimBlanks(text);
    if (equalsNoCase(t, "true")) {
        return true;
    }
    if (equalsNoCase(t, "false")) {
        return false;
    }
    if (auto n = parseNumber(text, decimalSeparator)) {
        return *n != 0.0;
    }
    return std::nullopt;
}

std::string formatDouble(double value, char decimalSeparator) {
    if (value == 0.0 || !std::isfinite(value)) {
        return "0";  // nothing the program reads is infinite
    }
    // Round to 15 significant digits first, then find the fewest digits that give the same number.
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.14e", value);
    double target = std::strtod(buf, nullptr);
    int maxDigits = 15;
    if (!std::isfinite(target)) {
        // The largest doubles round up past the largest one at 15 digits: they get the 17 that keep them.
        target = value;
        maxDigits = 17;
    }
    int precision = 1;
    for (; precision < maxDigits; ++precision) {
        std::snprintf(buf, sizeof buf, "%.*e", precision - 1, target);
        if (std::strtod(buf, nullptr) == target) {
            break;
        }
    }
    std::snprintf(buf, sizeof buf, "%.*e", precision - 1, target);
    // buf is d.ddde[+-]xx: split mantissa digits and exponent.
    std::string s(buf);
    const auto ePos = s.find('e');
    const int exponent = std::atoi(s.c_str() + ePos + 1);
    std::string digits;
    bool negative = false;
    for (size_t i = 0; i < ePos; ++i) {
        if (s[i] == '-') {
            negative = true;
        } else if (std::isdigit(static_cast<unsigned char>(s[i]))) {
            digits += s[i];
        }
    }
    while (digits.size() > 1 && digits.back() == '0') {
        digits.pop_back();
    }
    std::string out = negative ? "-" : "";
    if (exponent >= 15 || exponent < -4) {
        out += digits.substr(0, 1);
        if (digits.size() > 1) {
            out += decimalSeparator;
            out += digits.substr(1);
        }
        char e[16];
        std::snprintf(e, sizeof e, "E%c%02d", exponent < 0 ? '-' : '+', exponent < 0 ? -exponent : exponent);
        out += e;
    } else if (exponent < 0) {
        out += '0';
        out += decimalSeparator;
        out += std::string(static_cast<size_t>(-exponent - 1), '0');
        out += digits;
    } else {
        const auto intDigits = static_cast<size_t>(exponent) + 1;
        if (digits.size() <= intDigits) {
            out += digits + std::string(intDigits - digits.size(), '0');
        } else {
            out += digits.substr(0, intDigits);
            out += decimalSeparator;
            out += digits.substr(intDigits);
        }
    }
    return out;
}

const char* formatBool(bool value) {
    return value ? "True" : "False";
}

std::string formatSigned(long long value) {
    return (value < 0 ? "" : " ") + std::to_string(value);
}

}  // namespace tl
