#include "base/utf8.h"

namespace tl {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool isContinuation(unsigned char b, unsigned char low = 0x80, unsigned char high = 0xBF) {
    return b >= low && b <= high;
}

bool isHighSurrogate(char16_t u) {
    return u >= 0xD800 && u <= 0xDBFF;
}

bool isLowSurrogate(char16_t u) {
    return u >= 0xDC00 && u <= 0xDFFF;
}

}  // namespace

Utf8Step decodeUtf8(std::string_view text, size_t at) {
    const auto byte = [&](size_t i) { return static_cast<unsigned char>(text[at + i]); };
    const size_t left = text.size() - at;
    const unsigned char b0 = byte(0);
    if (b0 < 0x80) {
        return {b0, 1};
    }
    // The length of the sequence, its first code bits, and the range its second byte must lie in (which
    // rules out overlong forms, surrogates and code points past U+10FFFF).
    size_t length = 0;
    char32_t value = 0;
    unsigned char low = 0x80;
    unsigned char high = 0xBF;
    if (b0 >= 0xC2 && b0 <= 0xDF) {
        length = 2;
        value = b0 & 0x1Fu;
    } else if (b0 >= 0xE0 && b0 <= 0xEF) {
        length = 3;
        value = b0 & 0x0Fu;
        low = b0 == 0xE0 ? 0xA0 : 0x80;
        high = b0 == 0xED ? 0x9F : 0xBF;
    } else if (b0 >= 0xF0 && b0 <= 0xF4) {
        length = 4;
        value = b0 & 0x07u;
        low = b0 == 0xF0 ? 0x90 : 0x80;
        high = b0 == 0xF4 ? 0x8F : 0xBF;
    } else {
        return {kBadSequence, 1};
    }
    for (size_t i = 1; i < length; ++i) {
        if (i >= left || !(i == 1 ? isContinuation(byte(i), low, high) : isContinuation(byte(i)))) {
            return {kBadSequence, i};  // the maximal bad part: what was read so far
        }
        value = (value << 6) | (byte(i) & 0x3Fu);
    }
    return {value, length};
}

void appendUtf8(std::string& out, char32_t c) {
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

std::u16string utf8ToUtf16(std::string_view utf8) {
    std::u16string out;
    out.reserve(utf8.size());
    for (size_t at = 0; at < utf8.size();) {
        const Utf8Step step = decodeUtf8(utf8, at);
        at += step.length;
        const char32_t c = step.codePoint == kBadSequence ? kReplacement : step.codePoint;
        if (c < 0x10000) {
            out += static_cast<char16_t>(c);
        } else {
            out += static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
            out += static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
        }
    }
    return out;
}

std::string utf16ToUtf8(std::u16string_view utf16, bool* unpaired) {
    std::string out;
    out.reserve(utf16.size() + utf16.size() / 2);
    bool lost = false;
    for (size_t i = 0; i < utf16.size(); ++i) {
        const char16_t u = utf16[i];
        if (isHighSurrogate(u) && i + 1 < utf16.size() && isLowSurrogate(utf16[i + 1])) {
            appendUtf8(out, 0x10000 + ((static_cast<char32_t>(u - 0xD800) << 10) | (utf16[i + 1] - 0xDC00u)));
            ++i;
        } else if (isHighSurrogate(u) || isLowSurrogate(u)) {
            appendUtf8(out, kReplacement);
            lost = true;
        } else {
            appendUtf8(out, u);
        }
    }
    if (unpaired) {
        *unpaired = lost;
    }
    return out;
}

bool isValidUtf8(std::string_view text) {
    for (size_t at = 0; at < text.size();) {
        const Utf8Step step = decodeUtf8(text, at);
        if (step.codePoint == kBadSequence) {
            return false;
        }
        at += step.length;
    }
    return true;
}

std::string validUtf8(std::string_view text) {
    if (isValidUtf8(text)) {
        return std::string(text);
    }
    std::string out;
    out.reserve(text.size() + 8);
    for (size_t at = 0; at < text.size();) {
        const Utf8Step step = decodeUtf8(text, at);
        if (step.codePoint == kBadSequence) {
            out += kReplacementCharacter;
        } else {
            out.append(text.substr(at, step.length));
        }
        at += step.length;
    }
    return out;
}

std::string_view leadingCharacters(std::string_view text, size_t count) {
    size_t at = 0;
    for (size_t n = 0; n < count && at < text.size(); ++n) {
        at += decodeUtf8(text, at).length;
    }
    return text.substr(0, at);
}

}  // namespace tl
