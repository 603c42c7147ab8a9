#include "support/driver.h"

#include <shellapi.h>
#include <shlobj.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>

#include "base/utf8_win.h"
#include "base/window_win.h"

namespace tl::wintest {

namespace {

// An item's text from a list or combo box, asked in UTF-16: Wine carries these messages between
// processes in that form only.
// The box may change between the two messages (a folder's files listed while the test reads the list),
// so there is room to spare, and the text is asked for again when it came out longer than the room.
std::string itemText(HWND box, UINT lengthMessage, UINT textMessage, int index) {
    for (int attempt = 0; attempt < 5; ++attempt) {
        const LRESULT length = ::SendMessageW(box, lengthMessage, static_cast<WPARAM>(index), 0);
        if (length < 0) {
            return {};
        }
        std::wstring wide(static_cast<size_t>(length) + MAX_PATH, L'\0');
        const LRESULT copied =
            ::SendMessageW(box, textMessage, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(wide.data()));
        if (copied < 0) {
            return {};
        }
        if (static_cast<size_t>(copied) < wide.size()) {
            wide.resize(std::min(static_cast<size_t>(copied), wide.find(L'\0')));
            return narrow(wide);
        }
    }
    return {};
}

// Calls visit on each descendant until it returns true; that one, or null.
HWND findDescendant(HWND parent, const std::function<bool(HWND)>& visit) {
    struct Search {
        const std::function<bool(HWND)>& visit;
        HWND found;
    } search{visit, nullptr};
    ::EnumChildWindows(
        parent,
        [](HWND child, LPARAM lp) -> BOOL {
            auto& s = *reinterpret_cast<Search*>(lp);
            if (s.visit(child)) {
                s.found = child;
                return FALSE;
            }
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&search));
    return search.found;
}

INPUT keyInput(WORD key, bool up) {
    INPUT in{};
    in.type = INPUT_KEYBOARD;
    in.ki.wVk = key;
    in.ki.wScan = static_cast<WORD>(::MapVirtualKeyW(key, MAPVK_VK_TO_VSC));
    in.ki.dwFlags = up ? KEYEVENTF_KEYUP : 0;
    return in;
}

INPUT mouseInput(POINT at, DWORD flags) {
    INPUT in{};
    in.type = INPUT_MOUSE;
    in.mi.dx = MulDiv(at.x, 65535, ::GetSystemMetrics(SM_CXSCREEN) - 1);
    in.mi.dy = MulDiv(at.y, 65535, ::GetSystemMetrics(SM_CYSCREEN) - 1);
    in.mi.dwFlags = flags | MOUSEEVENTF_ABSOLUTE;
    return in;
}

// Waits until the thread of the window under the point holds no mouse capture (a menu aside) and answers
// messages again: Wine sends mouse input to the window that has the capture when the input arrives, so
// a click sent while a list box still holds it from the click before would become a drag in that list.
void settle(POINT at) {
    const DWORD thread = ::GetWindowThreadProcessId(::WindowFromPoint(at), nullptr);
    waitFor([&] {
        GUITHREADINFO info{};
        info.cbSize = sizeof info;
        return !::GetGUIThreadInfo(thread, &info) || info.hwndCapture == nullptr ||
               (info.flags & (GUI_INMENUMODE | GUI_POPUPMENUMODE)) != 0;
    });
    DWORD_PTR ignored = 0;
    ::SendMessageTimeoutW(::WindowFromPoint(at), WM_NULL, 0, 0, SMTO_NORMAL, 10000, &ignored);
}

bool mouseClick(POINT at, std::initializer_list<WORD> modifiers, DWORD down, DWORD up) {
    std::vector<INPUT> inputs;
    for (WORD k : modifiers) {
        inputs.push_back(keyInput(k, false));
    }
    for (DWORD flags : {DWORD{MOUSEEVENTF_MOVE}, down, up}) {
        inputs.push_back(mouseInput(at, flags));
    }
    for (auto it = std::rbegin(modifiers); it != std::rend(modifiers); ++it) {
        inputs.push_back(keyInput(*it, true));
    }
    settle(at);
    const bool sent = ::SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT)) == inputs.size();
    ::Sleep(50);
    settle(at);
    return sent;
}

HWND openMenu() {
    HWND menu = ::FindWindowW(L"#32768", nullptr);
    return menu && ::IsWindowVisible(menu) ? menu : nullptr;
}

NOTIFYICONDATAW iconRecord(HWND form) {
    NOTIFYICONDATAW nid{};
    nid.cbSize = NOTIFYICONDATAW_V1_SIZE;
    nid.hWnd = form;
    nid.uID = 1;
    return nid;
}

}  // namespace

std::string windowClass(HWND window) {
    wchar_t name[256] = {};
    ::GetClassNameW(window, name, 256);
    return narrow(name);
}

HWND findWindow(DWORD pid, const char* className, const char* caption, bool visibleOnly) {
    struct Search {
        DWORD pid;
        const char* className;
        const char* caption;
        bool visibleOnly;
        HWND found;
    } search{pid, className, caption, visibleOnly, nullptr};
    ::EnumWindows(
        [](HWND window, LPARAM lp) -> BOOL {
            auto& s = *reinterpret_cast<Search*>(lp);
            DWORD owner = 0;
            ::GetWindowThreadProcessId(window, &owner);
            if (owner != s.pid || (s.visibleOnly && !::IsWindowVisible(window)) ||
                (s.className && windowClass(window) != s.className) || (s.caption && windowText(window) != s.caption)) {
                return TRUE;
            }
            s.found = window;
            return FALSE;
        },
        reinterpret_cast<LPARAM>(&search));
    return search.found;
}

HWND waitForOwnWindow(const char* className, const char* caption, milliseconds timeout) {
    HWND found = nullptr;
    waitFor([&] { return (found = findWindow(::GetCurrentProcessId(), className, caption, true)) != nullptr; },
            timeout);
    return found;
}

HWND findChild(HWND parent, const char* className, const char* text) {
    return findDescendant(parent, [&](HWND child) {
        return _stricmp(windowClass(child).c_str(), className) == 0 && (!text || windowText(child) == text);
    });
}

HWND findControl(HWND parent, int id) {
    return findDescendant(parent, [&](HWND child) { return ::GetDlgCtrlID(child) == id; });
}

std::string controlText(HWND control) {
    std::wstring wide(static_cast<size_t>(::SendMessageW(control, WM_GETTEXTLENGTH, 0, 0)) + 1, L'\0');
    wide.resize(
        static_cast<size_t>(::SendMessageW(control, WM_GETTEXT, wide.size(), reinterpret_cast<LPARAM>(wide.data()))));
    return narrow(wide);
}

std::string staticTexts(HWND parent) {
    std::string texts;
    findDescendant(parent, [&](HWND child) {
        const std::string t = windowText(child);
        if (windowClass(child) == "Static" && !t.empty()) {
            texts += texts.empty() ? t : "\n" + t;
        }
        return false;
    });
    return texts;
}

void clickButton(HWND button) {
    ::PostMessageW(button, BM_CLICK, 0, 0);
}

void pressButton(HWND dialog, int id) {
    ::PostMessageW(dialog, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), reinterpret_cast<LPARAM>(::GetDlgItem(dialog, id)));
}

void typeText(HWND edit, const std::string& text) {
    DWORD_PTR ignored = 0;
    ::SendMessageTimeoutW(edit, EM_SETSEL, 0, -1, SMTO_NORMAL, 5000, &ignored);
    for (wchar_t c : widen(text)) {
        ::SendMessageTimeoutW(edit, WM_CHAR, c, 1, SMTO_NORMAL, 5000, &ignored);
    }
}

std::vector<std::string> listLines(HWND listBox) {
    std::vector<std::string> lines;
    const auto count = static_cast<int>(::SendMessageW(listBox, LB_GETCOUNT, 0, 0));
    for (int i = 0; i < count; ++i) {
        lines.push_back(itemText(listBox, LB_GETTEXTLEN, LB_GETTEXT, i));
    }
    return lines;
}

std::string chosenItem(HWND comboBox) {
    const auto index = static_cast<int>(::SendMessageW(comboBox, CB_GETCURSEL, 0, 0));
    return index < 0 ? std::string() : itemText(comboBox, CB_GETLBTEXTLEN, CB_GETLBTEXT, index);
}

void clickListLine(HWND listBox, int line) {
    if (::GetWindowLongW(listBox, GWL_STYLE) & (LBS_EXTENDEDSEL | LBS_MULTIPLESEL)) {
        ::SendMessageW(listBox, LB_SETSEL, TRUE, line);
        ::SendMessageW(listBox, LB_SETCARETINDEX, static_cast<WPARAM>(line), FALSE);
    } else {
        ::SendMessageW(listBox, LB_SETCURSEL, static_cast<WPARAM>(line), 0);
    }
    ::PostMessageW(::GetParent(listBox), WM_COMMAND, MAKEWPARAM(::GetDlgCtrlID(listBox), LBN_SELCHANGE),
                   reinterpret_cast<LPARAM>(listBox));
}

void doubleClickListLine(HWND listBox, int line) {
    clickListLine(listBox, line);
    ::PostMessageW(::GetParent(listBox), WM_COMMAND, MAKEWPARAM(::GetDlgCtrlID(listBox), LBN_DBLCLK),
                   reinterpret_cast<LPARAM>(listBox));
}

void dropFiles(DWORD pid, HWND target, const std::vector<std::string>& paths) {
    std::wstring names;
    for (const std::string& p : paths) {
        names += widen(p) + L'\0';
    }
    names.push_back(L'\0');
    DROPFILES header{};
    header.pFiles = sizeof header;
    header.pt = {20, 20};
    header.fWide = TRUE;
    std::string block(reinterpret_cast<const char*>(&header), sizeof header);
    block.append(reinterpret_cast<const char*>(names.data()), names.size() * sizeof(wchar_t));
    // Wine hands no HDROP from one process to another, so the block is put where the receiver can read
    // it, as the shell's own drop handler builds it inside the receiving process.
    unique_handle process(::OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_WRITE, FALSE, pid));
    void* remote = ::VirtualAllocEx(process.get(), nullptr, block.size(), MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE);
    ::WriteProcessMemory(process.get(), remote, block.data(), block.size(), nullptr);
    ::PostMessageW(target, WM_DROPFILES, reinterpret_cast<WPARAM>(remote), 0);
}

HWND fileNameBox(HWND dialog) {
    // edt1 in the classic dialog, the combo box cmb13 (with an edit inside) in the Explorer one.
    for (int id : {0x480, 0x47C}) {
        if (HWND box = ::GetDlgItem(dialog, id)) {
            HWND edit = findChild(box, "Edit");
            return edit ? edit : box;
        }
    }
    return findChild(dialog, "Edit");
}

void chooseInFileDialog(HWND dialog, const std::string& path) {
    ::SendMessageW(fileNameBox(dialog), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(widen(path).c_str()));
    pressButton(dialog, IDOK);
}

bool pressKeys(std::initializer_list<WORD> modifiers, WORD key) {
    std::vector<INPUT> inputs;
    for (WORD m : modifiers) {
        inputs.push_back(keyInput(m, false));
    }
    inputs.push_back(keyInput(key, false));
    inputs.push_back(keyInput(key, true));
    for (auto it = std::rbegin(modifiers); it != std::rend(modifiers); ++it) {
        inputs.push_back(keyInput(*it, true));
    }
    const bool sent = ::SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT)) == inputs.size();
    ::Sleep(30);
    return sent;
}

bool clickAt(POINT at, std::initializer_list<WORD> modifiers) {
    return mouseClick(at, modifiers, MOUSEEVENTF_LEFTDOWN, MOUSEEVENTF_LEFTUP);
}

bool rightClickAt(POINT at) {
    return mouseClick(at, {}, MOUSEEVENTF_RIGHTDOWN, MOUSEEVENTF_RIGHTUP);
}

POINT centreOf(HWND window) {
    RECT r{};
    ::GetWindowRect(window, &r);
    return {(r.left + r.right) / 2, (r.top + r.bottom) / 2};
}

POINT lineCentre(HWND listBox, int line) {
    const auto height = static_cast<int>(::SendMessageW(listBox, LB_GETITEMHEIGHT, 0, 0));
    const auto top = static_cast<int>(::SendMessageW(listBox, LB_GETTOPINDEX, 0, 0));
    POINT at{40, (line - top) * height + height / 2};
    ::ClientToScreen(listBox, &at);
    return at;
}

bool chooseOpenMenuItem(int position) {
    if (!waitFor([] { return openMenu() != nullptr; }, seconds(5))) {
        return false;
    }
    pause(milliseconds(100));
    // Home takes the first item whatever the pointer chose where the menu opened.
    pressKeys({}, VK_HOME);
    for (int i = 0; i < position; ++i) {
        pressKeys({}, VK_DOWN);
    }
    pressKeys({}, VK_RETURN);
    return waitFor([] { return openMenu() == nullptr; }, seconds(5));
}

void postTrayMouse(HWND form, UINT mouseMessage) {
    // The tray's callback message is frmMain's WM_MOUSEMOVE, with the mouse message in lParam.
    ::PostMessageW(form, WM_MOUSEMOVE, 1, static_cast<LPARAM>(mouseMessage));
}

bool chooseTrayMenuItem(HWND form, const std::string& caption) {
    // The pop-up's items can't be read from another process: its captions, separators left out.
    static const char* const captions[] = {"Next",
                                           "Previous",
                                           "Switch Orientation",
                                           "Remove from list",
                                           "Delete file",
                                           "Delay",
                                           "Pause",
                                           "Random switching",
                                           "Pick different list",
                                           "Display Properties",
                                           "Start Screensaver",
                                           "Show panel...",
                                           "About...",
                                           "Quit"};
    const auto at = std::find(std::begin(captions), std::end(captions), caption);
    if (at == std::end(captions)) {
        return false;
    }
    postTrayMouse(form, WM_RBUTTONDOWN);
    return chooseOpenMenuItem(static_cast<int>(at - std::begin(captions)));
}

bool trayHasIcon(HWND form) {
    NOTIFYICONDATAW nid = iconRecord(form);
    return ::Shell_NotifyIconW(NIM_MODIFY, &nid) != FALSE;
}

void removeTrayIcon(HWND form) {
    NOTIFYICONDATAW nid = iconRecord(form);
    ::Shell_NotifyIconW(NIM_DELETE, &nid);
}

bool showPanel(HWND form) {
    return chooseTrayMenuItem(form, "Show panel...") &&
           waitFor([&] { return ::IsWindowVisible(form) && ::GetForegroundWindow() == form; });
}

ScreenShot::ScreenShot() : width_(::GetSystemMetrics(SM_CXSCREEN)), height_(::GetSystemMetrics(SM_CYSCREEN)) {
    unique_window_dc screen(nullptr);
    unique_hdc memory(::CreateCompatibleDC(screen.get()));
    BITMAPINFO info{};
    info.bmiHeader = {sizeof info.bmiHeader, width_, height_, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    unique_hbitmap dib(::CreateDIBSection(screen.get(), &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    if (!dib || !memory) {
        width_ = height_ = 0;
        return;
    }
    {
        scoped_select_object select(memory.get(), dib.get());
        ::BitBlt(memory.get(), 0, 0, width_, height_, screen.get(), 0, 0, SRCCOPY);
        ::GdiFlush();
    }
    const auto* p = static_cast<const unsigned char*>(bits);
    bits_.assign(p, p + ((static_cast<size_t>(width_) * 3 + 3) & ~size_t{3}) * static_cast<size_t>(height_));
}

unsigned ScreenShot::pixel(int x, int y) const {
    if (x < 0 || y < 0 || x >= width_ || y >= height_) {
        return 0;
    }
    const size_t stride = (static_cast<size_t>(width_) * 3 + 3) & ~size_t{3};
    const unsigned char* p = &bits_[static_cast<size_t>(height_ - 1 - y) * stride + static_cast<size_t>(x) * 3];
    return (static_cast<unsigned>(p[2]) << 16) | (static_cast<unsigned>(p[1]) << 8) | p[0];
}

void ScreenShot::save(const std::string& name) const {
    BITMAPINFOHEADER info{sizeof info, width_, height_, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
    BITMAPFILEHEADER file{};
    file.bfType = 0x4D42;
    file.bfOffBits = sizeof file + sizeof info;
    file.bfSize = static_cast<DWORD>(file.bfOffBits + bits_.size());
    std::ofstream out(buildDirectory() + "\\" + name, std::ios::binary);
    out.write(reinterpret_cast<const char*>(&file), sizeof file);
    out.write(reinterpret_cast<const char*>(&info), sizeof info);
    out.write(reinterpret_cast<const char*>(bits_.data()), static_cast<std::streamsize>(bits_.size()));
}

bool closeColour(unsigned a, unsigned b, int tolerance) {
    for (int shift : {0, 8, 16}) {
        if (std::abs(static_cast<int>((a >> shift) & 0xFF) - static_cast<int>((b >> shift) & 0xFF)) > tolerance) {
            return false;
        }
    }
    return true;
}

}  // namespace tl::wintest
