#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "support/program_dir.h"
#include "tracker/tracker_host.h"

namespace tl::wintest {

// Stands in for the main window: records what the tracker asks of it, one line per call.
class RecordingHost : public TrackerHost {
  public:
    void addPaper(const std::string& path, bool select, int16_t& result) override;
    void deletePaper(const std::string& path, bool reselect) override;
    void setTrackerList(const TrackedFolders& folders) override;

    std::vector<std::string> calls;
    std::vector<TrackedFolders> savedLists;

    bool has(const std::string& call) const;
    // Pumps messages until the call was recorded.
    bool waitForCall(const std::string& call, std::chrono::milliseconds timeout = std::chrono::seconds(10));
};

// A folder tree of the test's own and the tracker loaded over some of its folders, unloaded at the end.
class TrackerSession {
  public:
    explicit TrackerSession(const std::vector<std::string>& trackedSubfolders);
    TrackerSession(const TrackerSession&) = delete;
    TrackerSession& operator=(const TrackerSession&) = delete;
    ~TrackerSession();

    std::string folder(const std::string& name) const { return dir.file(name); }
    HWND window() const;

    ProgramDir dir{false};
    RecordingHost host;
};

// Runs a command line in another process (cmd.exe /c ...) and waits for it to end; its exit code.
DWORD runOtherProgram(const std::string& commandLine);

// Creates a folder and any missing parents.
void makeFolder(const std::string& path);

// Pumps the thread's messages for a while, for the cases where nothing is expected to happen.
void pumpMessages(std::chrono::milliseconds duration);

}  // namespace tl::wintest
