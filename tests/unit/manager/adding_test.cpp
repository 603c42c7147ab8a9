#include <tuple>
#include <utility>

#include "manager/manager_fixture.h"

namespace tl::test {
namespace {

using ::testing::ElementsAre;

using Adding = ManagerTest;

TEST_F(Adding, DuplicatesDifferingOnlyInCaseAreSkippedSilentlyUnlessTheCheckIsOff) {
    view.dir1 = "C:\\Photos";
    view.selectedFiles = {"Sea.jpg"};
    manager.addFiles();
    view.dir1 = "c:\\PHOTOS";
    view.selectedFiles = {"SEA.JPG", "sky.jpg"};
    manager.addFiles();
    EXPECT_THAT(list1.lines(), ElementsAre("C:\\Photos\\Sea.jpg", "c:\\PHOTOS\\sky.jpg"));
    EXPECT_TRUE(ui.messages.empty());
    EXPECT_TRUE(manager.checkDupe("c:\\photos\\sea.jpg"));
    EXPECT_FALSE(manager.checkDupe("c:\\photos"));

    app.settings.CheckForDuplicates = false;
    manager.addFiles();
    EXPECT_EQ(list1.count(), 4);
    expectAligned();
}

TEST_F(Adding, SelectedFilesKeepTheirOrderAndOrientationAndInADriveRootGetADoubledSeparator) {
    view.dir1 = "C:\\P";
    view.selectedFiles = {"b.gif", "a.jpg"};
    view.addOrientation_ = kScale;
    manager.addFiles();
    EXPECT_EQ(manager.entries()[1].orientation, kScale);
    EXPECT_EQ(manager.entries()[0].width, 0) << "only Auto reads the picture";
    view.addOrientation_ = kCenter;
    file("C:\\a.jpg");
    view.dir1 = "C:\\";
    view.selectedFiles = {"a.jpg"};
    view.log.clear();
    manager.addFiles();
    manager.dropFiles({"C:\\a.jpg"});
    EXPECT_THAT(list1.lines(), ElementsAre("C:\\P\\b.gif", "C:\\P\\a.jpg", "C:\\\\a.jpg", "C:\\a.jpg"))
        << "the drop is no duplicate of the doubled separator";
    EXPECT_EQ(view.log, "busy;idle;hideList;showList;") << "selected files show no entry controls";
}

TEST_F(Adding, AutoReadsEachPictureAndRefusesAnInvalidOneLeavingAnEmptiedElement) {
    const std::tuple<int, int, Orientation> cases[] = {{800, 600, kStretch}, {400, 600, kTile}, {1000, 2000, kCenter}};
    manager.load(1024, 768);
    for (const auto& [width, height, orientation] : cases) {
        const std::string path = "C:\\p" + std::to_string(width) + ".bmp";
        file(path, bmpHeader(width, height));
        ASSERT_TRUE(manager.addEntry(path, kAuto)) << path;
        const WallpaperEntry& e = manager.entries()[static_cast<size_t>(list1.count() - 1)];
        EXPECT_EQ(std::tuple(e.orientation, e.width, e.height), std::tuple(orientation, width, height))
            << path << ": the size is stored";
    }
    file("C:\\bad.jpg", "not a picture at all");
    for (const char* path : {"C:\\bad.jpg", "C:\\missing.jpg"}) {
        ui.messages.clear();
        EXPECT_FALSE(manager.addEntry(path, kAuto));
        const std::string text = std::string("The file '") + path +
                                 "' seems to be invalid, or I can't open it for some reason. I will not add it.";
        EXPECT_EQ(ui.messages, (std::vector<FakeUi::Message>{{text, "Error", kMbOk}}));
    }
    EXPECT_EQ(list1.count(), 3);
    // Each refused add leaves an emptied element behind; the next add takes the first, so entry i is still
    // line i.
    ASSERT_EQ(manager.entries().size(), 6u);
    EXPECT_EQ(manager.entries()[3].path, "");
    ASSERT_TRUE(manager.addEntry("C:\\later.jpg", kTile));
    EXPECT_EQ(manager.entries()[3].path, "C:\\later.jpg");
    EXPECT_EQ(imageCount(manager.entries()), 6) << "the refused adds' elements stay behind";
}

TEST_F(Adding, SortingCompactsSoThatEntriesStayAlignedWithTheListAndDropsPathsThatNameNoPicture) {
    fs.writeNewFile("C:\\list.wall", "C:\\b.jpg\t1\r\nC:\\notes.txt\t0\r\n");
    app.listPath = "C:\\list.wall";
    manager.load(1024, 768);
    ASSERT_EQ(list1.count(), 2) << "a loaded list shows every line";
    file("C:\\bad.jpg", "junk");
    manager.addEntry("C:\\bad.jpg", kAuto);  // refused: an emptied element, which sorts first
    manager.addEntry("C:\\A.jpg", kStretch);
    manager.addEntry("C:\\bad.jpg", kAuto);
    manager.addEntry("C:\\c.jpg", kScale);
    ASSERT_GT(imageCount(manager.entries()), list1.count());

    manager.sortList();
    EXPECT_THAT(list1.lines(), ElementsAre("C:\\A.jpg", "C:\\b.jpg", "C:\\c.jpg"));
    expectAligned();
    EXPECT_EQ(manager.entries()[0].orientation, kStretch) << "whole entries move together";
    EXPECT_EQ(manager.entries()[1].orientation, kTile);
    EXPECT_EQ(manager.entries()[2].orientation, kScale);
    EXPECT_EQ(view.hourglass, 0);
    EXPECT_EQ(view.caption(), "Tessaline (C:\\list.wall)") << "the caption comes back after \"Sorting...\"";
}

TEST_F(Adding, ADropAddsFilesAndFoldersAndSortsOnceAtTheEnd) {
    files({"C:\\Drop\\z.jpg", "C:\\Drop\\y.gif", "C:\\Loose\\m.jpg"});
    app.settings.AutoSortFolder = true;
    view.dir1 = "C:\\Before";
    view.highlighted = "C:\\Before\\Sub";
    manager.dropFiles({"C:\\Loose\\m.jpg", " C:\\Drop ", std::string("C:\\Loose\\n.gif\0junk", 19), "C:\\readme.txt"});

    EXPECT_THAT(list1.lines(), ElementsAre("C:\\Drop\\z.jpg", "C:\\Loose\\m.jpg", "C:\\Loose\\n.gif"));
    expectAligned();
    EXPECT_TRUE(app.settings.AutoSortFolder) << "the setting comes back after the drop";
    EXPECT_THAT(view.dirHistory, ElementsAre("C:\\Drop", "C:\\Before")) << "Dir1 goes back where it was";
    EXPECT_EQ(view.hourglass, 0);
    EXPECT_EQ(view.log, "hideList;busy;entryControls;idle;showList;");
}

TEST_F(Adding, WhileBusyAddsBeepDropsAreIgnoredAndTheWindowStaysOpen) {
    file("C:\\Busy\\a.jpg");
    view.dir1 = view.highlighted = "C:\\Busy";
    view.selectedFiles = {"x.jpg"};
    bool closed = true, once = false;
    view.onProgress = [&] {
        if (std::exchange(once, true)) {
            return;
        }
        manager.addFiles();
        manager.addFolder();
        manager.dropFiles({"C:\\Busy\\a.jpg", "C:\\other.jpg"});
        closed = manager.mayClose();
    };
    manager.addFolder();
    EXPECT_EQ(ui.beeps, 3) << "two adds and the close";
    EXPECT_FALSE(closed);
    EXPECT_THAT(list1.lines(), ElementsAre("C:\\Busy\\a.jpg"));
    EXPECT_FALSE(manager.busy());
    EXPECT_TRUE(manager.mayClose());
}

}  // namespace
}  // namespace tl::test
