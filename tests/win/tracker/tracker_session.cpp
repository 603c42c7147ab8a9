#include "tracker_session.h"

#include <algorithm>
#include <stdexcept>
#include <thread>

#include "base/unique_handle_win.h"
#include "tracker/tracker_form_win.h"

namespace tl::wintest {

void RecordingHost::addPaper(const std::string& path, bool select, int16_t& result) {
    calls.push_back("add " + path + (select ? "" : " (no select)"));
    result = static_cast<int16_t>(calls.size());
}

void RecordingHost::deletePaper(const std::string& path, bool reselect) {
    calls.push_back("delete " + path + (reselect ? " (reselect)" : ""));
}

void RecordingHost::setTrackerList(const TrackedFolders& folders) {
    std::string line = "folders";
    for (const auto& f : folders) {
        line += " [" + f + "]";
    }
    calls.push_back(line);
    savedLists.push_back(folders);
}

bool RecordingHost::has(const std::string& call) const {
    return std::find(calls.begin(), calls.end(), call) != calls.end();
}

bool RecordingHost::waitForCall(const std::string& call, std::chrono::milliseconds timeout) {
    return waitFor([&] { return has(call); }, timeout);
}

TrackerSession::TrackerSession(const std::vector<std::string>& trackedSubfolders) {
    TrackedFolders folders{""};
    for (const auto& name : trackedSubfolders) {
        makeFolder(folder(name));
        folders.push_back(folder(name));
    }
    loadTracker(host, folders);
}

TrackerSession::~TrackerSession() {
    unloadTracker();
}

HWND TrackerSession::window() const {
    return ::FindWindowA("TessalineTracker", "Folder Tracker");
}

DWORD runOtherProgram(const std::string& commandLine) {
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESHOWWINDOW;
    startup.wShowWindow = SW_HIDE;
    PROCESS_INFORMATION info{};
    std::string line = commandLine;
    if (!::CreateProcessA(nullptr, line.data(), nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr, nullptr, &startup,
                          &info)) {
        throw std::runtime_error("can't start " + commandLine);
    }
    unique_handle process(info.hProcess);
    unique_handle thread(info.hThread);
    ::WaitForSingleObject(process.get(), 30000);
    DWORD code = 0;
    ::GetExitCodeProcess(process.get(), &code);
    return code;
}

void makeFolder(const std::string& path) {
    const auto slash = path.find_last_of('\\');
    if (slash != std::string::npos && slash > 2) {
        makeFolder(path.substr(0, slash));
    }
    if (!::CreateDirectoryA(path.c_str(), nullptr) && ::GetLastError() != ERROR_ALREADY_EXISTS) {
        throw std::runtime_error("can't create " + path);
    }
}

void pumpMessages(std::chrono::milliseconds duration) {
    waitFor([] { return false; }, duration);
}

}  // namespace tl::wintest
