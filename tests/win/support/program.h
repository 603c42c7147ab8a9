#pragma once

#include <windows.h>

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "base/unique_handle_win.h"

// The real program and its files: a program directory of the test's own, pictures to put in it, the
// program started there, and what it leaves on disk and in the desktop's registry values.
namespace tl::wintest {

using std::chrono::milliseconds;
using std::chrono::seconds;

// A fresh folder under the temporary folder, with a copy of tessaline.exe (so that the program's folder,
// and with it setup.pref, is the test's), its name starting with prefix. Removed at the end. Paths are
// UTF-8, as the program's own are.
class ProgramDir {
  public:
    explicit ProgramDir(bool withProgram = true, const std::string& prefix = "");
    ProgramDir(const ProgramDir&) = delete;
    ProgramDir& operator=(const ProgramDir&) = delete;
    ~ProgramDir();

    const std::string& path() const { return path_; }
    std::string file(const std::string& name) const { return path_ + "\\" + name; }
    std::string exe() const { return file("tessaline.exe"); }

    void write(const std::string& name, const std::string& contents) const;
    std::string read(const std::string& name) const;
    bool exists(const std::string& name) const;
    void makeFolder(const std::string& name) const;
    // The file's lines without their line ends.
    std::vector<std::string> lines(const std::string& name) const;

  private:
    std::string path_;
};

// The folder holding win_tests.exe and tessaline.exe; screenshots go there too.
std::string buildDirectory();

// Dispatches this thread's messages until the condition holds or the time is up; true when it held.
bool waitFor(const std::function<bool()>& condition, milliseconds timeout = seconds(10));
// Dispatches this thread's messages for a while, for when nothing is expected to happen.
void pause(milliseconds duration);

// A picture file ("bmp", "jpg", "gif", "png") drawn by WIC: 16-pixel squares of the colour (web-safe
// ones survive GIF) alternating with light grey 0xF0F0F0.
void writePicture(const std::string& path, const std::string& type, int width, int height, unsigned colour = 0x3366CC);

// Width, height and depth from a BMP file's header; nullopt when it is not a BMP.
struct BitmapSize {
    int width = 0;
    int height = 0;
    int bitsPerPixel = 0;
};
std::optional<BitmapSize> bitmapFileSize(const std::string& path);

// A REG_SZ value of HKEY_CURRENT_USER\Control Panel\Desktop; nullopt when missing.
std::optional<std::string> desktopValue(const char* name);
void setDesktopValue(const char* name, const std::string& value);

// Puts a desktop value back as it was at the end of a test.
class DesktopValueGuard {
  public:
    explicit DesktopValueGuard(const char* name) : name_(name), old_(desktopValue(name)) {}
    ~DesktopValueGuard();

  private:
    const char* name_;
    std::optional<std::string> old_;
};

// tessaline.exe started in a program directory. At the end it is asked to close (WM_CLOSE to each of its
// windows) and, failing that, stopped.
class RunningProgram {
  public:
    explicit RunningProgram(const ProgramDir& dir, const std::string& arguments = "");
    RunningProgram(const RunningProgram&) = delete;
    RunningProgram& operator=(const RunningProgram&) = delete;
    ~RunningProgram();

    DWORD pid() const { return pid_; }
    bool hasExited(milliseconds wait = seconds(10)) const;
    DWORD exitCode() const;

    // A top-level window of the program of that class (null: any) and caption (null: any), hidden or not.
    HWND window(const char* className, const char* caption = nullptr) const;
    // Waits for such a window; only a visible one unless told otherwise.
    HWND waitForWindow(const char* className,
                       const char* caption = nullptr,
                       milliseconds timeout = seconds(10),
                       bool visible = true) const;
    // Waits until a window of that class is loaded, shown or not.
    HWND waitForLoaded(const char* className) const { return waitForWindow(className, nullptr, seconds(15), false); }

  private:
    unique_handle process_;
    DWORD pid_ = 0;
};

}  // namespace tl::wintest
