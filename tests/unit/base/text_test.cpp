#include "base/text.h"

#include <gtest/gtest.h>

namespace tl {
namespace {

TEST(Text, LowerCaseCoversTheCodePageLetters) {
    EXPECT_EQ(lowerCase("C:\\Photos\\SEA.JPG"), "c:\\photos\\sea.jpg");
    EXPECT_EQ(lowerCase("\xC4\xD6\xDC"), "\xE4\xF6\xFC");  // umlauts
    EXPECT_EQ(lowerCase("\xD7"), "\xD7");                  // the multiplication sign has no lower case
    EXPECT_EQ(lowerCase("\x8A"), "\x9A");
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
