#include "manager/manager_fixture.h"

#include <tuple>

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

    manager.newList();
    EXPECT_EQ(list1.count(), 0) << "New forgets the list, its name and its folders";
    EXPECT_EQ(manager.trackedFolders().size(), 1u);
    EXPECT_EQ(manager.listPath(), "");
    EXPECT_EQ(view.caption(), "Tessaline");
    app.settings.DefaultAddOrientation = 9;
    manager.load(1024, 768);
    EXPECT_EQ(view.addOrientation(), kCenter) << "an orientation the box does not offer falls back to Center";
}

TEST_F(Commands, SaveAsksForANewListsNameAndAddsWallOnlyToAPathWithoutAnyDot) {
    const std::pair<const char*, const char*> cases[] = {
        {"C:\\Lists\\summer", "C:\\Lists\\summer.wall"},
        {"C:\\Lists\\summer.txt", "C:\\Lists\\summer.txt"},
        {"C:\\My.Lists\\summer", "C:\\My.Lists\\summer"},
        {"C:\\Lists\\summer.wall", "C:\\Lists\\summer.wall"},
    };
    loadWith({"C:\\a.jpg"});
    manager.saveList();
    EXPECT_EQ(view.dialogs.size(), 1u) << "a new list is saved as";
    EXPECT_EQ(manager.listPath(), "") << "a cancel writes nothing";
    for (const auto& [chosen, written] : cases) {
        folder("C:\\Lists");
        folder("C:\\My.Lists");
        view.saveAnswer = chosen;
        manager.saveListAs();
        EXPECT_EQ(manager.listPath(), written);
        EXPECT_EQ(view.caption(), std::string("Tessaline (") + written + ")");
        EXPECT_EQ(fs.readFile(written).value_or("(none)"), "C:\\a.jpg\t0\r\n") << chosen;
    }
    manager.saveList();
    EXPECT_EQ(view.dialogs.size(), 5u) << "a named list is saved without asking";
    EXPECT_EQ(view.dialogs[0].filter, "Wallpaper Lists|*.wall");
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

TEST_F(Commands, OpenReadsTheChosenList) {
    fs.writeNewFile("C:\\other.txt", "C:\\x.jpg\r\nC:\\y.jpg\r\n");
    loadWith({"C:\\a.jpg"});
    manager.openList();
    EXPECT_EQ(list1.count(), 1) << "cancelled";
    view.openAnswer = "C:\\other.txt";
    manager.openList();
    EXPECT_THAT(list1.lines(), ElementsAre("C:\\x.jpg", "C:\\y.jpg"));
    EXPECT_EQ(view.caption(), "Tessaline (C:\\other.txt)");
    EXPECT_EQ(view.dialogs[0].filter, "Wallpaper Lists|*.txt;*.wall");
    EXPECT_TRUE(manager.checkDupe("c:\\X.JPG")) << "the duplicate check knows the opened list";
    EXPECT_FALSE(manager.checkDupe("C:\\a.jpg"));
}

TEST_F(Commands, RemoveTakesTheSelectedEntriesAndPreviewsTheNextOneOrBeeps) {
    loadWith({"C:\\a.jpg", "C:\\b.jpg", "C:\\c.jpg", "C:\\d.jpg"});
    manager.removeSelected();
    EXPECT_EQ(ui.beeps, 1) << "nothing selected";
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

TEST(DeleteModes, ShiftDeletesThroughTheShellCtrlDeletesDirectlyTheRestRecycle) {
    const std::pair<std::array<bool, 3>, DeleteMode> cases[] = {
        {{false, false, false}, {true, true}},  {{true, false, false}, {false, true}},
        {{false, true, false}, {false, false}}, {{true, true, false}, {true, true}},
        {{true, false, true}, {true, true}},    {{false, true, true}, {true, true}},
        {{false, false, true}, {true, true}},
    };
    for (const auto& [keys, mode] : cases) {
        const auto [shift, ctrl, alt] = keys;
        EXPECT_EQ(deleteModeFor(shift, ctrl, alt), mode) << "shift " << shift << " ctrl " << ctrl << " alt " << alt;
    }
}

TEST_F(Commands, SelectedEntriesTakeAnOrientationAndDeleteKeepsThoseWhoseFilesStay) {
    loadWith({"C:\\a.jpg", "C:\\b.jpg", "C:\\c.jpg"});
    select({0, 2});
    manager.onOrTypeChosen(kStretch);
    EXPECT_EQ(std::tuple(manager.entries()[0].orientation, manager.entries()[1].orientation,
                         manager.entries()[2].orientation),
              std::tuple(kStretch, kCenter, kStretch));
    select({1});
    remover.keep = {"C:\\b.jpg"};
    manager.deleteSelected(false, false);
    EXPECT_THAT(remover.calls, ElementsAre("C:\\a.jpg", "C:\\b.jpg", "C:\\c.jpg"));
    EXPECT_THAT(list1.lines(), ElementsAre("C:\\b.jpg"));
    expectAligned();
}

TEST_F(Commands, ClickingAnEntryPreviewsItOnceAndShowsItsOrientation) {
    loadWith({"C:\\a.jpg", "C:\\b.jpg"});
    manager.onOrTypeChosen(kCenter);
    list1.setListIndex(1);
    view.log.clear();
    manager.onList1Click();
    manager.onList1Click();
    EXPECT_EQ(view.log, "facts C:\\b.jpg;") << "the entry on show is not loaded again";
    EXPECT_EQ(std::tuple(view.helpHidden, view.controlFrameShown, view.entryOrientation),
              std::tuple(true, true, kCenter));
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

TEST_F(Commands, FilesAppearingAndGoingInTrackedFoldersChangeTheList) {
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
