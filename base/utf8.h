#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// The program holds all text as UTF-8; Windows hands names out as UTF-16. These are the rules of the
// crossing, kept portable so that they are tested natively (base/utf8_win.h puts them on wchar_t).
namespace tl {

// U+FFFD, which stands in for what can't be decoded or can't be held.
inline constexpr std::string_view kReplacementCharacter = "\xEF\xBF\xBD";

// UTF-8 to UTF-16. A byte that starts no valid sequence, or a sequence cut short, overlong, a surrogate or
// past U+10FFFF, becomes one U+FFFD per maximal bad part, as the Unicode standard and Windows do it.
std::u16string utf8ToUtf16(std::string_view utf8);

// UTF-16 to UTF-8. An unpaired surrogate, which an NTFS name may hold and UTF-8 can't, becomes U+FFFD;
// *unpaired (when given) tells whether there was one.
std::string utf16ToUtf8(std::u16string_view utf16, bool* unpaired = nullptr);

bool isValidUtf8(std::string_view text);

// The same text with every bad part replaced by U+FFFD (valid text comes back unchanged).
std::string validUtf8(std::string_view text);

// The longest start of text holding at most count characters (code points): never a part of one.
std::string_view leadingCharacters(std::string_view text, size_t count);

// Appends a code point's UTF-8 bytes.
void appendUtf8(std::string& out, char32_t codePoint);

// One step of decoding: the code point that starts at text[at] and the bytes it takes. A bad part gives
// kBadSequence and its length (at least one byte).
inline constexpr char32_t kBadSequence = 0xFFFFFFFF;
struct Utf8Step {
    char32_t codePoint;
    size_t length;
};
Utf8Step decodeUtf8(std::string_view text, size_t at);

}  // namespace tl
