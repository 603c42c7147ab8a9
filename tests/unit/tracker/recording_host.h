#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "tracker/tracker_host.h"

namespace tl::test {

// Records what the tracker asks of the main window, one line per call ("add <path>", "delete <path>",
// "folders a|b|"). A path in failOn makes addPaper throw, as an unreadable picture does.
class RecordingHost : public TrackerHost {
  public:
    void addPaper(const std::string& path, bool select, int16_t& result) override {
        calls.push_back("add " + path + (select ? "" : " (no select)"));
        if (path == failOn) {
            throw std::runtime_error("unreadable picture");
        }
        result = 1;
    }
    void deletePaper(const std::string& path, bool reselect) override {
        calls.push_back("delete " + path + (reselect ? " (reselect)" : ""));
    }
    void setTrackerList(const TrackedFolders& folders) override {
        std::string line = "folders ";
        for (const auto& f : folders) {
            line += f + "|";
        }
        calls.push_back(line);
        saved = folders;
    }

    std::vector<std::string> calls;
    TrackedFolders saved;
    std::string failOn;
};

}  // namespace tl::test
