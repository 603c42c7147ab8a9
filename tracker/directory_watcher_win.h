#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <vector>

#include "base/unique_handle_win.h"
#include "tracker/shell_change.h"

namespace tl {

// Watches folders and their sub-folders for files and folders created, deleted and renamed, by any
// program, with ReadDirectoryChangesW on a worker thread of its own. The changes wait in a queue; the
// window is posted one message when the queue stops being empty, and its handler takes them all.
class DirectoryWatcher {
  public:
    DirectoryWatcher(HWND target, UINT message);
    DirectoryWatcher(const DirectoryWatcher&) = delete;
    DirectoryWatcher& operator=(const DirectoryWatcher&) = delete;
    ~DirectoryWatcher();

    // Watches these folders instead of the ones before; returns once the watches are in place, so that
    // every later change is seen. Folders that can't be opened (gone, no access) are passed over.
    void watch(const std::vector<std::string>& folders);
    void stop();

    // The folders being watched (those that could be opened).
    std::vector<std::string> watchedFolders() const;
    // The changes seen since the last call, in order; on the window's thread.
    std::vector<ShellChange> takeChanges();

    struct Queue;
    struct Session;

  private:
    std::shared_ptr<Queue> queue_;
    std::unique_ptr<Session> session_;
    std::vector<std::string> requested_;
};

}  // namespace tl
