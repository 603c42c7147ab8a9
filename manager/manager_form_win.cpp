// frmManager's load and its messages.
#include "manager/manager_form_win.h"

#include <windows.h>

#include <shellapi.h>
#include <windowsx.h>

#include <memory>

#include "app/program_win.h"
#include "app/resource_ids.h"
#include "base/random.h"
#include "base/text.h"
#include "base/utf8_win.h"
#include "changer/main_form_win.h"
#include "changer/preview_window_win.h"
#include "display/screen_resolution_win.h"
#include "manager/file_association.h"
#include "manager/file_browser.h"
#include "manager/manager_ids.h"
#include "manager/manager_window_win.h"

namespace tl {

namespace {

constexpr const char* kManagerClass = "TessalineManager";
// The client area a new window opens with, in 96-DPI units.
constexpr int kStartWidth = 820;
constexpr int kStartHeight = 540;

std::string exeBaseName() {
    std::string name = executablePath().value_or(std::string());
    name = name.substr(name.find_last_of("\\/") + 1);
    return name.substr(0, name.rfind('.'));
}

// Ends the whole program at once: the window can't work without the part that failed.
void endProgram(HWND window, const char* message) {
    Win32Ui(window).messageBox(message, "Tessaline", MB_OK);
    ::PostQuitMessage(1);
}

void CALLBACK loadChangerLater(HWND, UINT, UINT_PTR id, DWORD) {
    ::KillTimer(nullptr, id);
    try {
        loadMainForm();
    } catch (const std::exception&) {
        // A failed load leaves whatever window it opened; with none, the program ends below.
    }
    formUnloaded();
}

std::unique_ptr<ManagerWindow> managerForm;

}  // namespace

void ManagerWindow::load() {
    registerClass(kManagerClass, ::LoadIconW(program().instance, MAKEINTRESOURCEW(IDI_TESSALINE)));
    create(kManagerClass, "Tessaline", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, 0, CW_USEDEFAULT, CW_USEDEFAULT,
           CW_USEDEFAULT, CW_USEDEFAULT);
    if (!hwnd()) {
        return;
    }
    formLoaded();
    dpi_ = dpiOf(hwnd());
    ui_.setOwner(hwnd());
    createControls();
    applyFonts();
    RECT r{0, 0, px(kStartWidth), px(kStartHeight)};
    ::AdjustWindowRectEx(&r, WS_OVERLAPPEDWINDOW, TRUE, 0);
    ::SetWindowPos(hwnd(), nullptr, 0, 0, r.right - r.left, r.bottom - r.top, SWP_NOMOVE | SWP_NOZORDER);

    list1_ = std::make_unique<Win32ListBox>(c_.list1);
    manager_ = std::make_unique<ListManager>(ManagerServices{*this, *list1_, program().fs, program().ansi, ui_, program().app,
                                                             sharedRandom(), *this, [] { program().saveSettings(); }});
    Win32DisplayPlatform display;
    const clsScrRes screen(display, ui_);
    const Settings& settings = program().app.settings;
    const std::string wallpapers = folderPathForBrowser(settings.WallpaperDirectory);
    browser_.setPath(program().fs.isDirectory(wallpapers) ? wallpapers : program().app.programDir);
    manager_->load(screen.CurrentHRes(hwnd()), screen.CurrentVRes(hwnd()));
    layout();
    updateListExtent();

    if (!createPictures()) {
        endProgram(hwnd(),
                   "Could not load either the SSubTmr6.dll or vbalIcoM6.dll. Please ensure both are "
                   "registered properly");
        return;
    }
    ::DragAcceptFiles(hwnd(), TRUE);
    if ((::GetWindowLongW(hwnd(), GWL_EXSTYLE) & WS_EX_ACCEPTFILES) == 0) {
        endProgram(hwnd(), "Could not load DragX.dll component. Please see the readme as to how to fix this.");
    }
}

LRESULT ManagerWindow::onMessage(UINT msg, WPARAM wParam, LPARAM lParam) {
    switch (msg) {
        case WM_COMMAND:
            if (manager_) {
                onCommand(LOWORD(wParam), HIWORD(wParam));
                updateListExtent();
                finishPendingClose();
            }
            return 0;
        case WM_CONTEXTMENU:
            if (manager_) {
                onContextMenu(reinterpret_cast<HWND>(wParam), {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)});
                updateListExtent();
                finishPendingClose();
            }
            return 0;
        case WM_VKEYTOITEM:
            if (reinterpret_cast<HWND>(lParam) == c_.dir1 && LOWORD(wParam) == VK_RETURN) {
                browser_.onDirOpen();
                return -2;
            }
            return -1;
        case WM_DROPFILES:
            onDropFiles(reinterpret_cast<HDROP>(wParam));
            updateListExtent();
            return 0;
        case WM_TIMER:
            if (wParam == IDT_ANIMATOR) {
                onAnimatorTick();
            }
            return 0;
        case WM_SETCURSOR:
            if (hourglass_ > 0) {
                ::SetCursor(::LoadCursorW(nullptr, IDC_WAIT));
                return TRUE;
            }
            break;
        case WM_SIZE:
            if (!busyLook_ && c_.list1) {
                layout();
            }
            return 0;
        case WM_GETMINMAXINFO:
            if (!busyLook_) {
                RECT r{0, 0, px(ManagerLayout::kMinClientWidth), px(ManagerLayout::kMinClientHeight)};
                ::AdjustWindowRectEx(&r, WS_OVERLAPPEDWINDOW, TRUE, 0);
                auto* info = reinterpret_cast<MINMAXINFO*>(lParam);
                info->ptMinTrackSize = {r.right - r.left, r.bottom - r.top};
            }
            return 0;
        case WM_DPICHANGED: {
            dpi_ = HIWORD(wParam);
            const auto* r = reinterpret_cast<const RECT*>(lParam);
            ::SetWindowPos(hwnd(), nullptr, r->left, r->top, r->right - r->left, r->bottom - r->top,
                           SWP_NOZORDER | SWP_NOACTIVATE);
            applyFonts();
            createPictures();
            layout();
            return 0;
        }
        case WM_CLOSE:
            if (onClose()) {
                ::DestroyWindow(hwnd());
            }
            return 0;
        case WM_DESTROY:
            ::KillTimer(hwnd(), IDT_ANIMATOR);
            // A tracker loaded for this list must not outlive the window it reports to.
            unloadTracker();
            // The menu bar is ours to free, not the window's.
            ::SetMenu(hwnd(), nullptr);
            formUnloaded();
            return 0;
        default:
            break;
    }
    return defaultProc(msg, wParam, lParam);
}

void ManagerWindow::onCommand(int id, int code) {
    ListManager& m = *manager_;
    switch (id) {
        case IDM_NEW_LIST:
            return m.newList();
        case IDM_OPEN_LIST:
            return m.openList();
        case IDM_SAVE_LIST:
            return m.saveList();
        case IDM_SAVE_AS:
            return m.saveListAs();
        case IDM_SORT_LIST:
        case IDM_CONTEXT_SORT:
            return m.sortList();
        case IDM_ASSOCIATE:
            return associateWallFiles(registry_, ui_, program().app.programDir, exeBaseName());
        case IDM_UNASSOCIATE:
            return unassociateWallFiles(registry_, ui_);
        case IDM_ABOUT:
            return showAbout();
        case IDM_CLOSE:
            return m.saveAndClose();
        case IDM_CLOSE_WITHOUT_SAVE:
            return m.closeWithoutSave();
        case IDM_DEFAULT_CENTER:
        case IDM_DEFAULT_TILE:
        case IDM_DEFAULT_STRETCH:
        case IDM_DEFAULT_SCALE:
        case IDM_DEFAULT_AUTO:
            return m.chooseAddOrientation(static_cast<Orientation>(id - IDM_DEFAULT_CENTER));
        case IDM_DEFAULT_FILL:
            return m.chooseAddOrientation(kFill);
        case IDM_CHECK_DUPLICATES:
            return m.toggleCheckDuplicates();
        case IDM_AUTO_SORT_FOLDER:
            return m.toggleAutoSortFolder();
        case IDM_CONTEXT_REMOVE:
            return m.removeSelected();
        case IDM_CONTEXT_DELETE:
            return m.deleteSelected(true, true);
        default:
            break;
    }
    switch (code) {
        case BN_CLICKED:  // also STN_CLICKED (0) of the previews
            switch (id) {
                case IDC_COMMAND1:
                    return toggleBrowser();
                case IDC_ADD_FOLDER:
                    m.addFolder();
                    return;
                case IDC_ADD_FILES:
                    return m.addFiles();
                case IDC_REMOVE_FILE:
                    return m.removeSelected();
                case IDC_KILL_FILE:
                    return onKillFile();
                case IDC_DUPE_CHECKING:
                    return m.toggleCheckDuplicates();
                case IDC_PREVIEW:
                    if (!m.previewedPath().empty()) {
                        showPreview(m.previewedPath(), program().app.settings);
                    }
                    return;
                case IDC_ALT_PREVIEW:
                    if (!browsedPath_.empty()) {
                        showPreview(browsedPath_, program().app.settings);
                    }
                    return;
                default:
                    return;
            }
        case LBN_SELCHANGE:  // the same number as CBN_SELCHANGE
            switch (id) {
                case IDC_LIST1:
                    return m.onList1Click();
                case IDC_FILE1:
                    return onFile1Click();
                case IDC_DRIVE1:
                    return browser_.onDriveChanged();
                case IDC_OR_TYPE: {
                    const auto chosen = ::SendMessageW(c_.orType, CB_GETCURSEL, 0, 0);
                    if (chosen >= 0) {
                        m.onOrTypeChosen(orientationAtBoxIndex(static_cast<int>(chosen)));
                    }
                    return;
                }
                case IDC_ADD_OR_TYPE:
                    return m.chooseAddOrientation(addOrientation());
                default:
                    return;
            }
        case LBN_DBLCLK:
            if (id == IDC_DIR1) {
                browser_.onDirOpen();
            }
            return;
        default:
            return;
    }
}

void ManagerWindow::onKillFile() {
    const auto down = [](int key) { return ::GetKeyState(key) < 0; };
    const DeleteMode mode = deleteModeFor(down(VK_SHIFT), down(VK_CONTROL), down(VK_MENU));
    manager_->deleteSelected(mode.recycle, mode.useShell);
}

void ManagerWindow::onFile1Click() {
    const std::string name = browser_.caretFile();
    if (name.empty()) {
        return;
    }
    // The browsed file takes the preview's place; the list entry that was there is shown again when clicked.
    panel_.clearPreview();
    manager_->onBrowsePreviewShown();
    WallpaperEntry browsed;
    browsed.path = joinPath(browser_.path(), name);
    browsedPath_ = ShowImageFacts(browsed, altPanel_) ? browsed.path : std::string();
}

void ManagerWindow::toggleBrowser() {
    browserShown_ = !browserShown_;
    ::ShowWindow(c_.browseFrame, browserShown_ ? SW_SHOW : SW_HIDE);
    setWindowText(c_.command1, browserShown_ ? "<<" : ">>");
    layout();
}

void ManagerWindow::onDropFiles(HDROP drop) {
    // Each name is asked for its length first, so that no buffer of MAX_PATH cuts it short.
    std::vector<std::string> names;
    std::vector<std::string> unrepresentable;
    const UINT count = ::DragQueryFileW(drop, 0xFFFFFFFF, nullptr, 0);
    for (UINT i = 0; i < count; ++i) {
        std::wstring wide(::DragQueryFileW(drop, i, nullptr, 0) + 1, L'\0');
        wide.resize(::DragQueryFileW(drop, i, wide.data(), static_cast<UINT>(wide.size())));
        bool lost = false;
        std::string name = narrow(wide, &lost);
        (lost ? unrepresentable : names).push_back(std::move(name));
    }
    ::DragFinish(drop);
    if (manager_) {
        manager_->dropFiles(names, unrepresentable);
    }
}

void ManagerWindow::onAnimatorTick() {
    kernShown_ = !kernShown_;
    ::ShowWindow(c_.kern, kernShown_ ? SW_SHOW : SW_HIDE);
    setWindowText(c_.scanDir, "Scanning " + manager_->scanStatus());
}

void ManagerWindow::onContextMenu(HWND from, POINT at) {
    if (from != c_.list1) {
        return;
    }
    if (at.x == -1 && at.y == -1) {
        // From the keyboard: beside the line with the caret.
        RECT item{};
        const auto caret = ::SendMessageW(c_.list1, LB_GETCARETINDEX, 0, 0);
        ::SendMessageW(c_.list1, LB_GETITEMRECT, static_cast<WPARAM>(caret < 0 ? 0 : caret),
                       reinterpret_cast<LPARAM>(&item));
        at = {item.left + px(16), item.bottom};
        ::ClientToScreen(c_.list1, &at);
    }
    const UINT chosen = static_cast<UINT>(
        ::TrackPopupMenuEx(contextMenu_.get(), TPM_RETURNCMD | TPM_RIGHTBUTTON, at.x, at.y, hwnd(), nullptr));
    if (chosen != 0) {
        onCommand(static_cast<int>(chosen), 0);
    }
}

bool ManagerWindow::onClose() {
    if (manager_ && !manager_->mayClose()) {
        return false;
    }
    ::DragAcceptFiles(hwnd(), FALSE);
    return true;
}

void ManagerWindow::finishPendingClose() {
    const PendingClose what = pendingClose_;
    pendingClose_ = PendingClose::None;
    if (what == PendingClose::None) {
        return;
    }
    if (what == PendingClose::ShowChanger) {
        // The changer loads from the message loop, once this window and its handler are gone; until then
        // the program stays alive.
        formLoaded();
        ::SetTimer(nullptr, 0, 0, loadChangerLater);
    }
    ::DestroyWindow(hwnd());
}

void showManager() {
    if (!managerForm || !managerForm->isCreated()) {
        managerForm = std::make_unique<ManagerWindow>();
        managerForm->load();
    }
    if (!managerForm->isCreated()) {
        return;
    }
    ::ShowWindow(managerForm->hwnd(), SW_SHOWNORMAL);
    ::SetForegroundWindow(managerForm->hwnd());
}

}  // namespace tl
