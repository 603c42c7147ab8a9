// frmManager's controls, pictures, fonts and layout, and what the list manager's logic asks of the window.
#include <windows.h>

#include <commctrl.h>
#include <shellapi.h>

#include <initializer_list>

#include "app/program_win.h"
#include "app/resource_ids.h"
#include "base/text.h"
#include "base/utf8_win.h"
#include "changer/about_window_win.h"
#include "lists/list_tools_win.h"
#include "base/file_dialog_win.h"
#include "manager/frame_box_win.h"
#include "manager/manager_ids.h"
#include "manager/manager_menu_win.h"
#include "manager/manager_window_win.h"
#include "tracker/tracker_form_win.h"

namespace tl {

namespace {

HWND make(HWND parent, const char* className, const char* text, DWORD style, int id, DWORD exStyle = 0) {
    return ::CreateWindowExW(exStyle, widen(className).c_str(), widen(text).c_str(), style | WS_CHILD, 0, 0, 0, 0,
                             parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), ::GetModuleHandleW(nullptr),
                             nullptr);
}

void fillOrientations(HWND combo, std::initializer_list<Orientation> codes) {
    for (Orientation code : codes) {
        addListItem(combo, orientationName(code), true);
    }
}

void show(HWND control, bool visible) {
    ::ShowWindow(control, visible ? SW_SHOW : SW_HIDE);
}

// The window's own visibility flag, whatever its frame's.
bool visibleFlag(HWND control) {
    return (::GetWindowLongW(control, GWL_STYLE) & WS_VISIBLE) != 0;
}

}  // namespace

ManagerWindow::ManagerWindow() : browser_(program().fs, ui_) {}

ManagerWindow::~ManagerWindow() {
    if (ilsIcons_) {
        ImageList_Destroy(ilsIcons_);
    }
}

void ManagerWindow::createControls() {
    const HWND w = hwnd();
    const DWORD list = WS_VSCROLL | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT | WS_TABSTOP;
    const DWORD dropDown = CBS_DROPDOWNLIST | WS_VSCROLL | WS_TABSTOP;
    const DWORD imageButton = BS_PUSHBUTTON | BS_ICON | WS_TABSTOP;

    c_.list1 = make(w, "LISTBOX", "", list | WS_HSCROLL | LBS_EXTENDEDSEL | WS_VISIBLE, IDC_LIST1, WS_EX_CLIENTEDGE);
    c_.command1 = make(w, "BUTTON", "<<", BS_PUSHBUTTON | WS_TABSTOP | WS_VISIBLE, IDC_COMMAND1);

    c_.browseFrame = createFrameBox(w, "Browse for files", IDC_BROWSE_FRAME);
    const HWND bf = c_.browseFrame;
    c_.drive1 = make(bf, "COMBOBOX", "", dropDown | WS_VISIBLE, IDC_DRIVE1);
    c_.dir1 = make(bf, "LISTBOX", "", list | LBS_WANTKEYBOARDINPUT | WS_VISIBLE, IDC_DIR1, WS_EX_CLIENTEDGE);
    c_.addFolder = make(bf, "BUTTON", "Add folder", imageButton | WS_VISIBLE, IDC_ADD_FOLDER);
    c_.file1 = make(bf, "LISTBOX", "", list | LBS_EXTENDEDSEL | WS_VISIBLE, IDC_FILE1, WS_EX_CLIENTEDGE);
    c_.fileCount = make(bf, "STATIC", "", SS_LEFT | SS_NOPREFIX | WS_VISIBLE, IDC_FILE_COUNT);
    c_.addFiles = make(bf, "BUTTON", "Add files", imageButton | WS_VISIBLE, IDC_ADD_FILES);

    c_.conFrame = createFrameBox(w, "Control selected files", IDC_CON_FRAME);
    ::ShowWindow(c_.conFrame, SW_HIDE);
    c_.orType = make(c_.conFrame, "COMBOBOX", "", dropDown | WS_VISIBLE, IDC_OR_TYPE);
    fillOrientations(c_.orType, {kCenter, kTile, kStretch, kScale, kFill});
    c_.removeFile = make(c_.conFrame, "BUTTON", "Remove from list", imageButton | WS_VISIBLE, IDC_REMOVE_FILE);
    c_.killFile = make(c_.conFrame, "BUTTON", "Delete from disk", imageButton | WS_VISIBLE, IDC_KILL_FILE);

    c_.addOrType = make(w, "COMBOBOX", "", dropDown | WS_VISIBLE, IDC_ADD_OR_TYPE);
    fillOrientations(c_.addOrType, {kCenter, kTile, kStretch, kScale, kAuto, kFill});
    c_.dupeChecking =
        make(w, "BUTTON", "Check for duplicates", BS_CHECKBOX | WS_TABSTOP | WS_VISIBLE, IDC_DUPE_CHECKING);

    c_.prevFrame = createFrameBox(w, "Preview", IDC_PREV_FRAME);
    ::ShowWindow(c_.prevFrame, SW_HIDE);
    const HWND pf = c_.prevFrame;
    c_.preview = make(pf, "STATIC", "", SS_BITMAP | SS_NOTIFY, IDC_PREVIEW);
    c_.altPreview = make(pf, "STATIC", "", SS_BITMAP | SS_NOTIFY, IDC_ALT_PREVIEW);
    const DWORD label = SS_LEFT | SS_NOPREFIX | SS_ENDELLIPSIS | WS_VISIBLE;
    c_.label1 = make(pf, "STATIC", "Filesize:", label, IDC_LABEL1);
    c_.fsize = make(pf, "STATIC", "", label, IDC_FSIZE);
    c_.label2 = make(pf, "STATIC", "Date:", label, IDC_LABEL2);
    c_.fdate = make(pf, "STATIC", "", label, IDC_FDATE);
    c_.label3 = make(pf, "STATIC", "Dimensions:", label, IDC_LABEL3);
    c_.dimensions = make(pf, "STATIC", "", label, IDC_DIMENSIONS);

    c_.scanDir = make(w, "STATIC", "Thinking...", SS_LEFT | SS_NOPREFIX, IDC_SCAN_DIR);
    c_.kern = make(w, "STATIC", "", SS_ICON | SS_CENTERIMAGE, IDC_KERN);
    c_.label4 = make(w, "STATIC",
                     "Drag and drop files from explorer in the box to the left, or via the interface below. Vist the "
                     "website for a tutorial on creating lists if you need help!",
                     SS_LEFT | SS_NOPREFIX | WS_VISIBLE, IDC_LABEL4);

    toolTips_ = createToolTips(w);
    const std::pair<HWND, const char*> tips[] = {
        {c_.list1, "Files in your list"},
        {c_.drive1, "Select a drive to view"},
        {c_.dir1, "Folder list"},
        {c_.file1, "File list area"},
        {c_.addFolder, "Add selected folder and all sub-folders and files"},
        {c_.addFiles, "Add all selected files into list"},
        {c_.orType, "Orientation of file"},
        {c_.removeFile, "Removes selected file(s) from list"},
        {c_.killFile, "Deletes selected file(s) from disk"},
        {c_.addOrType, "New files added will have this orientation. Note that 'Auto' takes much longer to process"},
        {c_.dupeChecking, "When adding, auto-remove duplicate filenames"},
        {c_.preview, "Click for a larger view"},
        {c_.altPreview, "Click for a larger view"},
    };
    for (const auto& [control, text] : tips) {
        addToolTip(toolTips_, control, text);
    }

    panel_.preview = c_.preview;
    panel_.prevFrame = c_.prevFrame;
    panel_.fsize = c_.fsize;
    panel_.fdate = c_.fdate;
    panel_.dimensions = c_.dimensions;
    altPanel_.preview = c_.altPreview;
    altPanel_.prevFrame = c_.prevFrame;
    altPanel_.fsize = c_.fsize;
    altPanel_.fdate = c_.fdate;
    altPanel_.dimensions = c_.dimensions;

    menuBar_ = buildMenuBar(managerMenuBar());
    ::SetMenu(w, menuBar_.get());
    contextMenu_ = buildPopupMenu(managerContextMenu());
    browser_.attach(c_.drive1, c_.dir1, c_.file1, c_.fileCount);
}

// The image list of the window's pictures, at the size the window's DPI asks for; false when it can't
// be made.
bool ManagerWindow::createPictures() {
    if (ilsIcons_) {
        ImageList_Destroy(ilsIcons_);
    }
    buttonIcons_.clear();
    const int size = px(24);
    ilsIcons_ = ImageList_Create(size, size, ILC_COLOR32 | ILC_MASK, 5, 0);
    if (!ilsIcons_) {
        return false;
    }
    const std::pair<int, HWND> pictures[] = {{IDI_ADD_FOLDER, c_.addFolder},
                                             {IDI_ADD_FILES, c_.addFiles},
                                             {IDI_REMOVE_FILE, c_.removeFile},
                                             {IDI_KILL_FILE, c_.killFile},
                                             {IDI_KERN, c_.kern}};
    for (const auto& [id, control] : pictures) {
        unique_hicon loaded(static_cast<HICON>(
            ::LoadImageW(::GetModuleHandleW(nullptr), MAKEINTRESOURCEW(id), IMAGE_ICON, size, size, 0)));
        if (!loaded || ImageList_AddIcon(ilsIcons_, loaded.get()) < 0) {
            return false;
        }
        unique_hicon icon(ImageList_GetIcon(ilsIcons_, ImageList_GetImageCount(ilsIcons_) - 1, ILD_NORMAL));
        const UINT message = control == c_.kern ? STM_SETICON : BM_SETIMAGE;
        const WPARAM kind = control == c_.kern ? 0 : IMAGE_ICON;
        ::SendMessageW(control, message, kind, reinterpret_cast<LPARAM>(icon.get()));
        buttonIcons_.push_back(std::move(icon));
    }
    return true;
}

void ManagerWindow::applyFonts() {
    font_ = createMessageFont(dpi_);
    setFontOnChildren(hwnd(), font_.get());
}

void ManagerWindow::place(HWND control, const LayoutRect& r) const {
    ::SetWindowPos(control, nullptr, px(r.x), px(r.y), px(r.width), px(r.height), SWP_NOZORDER | SWP_NOACTIVATE);
}

void ManagerWindow::layout() {
    RECT client{};
    ::GetClientRect(hwnd(), &client);
    const ManagerLayout l =
        layoutManager(MulDiv(client.right, 96, dpi_), MulDiv(client.bottom, 96, dpi_), browserShown_);
    const std::pair<HWND, LayoutRect> places[] = {
        {c_.list1, l.list1},           {c_.command1, l.command1},   {c_.browseFrame, l.browseFrame},
        {c_.drive1, l.drive1},         {c_.dir1, l.dir1},           {c_.addFolder, l.addFolder},
        {c_.file1, l.file1},           {c_.fileCount, l.fileCount}, {c_.addFiles, l.addFiles},
        {c_.conFrame, l.conFrame},     {c_.orType, l.orType},       {c_.removeFile, l.removeFile},
        {c_.killFile, l.killFile},     {c_.addOrType, l.addOrType}, {c_.dupeChecking, l.dupeChecking},
        {c_.prevFrame, l.prevFrame},   {c_.label1, l.label1},       {c_.fsize, l.fsize},
        {c_.label2, l.label2},         {c_.fdate, l.fdate},         {c_.label3, l.label3},
        {c_.dimensions, l.dimensions}, {c_.scanDir, l.scanDir},     {c_.kern, l.kern},
        {c_.label4, l.label4},
    };
    for (const auto& [control, r] : places) {
        place(control, r);
    }
    // The previews keep the size of the picture they show; only their corner moves.
    for (HWND p : {c_.preview, c_.altPreview}) {
        ::SetWindowPos(p, nullptr, px(l.preview.x), px(l.preview.y), 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    }
    for (FactsPanel* p : {&panel_, &altPanel_}) {
        p->previewDefaultWidth = px(ManagerLayout::kPreviewWidth);
        p->previewDefaultHeight = px(ManagerLayout::kPreviewHeight);
    }
}

void ManagerWindow::updateListExtent() {
    const auto count = static_cast<int>(::SendMessageW(c_.list1, LB_GETCOUNT, 0, 0));
    if (count == extentLines_) {
        return;
    }
    extentLines_ = count;
    int longest = -1;
    LRESULT longestLength = -1;
    for (int i = 0; i < count; ++i) {
        const LRESULT length = ::SendMessageW(c_.list1, LB_GETTEXTLEN, static_cast<WPARAM>(i), 0);
        if (length > longestLength) {
            longestLength = length;
            longest = i;
        }
    }
    int width = 0;
    if (longest >= 0) {
        std::wstring text(static_cast<size_t>(longestLength) + 1, L'\0');
        const auto got =
            ::SendMessageW(c_.list1, LB_GETTEXT, static_cast<WPARAM>(longest), reinterpret_cast<LPARAM>(text.data()));
        text.resize(got < 0 ? 0 : static_cast<size_t>(got));
        unique_window_dc dc(c_.list1);
        scoped_select_object selected(dc.get(), font_.get());
        SIZE extent{};
        ::GetTextExtentPoint32W(dc.get(), text.c_str(), static_cast<int>(text.size()), &extent);
        width = extent.cx + px(8);
    }
    ::SendMessageW(c_.list1, LB_SETHORIZONTALEXTENT, static_cast<WPARAM>(width), 0);
}

// ---- ManagerView ----

std::string ManagerWindow::caption() const {
    return windowText(hwnd());
}

void ManagerWindow::setCaption(const std::string& caption) {
    setWindowText(hwnd(), caption);
}

void ManagerWindow::showBusy() {
    setWindowText(c_.scanDir, "Working...");
    show(c_.scanDir, true);
    show(c_.kern, true);
    kernShown_ = true;
    setHourglass(true);
    ::SetTimer(hwnd(), IDT_ANIMATOR, 300, nullptr);
    show(c_.list1, false);
    show(c_.browseFrame, false);
    show(c_.conFrame, false);
    busyLook_ = true;
    if (!::IsZoomed(hwnd()) && !::IsIconic(hwnd())) {
        // 6735 by 1470 twips: little more than the busy text shows.
        ::GetWindowRect(hwnd(), &normalRect_);
        ::SetWindowPos(hwnd(), nullptr, 0, 0, px(449), px(98), SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
        shrunk_ = true;
    }
    lastProgress_ = ::GetTickCount();
    ::RedrawWindow(hwnd(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
}

void ManagerWindow::showIdle() {
    ::KillTimer(hwnd(), IDT_ANIMATOR);
    show(c_.list1, true);
    show(c_.browseFrame, browserShown_);
    if (visibleFlag(c_.orType)) {
        show(c_.conFrame, true);
    }
    show(c_.scanDir, false);
    show(c_.kern, false);
    busyLook_ = false;
    if (shrunk_) {
        shrunk_ = false;
        ::SetWindowPos(hwnd(), nullptr, 0, 0, normalRect_.right - normalRect_.left,
                       normalRect_.bottom - normalRect_.top, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    }
    layout();
    setHourglass(false);
}

void ManagerWindow::busyProgress() {
    // The add runs to its end without returning to the message loop; now and then the animation's tick
    // and the painting are let through, and nothing else, so that no command can start in the middle.
    const DWORD now = ::GetTickCount();
    if (now - lastProgress_ < 100) {
        return;
    }
    lastProgress_ = now;
    MSG msg{};
    while (::PeekMessageW(&msg, hwnd(), WM_TIMER, WM_TIMER, PM_REMOVE)) {
        ::DispatchMessageW(&msg);
    }
    ::RedrawWindow(hwnd(), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
}

void ManagerWindow::setHourglass(bool on) {
    hourglass_ = std::max(0, hourglass_ + (on ? 1 : -1));
    ::SetCursor(::LoadCursorW(nullptr, hourglass_ > 0 ? IDC_WAIT : IDC_ARROW));
}

void ManagerWindow::hideListAndFrames() {
    show(c_.list1, false);
    show(c_.browseFrame, false);
    show(c_.conFrame, false);
}

void ManagerWindow::showListAndFrames() {
    show(c_.browseFrame, browserShown_);
    if (visibleFlag(c_.orType)) {
        show(c_.conFrame, true);
    }
    show(c_.list1, true);
}

void ManagerWindow::showEntryControls() {
    show(c_.orType, true);
    show(c_.killFile, true);
    show(c_.removeFile, true);
}

void ManagerWindow::hideEntryPanels() {
    panel_.clearPreview();
    altPanel_.clearPreview();
    show(c_.prevFrame, false);
    show(c_.conFrame, false);
    show(c_.orType, false);
}

Orientation ManagerWindow::addOrientation() const {
    const auto index = ::SendMessageW(c_.addOrType, CB_GETCURSEL, 0, 0);
    return static_cast<Orientation>(index < 0 ? kCenter : index);
}

void ManagerWindow::setAddOrientation(Orientation orientation) {
    ::SendMessageW(c_.addOrType, CB_SETCURSEL, static_cast<WPARAM>(orientation), 0);
}

void ManagerWindow::showEntryOrientation(Orientation orientation) {
    // CB_SETCURSEL raises no selection change: the program's own choice is never taken for the user's.
    ::SendMessageW(c_.orType, CB_SETCURSEL, static_cast<WPARAM>(orientationBoxIndex(orientation)), 0);
}

void ManagerWindow::setOptionChecks(const OptionChecks& checks) {
    applyOptionChecks(menuBar_.get(), checks);
    ::SendMessageW(c_.dupeChecking, BM_SETCHECK, checks.checkDuplicates ? BST_CHECKED : BST_UNCHECKED, 0);
}

void ManagerWindow::hideHelpText() {
    show(c_.label4, false);
}

void ManagerWindow::showControlFrame() {
    show(c_.conFrame, true);
}

void ManagerWindow::hideBrowsePreview() {
    altPanel_.clearPreview();
}

bool ManagerWindow::showImageFacts(WallpaperEntry& entry) {
    return ShowImageFacts(entry, panel_);
}

void ManagerWindow::clearPreview() {
    panel_.clearPreview();
}

void ManagerWindow::hidePreviewFrame() {
    show(c_.prevFrame, false);
}

std::optional<std::string> ManagerWindow::chooseFileToOpen(const FileDialogRequest& request) {
    return showOpenDialog(hwnd(), request);
}

std::optional<std::string> ManagerWindow::chooseFileToSave(const FileDialogRequest& request) {
    return showSaveDialog(hwnd(), request);
}

void ManagerWindow::handFoldersToTracker(const TrackedFolders& folders) {
    // The tracker adds the folders it is given to those it holds: another list's must go first.
    unloadTracker();
    if (folders.size() > 1) {
        loadTracker(*this, folders);
        trackerLoadedHere_ = isTrackerLoaded();
    }
}

bool ManagerWindow::trackerLoaded() const {
    return trackerLoadedHere_ && isTrackerLoaded();
}

void ManagerWindow::unloadTracker() {
    if (trackerLoaded()) {
        tl::unloadTracker();
    }
    trackerLoadedHere_ = false;
}

void ManagerWindow::showAbout() {
    tl::showAbout(hwnd());
}

void ManagerWindow::addPaper(const std::string& path, bool, int16_t& result) {
    result = static_cast<int16_t>(manager_ ? manager_->addTrackedFile(path) : 0);
    updateListExtent();
}

void ManagerWindow::deletePaper(const std::string& path, bool) {
    if (manager_) {
        manager_->removeTrackedFile(path);
        updateListExtent();
    }
}

void ManagerWindow::setTrackerList(const TrackedFolders& folders) {
    if (manager_) {
        manager_->setTrackedFolders(folders);
    }
}

bool ManagerWindow::removeFileFromDisk(const std::string& path, bool recycle, bool useShell) {
    return tl::removeFileFromDisk(path, recycle, useShell, hwnd());
}

}  // namespace tl
