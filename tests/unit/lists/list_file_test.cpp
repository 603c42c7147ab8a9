#include <gtest/gtest.h>
#include <sys/stat.h>

#include <tuple>

#include "base/file_system_posix.h"
#include "base/text_file.h"
#include "lists/wallpaper_list.h"
#include "support/faulty_file_system.h"
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
    {"C:\\a.jpg\tStretch", LineCase::Image, "C:\\a.jpg", kStretch},
    {"C:\\a.jpg\tFill...", LineCase::Image, "C:\\a.jpg", kFill},
    {"C:\\a.jpg\tFill..", LineCase::Image, "C:\\a.jpg", kCenter},
    {"C:\\a.jpg\t7", LineCase::Image, "C:\\a.jpg", 7},
    {"C:\\a.jpg\t", LineCase::Image, "C:\\a.jpg", kCenter},
    {"C:\\a.jpg\t 2 ", LineCase::Image, "C:\\a.jpg", kStretch},
    {"C:\\a.jpg\t2\t3", LineCase::Image, "C:\\a.jpg", 23},  // later TABs belong to the field, and are skipped
    {"C:\\a.jpg\t&HFFFF", LineCase::Image, "C:\\a.jpg", -1},
    {"C:\\a.jpg\t&H10000", LineCase::Image, "C:\\a.jpg", 0},  // does not fit in 16 bits
    {"C:\\a.jpg\t2.5", LineCase::Image, "C:\\a.jpg", 2},      // halves go to the even neighbour
    {"C:\\a.jpg\t32767.5", LineCase::Image, "C:\\a.jpg", 0},
    {"C:\\Pictures\\a.jpg", LineCase::Image, "C:\\Pictures\\a.jpg", kCenter},  // no TAB: the path is the field
    {"2 b.jpg", LineCase::Image, "2 b.jpg", kStretch},
    {"  C:\\a.jpg \t1", LineCase::Image, "  C:\\a.jpg ", kTile},  // nothing is trimmed
    {"   ", LineCase::Image, "   ", kCenter},                     // blanks only: kept when read
    {"#D:\\Photos\t2", LineCase::Folder, "D:\\Photos", 0},
    {"# D:\\x#y", LineCase::Folder, " D:\\x#y", 0},
    {"", LineCase::Skipped, "", 0},
    {"\t2", LineCase::Skipped, "", 0},
    {"\t#D:\\x", LineCase::Skipped, "", 0},
};

std::vector<std::string> paths(const WallpaperEntries& entries) {
    std::vector<std::string> out;
    for (const auto& e : entries) {
        out.push_back(e.path);
    }
    return out;
}
std::vector<Orientation> orientations(const ListFileContents& list) {
    std::vector<Orientation> out;
    for (const auto& e : list.entries) {
        out.push_back(e.orientation);
    }
    return out;
}

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
            const WallpaperEntry& e = got.entries[0];
            EXPECT_EQ(std::tuple(e.path, e.orientation, e.width, e.height, e.size),
                      std::tuple(std::string(c.text), c.orientation, 0, 0, 0.0));
        } else if (c.kind == LineCase::Folder) {
            EXPECT_EQ(got.trackedFolders[1], c.text);
        }
    }
}

TEST(ListFile, TheChangerReplacesAutoAndTheManagerKeepsIt) {
    const char* text = "C:\\a.jpg\t4\r\nC:\\b.jpg\t&H4\r\nC:\\c.jpg\t3.9\r\nC:\\d.jpg\t1\r\n";
    EXPECT_EQ(orientations(parseListText(text, ListReader::Changer, kScale)),
              (std::vector<Orientation>{kScale, kScale, kScale, kTile, kCenter}));
    EXPECT_EQ(orientations(parseListText(text, ListReader::Manager, kScale)),
              (std::vector<Orientation>{kAuto, kAuto, kAuto, kTile, kCenter}));
}

TEST(ListFile, LinesEndAtCrOrCrLfButNotAtALoneLf) {
    const auto got = parseListText("a\t1\rb\t2\r\nc\t3\r\r\nd\t&H2\ne\t3", ListReader::Manager, 0);
    EXPECT_EQ(paths(got.entries), (std::vector<std::string>{"a", "b", "c", "d", ""}));
    EXPECT_EQ(got.entries[3].orientation, 0x2E3) << "the LF and what follows belong to the field: &H2 e 3";
    EXPECT_EQ(parseListText("x\t1\r\n", ListReader::Manager, 0).entries.size(), 2u) << "no empty last line";
    EXPECT_EQ(parseListText("", ListReader::Manager, 0).entries.size(), 1u);
    const auto longest =
        parseListText("#D:\\a very long folder name\r\nC:\\ab.jpg\t1\r\nC:\\a.jpg\r\n", ListReader::Changer, 0);
    EXPECT_EQ(longest.longestPath, 9u) << "the longest path counts image lines only";
}

TEST(ListFile, RoundTripThroughTheDiskWritesNumbersImagesThenFoldersAndDropsBlankPaths) {
    const std::string written =
        "C:\\Pictures\\sea.jpg\t2\r\n"
        "C:\\Pictures\\hill.bmp\t1\r\n"
        "C:\\Pictures\\sky.gif\t4\r\n"
        "C:\\Pictures\\odd.jpg\t-3\r\n"
        "#D:\\Photos\r\n"
        "#E:\\More\r\n";
    test::TempDir dir;
    dir.write("a.wall",
              "C:\\Pictures\\sea.jpg\tStretch\r\n#D:\\Photos\r\nC:\\Pictures\\hill.bmp\tTile...\r\n   \t2\r\n"
              "#E:\\More\t1\r\nC:\\Pictures\\sky.gif\t4\rC:\\Pictures\\odd.jpg\t-3\r\n");
    PosixFileSystem fs;
    const Windows1252 ansi;
    const auto read = readListFile(fs, ansi, dir.file("a.wall"), ListReader::Manager, kCenter);
    ASSERT_EQ(imageCount(read.entries), 5) << "the blank-path line is kept on reading";
    EXPECT_EQ(read.entries[3].path, "C:\\Pictures\\sky.gif");
    writeListFile(fs, read.entries, dir.file("b.wall"), read.trackedFolders);
    EXPECT_EQ(dir.read("b.wall"), written);
    const auto back = readListFile(fs, ansi, dir.file("b.wall"), ListReader::Manager, kCenter);
    EXPECT_EQ(listFileText(back.entries, back.trackedFolders), written);
    EXPECT_FALSE(dir.exists("b.wall.new"));

    const auto missing = readListFile(fs, ansi, dir.file("none.wall"), ListReader::Changer, 0);
    EXPECT_EQ(missing.entries.size(), 1u);
    EXPECT_EQ(missing.trackedFolders, TrackedFolders{""});
}

// Lists are written in UTF-8 without a mark, so every name comes back; a list an earlier version wrote in
// the ANSI code page is not valid UTF-8 and is read in that code page.
TEST(ListFile, KeepsNamesOfAnyScriptAndReadsAnEarlierVersionsAnsiList) {
    test::TempDir dir;
    PosixFileSystem fs;
    const Windows1252 ansi;
    const WallpaperEntries entries{{"C:\\Été 2024\\plage.jpg", kStretch},
                                   {"D:\\東京 夜景.jpg", kTile},
                                   {"E:\\Москва.png", kCenter},
                                   {"F:\\\U0001F305 sunset.jpg", kScale},
                                   {}};
    writeListFile(fs, entries, dir.file("new.wall"), {"", "G:\\Ελλάδα"});
    const std::string written = dir.read("new.wall");
    EXPECT_EQ(written.substr(0, 3), "C:\\") << "no byte order mark before the first path";
    const auto back = readListFile(fs, ansi, dir.file("new.wall"), ListReader::Manager, kCenter);
    EXPECT_EQ(listFileText(back.entries, back.trackedFolders), written);

    dir.write("old.wall", "C:\\\xC9t\xE9 2024\\plage.jpg\t2\r\n#D:\\Fotos \x80\r\n");
    const auto old = readListFile(fs, ansi, dir.file("old.wall"), ListReader::Manager, kCenter);
    EXPECT_EQ(paths(old.entries), (std::vector<std::string>{"C:\\Été 2024\\plage.jpg", ""}));
    EXPECT_EQ(old.trackedFolders, (TrackedFolders{"", "D:\\Fotos €"}));
}

TEST(ListFile, WritingSkipsTheLastSlotAndEmptyFoldersAndKeepsPathsUntrimmed) {
    WallpaperEntries entries(4);
    entries[0] = {" C:\\x.jpg ", kScale};
    entries[1] = {"", kTile};
    entries[2] = {"C:\\y.jpg", 32767};
    entries[3] = {"C:\\not-the-spare.jpg", kTile};  // the last slot is never written, whatever it holds
    EXPECT_EQ(listFileText(entries, {"", "D:\\a", "", " "}), " C:\\x.jpg \t3\r\nC:\\y.jpg\t32767\r\n#D:\\a\r\n# \r\n");
}

// The list is replaced through a sibling file and a rename: whatever stops the write, the old list stays
// whole. An empty list never touches the file at all.
TEST(ListFile, AFailedReadOnlyOrEmptyWriteLeavesTheOldListWhole) {
    test::TempDir dir;
    const std::string old = "C:\\old.jpg\t1\r\n";
    const WallpaperEntries entries{{"C:\\new.jpg", kTile}, {}};
    using F = test::FaultyFileSystem::Fault;
    for (F fault : {F::DiskFullDuringWrite, F::CrashBeforeMove}) {
        dir.write("my.wall", old);
        test::FaultyFileSystem fs;
        fs.fault = fault;
        fs.bytesBeforeFault = 5;
        try {
            writeListFile(fs, entries, dir.file("my.wall"), {""});
        } catch (const test::Crash&) {
        }
        EXPECT_EQ(dir.read("my.wall"), old) << "fault " << static_cast<int>(fault);
    }
    PosixFileSystem fs;
    ASSERT_EQ(::chmod(dir.file("my.wall").c_str(), 0444), 0);
    writeListFile(fs, entries, dir.file("my.wall"), {""});
    EXPECT_EQ(dir.read("my.wall"), old) << "a read-only list is left as it was, without a word";
    EXPECT_FALSE(dir.exists("my.wall.new"));
    writeListFile(fs, WallpaperEntries(1), dir.file("keep.wall"), {"", "D:\\folder"});
    EXPECT_FALSE(dir.exists("keep.wall"));
}

TEST(ListTools, CompactKeepsOrderAndEveryFieldAndEndsWithTheSpare) {
    WallpaperEntries entries(5);
    entries[0] = {"", kTile};
    entries[1] = {"C:\\a.jpg", kScale, 600, 800, 12345.0};
    entries[2] = {" ", kStretch};  // a blank path is not an empty one
    entries[3] = {"C:\\b.jpg", kAuto};
    const WallpaperEntries got = compactEntries(entries);
    EXPECT_EQ(paths(got), (std::vector<std::string>{"C:\\a.jpg", " ", "C:\\b.jpg", ""}));
    EXPECT_EQ(std::tuple(got[0].orientation, got[0].height, got[0].width, got[0].size),
              std::tuple(kScale, 600, 800, 12345.0))
        << "every field moves";
    EXPECT_EQ(compactEntries(WallpaperEntries(1)).size(), 1u);
    EXPECT_EQ(compactEntries(WallpaperEntries{}).size(), 1u);
}

TEST(ListTools, ImageFilesByTheirEnding) {
    const std::pair<const char*, bool> cases[] = {
        {"PHOTO.JPEG", true}, {"x.jpe", true}, {"C:\\a\\b.Jpg", true}, {"b.bmp", true}, {"c.GIF", true},
        {"x.png", false},     {".jpg", true},  {"ab", false},          {"xjpg", false}, {"x.jpeg ", false},
    };
    for (const auto& [name, want] : cases) {
        EXPECT_EQ(isImageFile(name), want) << name;
    }
}

}  // namespace
}  // namespace tl
