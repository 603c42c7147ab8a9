#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace tl {

class FileSystem;

// The folder table of a folder add: at most this many rows, the start folder first.
inline constexpr size_t kFolderTableRows = 1001;

struct FolderTable {
    std::vector<std::string> folders;  // breadth-first, the start folder in row 0
    bool overflowed = false;           // there were more folders than the table holds; the rest were left out
    std::vector<std::string> unrepresentable;  // folders left out: their names can't be held in UTF-8
};

// The start folder and all its sub-folders, breadth-first: each row's sub-folders are appended in the
// order the directory search gives them, as folder & "\" & name (so a drive root gives "C:\\name").
// Hidden and system folders are passed over, as the plain directory search does.
FolderTable collectFolders(FileSystem& fs, const std::string& start);

// The extensions a folder add searches, in order. GIF is left out of folder adds on purpose: the table
// was filled "bmp", "gif", "jpg" and then "jpeg" written over "gif". Selected files and drops still add GIFs.
inline constexpr std::array<std::string_view, 3> kFolderAddExtensions = {"bmp", "jpeg", "jpg"};

// The names of the normal files of folder matching "*." & extension, as folder & "\*." & extension
// finds them. An empty folder searches the root folder of the current drive ("\*.bmp"). Files whose names
// can't be held in UTF-8 are left out and their paths (as shown) added to unrepresentable.
std::vector<std::string> findFolderImages(FileSystem& fs,
                                          const std::string& folder,
                                          std::string_view extension,
                                          std::vector<std::string>& unrepresentable);

}  // namespace tl
