#pragma once

#include <windows.h>

#include "lists/wallpaper_list.h"

namespace tl {

class TrackerHost;

// frmTracker, the one folder tracker window of the process. It is loaded hidden and, while loaded,
// keeps the host's running list in step with the tracked folders: it registers for the shell's change
// notifications and watches every tracked folder (with its sub-folders) itself, since the shell does not
// report every program's changes everywhere. A loaded tracker does not keep the process alive on its own.

// Loads frmTracker hidden when it isn't loaded, then hands it folders (LoadList: slot 0 is not read, and
// the folders are added to those it holds). The host receives addPaper, deletePaper and setTrackerList.
void loadTracker(TrackerHost& host, const TrackedFolders& folders);
// Loads frmTracker when needed, shows it and flashes its caption (mnuTrackedFolders).
void showTracker(TrackerHost& host);
bool isTrackerLoaded();
// The tracked folders as GetList gives them: slots 0 to n - 1, then an empty slot n. Empty when not loaded.
TrackedFolders trackerList();
void setTrackerAllowUnload(bool allow);
void setTrackerIgnoreEvents(bool ignore);
// Sets allowUnload and unloads frmTracker: the notifications are deregistered and the watches stopped.
// Nothing is written.
void unloadTracker();
// The tracker's window, or none when it isn't loaded.
HWND trackerWindow();

}  // namespace tl
