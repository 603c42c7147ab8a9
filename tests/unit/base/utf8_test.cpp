#include "base/utf8.h"

#include <gtest/gtest.h>

#include "base/text_file.h"

namespace tl {
namespace {

TEST(Utf8, NamesOfEveryScriptRoundTripThroughUtf16) {
    const struct {
        const char* utf8;
        std::u16string utf16;
    } cases[] = {
        {"", u""},
        {"C:\\Été 2024\\plage.jpg", u"C:\\Été 2024\\plage.jpg"},
        {"東京 夜景.jpg", u"東京 夜景.jpg"},
        {"Москва.png", u"Москва.png"},
        {"\U0001F305 sunset \U0001F30A.jpg", u"\U0001F305 sunset \U0001F30A.jpg"},  // surrogate pairs
        {"\U00010000\U0010FFFF\uFFFD\u07FF\u0800", u"\U00010000\U0010FFFF\uFFFD\u07FF\u0800"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(utf8ToUtf16(c.utf8), c.utf16) << c.utf8;
        bool unpaired = true;
        EXPECT_EQ(utf16ToUtf8(c.utf16, &unpaired), c.utf8);
        EXPECT_FALSE(unpaired) << c.utf8;
        EXPECT_TRUE(isValidUtf8(c.utf8));
    }
    EXPECT_EQ(utf16ToUtf8(u"\U0001F305").size(), 4u) << "a pair is one four-byte character, not two of three";
}

// Each maximal bad part becomes one U+FFFD, as Windows decodes it.
TEST(Utf8, InvalidSequencesBecomeReplacementCharacters) {
    const std::pair<std::string, std::u16string> cases[] = {
        {"a\xFF"
         "b",
         u"a\uFFFDb"},
        {"\xC9t\xE9", u"\uFFFDt\uFFFD"},  // Windows-1252 bytes
        {"\xC3", u"\uFFFD"},              // cut short at the end
        {"\xE6\x9D"
         "x",
         u"\uFFFDx"},                                       // cut short before a plain character: one part
        {"\xC0\xAF", u"\uFFFD\uFFFD"},                      // overlong
        {"\xE0\x80\xAF", u"\uFFFD\uFFFD\uFFFD"},            // overlong three-byte form
        {"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"},            // an encoded surrogate
        {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},  // past U+10FFFF
        {"\xF0\x9F\x8C", u"\uFFFD"},                        // an emoji cut short
        {"\x80\x80", u"\uFFFD\uFFFD"},                      // lone continuation bytes
    };
    for (const auto& [bytes, want] : cases) {
        EXPECT_EQ(utf8ToUtf16(bytes), want);
        EXPECT_FALSE(isValidUtf8(bytes));
        EXPECT_EQ(validUtf8(bytes), utf16ToUtf8(want));
    }
}

// An NTFS name may hold an unpaired surrogate: it is shown as U+FFFD and flagged, never silently changed.
TEST(Utf8, UnpairedSurrogatesAreFlaggedAndShownAsReplacementCharacters) {
    const std::pair<std::u16string, const char*> cases[] = {
        {{u'a', char16_t(0xD83C), u'.', u'j'}, "a\uFFFD.j"},
        {{char16_t(0xDF05), u'x'}, "\uFFFDx"},
        {{u'x', char16_t(0xD83C)}, "x\uFFFD"},
        {{char16_t(0xDF05), char16_t(0xD83C)}, "\uFFFD\uFFFD"},  // a pair in the wrong order
    };
    for (const auto& [wide, shown] : cases) {
        bool unpaired = false;
        EXPECT_EQ(utf16ToUtf8(wide, &unpaired), shown);
        EXPECT_TRUE(unpaired) << shown;
    }
    EXPECT_EQ(leadingCharacters("Мо\U0001F305ва", 3), "Мо\U0001F305");
    EXPECT_EQ(leadingCharacters("ab", 5), "ab");
}

// New files are UTF-8 without a mark; a file that is not valid UTF-8 comes from an earlier version and is
// read in the ANSI code page (here Windows-1252); a mark an editor wrote is taken off, twice if it is there
// twice.
TEST(TextFile, DecodesUtf8MarkedFilesAndEarlierVersionsAnsiFiles) {
    const Windows1252 ansi;
    const std::pair<std::string, const char*> cases[] = {
        {"C:\\Été\\東京.jpg\t1\r\n", "C:\\Été\\東京.jpg\t1\r\n"},
        {"\xEF\xBB\xBF"
         "C:\\a.jpg",
         "C:\\a.jpg"},
        {"\xEF\xBB\xBF\xEF\xBB\xBF"
         "[Tessaline]",
         "[Tessaline]"},
        {std::string("\xFF\xFE\xFF\xFE"
                     "a\0",
                     6),
         "a"},
        {"C:\\\xC9t\xE9\\\x80 \x8A\x9F\x81.jpg", "C:\\Été\\€ ŠŸ\u0081.jpg"},
        {"plain ASCII", "plain ASCII"},
        {std::string("\xFF\xFE"
                     "C\0:\0\\\0<\xD8\x05\xDF",
                     12),
         "C:\\\U0001F305"},
        {std::string("\xFE\xFF\0"
                     "a\x04\x1C",
                     6),
         "aМ"},
        {"", ""},
    };
    for (const auto& [bytes, text] : cases) {
        EXPECT_EQ(decodeTextFile(bytes, ansi), text);
    }
}

}  // namespace
}  // namespace tl
