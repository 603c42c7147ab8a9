#include <gtest/gtest.h>
#include <sys/stat.h>

#include "base/file_system_posix.h"
#include "lists/wallpaper_list.h"
#include "support/temp_dir.h"

namespace tl {
namespace {

struct LineCase {
    const char* line;
    enum Kind { Image, Folder, Skipped } kind;
    const char* text;  // the path or the folder
    Orientation orientation;
};

// One line at a time, as the manager reads it (no Auto replacement).
const LineCase kLines[] = {
    {"C:\\a.jpg\t3", LineCase::Image, "C:\\a.jpg", kScale},
    {"C:\\a.jpg\tTile...", LineCase::Image, "C:\\a.jpg", kTile},
    {"C:\\a.jpg\ttile...", LineCase::Image, "C:\\a.jpg", kCenter},
    {"C:\\a.jpg\tTile..", LineCase::Image, "C:\\a.jpg", kCenter},
    {"C:\\a.jpg\tCentre.", LineCase::Image, "C:\\a.jpg", kCenter},
    {"C:\\a.jpg\tScale..", LineCase::Image, "C:\\a.jpg", kScale},
    {"C:\\a.jpg\tStretch", LineCase::Image, "C:\\a.jpg", kStretch},
    {"C:\\a.jpg\tStretch ", LineCase::Image, "C:\\a.jpg", kCenter},
    {"C:\\a.jpg\t4", LineCase::Image, "C:\\a.jpg", kAuto},
    {"C:\\a.jpg\t7", LineCase::Image, "C:\\a.jpg", 7},
    {"C:\\a.jpg\t?", LineCase::Image, "C:\\a.jpg", kCenter},
    {"C:\\a.jpg\t", LineCase::Image, "C:\\a.jpg", kCenter},
    {"C:\\a.jpg\t 2 ", LineCase::Image, "C:\\a.jpg", kStretch},
    {"C:\\a.jpg\t2\t3", LineCase::Image, "C:\\a.jpg", 23},  // later TABs belong to the field, and are skipped
    {"C:\\a.jpg\t1 2", LineCase::Image, "C:\\a.jpg", 12},
    {"C:\\a.jpg\t&H3", LineCase::Image, "C:\\a.jpg", kScale},
    {"C:\\a.jpg\t&h1F", LineCase::Image, "C:\\a.jpg", 31},
    {"C:\\a.jpg\t&O7", LineCase::Image, "C:\\a.jpg", 7},
    {"C:\\a.jpg\t&HFFFF", LineCase::Image, "C:\\a.jpg", -1},
    {"C:\\a.jpg\t&H10000", LineCase::Image, "C:\\a.jpg", 0},  // does not fit in 16 bits
    {"C:\\a.jpg\t2.5", LineCase::Image, "C:\\a.jpg", 2},      // halves go to the even neighbour
    {"C:\\a.jpg\t3.5", LineCase::Image, "C:\\a.jpg", 4},
    {"C:\\a.jpg\t-0.5", LineCase::Image, "C:\\a.jpg", 0},
    {"C:\\a.jpg\t1e1", LineCase::Image, "C:\\a.jpg", 10},
    {"C:\\a.jpg\t2x", LineCase::Image, "C:\\a.jpg", 2},
    {"C:\\a.jpg\t-32768", LineCase::Image, "C:\\a.jpg", -32768},
    {"C:\\a.jpg\t32767.5", LineCase::Image, "C:\\a.jpg", 0},
    {"C:\\a.jpg\t40000", LineCase::Image, "C:\\a.jpg", 0},
    {"C:\\a.jpg\t1e400", LineCase::Image, "C:\\a.jpg", 0},
    {"C:\\Pictures\\a.jpg", LineCase::Image, "C:\\Pictures\\a.jpg", kCenter},  // no TAB: the path is the field
    {"2 b.jpg", LineCase::Image, "2 b.jpg", kStretch},
    {"  C:\\a.jpg \t1", LineCase::Image, "  C:\\a.jpg ", kTile},  // nothing is trimmed
    {"   ", LineCase::Image, "   ", kCenter},                     // blanks only: kept when read
    {"#D:\\Photos", LineCase::Folder, "D:\\Photos", 0},
    {"#D:\\Photos\t2", LineCase::Folder, "D:\\Photos", 0},
    {"# D:\\x#y", LineCase::Folder, " D:\\x#y", 0},
    {"#", LineCase::Folder, "", 0},
    {"", LineCase::Skipped, "", 0},
    {"\t2", LineCase::Skipped, "", 0},
    {"\t#D:\\x", LineCase::Skipped, "", 0},
};

TEST(ListFile, EachLineIsReadByTheGrammar) {
    for (const LineCase& c : kLines) {
        SCOPED_TRACE(std::string("line \"") + c.line + "\"");
        const ListFileContents got = parseListText(c.line, ListReader::Manager, kStretch);
        ASSERT_FALSE(got.entries.empty());
        EXPECT_TRUE(got.entries.back().path.empty()) << "the spare slot is always last";
        ASSERT_EQ(got.trackedFolders.size(), c.kind == LineCase::Folder ? 2u : 1u);
        EXPECT_EQ(got.trackedFolders[0], "");
        ASSERT_EQ(imageCount(got.entries), c.kind == LineCase::Image ? 1 : 0);
        if (c.kind == LineCase::Image) {
            EXPECT_EQ(got.entries[0].path, c.text);
            EXPECT_EQ(got.entries[0].orientation, c.orientation);
            EXPECT_EQ(got.entries[0].width, 0);
            EXPECT_EQ(got.entries[0].height, 0);
            EXPECT_EQ(got.entries[0].size, 0.0);
        } else if (c.kind == LineCase::Folder) {
            EXPECT_EQ(got.trackedFolders[1], c.text);
        }
    }
}

TEST(ListFile, TheChangerReplacesAutoAndTheManagerKeepsIt) {
    const char* text = "C:\\a.jpg\t4\r\nC:\\b.jpg\t&H4\r\nC:\\c.jpg\t3.9\r\nC:\\d.jpg\t1\r\n";
    const auto changer = parseListText(text, ListReader::Changer, kScale);
    const auto manager = parseListText(text, ListReader::Manager, kScale);
    ASSERT_EQ(imageCount(changer.entries), 4);
    ASSERT_EQ(imageCount(manager.entries), 4);
    const Orientation changerWants[] = {kScale, kScale, kScale, kTile};
    const Orientation managerWants[] = {kAuto, kAuto, kAuto, kTile};
    for (size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(changer.entries[i].orientation, changerWants[i]) << "slot " << i;
        EXPECT_EQ(manager.entries[i].orientation, managerWants[i]) << "slot " << i;
    }
}

TEST(ListFile, LinesEndAtCrOrCrLfButNotAtALoneLf) {
    const auto got = parseListText("a\t1\rb\t2\r\nc\t3\r\r\nd\t&H2\ne\t3", ListReader::Manager, 0);
    ASSERT_EQ(imageCount(got.entries), 4);
    EXPECT_EQ(got.entries[0].path, "a");
    EXPECT_EQ(got.entries[1].path, "b");
    EXPECT_EQ(got.entries[2].path, "c");
    EXPECT_EQ(got.entries[3].path, "d");
    EXPECT_EQ(got.entries[3].orientation, 0x2E3) << "the LF and what follows belong to the field: &H2 e 3";
    EXPECT_EQ(parseListText("x\t1\r\n", ListReader::Manager, 0).entries.size(), 2u) << "no empty last line";
    EXPECT_EQ(parseListText("", ListReader::Manager, 0).entries.size(), 1u);
}

TEST(ListFile, LongestPathCountsImageLinesOnly) {
    const auto got = parseListText("#D:\\a very long folder name indeed\r\nC:\\ab.jpg\t1\r\nC:\\a.jpg\t1\r\n",
                                   ListReader::Changer, 0);
    EXPECT_EQ(got.longestPath, 9u);
}

TEST(ListFile, RoundTripWritesNumbersImagesThenFoldersAndDropsBlankPaths) {
    const std::string source =
        "C:\\Pictures\\sea.jpg\tStretch\r\n"
        "#D:\\Photos\r\n"
        "C:\\Pictures\\hill.bmp\tTile...\r\n"
        "   \t2\r\n"
        "#E:\\More\t1\r\n"
        "C:\\Pictures\\sky.gif\t4\r"
        "C:\\Pictures\\odd.jpg\t-3\r\n";
    const auto read = parseListText(source, ListReader::Manager, kCenter);
    ASSERT_EQ(imageCount(read.entries), 5) << "the blank-path line is kept on reading";
    EXPECT_EQ(read.entries[3].path, "C:\\Pictures\\sky.gif");
    EXPECT_EQ(listFileText(read.entries, read.trackedFolders),
              "C:\\Pictures\\sea.jpg\t2\r\n"
              "C:\\Pictures\\hill.bmp\t1\r\n"
              "C:\\Pictures\\sky.gif\t4\r\n"
              "C:\\Pictures\\odd.jpg\t-3\r\n"
              "#D:\\Photos\r\n"
              "#E:\\More\r\n");
}

TEST(ListFile, WritingSkipsTheLastSlotAndEmptyFoldersAndKeepsPathsUntrimmed) {
    WallpaperEntries entries(4);
    entries[0] = {" C:\\x.jpg ", kScale};
    entries[1] = {"", kTile};
    entries[2] = {"C:\\y.jpg", 32767};
    entries[3] = {"C:\\not-the-spare.jpg", kTile};  // the last slot is never written, whatever it holds
    EXPECT_EQ(listFileText(entries, {"", "D:\\a", "", " "}), " C:\\x.jpg \t3\r\nC:\\y.jpg\t32767\r\n#D:\\a\r\n# \r\n");
}

TEST(ListFile, ReadingAFileFromDiskAndAMissingOne) {
    test::TempDir dir;
    dir.write("a.wall", "C:\\a.jpg\t2\r\n#D:\\f\r\n");
    PosixFileSystem fs;
    const auto got = readListFile(fs, dir.file("a.wall"), ListReader::Changer, 0);
    ASSERT_EQ(imageCount(got.entries), 1);
    EXPECT_EQ(got.entries[0].orientation, kStretch);
    EXPECT_EQ(got.trackedFolders, (TrackedFolders{"", "D:\\f"}));

    const auto missing = readListFile(fs, dir.file("none.wall"), ListReader::Changer, 0);
    EXPECT_EQ(missing.entries.size(), 1u);
    EXPECT_EQ(missing.trackedFolders, TrackedFolders{""});
    EXPECT_EQ(missing.longestPath, 0u);
}

TEST(ListFile, AnEmptyListNeverTouchesTheFile) {
    test::TempDir dir;
    dir.write("keep.wall", "C:\\old.jpg\t1\r\n");
    PosixFileSystem fs;
    writeListFile(fs, WallpaperEntries(1), dir.file("keep.wall"), {"", "D:\\folder"});
    EXPECT_EQ(dir.read("keep.wall"), "C:\\old.jpg\t1\r\n");
    writeListFile(fs, WallpaperEntries(1), dir.file("new.wall"), {""});
    EXPECT_FALSE(dir.exists("new.wall"));
    writeListFile(fs, WallpaperEntries{}, dir.file("new.wall"), {""});
    EXPECT_FALSE(dir.exists("new.wall"));
}

TEST(ListFile, WriteThenReadGivesTheSameList) {
    test::TempDir dir;
    PosixFileSystem fs;
    WallpaperEntries entries;
    for (int i = 0; i < 50; ++i) {
        entries.push_back({"C:\\Pictures\\p" + std::to_string(i) + ".jpg", static_cast<Orientation>(i % 6 - 1)});
    }
    entries.emplace_back();
    const TrackedFolders folders{"", "D:\\Photos", "E:\\x"};
    writeListFile(fs, entries, dir.file("l.wall"), folders);
    const auto back = readListFile(fs, dir.file("l.wall"), ListReader::Manager, 0);
    ASSERT_EQ(back.entries.size(), entries.size());
    for (size_t i = 0; i < entries.size(); ++i) {
        EXPECT_EQ(back.entries[i].path, entries[i].path);
        EXPECT_EQ(back.entries[i].orientation, entries[i].orientation);
    }
    EXPECT_EQ(back.trackedFolders, folders);
    EXPECT_FALSE(dir.exists("l.wall.new"));
}

TEST(ListFile, AReadOnlyListIsLeftAsItWasWithoutAWord) {
    test::TempDir dir;
    dir.write("ro.wall", "C:\\old.jpg\t1\r\n");
    ASSERT_EQ(::chmod(dir.file("ro.wall").c_str(), 0444), 0);
    PosixFileSystem fs;
    WallpaperEntries entries{{"C:\\new.jpg", kTile}, {}};
    writeListFile(fs, entries, dir.file("ro.wall"), {""});
    EXPECT_EQ(dir.read("ro.wall"), "C:\\old.jpg\t1\r\n");
}

TEST(ListTools, CompactKeepsOrderAndEveryFieldAndEndsWithTheSpare) {
    WallpaperEntries entries(5);
    entries[0] = {"", kTile};
    entries[1] = {"C:\\a.jpg", kScale, 600, 800, 12345.0};
    entries[2] = {" ", kStretch};  // a blank path is not an empty one
    entries[3] = {"C:\\b.jpg", kAuto};
    const WallpaperEntries got = compactEntries(entries);
    ASSERT_EQ(got.size(), 4u);
    EXPECT_EQ(got[0].path, "C:\\a.jpg");
    EXPECT_EQ(got[0].orientation, kScale);
    EXPECT_EQ(got[0].height, 600);
    EXPECT_EQ(got[0].width, 800);
    EXPECT_EQ(got[0].size, 12345.0);
    EXPECT_EQ(got[1].path, " ");
    EXPECT_EQ(got[2].path, "C:\\b.jpg");
    EXPECT_EQ(got[3].path, "");
    EXPECT_EQ(compactEntries(WallpaperEntries(1)).size(), 1u);
    EXPECT_EQ(compactEntries(WallpaperEntries{}).size(), 1u);
}

TEST(ListTools, ImageFilesByTheirEnding) {
    const std::pair<const char*, bool> cases[] = {
        {"PHOTO.JPEG", true}, {"x.jpe", true},      {"C:\\a\\b.Jpg", true}, {"b.bmp", true},    {"c.GIF", true},
        {"x.png", false},     {"x.jpg.txt", false}, {"ab", false},          {"jpg", false},     {".jpg", true},
        {"", false},          {"x.tif", false},     {"xjpg", false},        {"x.jpeg ", false},
    };
    for (const auto& [name, want] : cases) {
        EXPECT_EQ(isImageFile(name), want) << name;
    }
}

TEST(ListTools, OrientationNames) {
    EXPECT_STREQ(orientationName(kCenter), "Center");
    EXPECT_STREQ(orientationName(kTile), "Tile");
    EXPECT_STREQ(orientationName(kStretch), "Stretch");
    EXPECT_STREQ(orientationName(kScale), "Scale");
    EXPECT_STREQ(orientationName(kAuto), "Auto");
    EXPECT_STREQ(orientationName(5), "");
    EXPECT_STREQ(orientationName(-1), "");
}

}  // namespace
}  // namespace tl
