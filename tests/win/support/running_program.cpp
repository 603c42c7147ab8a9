#include "support/running_program.h"

#include <stdexcept>

#include "base/window_win.h"

namespace tl::wintest {

std::string windowClass(HWND hwnd) {
    char name[256] = {};
    ::GetClassNameA(hwnd, name, sizeof name);
    return name;
}

RunningProgram::RunningProgram(const ProgramDir& dir, const std::string& arguments) {
    std::string commandLine = "\"" + dir.exe() + "\"";
    if (!arguments.empty()) {
        commandLine += " " + arguments;
    }
    STARTUPINFOA si{};
    si.cb = sizeof si;
    PROCESS_INFORMATION pi{};
    if (!::CreateProcessA(dir.exe().c_str(), commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr,
                          dir.path().c_str(), &si, &pi)) {
        throw std::runtime_error("can't start " + dir.exe());
    }
    ::CloseHandle(pi.hThread);
    process_.reset(pi.hProcess);
    pid_ = pi.dwProcessId;
    ::WaitForInputIdle(pi.hProcess, 5000);
}

RunningProgram::~RunningProgram() {
    if (!hasExited() && !closeAndWait(seconds(5))) {
        ::TerminateProcess(process_.get(), 99);
        ::WaitForSingleObject(process_.get(), 5000);
    }
}

bool RunningProgram::hasExited(milliseconds wait) const {
    return ::WaitForSingleObject(process_.get(), static_cast<DWORD>(wait.count())) == WAIT_OBJECT_0;
}

DWORD RunningProgram::exitCode() const {
    DWORD code = STILL_ACTIVE;
    ::GetExitCodeProcess(process_.get(), &code);
    return code;
}

std::vector<HWND> RunningProgram::windows(const char* className, const char* caption) const {
    struct Search {
        DWORD pid;
        const char* className;
        const char* caption;
        std::vector<HWND> found;
    } search{pid_, className, caption, {}};
    ::EnumWindows(
        [](HWND hwnd, LPARAM lp) -> BOOL {
            auto& s = *reinterpret_cast<Search*>(lp);
            DWORD pid = 0;
            ::GetWindowThreadProcessId(hwnd, &pid);
            if (pid != s.pid) {
                return TRUE;
            }
            if (s.className && windowClass(hwnd) != s.className) {
                return TRUE;
            }
            if (s.caption && windowText(hwnd) != s.caption) {
                return TRUE;
            }
            s.found.push_back(hwnd);
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&search));
    return search.found;
}

HWND RunningProgram::window(const char* className, const char* caption) const {
    auto all = windows(className, caption);
    return all.empty() ? nullptr : all.front();
}

HWND RunningProgram::waitForWindow(const char* className, const char* caption, milliseconds timeout,
                                   bool visibleOnly) const {
    HWND found = nullptr;
    waitFor(
        [&] {
            for (HWND h : windows(className, caption)) {
                if (!visibleOnly || ::IsWindowVisible(h)) {
                    found = h;
                    return true;
                }
            }
            return false;
        },
        timeout);
    return found;
}

HWND RunningProgram::waitForMessageBox(const char* title, milliseconds timeout) const {
    return waitForWindow("#32770", title, timeout, true);
}

std::string RunningProgram::messageBoxText(HWND box) {
    std::string text;
    ::EnumChildWindows(
        box,
        [](HWND child, LPARAM lp) -> BOOL {
            if (windowClass(child) == "Static") {
                const std::string t = windowText(child);
                if (!t.empty()) {
                    auto& out = *reinterpret_cast<std::string*>(lp);
                    out += out.empty() ? t : "\n" + t;
                }
            }
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&text));
    return text;
}

void RunningProgram::pressButton(HWND dialog, int id) {
    ::PostMessageA(dialog, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), reinterpret_cast<LPARAM>(::GetDlgItem(dialog, id)));
}

bool RunningProgram::closeAndWait(milliseconds timeout) {
    for (HWND h : windows()) {
        ::PostMessageA(h, WM_CLOSE, 0, 0);
    }
    return hasExited(timeout);
}

}  // namespace tl::wintest
