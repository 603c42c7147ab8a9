#include "base/text.h"

#include <algorithm>

namespace tl {

char lowerCaseChar(char c) {
    const auto u = static_cast<unsigned char>(c);
    if (u >= 'A' && u <= 'Z') {
        return static_cast<char>(u + 32);
    }
    // Windows-1252: Latin-1 capitals (except the multiplication sign) and the three extra ones.
    if (u >= 0xC0 && u <= 0xDE && u != 0xD7) {
        return static_cast<char>(u + 32);
    }
    switch (u) {
        case 0x8A:
            return static_cast<char>(0x9A);
        case 0x8C:
            return static_cast<char>(0x9C);
        case 0x8E:
            return static_cast<char>(0x9E);
        case 0x9F:
            return static_cast<char>(0xFF);
        default:
            return c;
    }
}

std::string lowerCase(std::string_view text) {
    std::string out(text);
    std::transform(out.begin(), out.end(), out.begin(), lowerCaseChar);
    return out;
}

std::string_view trimBlanks(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) {
        return {};
    }
    const auto last = text.find_last_not_of(' ');
    return text.substr(first, last - first + 1);
}

bool startsWith(std::string_view text, std::string_view prefix) {
    return text.substr(0, prefix.size()) == prefix;
}

bool endsWith(std::string_view text, std::string_view suffix) {
    return text.size() >= suffix.size() && text.substr(text.size() - suffix.size()) == suffix;
}

bool containsNoCase(std::string_view haystack, std::string_view needle) {
    return lowerCase(haystack).find(lowerCase(needle)) != std::string::npos;
}

bool equalsNoCase(std::string_view a, std::string_view b) {
    return a.size() == b.size() && lowerCase(a) == lowerCase(b);
}

std::string_view cutAtNul(std::string_view text) {
    const auto nul = text.find('\0');
    return nul == std::string_view::npos ? text : text.substr(0, nul);
}

std::string joinPath(std::string_view dir, std::string_view name) {
    std::string out(dir);
    if (out.empty() || out.back() != '\\') {
        out += '\\';
    }
    out += name;
    return out;
}

}  // namespace tl
