#include "manager/file_browser_win.h"

#include "base/file_system.h"
#include "base/text.h"
#include "base/ui.h"
#include "base/utf8_win.h"
#include "base/window_win.h"

namespace tl {

namespace {

// "C:\" gives "c:" and its volume name, as drive lists show them: "c: [System]".
std::string driveText(const std::string& root) {
    std::string text = lowerCase(root.substr(0, 2));
    const std::wstring wideRoot = widen(root);
    wchar_t label[MAX_PATH + 1] = {};
    const UINT type = ::GetDriveTypeW(wideRoot.c_str());
    // Removable and optical drives are not asked for their names: an empty one would stall the list.
    if (type == DRIVE_FIXED || type == DRIVE_RAMDISK || type == DRIVE_REMOTE) {
        if (::GetVolumeInformationW(wideRoot.c_str(), label, MAX_PATH + 1, nullptr, nullptr, nullptr, nullptr, 0) &&
            label[0] != L'\0') {
            text += " [" + narrow(label) + "]";
        }
    }
    return text;
}

}  // namespace

void FileBrowser::attach(HWND drive1, HWND dir1, HWND file1, HWND fileCount) {
    drive1_ = drive1;
    dir1_ = dir1;
    file1_ = file1;
    fileCount_ = fileCount;
    fillDrives();
}

void FileBrowser::fillDrives() {
    drives_.clear();
    ::SendMessageW(drive1_, CB_RESETCONTENT, 0, 0);
    wchar_t buffer[4096] = {};
    const DWORD n = ::GetLogicalDriveStringsW(4095, buffer);
    for (const wchar_t* p = buffer; p < buffer + n && *p; p += std::wstring_view(p).size() + 1) {
        drives_.push_back(narrow(p));
        addListItem(drive1_, driveText(drives_.back()), true);
    }
}

void FileBrowser::setPath(const std::string& path) {
    path_ = folderPathForBrowser(path);
    const FolderListing listing = listFolder(fs_, path_);
    folders_ = listing.lines;
    ::SendMessageW(dir1_, WM_SETREDRAW, FALSE, 0);
    ::SendMessageW(dir1_, LB_RESETCONTENT, 0, 0);
    for (const FolderLine& line : folders_) {
        addListItem(dir1_, line.text);
    }
    ::SendMessageW(dir1_, LB_SETCURSEL, static_cast<WPARAM>(listing.openIndex), 0);
    ::SendMessageW(dir1_, WM_SETREDRAW, TRUE, 0);
    ::InvalidateRect(dir1_, nullptr, TRUE);

    for (size_t i = 0; i < drives_.size(); ++i) {
        if (equalsNoCase(drives_[i].substr(0, 2), path_.substr(0, 2))) {
            ::SendMessageW(drive1_, CB_SETCURSEL, i, 0);
        }
    }
    fillFiles();
}

void FileBrowser::fillFiles() {
    files_ = listPictureFiles(fs_, path_);
    ::SendMessageW(file1_, WM_SETREDRAW, FALSE, 0);
    ::SendMessageW(file1_, LB_RESETCONTENT, 0, 0);
    // Added in the order of files_ (the box does not sort), so that line i is files_[i].
    for (const DirEntry& file : files_) {
        ::SendMessageW(file1_, LB_INSERTSTRING, static_cast<WPARAM>(-1),
                       reinterpret_cast<LPARAM>(widen(file.name).c_str()));
    }
    ::SendMessageW(file1_, WM_SETREDRAW, TRUE, 0);
    ::InvalidateRect(file1_, nullptr, TRUE);
    setWindowText(fileCount_, fileCountText(static_cast<int>(files_.size())));
}

std::string FileBrowser::highlighted() const {
    const auto index = ::SendMessageW(dir1_, LB_GETCURSEL, 0, 0);
    if (index < 0 || static_cast<size_t>(index) >= folders_.size()) {
        return path_;
    }
    return folders_[static_cast<size_t>(index)].path;
}

std::vector<DirEntry> FileBrowser::selectedFiles() const {
    std::vector<DirEntry> files;
    const auto count = ::SendMessageW(file1_, LB_GETCOUNT, 0, 0);
    for (int i = 0; i < count && static_cast<size_t>(i) < files_.size(); ++i) {
        if (::SendMessageW(file1_, LB_GETSEL, static_cast<WPARAM>(i), 0) > 0) {
            files.push_back(files_[static_cast<size_t>(i)]);
        }
    }
    return files;
}

std::string FileBrowser::caretFile() const {
    const auto caret = ::SendMessageW(file1_, LB_GETCARETINDEX, 0, 0);
    if (caret < 0 || static_cast<size_t>(caret) >= files_.size() ||
        ::SendMessageW(file1_, LB_GETSEL, static_cast<WPARAM>(caret), 0) <= 0 ||
        files_[static_cast<size_t>(caret)].unrepresentable) {
        return {};  // nothing to preview: a name UTF-8 can't hold opens no file
    }
    return files_[static_cast<size_t>(caret)].name;
}

void FileBrowser::onDriveChanged() {
    const auto index = ::SendMessageW(drive1_, CB_GETCURSEL, 0, 0);
    if (index < 0 || static_cast<size_t>(index) >= drives_.size()) {
        return;
    }
    const std::string& root = drives_[static_cast<size_t>(index)];
    if (!fs_.isDirectory(root)) {
        ui_.messageBox("The drive " + root.substr(0, 2) + " is not ready.", "Tessaline", kMbOk | kMbIconExclamation);
        setPath(path_);  // back to the drive that was chosen
        return;
    }
    setPath(root);
}

void FileBrowser::onDirOpen() {
    setPath(highlighted());
}

}  // namespace tl
