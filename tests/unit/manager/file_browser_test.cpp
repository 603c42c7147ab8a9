#include "manager/file_browser.h"

#include "manager/manager_fixture.h"

namespace tl::test {
namespace {

using ::testing::ElementsAre;

using FileBrowser = ManagerTest;

TEST(FolderPathForBrowser, KeepsARootsSeparatorAndDropsOthers) {
    const std::pair<const char*, const char*> cases[] = {
        {"C:", "C:\\"}, {"C:\\", "C:\\"}, {"C:\\Photos\\", "C:\\Photos"}, {" D:\\x ", "D:\\x"}};
    for (const auto& [in, want] : cases) {
        EXPECT_EQ(folderPathForBrowser(in), want) << in;
    }
}

// Each line as "text=path", the open folder's marked.
std::vector<std::string> shown(const FolderListing& listing) {
    std::vector<std::string> out;
    for (const auto& line : listing.lines) {
        out.push_back(line.text + "=" + line.path + (out.size() == size_t(listing.openIndex) ? " (open)" : ""));
    }
    return out;
}

TEST_F(FileBrowser, AFolderListsItsAncestorsItselfAndItsSubFoldersAndADriveRootItsFolders) {
    folder("C:\\Photos\\Trips\\rome");
    folder("C:\\Photos\\Trips\\Athens");
    folder("C:\\Photos\\Trips\\berlin");
    file("C:\\Photos\\Trips\\a.jpg");
    EXPECT_THAT(shown(listFolder(fs, "C:\\Photos\\Trips\\")),
                ElementsAre("C:\\=C:\\", "  Photos=C:\\Photos", "    Trips=C:\\Photos\\Trips (open)",
                            "      Athens=C:\\Photos\\Trips\\Athens", "      berlin=C:\\Photos\\Trips\\berlin",
                            "      rome=C:\\Photos\\Trips\\rome"));
    folder("D:\\Pictures");
    EXPECT_THAT(shown(listFolder(fs, "D:")), ElementsAre("D:\\=D:\\ (open)", "  Pictures=D:\\Pictures"));
}

TEST_F(FileBrowser, TheFileListShowsThePatternsPicturesOnceInNameOrder) {
    for (const char* name : {"b.JPG", "a.gif", "c.jpeg", "D.bmp", "e.png", "f.jpe", "notes.txt"}) {
        file(std::string("C:\\P\\") + name);
    }
    folder("C:\\P\\folder.jpg");
    std::vector<std::string> names;
    for (const DirEntry& file : listPictureFiles(fs, "C:\\P")) {
        names.push_back(file.name);
    }
    EXPECT_THAT(names, ElementsAre("a.gif", "b.JPG", "c.jpeg", "D.bmp"));
    EXPECT_EQ(fileCountText(0), " 0 total files.");
}

}  // namespace
}  // namespace tl::test
