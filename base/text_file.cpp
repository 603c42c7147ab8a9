#include "base/text_file.h"

#include "base/file_system.h"
#include "base/text.h"
#include "base/utf8.h"

namespace tl {

namespace {

// Windows-1252's bytes 0x80 to 0x9F; the rest of the code page is Latin-1.
constexpr char16_t kHighControls[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

std::string fromUtf16(std::string_view bytes, bool bigEndian) {
    std::u16string units(bytes.size() / 2, u'\0');
    for (size_t i = 0; i < units.size(); ++i) {
        const auto first = static_cast<unsigned char>(bytes[2 * i]);
        const auto second = static_cast<unsigned char>(bytes[2 * i + 1]);
        units[i] = static_cast<char16_t>(bigEndian ? (first << 8) | second : (second << 8) | first);
    }
    return utf16ToUtf8(units);
}

}  // namespace

std::string Windows1252::toUtf8(std::string_view ansi) const {
    std::string out;
    out.reserve(ansi.size() + ansi.size() / 4);
    for (const char c : ansi) {
        const auto b = static_cast<unsigned char>(c);
        appendUtf8(out, b >= 0x80 && b <= 0x9F ? kHighControls[b - 0x80] : b);
    }
    return out;
}

namespace {

std::string decodeBytes(std::string_view bytes, const AnsiCodePage& ansi) {
    if (startsWith(bytes, "\xEF\xBB\xBF")) {
        return validUtf8(bytes.substr(3));
    }
    if (startsWith(bytes, "\xFF\xFE")) {
        return fromUtf16(bytes.substr(2), false);
    }
    if (startsWith(bytes, "\xFE\xFF")) {
        return fromUtf16(bytes.substr(2), true);
    }
    if (isValidUtf8(bytes)) {
        return std::string(bytes);
    }
    return ansi.toUtf8(bytes);
}

}  // namespace

std::string decodeTextFile(std::string_view bytes, const AnsiCodePage& ansi) {
    std::string text = decodeBytes(bytes, ansi);
    // A second mark (an editor that put one before the one already there) is no text either. Left at the
    // start, it would be written back first, read then as the file's mark, and the first line would say
    // something else at the next reading than at this one.
    size_t marks = 0;
    while (text.compare(marks, 3, "\xEF\xBB\xBF") == 0) {
        marks += 3;
    }
    text.erase(0, marks);
    return text;
}

std::optional<std::string> readTextFile(FileSystem& fs, const std::string& path, const AnsiCodePage& ansi) {
    const std::optional<std::string> bytes = fs.readFile(path);
    if (!bytes) {
        return std::nullopt;
    }
    return decodeTextFile(*bytes, ansi);
}

}  // namespace tl
