#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "manager/file_browser.h"

namespace tl {

class FileSystem;
class Ui;

// The browser of frmManager built from standard controls: a drop-down list of drives (Drive1), a list
// box of folders (Dir1: a click highlights a folder, a double click or Enter opens it) and a list box of
// picture files (File1, several may be selected), with the count of files under it (fileCount).
class FileBrowser {
  public:
    FileBrowser(FileSystem& fs, Ui& ui) : fs_(fs), ui_(ui) {}

    void attach(HWND drive1, HWND dir1, HWND file1, HWND fileCount);

    // Opens a folder in Dir1 and lists its files in File1; its drive becomes Drive1's choice.
    void setPath(const std::string& path);
    const std::string& path() const { return path_; }
    // The folder highlighted in Dir1 (the open one when none is).
    std::string highlighted() const;
    // File1's selected files, in list order, and the name under its caret (the one last clicked).
    std::vector<DirEntry> selectedFiles() const;
    std::string caretFile() const;

    // Notifications of the controls.
    void onDriveChanged();
    void onDirOpen();

  private:
    void fillDrives();
    void fillFiles();

    FileSystem& fs_;
    Ui& ui_;
    HWND drive1_ = nullptr;
    HWND dir1_ = nullptr;
    HWND file1_ = nullptr;
    HWND fileCount_ = nullptr;
    std::string path_;
    std::vector<FolderLine> folders_;
    std::vector<DirEntry> files_;  // File1's lines
    std::vector<std::string> drives_;  // "C:\" and so on, in Drive1's order
};

}  // namespace tl
