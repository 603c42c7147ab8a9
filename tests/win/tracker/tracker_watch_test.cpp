#include <gtest/gtest.h>
#include <shlobj.h>

#include <chrono>
#include <cstdio>

#include "tracker/tracker_form_win.h"
#include "tracker_session.h"

namespace tl::wintest {
namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

std::string inQuotes(const std::string& path) {
    return "\"" + path + "\"";
}

std::string cmd(const std::string& command) {
    return "cmd.exe /c " + command;
}

class TrackerWatch : public ::testing::Test {
  protected:
    TrackerWatch() : session({"Pics", "Elsewhere\\Nested"}) {
        makeFolder(session.folder("Source"));
        makeFolder(session.folder("Other"));
        picture = session.folder("Source\\a.jpg");
        writePicture(picture, "jpg", 64, 48);
    }

    // Copies the picture into a folder with another program, as a user's file manager would.
    void copyIn(const std::string& folder, const std::string& name = "a.jpg") {
        ASSERT_EQ(runOtherProgram(cmd("copy /y " + inQuotes(picture) + " " + inQuotes(folder + "\\" + name))), 0u);
    }

    std::string pics(const std::string& name) const { return session.folder("Pics\\" + name); }

    TrackerSession session;
    std::string picture;
};

TEST_F(TrackerWatch, APictureCopiedInByAnotherProgramIsAdded) {
    const auto start = Clock::now();
    copyIn(session.folder("Pics"));
    const auto copied = Clock::now();
    ASSERT_TRUE(session.host.waitForCall("add " + pics("a.jpg")))
        << "calls: " << ::testing::PrintToString(session.host.calls);
    const auto since = [](Clock::time_point t) {
        return static_cast<long long>(std::chrono::duration_cast<milliseconds>(Clock::now() - t).count());
    };
    std::printf("[ figure ] copy by another program to addPaper: %lld ms, of which after that program ended: %lld ms\n",
                since(start), since(copied));
    EXPECT_EQ(session.host.calls, std::vector<std::string>{"add " + pics("a.jpg")}) << "added once";
}

TEST_F(TrackerWatch, ADeletedPictureIsRemoved) {
    copyIn(session.folder("Pics"));
    ASSERT_TRUE(session.host.waitForCall("add " + pics("a.jpg")));
    ASSERT_EQ(runOtherProgram(cmd("del " + inQuotes(pics("a.jpg")))), 0u);
    ASSERT_TRUE(session.host.waitForCall("delete " + pics("a.jpg")))
        << "calls: " << ::testing::PrintToString(session.host.calls);
}

TEST_F(TrackerWatch, APictureMovedOutIsRemovedAndMovedBackIsAdded) {
    copyIn(session.folder("Pics"));
    ASSERT_TRUE(session.host.waitForCall("add " + pics("a.jpg")));
    const std::string outside = session.folder("Other\\a.jpg");
    ASSERT_EQ(runOtherProgram(cmd("move /y " + inQuotes(pics("a.jpg")) + " " + inQuotes(outside))), 0u);
    ASSERT_TRUE(session.host.waitForCall("delete " + pics("a.jpg")));
    ASSERT_EQ(runOtherProgram(cmd("move /y " + inQuotes(outside) + " " + inQuotes(pics("b.jpg")))), 0u);
    ASSERT_TRUE(session.host.waitForCall("add " + pics("b.jpg")))
        << "calls: " << ::testing::PrintToString(session.host.calls);
    EXPECT_EQ(session.host.calls,
              (std::vector<std::string>{"add " + pics("a.jpg"), "delete " + pics("a.jpg"), "add " + pics("b.jpg")}));
}

TEST_F(TrackerWatch, ARenameInsideATrackedFolderRemovesTheOldNameAndAddsTheNew) {
    copyIn(session.folder("Pics"));
    ASSERT_TRUE(session.host.waitForCall("add " + pics("a.jpg")));
    ASSERT_EQ(runOtherProgram(cmd("ren " + inQuotes(pics("a.jpg")) + " c.jpg")), 0u);
    ASSERT_TRUE(session.host.waitForCall("add " + pics("c.jpg")));
    EXPECT_EQ(session.host.calls,
              (std::vector<std::string>{"add " + pics("a.jpg"), "delete " + pics("a.jpg"), "add " + pics("c.jpg")}));
}

TEST_F(TrackerWatch, SubFoldersAreWatchedToo) {
    makeFolder(pics("Sub"));
    copyIn(pics("Sub"));
    ASSERT_TRUE(session.host.waitForCall("add " + pics("Sub\\a.jpg")));
    const std::string nested = session.folder("Elsewhere\\Nested");
    makeFolder(nested + "\\Deeper");
    copyIn(nested + "\\Deeper");
    ASSERT_TRUE(session.host.waitForCall("add " + nested + "\\Deeper\\a.jpg"));
}

TEST_F(TrackerWatch, AChangeInAnUntrackedFolderIsNotReported) {
    copyIn(session.folder("Other"));
    copyIn(session.folder("Elsewhere"));  // the parent of a tracked folder
    // A change in a tracked folder afterwards: once it has come, the earlier ones would have too.
    copyIn(session.folder("Pics"), "marker.jpg");
    ASSERT_TRUE(session.host.waitForCall("add " + pics("marker.jpg")));
    EXPECT_EQ(session.host.calls, std::vector<std::string>{"add " + pics("marker.jpg")});
}

TEST_F(TrackerWatch, FoldersAndOtherFilesAreLeftToTheHost) {
    makeFolder(pics("Folder.jpg"));
    ASSERT_EQ(runOtherProgram(cmd("echo x> " + inQuotes(pics("notes.txt")))), 0u);
    copyIn(session.folder("Pics"), "marker.jpg");
    ASSERT_TRUE(session.host.waitForCall("add " + pics("marker.jpg")));
    // A new folder is no file to add; a new text file is offered, and the host's addPaper refuses it.
    EXPECT_EQ(session.host.calls, (std::vector<std::string>{"add " + pics("notes.txt"), "add " + pics("marker.jpg")}));
}

TEST_F(TrackerWatch, WhileEventsAreIgnoredNothingIsReported) {
    setTrackerIgnoreEvents(true);
    copyIn(session.folder("Pics"));
    pumpMessages(milliseconds(1500));
    setTrackerIgnoreEvents(false);
    copyIn(session.folder("Pics"), "marker.jpg");
    ASSERT_TRUE(session.host.waitForCall("add " + pics("marker.jpg")));
    EXPECT_EQ(session.host.calls, std::vector<std::string>{"add " + pics("marker.jpg")});
}

TEST_F(TrackerWatch, FoldersLoadedLaterAreWatchedAsWell) {
    const std::string later = session.folder("Later");
    makeFolder(later);
    loadTracker(session.host, {"", later});
    copyIn(later);
    ASSERT_TRUE(session.host.waitForCall("add " + later + "\\a.jpg"));
}

TEST_F(TrackerWatch, CreateDeleteCreateOfOneFileAllReachTheHost) {
    for (int round = 0; round < 2; ++round) {
        copyIn(session.folder("Pics"));
        ASSERT_TRUE(waitFor([&] { return session.host.calls.size() == static_cast<size_t>(2 * round + 1); }));
        if (round == 0) {
            ASSERT_EQ(runOtherProgram(cmd("del " + inQuotes(pics("a.jpg")))), 0u);
            ASSERT_TRUE(waitFor([&] { return session.host.calls.size() == 2; }));
        }
    }
    EXPECT_EQ(session.host.calls,
              (std::vector<std::string>{"add " + pics("a.jpg"), "delete " + pics("a.jpg"), "add " + pics("a.jpg")}));
}

// The shell's own notifications: a program that changes a file tells the shell with SHChangeNotify.
TEST_F(TrackerWatch, AChangeReportedByTheShellAndTheWatchIsCarriedOutOnce) {
    const std::string file = pics("both.jpg");
    writePicture(file, "jpg", 32, 32);
    ::SHChangeNotify(SHCNE_CREATE, SHCNF_PATHA | SHCNF_FLUSH, file.c_str(), nullptr);
    copyIn(session.folder("Pics"), "marker.jpg");
    ASSERT_TRUE(session.host.waitForCall("add " + pics("marker.jpg")));
    EXPECT_EQ(session.host.calls, (std::vector<std::string>{"add " + file, "add " + pics("marker.jpg")}));
}

TEST_F(TrackerWatch, TheShellsRemovedFolderChangesNothing) {
    ::SHChangeNotify(SHCNE_RMDIR, SHCNF_PATHA | SHCNF_FLUSH, pics("Sub").c_str(), nullptr);
    ::SHChangeNotify(SHCNE_DELETE, SHCNF_PATHA | SHCNF_FLUSH, session.folder("Other\\x.jpg").c_str(), nullptr);
    copyIn(session.folder("Pics"), "marker.jpg");
    ASSERT_TRUE(session.host.waitForCall("add " + pics("marker.jpg")));
    EXPECT_EQ(session.host.calls, std::vector<std::string>{"add " + pics("marker.jpg")});
}

TEST_F(TrackerWatch, TheShellsNotificationsAloneKeepTheListInStep) {
    // Files that are not on disk: only the shell speaks of them, the folder watch has nothing to see.
    const std::string ghost = pics("ghost.jpg");
    const std::string renamed = pics("renamed.jpg");
    const std::string outside = session.folder("Other\\ghost.jpg");
    ::SHChangeNotify(SHCNE_CREATE, SHCNF_PATHA | SHCNF_FLUSH, ghost.c_str(), nullptr);
    ::SHChangeNotify(SHCNE_RENAMEITEM, SHCNF_PATHA | SHCNF_FLUSH, ghost.c_str(), renamed.c_str());
    ::SHChangeNotify(SHCNE_RENAMEITEM, SHCNF_PATHA | SHCNF_FLUSH, renamed.c_str(), outside.c_str());
    ::SHChangeNotify(SHCNE_RENAMEITEM, SHCNF_PATHA | SHCNF_FLUSH, outside.c_str(), ghost.c_str());
    ::SHChangeNotify(SHCNE_DELETE, SHCNF_PATHA | SHCNF_FLUSH, ghost.c_str(), nullptr);
    ASSERT_TRUE(waitFor([&] { return session.host.calls.size() >= 6; }))
        << "calls: " << ::testing::PrintToString(session.host.calls);
    EXPECT_EQ(session.host.calls, (std::vector<std::string>{"add " + ghost, "delete " + ghost, "add " + renamed,
                                                            "delete " + renamed, "add " + ghost, "delete " + ghost}));
}

TEST(TrackerUnload, AfterUnloadNothingIsWatchedAndTheWindowIsGone) {
    RecordingHost host;
    ProgramDir dir(false);
    makeFolder(dir.file("Pics"));
    loadTracker(host, {"", dir.file("Pics")});
    ASSERT_TRUE(isTrackerLoaded());
    HWND window = trackerWindow();
    ASSERT_NE(window, nullptr);
    unloadTracker();
    EXPECT_FALSE(isTrackerLoaded());
    EXPECT_FALSE(::IsWindow(window));
    writePicture(dir.file("Pics\\a.jpg"), "jpg", 16, 16);
    pumpMessages(milliseconds(1000));
    EXPECT_TRUE(host.calls.empty());
    EXPECT_EQ(trackerList(), TrackedFolders{});
}

}  // namespace
}  // namespace tl::wintest
