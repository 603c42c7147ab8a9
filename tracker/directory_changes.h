#pragma once

#include <optional>
#include <string>
#include <vector>

#include "lists/wallpaper_list.h"
#include "tracker/shell_change.h"

namespace tl {

// The folders to watch for a set of tracked folders: each once (in any case), and none that lies inside
// another, since a watch covers its sub-folders and two watches would report every change twice.
std::vector<std::string> foldersToWatch(const TrackedFolders& folders);

// What a directory watch reports for one name (the platform's FILE_ACTION_* numbers).
enum class DirectoryAction { Added = 1, Removed = 2, Modified = 3, RenamedOldName = 4, RenamedNewName = 5 };

// Turns a watch's reports, in the order they come, into the changes the shell would announce: added and
// removed files become creates and deletes, an old name followed by its new one a rename (a folder's
// rename or creation gets the folder codes, which the tracker passes over). Keeps an old name across
// reports until its new name comes.
class DirectoryChangeReader {
  public:
    // fullPath is the watched folder joined with the reported relative name; isDirectory tells whether it
    // is a folder now (unknown, and false, for a removed name).
    std::vector<ShellChange> read(DirectoryAction action, const std::string& fullPath, bool isDirectory);

  private:
    std::optional<std::string> oldName_;
};

// The last component of a path, as the shell's display name of a file.
std::string displayNameOf(const std::string& path);

}  // namespace tl
