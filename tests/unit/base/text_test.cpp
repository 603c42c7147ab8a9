#include "base/text.h"

#include <gtest/gtest.h>

namespace tl {
namespace {

// Each letter and its small one take the same bytes: keys keep their length, and no sequence is split.
TEST(Text, LowerCaseCoversTheLettersOfEuropeanScriptsInUtf8) {
    const std::pair<const char*, const char*> cases[] = {
        {"C:\\Photos\\SEA.JPG", "c:\\photos\\sea.jpg"},
        {"ÉTÉ ÄÖÜ ÀÞ × Ÿ", "été äöü àþ × ÿ"},
        {"ŁÓDŹ ŠŽČ ĲŒ Ĺ", "łódź šžč ĳœ ĺ"},
        {"ΑΘΉΝΑ ΌΜΗΡΟΣ Ώ Ϊ", "αθήνα όμηροσ ώ ϊ"},  // final sigma stays plain: both are small letters
        {"МОСКВА ЁЖ ЇЄ Ґ Ӂ Ӏ", "москва ёж їє ґ ӂ ӏ"},
        {"ՀԱՅ ＡＢＣ", "հայ ａｂｃ"},
        {"İ ß ẞ 東京 \U0001F305", "İ ß ẞ 東京 \U0001F305"},  // no pair of equal length: kept
        {"A\xC9" "B\xE2\x82Z", "a\xC9" "b\xE2\x82z"},  // bytes that are not UTF-8 stay as they are
    };
    for (const auto& [text, lower] : cases) {
        EXPECT_EQ(lowerCase(text), lower) << text;
    }
    EXPECT_TRUE(equalsNoCase("D:\\Москва\\Été.JPG", "d:\\МОСКВА\\éTÉ.jpg"));
    EXPECT_TRUE(equalsNoCase("WallpaperStyle", "wALLPAPERsTYLE"));
    EXPECT_FALSE(equalsNoCase("@[", "`{"));  // the neighbours of the letters are no letters
    EXPECT_FALSE(equalsNoCase("Delay", "Delax"));
    EXPECT_TRUE(equalsNoCase("Z\xC9", "z\xC9"));
    EXPECT_FALSE(equalsNoCase("Z\xC9", "z\xCA"));
    EXPECT_FALSE(containsNoCase("C:\\Users\\ΑΝΝΑ\\Pictures", "άννα"));
    EXPECT_TRUE(containsNoCase("C:\\Users\\ΆΝΝΑ\\Pictures", "άννα"));
}

TEST(Text, TrimsBlanksSearchesAndCuts) {
    EXPECT_EQ(trimBlanks("  a b  "), "a b");
    EXPECT_EQ(trimBlanks("\ta\t"), "\ta\t");
    EXPECT_TRUE(containsNoCase("C:\\WINDOWS\\Internet Explorer Wallpaper.bmp", "internet explorer wallpaper.BMP"));
    EXPECT_FALSE(containsNoCase("abc", "abd"));
    EXPECT_TRUE(endsWith("x.wall", ".wall"));
    EXPECT_FALSE(endsWith("l", ".wall"));
    EXPECT_EQ(cutAtNul(std::string_view("ab\0cd", 5)), "ab");
    EXPECT_EQ(joinPath("C:\\Tessaline", "setup.pref"), "C:\\Tessaline\\setup.pref");
    EXPECT_EQ(joinPath("C:\\", "setup.pref"), "C:\\setup.pref");
    EXPECT_EQ(joinPath("C:\\Tessaline", ""), "C:\\Tessaline\\");
}

}  // namespace
}  // namespace tl
