#pragma once

#include <cstdint>
#include <string>

#include "lists/wallpaper_list.h"

namespace tl {

// What the folder tracker asks of the window that owns the running list (frmMain implements it; tests
// record the calls). The tracker calls it on the user-interface thread only.
class TrackerHost {
  public:
    virtual ~TrackerHost() = default;

    // Adds an image file to the running list unless it is listed already or not an image; result receives
    // the new entry's slot (0 when nothing was added). The tracker passes select = true.
    virtual void addPaper(const std::string& path, bool select, int16_t& result) = 0;
    // Removes the entry with that path, if listed. The tracker passes reselect = false.
    virtual void deletePaper(const std::string& path, bool reselect) = 0;
    // Replaces the list's tracked folders by a copy of folders and writes the list file at once. folders is
    // as GetList returns it: the folders in slots 0 to n - 1 and an empty slot n (the list file skips empty
    // slots wherever they are, so both shapes write the same folder lines).
    virtual void setTrackerList(const TrackedFolders& folders) = 0;
};

}  // namespace tl
