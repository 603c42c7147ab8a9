// Editing the running list: addPaper, deletePaper, setTrackerList and the panel's delete.
#include <gtest/gtest.h>

#include "changer/commands.h"
#include "changer/fake_changer_platform.h"
#include "lists/image_info.h"

namespace tl::test {
namespace {

std::string pic(const std::string& name) {
    return "C:\\p\\" + name + ".jpg";
}

class ListEditing : public ::testing::Test, public ChangerFixture {
  protected:
    // A list of the named pictures, the first on show.
    void start(std::initializer_list<std::string> names) {
        std::vector<std::string> lines;
        for (const auto& n : names) {
            lines.push_back(pic(n) + "\t0");
        }
        writeList(lines);
        loadQuietly();
    }
    void userClick(int line) {
        for (int i = 0; i < host.list.count(); ++i) {
            host.list.setSelected(i, false);
        }
        host.list.setListIndex(line);
        form.onList1Click();
        log.clear();
    }
};

TEST_F(ListEditing, AddPaperAppendsAnImageOnceWritesTheListAndKeepsTheLineOnShow) {
    start({"a", "b"});
    userClick(1);
    int16_t result = -1;
    form.addPaper(pic("new"), false, result);
    EXPECT_EQ(result, 2);
    EXPECT_EQ(host.list.lines(), (std::vector<std::string>{pic("a"), pic("b"), pic("new")}));
    EXPECT_EQ(dir.read("MyWallpapers.wall"), pic("a") + "\t0\r\n" + pic("b") + "\t0\r\n" + pic("new") + "\t0\r\n");
    EXPECT_EQ(host.list.listIndex(), 1) << "the engine goes on from the line on show";
    EXPECT_EQ(log.count("load "), 0) << "nothing applied without select";

    for (const std::string& again : {pic("new"), std::string("C:\\P\\NEW.JPG"), std::string("C:\\notes.txt")}) {
        result = -1;
        form.addPaper(again, true, result);
        EXPECT_EQ(result, 0) << again;
        EXPECT_EQ(host.list.count(), 3) << again;
    }
    EXPECT_EQ(log.count("load "), 0);
}

TEST_F(ListEditing, AddPaperWithAutoTakesTheOrientationFromThePicturesSizeAndAppliesWhenAsked) {
    start({"a"});
    app.settings.DefaultAddOrientation = kAuto;
    struct Case {
        const char* name;
        int width, height;
        Orientation expected;
    };
    const Case cases[] = {
        {"tall.bmp", 400, 600, kTile}, {"screen.bmp", 800, 600, kStretch}, {"huge.bmp", 1000, 2000, kCenter}};
    for (const Case& c : cases) {
        const std::string path = dir.path() + "\\" + c.name;
        dir.write(c.name, FakePictures::bmpHeader(c.width, c.height));
        int16_t result = 0;
        form.addPaper(path, true, result);
        ASSERT_GT(result, 0) << c.name;
        const WallpaperEntry& added = form.entries()[static_cast<size_t>(result)];
        EXPECT_EQ(added.orientation, c.expected) << c.name;
        EXPECT_EQ(form.previewTag(), path) << c.name << " is applied, being selected";
        EXPECT_EQ(host.list.listIndex(), result);
    }
    EXPECT_EQ(form.entries()[1].width, 0) << "the size decided the orientation and was not kept";
    EXPECT_EQ(form.entries()[1].height, 0);

    const int before = host.list.count();
    int16_t result = 0;
    EXPECT_THROW(form.addPaper(dir.path() + "\\missing.jpg", true, result), ImageReadError);
    EXPECT_EQ(host.list.count(), before) << "an unreadable file adds nothing";
    EXPECT_EQ(imageCount(form.entries()), before);
}

TEST_F(ListEditing, DeletePaperReselectsOnlyWhenTheWallpaperOnShowGoes) {
    struct Case {
        const char* what;
        int onShow;
        std::string removed;
        bool reselect;
        std::vector<std::string> loads;  // what is applied afterwards
        std::string tag;
        int current;
    };
    const Case cases[] = {
        {"the last line, on show", 2, pic("c"), false, {"load " + pic("b")}, "", 1},
        {"a line before the one on show", 2, pic("a"), false, {}, pic("c"), 1},
        {"a line after the one on show", 0, pic("b"), false, {}, pic("a"), 0},
        {"asked to reselect anyway", 0, pic("b"), true, {"load " + pic("c")}, "", 1},
        {"any case", 1, "C:\\P\\B.JPG", false, {"load " + pic("c")}, "", 1},
        {"not listed", 1, pic("x"), false, {}, pic("b"), 1},
    };
    for (const Case& c : cases) {
        ChangerFixture f;
        f.writeList({pic("a") + "\t0", pic("b") + "\t0", pic("c") + "\t0"});
        f.loadQuietly();
        if (c.onShow != 0) {
            f.host.list.setSelected(0, false);
            f.host.list.setListIndex(c.onShow);
            f.form.onList1Click();
            f.log.clear();
        }
        f.form.deletePaper(c.removed, c.reselect);
        EXPECT_EQ(f.log.matching("load "), c.loads) << c.what;
        EXPECT_EQ(f.form.previewTag(), c.tag) << c.what;
        EXPECT_EQ(f.host.list.listIndex(), c.current) << c.what;
        EXPECT_EQ(f.form.lastRemovedPath(), c.removed) << c.what;
        EXPECT_EQ(f.host.list.count(), c.removed == pic("x") ? 3 : 2) << c.what;
        EXPECT_EQ(f.log.count("reg "), static_cast<int>(c.loads.size()) * 3) << c.what;
    }
}

TEST_F(ListEditing, DeletingTheOnlyEntryEmptiesThePanelAndNonImagesAreIgnored) {
    start({"a"});
    form.deletePaper("C:\\p\\notes.txt", true);
    EXPECT_EQ(host.list.count(), 1);
    EXPECT_EQ(form.lastRemovedPath(), "") << "a non-image path is not recorded";
    form.deletePaper(pic("a"), false);
    EXPECT_EQ(host.list.count(), 0);
    EXPECT_EQ(host.list.listIndex(), -1);
    EXPECT_EQ(form.previewTag(), "");
    EXPECT_EQ(log.matching("load "), std::vector<std::string>{});
    EXPECT_EQ(log.count("clear preview"), 1);
}

TEST_F(ListEditing, DeletingSeveralLinesDeletesEverySelectedFileAndNoOther) {
    start({"a", "b", "c", "d", "e"});
    host.list.setSelected(1, true);
    host.list.setSelected(3, true);
    host.list.setSelected(0, false);
    host.kept = {pic("d")};  // the user says no for this one
    // While the shell asks about b, the tracker hears of its deletion and of a new picture, which it
    // selects: the line numbers of the walk move under it.
    host.duringRemoval = [&](const std::string& path) {
        if (path == pic("b")) {
            form.deletePaper(path, false);
            int16_t result = 0;
            form.addPaper(pic("new"), true, result);
        }
    };
    form.onPanelButton(PanelButton::Image2, kNoKeys);
    EXPECT_EQ(log.matching("recycle "), (std::vector<std::string>{"recycle " + pic("b"), "recycle " + pic("d")}));
    EXPECT_EQ(host.list.lines(), (std::vector<std::string>{pic("a"), pic("c"), pic("d"), pic("e"), pic("new")}));
    EXPECT_FALSE(form.panelBusy());

    // A file the tracker saw go and come back leaves the list again when the user deletes it.
    host.duringRemoval = nullptr;
    host.kept.clear();
    form.deletePaper(pic("c"), false);
    int16_t result = 0;
    form.addPaper(pic("c"), false, result);
    userClick(result);
    form.onMenuCommand(mnuTrayDelete);
    EXPECT_EQ(log.matching("recycle "), std::vector<std::string>{"recycle " + pic("c")});
    EXPECT_EQ(host.list.findExact(pic("c")), -1);
}

TEST_F(ListEditing, ImageTwosKeysChooseHowFilesAreDeleted) {
    struct Case {
        int keys;
        const char* logged;
    };
    const Case cases[] = {
        {kNoKeys, "recycle "},
        {kShiftKey, "delete "},
        {kCtrlKey, "delete directly "},
        {kAltKey, "recycle "},
        {kShiftKey | kCtrlKey, "recycle "},
        {kShiftKey | kAltKey, "recycle "},
        {kCtrlKey | kAltKey, "recycle "},
    };
    for (const Case& c : cases) {
        ChangerFixture f;
        f.writeList({pic("a") + "\t0", pic("b") + "\t0"});
        f.loadQuietly();
        f.form.onPanelButton(PanelButton::Image2, c.keys);
        ASSERT_FALSE(f.log.lines.empty());
        EXPECT_EQ(f.log.lines[0], c.logged + pic("a")) << "keys " << c.keys;
    }
}

TEST_F(ListEditing, WhileADeletionRunsThePanelOnlyBeeps) {
    start({"a", "b", "c"});
    host.duringRemoval = [&](const std::string&) {
        for (PanelButton b : {PanelButton::Image5, PanelButton::Image1, PanelButton::Image4, PanelButton::Image3,
                              PanelButton::Image2, PanelButton::Preview}) {
            form.onPanelButton(b, kNoKeys);
        }
        form.onMenuCommand(mnuRemoveFile);
    };
    form.onPanelButton(PanelButton::Image2, kCtrlKey);
    EXPECT_EQ(log.count("beep"), 7);
    EXPECT_EQ(log.count("web page") + log.count("show manager") + log.count("pop up") + log.count("preview"), 0);
    EXPECT_EQ(host.list.lines(), (std::vector<std::string>{pic("b"), pic("c")})) << "only a was selected";
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
