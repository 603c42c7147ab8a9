#include "tracker/folder_tracker.h"

#include <gtest/gtest.h>

#include "base/file_system_posix.h"
#include "recording_host.h"
#include "support/fake_list_box.h"
#include "support/fake_ui.h"
#include "support/temp_dir.h"

namespace tl {
namespace {

using Calls = std::vector<std::string>;

ShellChange event(uint32_t code, std::string path1, std::string path2 = {}) {
    ShellChange c;
    c.event = code;
    c.path1 = std::move(path1);
    c.path2 = std::move(path2);
    const auto name = [](const std::string& p) { return p.empty() ? p : p.substr(p.find_last_of('\\') + 1); };
    c.name1 = name(c.path1);
    c.name2 = name(c.path2);
    return c;
}

// A create whose item the shell could give only by name.
ShellChange createdWithoutPath(const std::string& name) {
    ShellChange c = event(kShcneCreate, "");
    c.name1 = name;
    return c;
}

class TrackerTest : public ::testing::Test {
  protected:
    TrackerTest() : list1(false), tracker(list1, host, fs, ui) {}

    void track(std::initializer_list<std::string> folders) {
        TrackedFolders list{""};
        list.insert(list.end(), folders);
        tracker.LoadList(list);
    }
    // Each change a little later than the one before, well inside the echo window.
    void receive(const ShellChange& c, ChangeSource source = ChangeSource::Shell) {
        tracker.NotificationReceipt(c, source, now += 10);
    }

    test::FakeListBox list1;
    test::RecordingHost host;
    PosixFileSystem fs;
    test::FakeUi ui;
    FolderTracker tracker;
    uint32_t now = 1000;
};

TEST_F(TrackerTest, LoadListSkipsSlotZeroAndGetListFillsItSoTheHostKeepsTheFoldersThroughTheListFile) {
    EXPECT_EQ(tracker.GetList(), TrackedFolders{""}) << "an empty list box gives the single empty slot 0";
    tracker.LoadList({"C:\\Slot0", "C:\\Pics", "", "D:\\Photos"});
    tracker.LoadList({});
    EXPECT_EQ(list1.lines(), (std::vector<std::string>{"C:\\Pics", "D:\\Photos"}));
    EXPECT_EQ(tracker.GetList(), (TrackedFolders{"C:\\Pics", "D:\\Photos", ""}));
    tracker.saveFolders();
    EXPECT_EQ(host.calls, Calls{"folders C:\\Pics|D:\\Photos||"});

    // GetList and LoadList are not inverses: the list file's folder lines are what turn one into the other.
    WallpaperEntries entries(2);
    entries[0].path = "C:\\Pics\\a.jpg";
    const std::string text = listFileText(entries, tracker.GetList());
    EXPECT_EQ(text, "C:\\Pics\\a.jpg\t0\r\n#C:\\Pics\r\n#D:\\Photos\r\n");
    test::FakeListBox reloaded(false);
    FolderTracker again(reloaded, host, fs, ui);
    again.LoadList(parseListText(text, ListReader::Changer, kCenter).trackedFolders);
    EXPECT_EQ(reloaded.lines(), list1.lines());
}

TEST_F(TrackerTest, MatchesIsASubstringTestInAnyCase) {
    EXPECT_FALSE(tracker.matches("C:\\Pics\\a.jpg")) << "nothing matches without folders";
    track({"C:\\Pics"});
    const std::pair<const char*, bool> cases[] = {
        {"C:\\Pics\\a.jpg", true},  {"c:\\PICS\\a.jpg", true},  {"D:\\Backup\\c:\\pics\\x.jpg", true},
        {"C:\\Pics2\\a.jpg", true},  // the start of a longer name: still a substring
        {"C:\\Pic\\a.jpg", false},  {"D:\\Pics\\a.jpg", false}, {"", false},
    };
    for (const auto& [path, expected] : cases) {
        EXPECT_EQ(tracker.matches(path), expected) << path;
    }
}

TEST_F(TrackerTest, EachEventCodeDoesItsPart) {
    const struct {
        const char* what;
        ShellChange change;
        Calls expected;
    } cases[] = {
        {"create", event(kShcneCreate, "C:\\Pics\\Sub\\a.jpg"), {"add C:\\Pics\\Sub\\a.jpg"}},
        {"delete", event(kShcneDelete, "C:\\Pics\\a.jpg"), {"delete C:\\Pics\\a.jpg"}},
        {"rename inside",
         event(kShcneRenameItem, "C:\\Pics\\a.jpg", "C:\\Pics\\b.jpg"),
         {"delete C:\\Pics\\a.jpg", "add C:\\Pics\\b.jpg"}},
        {"rename out", event(kShcneRenameItem, "C:\\Pics\\a.jpg", "C:\\Other\\a.jpg"), {"delete C:\\Pics\\a.jpg"}},
        {"rename in", event(kShcneRenameItem, "C:\\Other\\a.jpg", "C:\\Pics\\a.jpg"), {"add C:\\Pics\\a.jpg"}},
        {"delete outside", event(kShcneDelete, "C:\\Other\\a.jpg"), {}},
        {"rename outside", event(kShcneRenameItem, "C:\\Other\\a.jpg", "C:\\Else\\a.jpg"), {}},
        {"rmdir of a tracked sub-folder", event(kShcneRmDir, "C:\\Pics\\Sub"), {}},
        {"update-dir with nothing pending", event(kShcneUpdateDir, "C:\\Pics"), {}},
        {"mkdir", event(kShcneMkDir, "C:\\Pics\\New.jpg"), {}},
        {"folder rename", event(kShcneRenameFolder, "C:\\Pics\\A", "C:\\Pics\\B.jpg"), {}},
        {"attributes", event(0x800 /* SHCNE_ATTRIBUTES */, "C:\\Pics\\a.jpg"), {}},
    };
    for (const auto& c : cases) {
        test::FakeListBox box(false);
        test::RecordingHost h;
        FolderTracker t(box, h, fs, ui);
        t.LoadList({"", "C:\\Pics"});
        t.NotificationReceipt(c.change, ChangeSource::Shell, 1);
        EXPECT_EQ(h.calls, c.expected) << c.what;
    }
}

TEST_F(TrackerTest, IgnoreEventsDropsEverything) {
    track({"C:\\Pics"});
    tracker.setIgnoreEvents(true);
    receive(event(kShcneCreate, "C:\\Pics\\a.jpg"));
    receive(event(kShcneDelete, "C:\\Pics\\b.jpg"));
    receive(event(kShcneRenameItem, "C:\\Other\\c.jpg", "C:\\Pics\\c.jpg"));
    receive(createdWithoutPath("pending.jpg"));
    EXPECT_TRUE(host.calls.empty());
    EXPECT_EQ(tracker.pendingImageName(), "") << "nothing is remembered while events are ignored";
    tracker.setIgnoreEvents(false);
    receive(event(kShcneCreate, "C:\\Pics\\a.jpg"));
    EXPECT_EQ(host.calls, Calls{"add C:\\Pics\\a.jpg"});
}

TEST_F(TrackerTest, ACreateWithoutAPathLeavesAnImageNamePendingUntilItsFolderIsUpdated) {
    test::TempDir dir;
    dir.write("new.jpg", "x");
    std::filesystem::create_directory(dir.file("folder.jpg"));
    track({dir.path()});
    receive(createdWithoutPath("notes.txt"));
    EXPECT_EQ(tracker.pendingImageName(), "") << "only image names are pending";
    receive(createdWithoutPath("new.jpg"));
    EXPECT_EQ(tracker.pendingImageName(), "new.jpg");
    EXPECT_TRUE(host.calls.empty()) << "a create without a path matches no folder";
    receive(event(kShcneUpdateDir, "C:\\Elsewhere"));
    EXPECT_EQ(tracker.pendingImageName(), "new.jpg") << "an update of an untracked folder leaves the name pending";
    receive(event(kShcneUpdateDir, dir.path()));
    EXPECT_EQ(host.calls, Calls{"add " + dir.path() + "\\new.jpg"});
    EXPECT_EQ(tracker.pendingImageName(), "");

    for (const char* notAFile : {"gone.jpg", "folder.jpg"}) {
        receive(createdWithoutPath(notAFile));
        receive(event(kShcneUpdateDir, dir.path()));
        EXPECT_EQ(host.calls.size(), 1u) << notAFile << " is not added";
        EXPECT_EQ(tracker.pendingImageName(), "");
    }
    receive(event(kShcneCreate, dir.path() + "\\b.jpg"));
    EXPECT_EQ(tracker.pendingImageName(), "") << "a create with a path is not pending";
}

TEST_F(TrackerTest, AFailingAddIsPassedOver) {
    track({"C:\\Pics"});
    host.failOn = "C:\\Pics\\bad.jpg";
    receive(event(kShcneCreate, "C:\\Pics\\bad.jpg"));
    receive(event(kShcneCreate, "C:\\Pics\\good.jpg"));
    EXPECT_EQ(host.calls, (Calls{"add C:\\Pics\\bad.jpg", "add C:\\Pics\\good.jpg"}));
}

TEST_F(TrackerTest, TheSameChangeFromBothSourcesActsOnceAndRepeatedChangesFromOneAllTakeEffect) {
    track({"C:\\Pics"});
    receive(event(kShcneCreate, "C:\\Pics\\a.jpg"), ChangeSource::Watcher);
    receive(event(kShcneCreate, "C:\\PICS\\A.JPG"), ChangeSource::Shell);
    receive(event(kShcneRenameItem, "C:\\Pics\\a.jpg", "C:\\Pics\\b.jpg"), ChangeSource::Shell);
    receive(event(kShcneRenameItem, "C:\\Pics\\a.jpg", "C:\\Pics\\b.jpg"), ChangeSource::Watcher);
    receive(event(kShcneDelete, "C:\\Pics\\b.jpg"), ChangeSource::Watcher);
    receive(event(kShcneDelete, "C:\\Pics\\b.jpg"), ChangeSource::Shell);
    receive(event(kShcneCreate, "C:\\Pics\\b.jpg"), ChangeSource::Watcher);
    EXPECT_EQ(host.calls, (Calls{"add C:\\Pics\\a.jpg", "delete C:\\Pics\\a.jpg", "add C:\\Pics\\b.jpg",
                                 "delete C:\\Pics\\b.jpg", "add C:\\Pics\\b.jpg"}));
}

TEST_F(TrackerTest, TheUpdateDirAddIsRecognisedAsTheWatchersCreate) {
    test::TempDir dir;
    dir.write("a.jpg", "x");
    track({dir.path()});
    const std::string file = dir.path() + "\\a.jpg";
    receive(event(kShcneCreate, file), ChangeSource::Watcher);
    receive(createdWithoutPath("a.jpg"));
    receive(event(kShcneUpdateDir, dir.path()));
    EXPECT_EQ(host.calls, Calls{"add " + file});
}

}  // namespace
}  // namespace tl
