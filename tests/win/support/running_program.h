#pragma once

#include <windows.h>

#include <chrono>
#include <string>
#include <vector>

#include "base/unique_handle_win.h"
#include "support/program_dir.h"

namespace tl::wintest {

using std::chrono::milliseconds;
using std::chrono::seconds;

// The real tessaline.exe started in a test's program directory. At the end of the test it is asked to
// close (WM_CLOSE to its windows) and, failing that, stopped.
class RunningProgram {
public:
    RunningProgram(const ProgramDir& dir, const std::string& arguments = "");
    RunningProgram(const RunningProgram&) = delete;
    RunningProgram& operator=(const RunningProgram&) = delete;
    ~RunningProgram();

    DWORD pid() const { return pid_; }
    bool hasExited(milliseconds wait = milliseconds(0)) const;
    DWORD exitCode() const;

    // Top-level windows of the program, optionally of one class and caption.
    std::vector<HWND> windows(const char* className = nullptr, const char* caption = nullptr) const;
    HWND window(const char* className, const char* caption = nullptr) const;
    HWND waitForWindow(const char* className, const char* caption = nullptr, milliseconds timeout = seconds(10),
                       bool visibleOnly = false) const;

    // A message box (dialog class "#32770") with the given title, and its text.
    HWND waitForMessageBox(const char* title, milliseconds timeout = seconds(10)) const;
    static std::string messageBoxText(HWND box);
    static void pressButton(HWND dialog, int id);

    // Closes every window of the program the way the user's close box would, then waits for the exit.
    bool closeAndWait(milliseconds timeout = seconds(10));

private:
    unique_handle process_;
    DWORD pid_ = 0;
};

std::string windowClass(HWND hwnd);

}  // namespace tl::wintest
