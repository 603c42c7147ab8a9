#include "manager/file_browser_win.h"

#include "base/file_system.h"
#include "base/text.h"
#include "base/ui.h"

namespace tl {

namespace {

std::string listText(HWND box, int index) {
    const auto length = ::SendMessageA(box, LB_GETTEXTLEN, static_cast<WPARAM>(index), 0);
    if (length < 0) {
        return {};
    }
    std::string text(static_cast<size_t>(length) + 1, '\0');
    const auto got = ::SendMessageA(box, LB_GETTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text.data()));
    text.resize(got < 0 ? 0 : static_cast<size_t>(got));
    return text;
}

// "C:\" gives "c:" and its volume name, as drive lists show them: "c: [System]".
std::string driveText(const std::string& root) {
    std::string text = lowerCase(root.substr(0, 2));
    char label[MAX_PATH + 1] = {};
    const UINT type = ::GetDriveTypeA(root.c_str());
    // Removable and optical drives are not asked for their names: an empty one would stall the list.
    if (type == DRIVE_FIXED || type == DRIVE_RAMDISK || type == DRIVE_REMOTE) {
        if (::GetVolumeInformationA(root.c_str(), label, sizeof label, nullptr, nullptr, nullptr, nullptr, 0) &&
            label[0] != '\0') {
            text += std::string(" [") + label + "]";
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
    ::SendMessageA(drive1_, CB_RESETCONTENT, 0, 0);
    char buffer[4096] = {};
    const DWORD n = ::GetLogicalDriveStringsA(sizeof buffer - 1, buffer);
    for (const char* p = buffer; p < buffer + n && *p; p += std::string_view(p).size() + 1) {
        drives_.emplace_back(p);
        ::SendMessageA(drive1_, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(driveText(p).c_str()));
    }
}

void FileBrowser::setPath(const std::string& path) {
    path_ = folderPathForBrowser(path);
    const FolderListing listing = listFolder(fs_, path_);
    folders_ = listing.lines;
    ::SendMessageA(dir1_, WM_SETREDRAW, FALSE, 0);
    ::SendMessageA(dir1_, LB_RESETCONTENT, 0, 0);
    for (const FolderLine& line : folders_) {
        ::SendMessageA(dir1_, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(line.text.c_str()));
    }
    ::SendMessageA(dir1_, LB_SETCURSEL, static_cast<WPARAM>(listing.openIndex), 0);
    ::SendMessageA(dir1_, WM_SETREDRAW, TRUE, 0);
    ::InvalidateRect(dir1_, nullptr, TRUE);

    for (size_t i = 0; i < drives_.size(); ++i) {
        if (equalsNoCase(drives_[i].substr(0, 2), path_.substr(0, 2))) {
            ::SendMessageA(drive1_, CB_SETCURSEL, i, 0);
        }
    }
    fillFiles();
}

void FileBrowser::fillFiles() {
    const std::vector<std::string> names = listPictureFiles(fs_, path_);
    ::SendMessageA(file1_, WM_SETREDRAW, FALSE, 0);
    ::SendMessageA(file1_, LB_RESETCONTENT, 0, 0);
    for (const std::string& name : names) {
        ::SendMessageA(file1_, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(name.c_str()));
    }
    ::SendMessageA(file1_, WM_SETREDRAW, TRUE, 0);
    ::InvalidateRect(file1_, nullptr, TRUE);
    ::SetWindowTextA(fileCount_, fileCountText(static_cast<int>(names.size())).c_str());
}

std::string FileBrowser::highlighted() const {
    const auto index = ::SendMessageA(dir1_, LB_GETCURSEL, 0, 0);
    if (index < 0 || static_cast<size_t>(index) >= folders_.size()) {
        return path_;
    }
    return folders_[static_cast<size_t>(index)].path;
}

std::vector<std::string> FileBrowser::selectedFiles() const {
    std::vector<std::string> names;
    const auto count = ::SendMessageA(file1_, LB_GETCOUNT, 0, 0);
    for (int i = 0; i < count; ++i) {
        if (::SendMessageA(file1_, LB_GETSEL, static_cast<WPARAM>(i), 0) > 0) {
            names.push_back(listText(file1_, i));
        }
    }
    return names;
}

std::string FileBrowser::caretFile() const {
    const auto caret = ::SendMessageA(file1_, LB_GETCARETINDEX, 0, 0);
    if (caret < 0 || ::SendMessageA(file1_, LB_GETSEL, static_cast<WPARAM>(caret), 0) <= 0) {
        return {};
    }
    return listText(file1_, static_cast<int>(caret));
}

void FileBrowser::onDriveChanged() {
    const auto index = ::SendMessageA(drive1_, CB_GETCURSEL, 0, 0);
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
