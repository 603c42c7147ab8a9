#include "support/window_driver.h"

#include "base/window_win.h"
#include "support/program_dir.h"
#include "support/running_program.h"

namespace tl::wintest {

HWND findOwnWindow(const char* className, const char* caption) {
    struct Search {
        const char* className;
        const char* caption;
        HWND found;
    } search{className, caption, nullptr};
    ::EnumWindows(
        [](HWND hwnd, LPARAM lp) -> BOOL {
            auto& s = *reinterpret_cast<Search*>(lp);
            DWORD pid = 0;
            ::GetWindowThreadProcessId(hwnd, &pid);
            if (pid != ::GetCurrentProcessId() || !::IsWindowVisible(hwnd)) {
                return TRUE;
            }
            if ((s.className && windowClass(hwnd) != s.className) || (s.caption && windowText(hwnd) != s.caption)) {
                return TRUE;
            }
            s.found = hwnd;
            return FALSE;
        },
        reinterpret_cast<LPARAM>(&search));
    return search.found;
}

HWND waitForOwnWindow(const char* className, const char* caption, std::chrono::milliseconds timeout) {
    HWND found = nullptr;
    waitFor([&] { return (found = findOwnWindow(className, caption)) != nullptr; }, timeout);
    return found;
}

HWND findChild(HWND parent, const char* className, const char* text) {
    struct Search {
        const char* className;
        const char* text;
        HWND found;
    } search{className, text, nullptr};
    ::EnumChildWindows(
        parent,
        [](HWND child, LPARAM lp) -> BOOL {
            auto& s = *reinterpret_cast<Search*>(lp);
            if (_stricmp(windowClass(child).c_str(), s.className) != 0 || (s.text && windowText(child) != s.text)) {
                return TRUE;
            }
            s.found = child;
            return FALSE;
        },
        reinterpret_cast<LPARAM>(&search));
    return search.found;
}

std::string staticTexts(HWND parent) {
    return RunningProgram::messageBoxText(parent);
}

void typeText(HWND edit, const std::string& text) {
    DWORD_PTR ignored = 0;
    ::SendMessageTimeoutA(edit, EM_SETSEL, 0, -1, SMTO_NORMAL, 5000, &ignored);
    for (char c : text) {
        ::SendMessageTimeoutA(edit, WM_CHAR, static_cast<unsigned char>(c), 1, SMTO_NORMAL, 5000, &ignored);
    }
}

void clickButton(HWND button) {
    ::PostMessageA(button, BM_CLICK, 0, 0);
}

}  // namespace tl::wintest
