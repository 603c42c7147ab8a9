#include "app/ini_profile.h"

#include <gtest/gtest.h>

#include "base/file_system_posix.h"
#include "support/temp_dir.h"

namespace tl {
namespace {

class Ini : public testing::Test {
protected:
    Ini() : ini(fs, dir.file("a.ini")) {}
    test::TempDir dir;
    PosixFileSystem fs;
    IniProfile ini;
};

TEST_F(Ini, LooksUpSectionsAndKeysWithoutRegardToCaseOrBlanks) {
    dir.write("a.ini", "[One]\r\nkey=first\r\n[ two ]\r\n  Key  =  spaced value  \r\nq=\"quoted\"\r\n");
    EXPECT_EQ(ini.readString("one", "KEY", "d", 200), "first");
    EXPECT_EQ(ini.readString("TWO", "key", "d", 200), "spaced value");
    EXPECT_EQ(ini.readString("two", "q", "d", 200), "quoted");
    EXPECT_EQ(ini.readString("two", "missing", "dflt", 200), "dflt");
    EXPECT_EQ(ini.readString("three", "key", "0", 200), "0");
}

TEST_F(Ini, ReadsIntoALimitedBuffer) {
    dir.write("a.ini", "[S]\nk=abcdef\n");
    EXPECT_EQ(ini.readString("S", "k", "", 4), "abc");
    EXPECT_EQ(ini.readString("S", "k", "", 1), "");
}

TEST_F(Ini, RewritesAKeyInPlaceAndAppendsWhatIsMissing) {
    dir.write("a.ini", "[S]\r\na=1\r\nb=2\r\n\r\n[T]\r\nc=3\r\n");
    EXPECT_EQ(ini.writeString("s", "A", "10"), 1);
    EXPECT_EQ(ini.writeString("S", "new", "x"), 1);
    EXPECT_EQ(ini.writeString("U", "d", "4"), 1);
    EXPECT_EQ(dir.read("a.ini"), "[S]\r\nA=10\r\nb=2\r\nnew=x\r\n\r\n[T]\r\nc=3\r\n\r\n[U]\r\nd=4\r\n");
}

TEST_F(Ini, CreatesTheFileOnFirstWrite) {
    EXPECT_EQ(ini.writeString("Tessaline", "Delay", "1"), 1);
    EXPECT_EQ(dir.read("a.ini"), "[Tessaline]\r\nDelay=1\r\n");
}

TEST_F(Ini, ABatchReachesTheFileOnlyOnCommit) {
    dir.write("a.ini", "[S]\r\na=1\r\n");
    ASSERT_TRUE(ini.beginUpdate());
    ini.writeString("S", "a", "2");
    EXPECT_EQ(ini.readString("S", "a", "", 200), "2");
    EXPECT_EQ(dir.read("a.ini"), "[S]\r\na=1\r\n");
    ASSERT_TRUE(ini.commitUpdate());
    EXPECT_EQ(dir.read("a.ini"), "[S]\r\na=2\r\n");
}

TEST_F(Ini, WriteIntoAMissingDirectoryFails) {
    IniProfile nowhere(fs, dir.file("no/such/dir/a.ini"));
    EXPECT_EQ(nowhere.writeString("S", "k", "v"), 0);
}

}  // namespace
}  // namespace tl
