#include "manager/folder_scan.h"
#include "manager/manager_fixture.h"

namespace tl::test {
namespace {

using ::testing::ElementsAre;
using ::testing::UnorderedElementsAre;

using FolderAdd = ManagerTest;

TEST_F(FolderAdd, TakesEverySubFolderBreadthFirstBmpThenJpegThenJpgButLeavesGifOut) {
    files({"C:\\P\\Deep\\Deeper\\z.bmp", "C:\\P\\Deep\\Deeper\\g.GIF", "C:\\P\\Deep\\y.jpg", "C:\\P\\x.jpg",
           "C:\\P\\w.JPEG", "C:\\P\\v.bmp", "C:\\P\\d.gif", "C:\\P\\notes.txt"});
    view.dir1 = view.highlighted = "C:\\P";
    std::vector<std::string> statuses;
    view.onProgress = [&] { statuses.push_back(manager.scanStatus()); };
    EXPECT_EQ(manager.addFolder(), 5);
    EXPECT_THAT(list1.lines(), ElementsAre("C:\\P\\v.bmp", "C:\\P\\w.JPEG", "C:\\P\\x.jpg", "C:\\P\\Deep\\y.jpg",
                                           "C:\\P\\Deep\\Deeper\\z.bmp"));
    expectAligned();
    EXPECT_EQ(view.log, "busy;entryControls;idle;");
    EXPECT_THAT(view.captions, ElementsAre("Getting Directories...", "Adding files...", ""));
    EXPECT_EQ(statuses.front(), "C:\\P\r\nAdded so far:  1");
    EXPECT_TRUE(manager.listChanged());
}

TEST_F(FolderAdd, AnExtraPassAddsThePicturesInTheRootOfTheCurrentDriveAndGifsAloneAddNothing) {
    files({"D:\\Only\\a.jpg", "C:\\root.jpg", "C:\\root.gif"});
    view.dir1 = view.highlighted = "D:\\Only";
    EXPECT_EQ(manager.addFolder(), 2);
    EXPECT_THAT(list1.lines(), ElementsAre("D:\\Only\\a.jpg", "\\root.jpg"));

    file("E:\\Anim\\a.gif");
    view.dir1 = view.highlighted = "E:\\Anim";
    view.log.clear();
    EXPECT_EQ(manager.addFolder(), 0);
    EXPECT_EQ(view.log, "busy;idle;") << "no entry controls when nothing was added";
}

TEST_F(FolderAdd, ADriveRootGivesDoubledSeparators) {
    files({"E:\\a.jpg", "E:\\Sub\\b.jpg"});
    view.dir1 = view.highlighted = "E:\\";
    manager.addFolder();
    EXPECT_THAT(list1.lines(), UnorderedElementsAre("E:\\\\a.jpg", "E:\\\\Sub\\b.jpg"));
}

TEST_F(FolderAdd, TheTableHolds1001FoldersAndPastItTheAddStopsWithAMessageKeepingWhatItAdded) {
    for (int i = 0; i < 1000; ++i) {
        file("C:\\Big\\f" + std::to_string(i) + "\\p.jpg");
    }
    EXPECT_EQ(collectFolders(fs, "C:\\Big").folders.size(), 1001u);
    EXPECT_FALSE(collectFolders(fs, "C:\\Big").overflowed);

    // Row 0 is Big, rows 1-1000 its sub-folders; the 1,001st sub-folder (f1000 or any other) no longer fits.
    files({"C:\\Big\\f1000\\p.jpg", "C:\\Big\\top.jpg"});
    const FolderTable table = collectFolders(fs, "C:\\Big");
    EXPECT_EQ(table.folders.size(), 1001u);
    EXPECT_TRUE(table.overflowed);
    view.dir1 = view.highlighted = "C:\\Big";
    EXPECT_EQ(manager.addFolder(), 1001) << "top.jpg and the pictures of the 1,000 sub-folders that fitted";
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].title, "Too many folders");
    EXPECT_NE(ui.messages[0].text.find("more than 1001 folders"), std::string::npos) << ui.messages[0].text;
    expectAligned();
    EXPECT_EQ(view.log, "busy;entryControls;idle;");
}

TEST_F(FolderAdd, SkipsDuplicatesAndSortsWhenAsked) {
    files({"C:\\S\\b.jpg", "C:\\S\\a.jpg", "C:\\S\\c.jpg"});
    app.settings.AutoSortFolder = true;
    manager.load(1024, 768);  // reads no list: AppState.listPath is empty
    manager.addEntry("c:\\s\\C.JPG", kCenter);
    view.dir1 = view.highlighted = "C:\\S";
    EXPECT_EQ(manager.addFolder(), 2);
    EXPECT_THAT(list1.lines(), ElementsAre("C:\\S\\a.jpg", "C:\\S\\b.jpg", "c:\\s\\C.JPG"));
    expectAligned();
}

// A name the platform gives with a character UTF-8 can't hold (here: bytes that are not UTF-8) is never
// listed under the name it shows; the user is told of it once, at the end of the add or the drop.
TEST_F(FolderAdd, NamesOfAnyScriptAreAddedAndOnesUtf8CantHoldAreToldOfOnce) {
    files({"C:\\Été 2024\\plage.jpg", "C:\\Été 2024\\東京 夜景.jpg", "C:\\Été 2024\\Москва.bmp",
           "C:\\Été 2024\\\U0001F305.jpeg", "C:\\Été 2024\\bad\xFF.jpg", "C:\\Été 2024\\Sub\xFE\\x.jpg"});
    view.dir1 = view.highlighted = "C:\\Été 2024";
    EXPECT_EQ(manager.addFolder(), 4);
    EXPECT_THAT(list1.lines(), UnorderedElementsAre("C:\\Été 2024\\plage.jpg", "C:\\Été 2024\\東京 夜景.jpg",
                                                    "C:\\Été 2024\\Москва.bmp", "C:\\Été 2024\\\U0001F305.jpeg"));
    expectAligned();
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_NE(ui.messages[0].text.find("\r\nC:\\Été 2024\\Sub\uFFFD\r\nC:\\Été 2024\\bad\uFFFD.jpg\r\n"),
              std::string::npos)
        << ui.messages[0].text;

    manager.dropFiles({"D:\\Ελλάδα.gif"}, {"D:\\x\uFFFD.jpg"});
    EXPECT_EQ(list1.lines().back(), "D:\\Ελλάδα.gif");
    ASSERT_EQ(ui.messages.size(), 2u);
    EXPECT_NE(ui.messages[1].text.find("D:\\x\uFFFD.jpg"), std::string::npos);
}

}  // namespace
}  // namespace tl::test
