#include "manager/file_browser.h"

#include "manager/manager_fixture.h"

namespace tl::test {
namespace {

using ::testing::ElementsAre;

using FileBrowser = ManagerTest;

TEST(FolderPathForBrowser, KeepsARootsSeparatorAndDropsOthers) {
    const std::pair<const char*, const char*> cases[] = {
        {"C:", "C:\\"}, {"C:\\", "C:\\"}, {"C:\\Photos\\", "C:\\Photos"}, {" D:\\x ", "D:\\x"}, {"D:\\x", "D:\\x"}};
    for (const auto& [in, want] : cases) {
        EXPECT_EQ(folderPathForBrowser(in), want) << in;
    }
}

TEST_F(FileBrowser, AFolderListsItsAncestorsItselfAndItsSubFoldersInNameOrder) {
    folder("C:\\Photos\\Trips\\rome");
    folder("C:\\Photos\\Trips\\Athens");
    folder("C:\\Photos\\Trips\\berlin");
    file("C:\\Photos\\Trips\\a.jpg");
    const FolderListing listing = listFolder(fs, "C:\\Photos\\Trips\\");
    std::vector<std::string> texts;
    std::vector<std::string> paths;
    for (const auto& line : listing.lines) {
        texts.push_back(line.text);
        paths.push_back(line.path);
    }
    EXPECT_THAT(texts, ElementsAre("C:\\", "  Photos", "    Trips", "      Athens", "      berlin", "      rome"));
    EXPECT_THAT(paths, ElementsAre("C:\\", "C:\\Photos", "C:\\Photos\\Trips", "C:\\Photos\\Trips\\Athens",
                                   "C:\\Photos\\Trips\\berlin", "C:\\Photos\\Trips\\rome"));
    EXPECT_EQ(listing.openIndex, 2);
}

TEST_F(FileBrowser, ADriveRootListsItselfAndItsFolders) {
    folder("D:\\Pictures");
    const FolderListing listing = listFolder(fs, "D:");
    ASSERT_EQ(listing.lines.size(), 2u);
    EXPECT_EQ(listing.lines[0].path, "D:\\");
    EXPECT_EQ(listing.lines[1].path, "D:\\Pictures");
    EXPECT_EQ(listing.openIndex, 0);
}

TEST_F(FileBrowser, TheFileListShowsThePatternsPicturesOnceInNameOrder) {
    for (const char* name : {"b.JPG", "a.gif", "c.jpeg", "D.bmp", "e.png", "f.jpe", "notes.txt"}) {
        file(std::string("C:\\P\\") + name);
    }
    folder("C:\\P\\folder.jpg");
    EXPECT_THAT(listPictureFiles(fs, "C:\\P"), ElementsAre("a.gif", "b.JPG", "c.jpeg", "D.bmp"));
    EXPECT_EQ(fileCountText(0), " 0 total files.");
}

}  // namespace
}  // namespace tl::test
