#include "manager/manager_fixture.h"

namespace tl::test {
namespace {

using ::testing::ElementsAre;

class Commands : public ManagerTest {
  protected:
    void loadWith(std::initializer_list<const char*> paths) {
        manager.load(1024, 768);
        for (const char* p : paths) {
            manager.addEntry(p, kCenter);
        }
    }
    void select(std::initializer_list<int> lines) {
        for (int i : lines) {
            list1.setSelected(i, true);
        }
    }
};

TEST_F(Commands, LoadReadsTheCurrentListKeepsAutoAndHandsItsFoldersToTheTracker) {
    fs.writeNewFile("C:\\cur.wall", "C:\\a.jpg\t4\r\n#C:\\Watched\r\nC:\\b.jpg\tTile...\r\n");
    app.listPath = "C:\\cur.wall";
    app.settings.DefaultAddOrientation = kScale;
    manager.load(1024, 768);
    EXPECT_THAT(list1.lines(), ElementsAre("C:\\a.jpg", "C:\\b.jpg"));
    EXPECT_EQ(manager.entries()[0].orientation, kAuto) << "the manager keeps a stored Auto";
    EXPECT_EQ(manager.entries()[1].orientation, kTile);
    EXPECT_EQ(view.caption(), "Tessaline (C:\\cur.wall)");
    EXPECT_THAT(view.trackerFolders, ElementsAre("", "C:\\Watched"));
    EXPECT_EQ(view.addOrientation(), kScale);
    EXPECT_EQ(view.checks, (OptionChecks{true, false, kScale}));
    EXPECT_FALSE(manager.listChanged());
}

TEST_F(Commands, LoadWithoutAListShowsTheBareCaption) {
    app.settings.DefaultAddOrientation = 9;
    manager.load(1024, 768);
    EXPECT_EQ(view.caption(), "Tessaline");
    EXPECT_EQ(list1.count(), 0);
    EXPECT_EQ(view.addOrientation(), kCenter) << "an orientation the box does not offer falls back to Center";
}

struct SaveNameCase {
    const char* chosen;
    const char* written;
};

TEST_F(Commands, SaveAsAddsWallOnlyToAPathWithoutAnyDot) {
    const SaveNameCase cases[] = {
        {"C:\\Lists\\summer", "C:\\Lists\\summer.wall"},
        {"C:\\Lists\\summer.txt", "C:\\Lists\\summer.txt"},
        {"C:\\My.Lists\\summer", "C:\\My.Lists\\summer"},
        {"C:\\Lists\\summer.wall", "C:\\Lists\\summer.wall"},
    };
    loadWith({"C:\\a.jpg"});
    for (const auto& c : cases) {
        folder("C:\\Lists");
        folder("C:\\My.Lists");
        view.saveAnswer = c.chosen;
        manager.saveListAs();
        EXPECT_EQ(manager.listPath(), c.written);
        EXPECT_EQ(view.caption(), std::string("Tessaline (") + c.written + ")");
        EXPECT_EQ(fs.readFile(c.written).value_or("(none)"), "C:\\a.jpg\t0\r\n") << c.chosen;
    }
    ASSERT_FALSE(view.dialogs.empty());
    EXPECT_EQ(view.dialogs[0].title, "Select a file to save list to");
    EXPECT_EQ(view.dialogs[0].filter, "Wallpaper Lists|*.wall");
    EXPECT_EQ(view.dialogs[0].defaultName, "*.wall");
}

TEST_F(Commands, SaveAsksOnlyForANewListAndACancelWritesNothing) {
    loadWith({"C:\\a.jpg"});
    manager.saveList();
    EXPECT_EQ(view.dialogs.size(), 1u);
    EXPECT_EQ(manager.listPath(), "");

    view.saveAnswer = "C:\\named";
    manager.saveList();
    manager.saveList();
    EXPECT_EQ(view.dialogs.size(), 2u) << "a named list is saved without asking";
    EXPECT_TRUE(fs.exists("C:\\named.wall"));
}

TEST_F(Commands, SaveAndCloseMakesTheListCurrentSavesSettingsAndHandsBack) {
    fs.writeNewFile("C:\\cur.wall", "C:\\a.jpg\t0\r\n#C:\\Watched\r\n");
    app.listPath = "C:\\cur.wall";
    manager.load(1024, 768);
    manager.addEntry("C:\\b.jpg", kTile);
    manager.saveAndClose();
    EXPECT_EQ(settingsSaves, 1);
    EXPECT_EQ(fs.readFile("C:\\cur.wall").value_or(""), "C:\\a.jpg\t0\r\nC:\\b.jpg\t1\r\n#C:\\Watched\r\n");
    EXPECT_EQ(view.log, "unloadTracker;handBack;");
}

TEST_F(Commands, SaveAndCloseOfANewListAsksForItsName) {
    loadWith({"C:\\a.jpg"});
    view.saveAnswer = "C:\\fresh.wall";
    manager.saveAndClose();
    EXPECT_EQ(app.listPath, "C:\\fresh.wall");
    EXPECT_TRUE(fs.exists("C:\\fresh.wall"));
    EXPECT_EQ(view.log, "handBack;");
}

TEST_F(Commands, SaveAndCloseStillClosesWhenTheNameIsRefused) {
    app.listPath = "C:\\old.wall";
    loadWith({});
    manager.newList();
    manager.addEntry("C:\\a.jpg", kCenter);
    manager.saveAndClose();
    EXPECT_EQ(app.listPath, "") << "the list without a name becomes current, and is not written";
    EXPECT_EQ(settingsSaves, 1);
    EXPECT_FALSE(fs.exists("C:\\old.wall"));
    EXPECT_EQ(view.log, "hidePanels;handBack;");
}

TEST_F(Commands, CloseWithoutSaveHandsBackOnlyAListWithLines) {
    loadWith({});
    manager.closeWithoutSave();
    EXPECT_EQ(view.log, "unload;");
    manager.addEntry("C:\\a.jpg", kCenter);
    manager.closeWithoutSave();
    EXPECT_EQ(view.log, "unload;handBack;");
    EXPECT_EQ(settingsSaves, 2);
}

TEST_F(Commands, NewForgetsTheListItsNameAndItsFolders) {
    fs.writeNewFile("C:\\cur.wall", "C:\\a.jpg\t0\r\n#C:\\Watched\r\n");
    app.listPath = "C:\\cur.wall";
    manager.load(1024, 768);
    manager.newList();
    EXPECT_EQ(list1.count(), 0);
    EXPECT_EQ(manager.entries().size(), 1u);
    EXPECT_EQ(manager.trackedFolders().size(), 1u);
    EXPECT_EQ(manager.listPath(), "");
    EXPECT_EQ(view.caption(), "Tessaline");
}

TEST_F(Commands, OpenReadsTheChosenList) {
    fs.writeNewFile("C:\\other.txt", "C:\\x.jpg\r\nC:\\y.jpg\r\n");
    loadWith({"C:\\a.jpg"});
    manager.openList();
    EXPECT_EQ(list1.count(), 1) << "cancelled";
    view.openAnswer = "C:\\other.txt";
    manager.openList();
    EXPECT_THAT(list1.lines(), ElementsAre("C:\\x.jpg", "C:\\y.jpg"));
    EXPECT_EQ(view.caption(), "Tessaline (C:\\other.txt)");
    EXPECT_EQ(view.dialogs[0].title, "Select a list to open");
    EXPECT_EQ(view.dialogs[0].filter, "Wallpaper Lists|*.txt;*.wall");
    EXPECT_TRUE(manager.checkDupe("c:\\X.JPG")) << "the duplicate check knows the opened list";
    EXPECT_FALSE(manager.checkDupe("C:\\a.jpg"));
}

TEST_F(Commands, RemoveTakesTheSelectedEntriesAndPreviewsTheNextOne) {
    loadWith({"C:\\a.jpg", "C:\\b.jpg", "C:\\c.jpg", "C:\\d.jpg"});
    select({1, 2});
    view.log.clear();
    manager.removeSelected();
    EXPECT_THAT(list1.lines(), ElementsAre("C:\\a.jpg", "C:\\d.jpg"));
    expectAligned();
    EXPECT_EQ(view.log, "clearPreview;facts C:\\d.jpg;hideFrame;");
    EXPECT_EQ(list1.listIndex(), 1);
    EXPECT_TRUE(manager.listChanged());
    EXPECT_EQ(remover.calls.size(), 0u) << "no file is touched";
}

TEST_F(Commands, RemoveWithNothingSelectedBeeps) {
    loadWith({"C:\\a.jpg"});
    manager.removeSelected();
    EXPECT_EQ(ui.beeps, 1);
    EXPECT_EQ(list1.count(), 1);
}

struct ModifierCase {
    bool shift;
    bool ctrl;
    bool alt;
    DeleteMode want;
};

TEST(DeleteModes, ShiftDeletesThroughTheShellCtrlDeletesDirectlyTheRestRecycle) {
    const ModifierCase cases[] = {
        {false, false, false, {true, true}}, {true, false, false, {false, true}}, {false, true, false, {false, false}},
        {true, true, false, {true, true}},   {true, false, true, {true, true}},   {false, true, true, {true, true}},
        {false, false, true, {true, true}},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(deleteModeFor(c.shift, c.ctrl, c.alt), c.want)
            << "shift " << c.shift << " ctrl " << c.ctrl << " alt " << c.alt;
    }
}

TEST_F(Commands, DeleteKeepsTheEntriesWhoseFilesStay) {
    loadWith({"C:\\a.jpg", "C:\\b.jpg", "C:\\c.jpg"});
    select({0, 1, 2});
    remover.keep = {"C:\\b.jpg"};
    manager.deleteSelected(false, false);
    EXPECT_THAT(remover.calls, ElementsAre("C:\\a.jpg", "C:\\b.jpg", "C:\\c.jpg"));
    EXPECT_THAT(list1.lines(), ElementsAre("C:\\b.jpg"));
    expectAligned();
}

TEST_F(Commands, AnOrientationGoesToEverySelectedEntry) {
    loadWith({"C:\\a.jpg", "C:\\b.jpg", "C:\\c.jpg"});
    select({0, 2});
    manager.onOrTypeChosen(kStretch);
    EXPECT_EQ(manager.entries()[0].orientation, kStretch);
    EXPECT_EQ(manager.entries()[1].orientation, kCenter);
    EXPECT_EQ(manager.entries()[2].orientation, kStretch);
}

TEST_F(Commands, ClickingAnEntryPreviewsItOnceAndShowsItsOrientation) {
    loadWith({"C:\\a.jpg", "C:\\b.jpg"});
    manager.onOrTypeChosen(kCenter);
    list1.setListIndex(1);
    view.log.clear();
    manager.onList1Click();
    manager.onList1Click();
    EXPECT_EQ(view.log, "facts C:\\b.jpg;") << "the entry on show is not loaded again";
    EXPECT_TRUE(view.helpHidden);
    EXPECT_TRUE(view.controlFrameShown);
    EXPECT_EQ(view.entryOrientation, kCenter);
    manager.onBrowsePreviewShown();
    manager.onList1Click();
    EXPECT_EQ(view.log, "facts C:\\b.jpg;facts C:\\b.jpg;") << "after a browsed file it shows again";
}

TEST_F(Commands, EntriesWhosePicturesCantBeShownLeaveTheListOneAfterAnother) {
    loadWith({"C:\\a.jpg", "C:\\b.jpg", "C:\\c.jpg", "C:\\d.jpg"});
    view.unloadable = {{"C:\\b.jpg", 1}, {"C:\\c.jpg", 1}};
    list1.setListIndex(1);
    view.log.clear();
    manager.onList1Click();
    EXPECT_THAT(list1.lines(), ElementsAre("C:\\a.jpg", "C:\\d.jpg"));
    expectAligned();
    EXPECT_EQ(view.log,
              "facts C:\\b.jpg;clearPreview;hideFrame;facts C:\\c.jpg;clearPreview;hideFrame;facts C:\\d.jpg;");
}

TEST_F(Commands, OptionsFlipTheirSettingsWarnWhenTheCheckGoesOffAndSave) {
    loadWith({});
    manager.toggleCheckDuplicates();
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].text, "It is recommended that you leave this setting on unless absolutely necessary.");
    EXPECT_EQ(ui.messages[0].title, "Warning");
    EXPECT_EQ(ui.messages[0].style, kMbOk | kMbIconExclamation);
    manager.toggleCheckDuplicates();
    EXPECT_EQ(ui.messages.size(), 1u) << "turning it on says nothing";
    manager.toggleAutoSortFolder();
    manager.chooseAddOrientation(kAuto);
    EXPECT_EQ(view.checks, (OptionChecks{true, true, kAuto}));
    EXPECT_EQ(app.settings.DefaultAddOrientation, kAuto);
    EXPECT_EQ(settingsSaves, 4);
}

}  // namespace
}  // namespace tl::test

namespace tl::test {
namespace {

using ::testing::ElementsAre;

using TrackerCalls = ManagerTest;

TEST_F(TrackerCalls, FilesAppearingAndGoingInTrackedFoldersChangeTheList) {
    manager.load(1024, 768);
    manager.addEntry("C:\\W\\a.jpg", kCenter);
    view.addOrientation_ = kTile;
    EXPECT_EQ(manager.addTrackedFile("C:\\W\\b.jpg"), 1);
    EXPECT_EQ(manager.addTrackedFile("c:\\w\\B.JPG"), 0) << "a listed path is not added twice";
    EXPECT_EQ(manager.addTrackedFile("C:\\W\\notes.txt"), 0);
    EXPECT_EQ(manager.entries()[1].orientation, kTile);

    list1.setListIndex(0);
    manager.onList1Click();
    manager.removeTrackedFile("c:\\w\\A.jpg");
    manager.removeTrackedFile("C:\\W\\never.jpg");
    EXPECT_THAT(list1.lines(), ElementsAre("C:\\W\\b.jpg"));
    expectAligned();
    EXPECT_EQ(manager.previewedPath(), "") << "the removed entry was on show";

    manager.setTrackedFolders({"C:\\W", "D:\\X", ""});
    EXPECT_THAT(manager.trackedFolders(), ElementsAre("", "C:\\W", "D:\\X"));
    EXPECT_TRUE(manager.listChanged());
}

}  // namespace
}  // namespace tl::test
