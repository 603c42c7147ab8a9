#include "base/text.h"

#include "base/utf8.h"

namespace tl {

char32_t lowerCaseLetter(char32_t c) {
    const auto evenToOdd = [c](char32_t first, char32_t last) { return c >= first && c <= last && c % 2 == 0; };
    const auto oddToEven = [c](char32_t first, char32_t last) { return c >= first && c <= last && c % 2 == 1; };
    if (c < 0x80) {
        return c >= 'A' && c <= 'Z' ? c + 32 : c;
    }
    // Latin-1 (not the multiplication sign), Greek, Cyrillic, Armenian and full-width capitals in runs.
    if ((c >= 0xC0 && c <= 0xDE && c != 0xD7) || (c >= 0x391 && c <= 0x3AB && c != 0x3A2) ||
        (c >= 0x410 && c <= 0x42F) || (c >= 0xFF21 && c <= 0xFF3A)) {
        return c + 32;
    }
    if (c >= 0x531 && c <= 0x556) {
        return c + 48;
    }
    if (c >= 0x400 && c <= 0x40F) {
        return c + 80;
    }
    // Capitals followed by their small letters. U+0130 (capital I with dot) is left alone: its small
    // letter is plain "i", one byte shorter.
    if (evenToOdd(0x100, 0x12F) || evenToOdd(0x132, 0x137) || oddToEven(0x139, 0x148) || evenToOdd(0x14A, 0x177) ||
        oddToEven(0x179, 0x17E) || evenToOdd(0x3D8, 0x3EF) || evenToOdd(0x460, 0x481) || evenToOdd(0x48A, 0x4BF) ||
        oddToEven(0x4C1, 0x4CE) || evenToOdd(0x4D0, 0x52F)) {
        return c + 1;
    }
    switch (c) {
        case 0x178:  // Y with diaeresis, whose small letter is in Latin-1
            return 0xFF;
        case 0x386:  // the accented Greek capitals
            return 0x3AC;
        case 0x388:
        case 0x389:
        case 0x38A:
            return c + 37;
        case 0x38C:
            return 0x3CC;
        case 0x38E:
        case 0x38F:
            return c + 63;
        case 0x4C0:
            return 0x4CF;
        default:
            return c;
    }
}

namespace {

unsigned lowerAscii(unsigned char b) {
    return b >= 'A' && b <= 'Z' ? b + 32u : b;
}

}  // namespace

std::string lowerCase(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (size_t at = 0; at < text.size();) {
        const auto b = static_cast<unsigned char>(text[at]);
        if (b < 0x80) {
            out += static_cast<char>(lowerAscii(b));
            ++at;
            continue;
        }
        const Utf8Step step = decodeUtf8(text, at);
        const char32_t lower = step.codePoint == kBadSequence ? step.codePoint : lowerCaseLetter(step.codePoint);
        if (lower == step.codePoint) {
            out.append(text.substr(at, step.length));
        } else {
            appendUtf8(out, lower);
        }
        at += step.length;
    }
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
    if (a.size() != b.size()) {
        return false;
    }
    // Keys, switches and most paths are ASCII: those compare without building lower-case copies.
    for (size_t i = 0; i < a.size(); ++i) {
        const auto x = static_cast<unsigned char>(a[i]);
        const auto y = static_cast<unsigned char>(b[i]);
        if (((x | y) & 0x80) != 0) {
            return lowerCase(a) == lowerCase(b);
        }
        if (lowerAscii(x) != lowerAscii(y)) {
            return false;
        }
    }
    return true;
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
