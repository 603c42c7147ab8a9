#include "app/ini_profile.h"

#include <gtest/gtest.h>

#include "base/file_system_posix.h"
#include "base/text_file.h"
#include "support/temp_dir.h"

// IniProfile stands in for the Win32 profile functions natively; these hold it to their behaviour.
namespace tl {
namespace {

class Ini : public testing::Test {
  protected:
    Ini() : ini(fs, ansi, dir.file("a.ini")) {}
    test::TempDir dir;
    PosixFileSystem fs;
    Windows1252 ansi;
    IniProfile ini;
};

TEST_F(Ini, LooksUpWithoutRegardToCaseOrBlanksIntoALimitedBuffer) {
    dir.write("a.ini", "[One]\r\nkey=abcdef\r\n[ two ]\r\n  Key  =  spaced value  \r\nq=\"quoted\"\r\n");
    EXPECT_EQ(ini.readString("one", "KEY", "d", 200), "abcdef");
    EXPECT_EQ(ini.readString("TWO", "key", "d", 200), "spaced value");
    EXPECT_EQ(ini.readString("two", "q", "d", 200), "quoted");
    EXPECT_EQ(ini.readString("two", "missing", "dflt", 200), "dflt");
    EXPECT_EQ(ini.readString("one", "key", "", 4), "abc");
    EXPECT_EQ(ini.readString("one", "key", "", 1), "");
    dir.write("a.ini", "[S]\r\nk=Москва\r\n");
    EXPECT_EQ(ini.readString("s", "k", "", 4), "Мос") << "a short buffer holds whole characters";
}

TEST_F(Ini, RewritesAKeyInPlaceAppendsWhatIsMissingAndBatchesUntilCommit) {
    dir.write("a.ini", "[S]\r\na=1\r\nb=2\r\n\r\n[T]\r\nc=3\r\n");
    EXPECT_EQ(ini.writeString("s", "A", "10"), 1);
    EXPECT_EQ(ini.writeString("S", "new", "x"), 1);
    EXPECT_EQ(ini.writeString("U", "d", "4"), 1);
    const std::string written = "[S]\r\nA=10\r\nb=2\r\nnew=x\r\n\r\n[T]\r\nc=3\r\n\r\n[U]\r\nd=4\r\n";
    EXPECT_EQ(dir.read("a.ini"), written);

    ASSERT_TRUE(ini.beginUpdate());
    ini.writeString("T", "c", "5");
    EXPECT_EQ(ini.readString("T", "c", "", 200), "5");
    EXPECT_EQ(dir.read("a.ini"), written) << "a batch reaches the file only on commit";
    ASSERT_TRUE(ini.commitUpdate());
    EXPECT_NE(dir.read("a.ini").find("c=5"), std::string::npos);

    IniProfile nowhere(fs, ansi, dir.file("no/such/dir/a.ini"));
    EXPECT_EQ(nowhere.writeString("S", "k", "v"), 0);
}

}  // namespace
}  // namespace tl
