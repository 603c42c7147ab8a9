#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/file_system.h"

namespace tl {

// What the browser's folder list (Dir1) shows for an open folder: the folder's ancestors from the drive
// root down, the folder itself, then its sub-folders in name order, each line indented by its depth (not
// those whose names can't be held in UTF-8: they could not be opened).
struct FolderLine {
    std::string text;  // the name, indented; a drive root as "C:\"
    std::string path;  // the full path ("C:\" for a root, else without a trailing separator)
    int depth = 0;
};
struct FolderListing {
    std::vector<FolderLine> lines;
    int openIndex = 0;  // the line of the open folder itself
};

// A folder path as Dir1 holds it: "C:" and "C:\" give "C:\", other paths lose a trailing separator.
std::string folderPathForBrowser(std::string_view path);

FolderListing listFolder(FileSystem& fs, const std::string& path);

// The pattern of the file list (File1): the picture files it shows.
inline constexpr std::string_view kFile1Pattern = "*.bmp;*.gif;*.jpg;*.jpeg";

// The normal files of folder matching the pattern, each once, in name order without regard to case
// (with those whose names can't be held in UTF-8, flagged, so that the user sees them).
std::vector<DirEntry> listPictureFiles(FileSystem& fs, const std::string& folder);

// " 12 total files." (the count with its leading blank, as counts are shown).
std::string fileCountText(int count);

}  // namespace tl
