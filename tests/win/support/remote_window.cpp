#include "support/remote_window.h"

#include <shlobj.h>

#include "base/unique_handle_win.h"
#include "base/window_win.h"
#include "support/running_program.h"

namespace tl::wintest {

namespace {

std::wstring widen(const std::string& text) {
    const int n = ::MultiByteToWideChar(CP_ACP, 0, text.data(), static_cast<int>(text.size()), nullptr, 0);
    std::wstring out(static_cast<size_t>(n), L'\0');
    ::MultiByteToWideChar(CP_ACP, 0, text.data(), static_cast<int>(text.size()), out.data(), n);
    return out;
}

std::string narrow(const std::wstring& text) {
    const int n =
        ::WideCharToMultiByte(CP_ACP, 0, text.data(), static_cast<int>(text.size()), nullptr, 0, nullptr, nullptr);
    std::string out(static_cast<size_t>(n), '\0');
    ::WideCharToMultiByte(CP_ACP, 0, text.data(), static_cast<int>(text.size()), out.data(), n, nullptr, nullptr);
    return out;
}

}  // namespace

HWND findControl(HWND parent, int id) {
    struct Search {
        int id;
        HWND found;
    } search{id, nullptr};
    ::EnumChildWindows(
        parent,
        [](HWND child, LPARAM lp) -> BOOL {
            auto& s = *reinterpret_cast<Search*>(lp);
            if (::GetDlgCtrlID(child) == s.id) {
                s.found = child;
                return FALSE;
            }
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&search));
    return search.found;
}

std::vector<std::string> listLines(HWND listBox) {
    // The wide form: Wine carries LB_GETTEXT's text between processes as UTF-16.
    std::vector<std::string> lines;
    const LRESULT count = ::SendMessageW(listBox, LB_GETCOUNT, 0, 0);
    for (LRESULT i = 0; i < count; ++i) {
        const LRESULT length = ::SendMessageW(listBox, LB_GETTEXTLEN, static_cast<WPARAM>(i), 0);
        std::wstring text(static_cast<size_t>(length < 0 ? 0 : length) + 1, L'\0');
        const LRESULT got =
            ::SendMessageW(listBox, LB_GETTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text.data()));
        text.resize(got < 0 ? 0 : static_cast<size_t>(got));
        lines.push_back(narrow(text));
    }
    return lines;
}

void notifyParent(HWND control, int code) {
    ::PostMessageA(::GetParent(control), WM_COMMAND, MAKEWPARAM(::GetDlgCtrlID(control), code),
                   reinterpret_cast<LPARAM>(control));
}

void clickListLine(HWND listBox, int line) {
    const LONG style = ::GetWindowLongA(listBox, GWL_STYLE);
    if (style & (LBS_EXTENDEDSEL | LBS_MULTIPLESEL)) {
        ::SendMessageA(listBox, LB_SETSEL, TRUE, line);
        ::SendMessageA(listBox, LB_SETCARETINDEX, static_cast<WPARAM>(line), FALSE);
    } else {
        ::SendMessageA(listBox, LB_SETCURSEL, static_cast<WPARAM>(line), 0);
    }
    notifyParent(listBox, LBN_SELCHANGE);
}

void doubleClickListLine(HWND listBox, int line) {
    clickListLine(listBox, line);
    notifyParent(listBox, LBN_DBLCLK);
}

void dropFiles(DWORD processId, HWND target, const std::vector<std::string>& paths) {
    std::wstring names;
    for (const std::string& p : paths) {
        names += widen(p);
        names.push_back(L'\0');
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
    unique_handle process(::OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_WRITE, FALSE, processId));
    void* remote = ::VirtualAllocEx(process.get(), nullptr, block.size(), MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE);
    ::WriteProcessMemory(process.get(), remote, block.data(), block.size(), nullptr);
    ::PostMessageA(target, WM_DROPFILES, reinterpret_cast<WPARAM>(remote), 0);
}

bool chooseInFileDialog(HWND dialog, const std::string& path) {
    // The file name box: edt1 in the classic dialog, the combo box cmb13 in the Explorer one.
    HWND name = ::GetDlgItem(dialog, 0x480);
    if (!name) {
        name = ::GetDlgItem(dialog, 0x47C);
    }
    if (!name) {
        return false;
    }
    ::SendMessageW(name, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(widen(path).c_str()));
    ::PostMessageA(dialog, WM_COMMAND, MAKEWPARAM(IDOK, BN_CLICKED),
                   reinterpret_cast<LPARAM>(::GetDlgItem(dialog, IDOK)));
    return true;
}

}  // namespace tl::wintest
