// The user's clicks on List1 and orType, and editing the running list: removing, addPaper, deletePaper,
// setTrackerList and the panel's delete.
#include <gtest/gtest.h>

#include <tuple>

#include "changer/commands.h"
#include "changer/fake_changer_platform.h"
#include "lists/image_info.h"

namespace tl::test {
namespace {

class ListEditing : public ::testing::Test, public ChangerFixture {};

TEST_F(ListEditing, ClickingAnotherLineAppliesItAndClickingTheLineOnShowCyclesItsOrientation) {
    start({"a", "b", "c"});
    userClick(1);
    EXPECT_EQ(form.previewTag(), pic("b"));
    EXPECT_EQ(fake.count("load "), 1);
    EXPECT_EQ(fake.count("spi "), 1);
    EXPECT_EQ(fake.orType, kCenter) << "orType shows the entry's orientation";
    for (Orientation o : {kTile, kStretch, kScale, kFill, kCenter, kTile}) {
        fake.log.clear();
        userClick(1);
        EXPECT_EQ(std::tuple(form.entries()[1].orientation, form.lastAppliedOrientation(), fake.orType,
                             fake.count("reg WallpaperStyle=")),
                  std::tuple(o, o, orientationBoxIndex(o), 1))
            << "entry, applied, orType and one re-apply";
    }
    EXPECT_EQ(dir.read("MyWallpapers.wall"), pic("a") + "\t0\r\n" + pic("b") + "\t1\r\n" + pic("c") + "\t0\r\n")
        << "a new orientation is saved with the list at once";
}

TEST_F(ListEditing, TheTraysOrientationItemsReapplyTheCurrentEntryUnlessAlreadyApplied) {
    start({"a", "b"});
    fake.orType = kCenter;
    form.onOrTypeClick();
    EXPECT_TRUE(fake.log.empty());
    form.onMenuCommand(mnuTraySOScaled);
    EXPECT_EQ(form.entries()[0].orientation, kScale);
    EXPECT_EQ(fake.count("scale "), 1);
    EXPECT_TRUE(form.menus().checked(mnuTraySOScaled));
    EXPECT_FALSE(form.menus().checked(mnuTraySOCentered));
    fake.log.clear();
    form.onMenuCommand(mnuTraySOScaled);
    EXPECT_TRUE(fake.log.empty());
}

TEST_F(ListEditing, RemovingSelectedLinesAppliesTheOneAfterThemOrOnlyBeeps) {
    start({"a", "b", "c", "d"});
    form.onMenuCommand(mnuTrayRemoveFromList);
    EXPECT_EQ(fake.list.lines(), (std::vector<std::string>{pic("b"), pic("c"), pic("d")}));
    EXPECT_EQ(fake.matching("load "), std::vector<std::string>{"load " + pic("b")});
    EXPECT_EQ(fake.list.listIndex(), 0);

    fake.list.setSelected(1, true);  // with b, on show
    fake.log.clear();
    form.removeSelectedEntries();
    EXPECT_EQ(fake.list.lines(), std::vector<std::string>{pic("d")});
    EXPECT_EQ(fake.matching("load "), std::vector<std::string>{"load " + pic("d")});

    fake.list.setListIndex(-1);
    fake.log.clear();
    form.removeSelectedEntries();
    EXPECT_EQ(fake.log, std::vector<std::string>{"beep"});
    EXPECT_EQ(fake.list.count(), 1);
}

TEST_F(ListEditing, AddPaperAppendsAnImageOnceWritesTheListAndKeepsTheLineOnShow) {
    start({"a", "b"});
    userClick(1);
    fake.log.clear();
    int16_t result = -1;
    form.addPaper(pic("new"), false, result);
    EXPECT_EQ(result, 2);
    EXPECT_EQ(fake.list.lines(), (std::vector<std::string>{pic("a"), pic("b"), pic("new")}));
    EXPECT_EQ(dir.read("MyWallpapers.wall"), pic("a") + "\t0\r\n" + pic("b") + "\t0\r\n" + pic("new") + "\t0\r\n");
    EXPECT_EQ(fake.list.listIndex(), 1) << "the engine goes on from the line on show";
    for (const std::string& again : {pic("new"), std::string("C:\\P\\NEW.JPG"), std::string("C:\\notes.txt")}) {
        result = -1;
        form.addPaper(again, true, result);
        EXPECT_EQ(result, 0) << again;
    }
    EXPECT_EQ(fake.list.count(), 3);
    EXPECT_EQ(fake.count("load "), 0) << "nothing applied";
}

TEST_F(ListEditing, AddPaperWithAutoTakesTheOrientationFromThePicturesSizeAndAppliesWhenAsked) {
    start({"a"});
    app.settings.DefaultAddOrientation = kAuto;
    const struct {
        const char* name;
        int width, height;
        Orientation expected;
    } cases[] = {{"tall.bmp", 400, 600, kTile}, {"screen.bmp", 800, 600, kStretch}, {"huge.bmp", 1000, 2000, kCenter}};
    for (const auto& c : cases) {
        const std::string path = dir.path() + "\\" + c.name;
        dir.write(c.name, bmpHeader(c.width, c.height));
        int16_t result = 0;
        form.addPaper(path, true, result);
        ASSERT_GT(result, 0) << c.name;
        EXPECT_EQ(form.entries()[static_cast<size_t>(result)].orientation, c.expected) << c.name;
        EXPECT_EQ(form.previewTag(), path) << c.name << " is applied, being selected";
        EXPECT_EQ(fake.list.listIndex(), result);
    }
    EXPECT_EQ(form.entries()[1].width, 0) << "the size decided the orientation and was not kept";

    const int before = fake.list.count();
    int16_t result = 0;
    EXPECT_THROW(form.addPaper(dir.path() + "\\missing.jpg", true, result), ImageReadError);
    EXPECT_EQ(fake.list.count(), before) << "an unreadable file adds nothing";
    EXPECT_EQ(imageCount(form.entries()), before);
}

TEST_F(ListEditing, DeletePaperReselectsOnlyWhenTheWallpaperOnShowGoes) {
    const struct {
        const char* what;
        int onShow;
        std::string removed;
        bool reselect;
        std::vector<std::string> loads;  // what is applied afterwards
        std::string tag;
        int current;
    } cases[] = {
        {"the last line, on show", 2, pic("c"), false, {"load " + pic("b")}, "", 1},
        {"a line before the one on show", 2, pic("a"), false, {}, pic("c"), 1},
        {"a line after the one on show", 0, pic("b"), false, {}, pic("a"), 0},
        {"asked to reselect anyway", 0, pic("b"), true, {"load " + pic("c")}, "", 1},
        {"any case", 1, "C:\\P\\B.JPG", false, {"load " + pic("c")}, "", 1},
        {"not listed", 1, pic("x"), false, {}, pic("b"), 1},
    };
    for (const auto& c : cases) {
        ChangerFixture f;
        f.start({"a", "b", "c"});
        if (c.onShow != 0) {
            f.userClick(c.onShow);
            f.fake.log.clear();
        }
        f.form.deletePaper(c.removed, c.reselect);
        EXPECT_EQ(std::tuple(f.fake.matching("load "), f.form.previewTag(), f.fake.list.listIndex(),
                             f.form.lastRemovedPath(), f.fake.list.count(), f.fake.count("reg ")),
                  std::tuple(c.loads, c.tag, c.current, c.removed, c.removed == pic("x") ? 3 : 2,
                             static_cast<int>(c.loads.size()) * 3))
            << c.what;
    }
}

TEST_F(ListEditing, RemovingTheOnlyEntryEmptiesThePanelAndNonImagesAreIgnored) {
    start({"a"});
    form.deletePaper("C:\\p\\notes.txt", true);
    EXPECT_EQ(fake.list.count(), 1);
    EXPECT_EQ(form.lastRemovedPath(), "") << "a non-image path is not recorded";
    form.deletePaper(pic("a"), false);
    EXPECT_EQ(fake.list.count(), 0);
    EXPECT_EQ(fake.list.listIndex(), -1);
    EXPECT_EQ(form.previewTag(), "");
    EXPECT_EQ(fake.count("clear preview"), 1);
    form.switchWallpaper(false);  // the clock on an empty list
    EXPECT_EQ(fake.count("load "), 0);
}

TEST_F(ListEditing, DeletingSeveralLinesDeletesEverySelectedFileAndNoOther) {
    start({"a", "b", "c", "d", "e"});
    fake.list.setSelected(1, true);
    fake.list.setSelected(3, true);
    fake.list.setSelected(0, false);
    fake.kept = {pic("d")};  // the user says no for this one
    // While the shell asks about b, the tracker hears of its deletion and of a new picture, which it
    // selects: the line numbers of the walk move under it.
    fake.duringRemoval = [&](const std::string& path) {
        if (path == pic("b")) {
            form.deletePaper(path, false);
            int16_t result = 0;
            form.addPaper(pic("new"), true, result);
        }
    };
    form.onPanelButton(PanelButton::Image2, kNoKeys);
    EXPECT_EQ(fake.matching("recycle "), (std::vector<std::string>{"recycle " + pic("b"), "recycle " + pic("d")}));
    EXPECT_EQ(fake.list.lines(), (std::vector<std::string>{pic("a"), pic("c"), pic("d"), pic("e"), pic("new")}));
    EXPECT_FALSE(form.panelBusy());

    // A file the tracker saw go and come back leaves the list again when the user deletes it.
    fake.duringRemoval = nullptr;
    fake.kept.clear();
    form.deletePaper(pic("c"), false);
    int16_t result = 0;
    form.addPaper(pic("c"), false, result);
    userClick(result);
    fake.log.clear();
    form.onMenuCommand(mnuTrayDelete);
    EXPECT_EQ(fake.matching("recycle "), std::vector<std::string>{"recycle " + pic("c")});
    EXPECT_EQ(fake.list.findExact(pic("c")), -1);
}

TEST_F(ListEditing, WhileADeletionRunsThePanelOnlyBeeps) {
    start({"a", "b", "c"});
    fake.duringRemoval = [&](const std::string&) {
        for (PanelButton b : {PanelButton::Image5, PanelButton::Image1, PanelButton::Image4, PanelButton::Image3,
                              PanelButton::Image2, PanelButton::Preview}) {
            form.onPanelButton(b, kNoKeys);
        }
        form.onMenuCommand(mnuRemoveFile);
    };
    form.onPanelButton(PanelButton::Image2, kCtrlKey);
    EXPECT_EQ(fake.count("beep"), 7);
    EXPECT_EQ(fake.count("web page") + fake.count("show manager") + fake.count("pop up") + fake.count("preview"), 0);
    EXPECT_EQ(fake.list.lines(), (std::vector<std::string>{pic("b"), pic("c")})) << "only a was selected";
    EXPECT_FALSE(form.panelBusy());
}

TEST_F(ListEditing, SetTrackerListTakesTheTrackersShapeAndWritesAtOnce) {
    start({"a"});
    form.setTrackerList({"C:\\Pics", "D:\\More", ""});
    EXPECT_EQ(form.trackedFolders(), (TrackedFolders{"", "C:\\Pics", "D:\\More"}));
    EXPECT_EQ(dir.read("MyWallpapers.wall"), pic("a") + "\t0\r\n#C:\\Pics\r\n#D:\\More\r\n");
    form.setTrackerList({""});
    EXPECT_EQ(dir.read("MyWallpapers.wall"), pic("a") + "\t0\r\n");
    EXPECT_FALSE(form.hasTrackedFolders());
}

}  // namespace
}  // namespace tl::test
