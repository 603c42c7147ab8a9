#include <algorithm>

#include "manager/folder_scan.h"
#include "manager/manager_fixture.h"

namespace tl::test {
namespace {

using ::testing::ElementsAre;
using ::testing::UnorderedElementsAre;

class FolderAdd : public ManagerTest {
  protected:
    void highlight(const std::string& folder) {
        view.dir1 = folder;
        view.highlighted = folder;
    }
};

TEST_F(FolderAdd, TakesEverySubFolderButLeavesGifOut) {
    file("C:\\Photos\\a.jpg");
    file("C:\\Photos\\b.JPEG");
    file("C:\\Photos\\c.bmp");
    file("C:\\Photos\\d.gif");
    file("C:\\Photos\\notes.txt");
    file("C:\\Photos\\Trips\\e.jpg");
    file("C:\\Photos\\Trips\\Rome\\f.bmp");
    file("C:\\Photos\\Trips\\Rome\\g.GIF");
    highlight("C:\\Photos");

    EXPECT_EQ(manager.addFolder(), 5);
    EXPECT_THAT(list1.lines(), UnorderedElementsAre("C:\\Photos\\a.jpg", "C:\\Photos\\b.JPEG", "C:\\Photos\\c.bmp",
                                                    "C:\\Photos\\Trips\\e.jpg", "C:\\Photos\\Trips\\Rome\\f.bmp"));
    expectAligned();
    EXPECT_EQ(view.log, "busy;entryControls;idle;");
    EXPECT_THAT(view.captions, ElementsAre("Getting Directories...", "Adding files...", ""));
    EXPECT_TRUE(manager.listChanged());
}

TEST_F(FolderAdd, SearchesBmpThenJpegThenJpgFolderByFolderBreadthFirst) {
    file("C:\\P\\Deep\\Deeper\\z.bmp");
    file("C:\\P\\Deep\\y.jpg");
    file("C:\\P\\x.jpg");
    file("C:\\P\\w.jpeg");
    file("C:\\P\\v.bmp");
    highlight("C:\\P");
    manager.addFolder();
    EXPECT_THAT(list1.lines(), ElementsAre("C:\\P\\v.bmp", "C:\\P\\w.jpeg", "C:\\P\\x.jpg", "C:\\P\\Deep\\y.jpg",
                                           "C:\\P\\Deep\\Deeper\\z.bmp"));
}

TEST_F(FolderAdd, AnExtraPassAddsThePicturesInTheRootOfTheCurrentDrive) {
    file("D:\\Only\\a.jpg");
    file("C:\\root.jpg");
    file("C:\\root.gif");
    highlight("D:\\Only");
    EXPECT_EQ(manager.addFolder(), 2);
    EXPECT_THAT(list1.lines(), ElementsAre("D:\\Only\\a.jpg", "\\root.jpg"));
}

TEST_F(FolderAdd, AFolderOfGifsAloneAddsNothing) {
    file("C:\\Anim\\a.gif");
    file("C:\\Anim\\b.gif");
    highlight("C:\\Anim");
    EXPECT_EQ(manager.addFolder(), 0);
    EXPECT_EQ(list1.count(), 0);
    EXPECT_EQ(view.log, "busy;idle;") << "no entry controls when nothing was added";
}

TEST_F(FolderAdd, ADriveRootGivesDoubledSeparators) {
    file("E:\\a.jpg");
    file("E:\\Sub\\b.jpg");
    highlight("E:\\");
    manager.addFolder();
    EXPECT_THAT(list1.lines(), UnorderedElementsAre("E:\\\\a.jpg", "E:\\\\Sub\\b.jpg"));
}

TEST_F(FolderAdd, TheTableHoldsExactly1001Folders) {
    for (int i = 0; i < 1000; ++i) {
        folder("C:\\Big\\f" + std::to_string(i));
    }
    file("C:\\Big\\f999\\last.jpg");
    const FolderTable table = collectFolders(fs, "C:\\Big");
    EXPECT_EQ(table.folders.size(), 1001u);
    EXPECT_FALSE(table.overflowed);

    highlight("C:\\Big");
    EXPECT_EQ(manager.addFolder(), 1);
    EXPECT_TRUE(ui.messages.empty());
}

TEST_F(FolderAdd, PastTheTableItStopsWithAMessageAndKeepsWhatItAdded) {
    // Row 0 is Big, rows 1-1000 its sub-folders; the 1,001st sub-folder (f1000 or any other) no longer fits.
    for (int i = 0; i < 1001; ++i) {
        file("C:\\Big\\f" + std::to_string(i) + "\\p.jpg");
    }
    file("C:\\Big\\top.jpg");
    const FolderTable table = collectFolders(fs, "C:\\Big");
    EXPECT_EQ(table.folders.size(), 1001u);
    EXPECT_TRUE(table.overflowed);

    highlight("C:\\Big");
    EXPECT_EQ(manager.addFolder(), 1001) << "top.jpg and the pictures of the 1,000 sub-folders that fitted";
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].title, "Too many folders");
    EXPECT_NE(ui.messages[0].text.find("more than 1001 folders"), std::string::npos) << ui.messages[0].text;
    EXPECT_EQ(list1.count(), 1001);
    expectAligned();
    EXPECT_EQ(view.log, "busy;entryControls;idle;");
}

TEST_F(FolderAdd, SkipsDuplicatesAndSortsWhenAsked) {
    file("C:\\S\\b.jpg");
    file("C:\\S\\a.jpg");
    file("C:\\S\\c.jpg");
    app.settings.AutoSortFolder = true;
    manager.load(1024, 768);  // reads no list: AppState.listPath is empty
    manager.addEntry("c:\\s\\C.JPG", kCenter);
    highlight("C:\\S");
    EXPECT_EQ(manager.addFolder(), 2);
    EXPECT_THAT(list1.lines(), ElementsAre("C:\\S\\a.jpg", "C:\\S\\b.jpg", "c:\\s\\C.JPG"));
    expectAligned();
}

TEST_F(FolderAdd, ReportsItsProgressInTheBusyText) {
    file("C:\\T\\a.jpg");
    file("C:\\T\\b.jpg");
    highlight("C:\\T");
    std::vector<std::string> statuses;
    view.onProgress = [&] { statuses.push_back(manager.scanStatus()); };
    manager.addFolder();
    EXPECT_THAT(statuses, ElementsAre("C:\\T\r\nAdded so far:  1", "C:\\T\r\nAdded so far:  2"));
}

}  // namespace
}  // namespace tl::test
