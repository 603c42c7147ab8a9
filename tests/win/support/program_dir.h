#pragma once

#include <windows.h>

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace tl::wintest {

// A program directory of the test's own: a fresh folder under the temporary folder holding a copy of
// tessaline.exe (so that the program's directory, and with it setup.pref, is the test's). Removed at the end.
class ProgramDir {
public:
    explicit ProgramDir(bool withProgram = true);
    ProgramDir(const ProgramDir&) = delete;
    ProgramDir& operator=(const ProgramDir&) = delete;
    ~ProgramDir();

    const std::string& path() const { return path_; }
    std::string file(const std::string& name) const { return path_ + "\\" + name; }
    std::string exe() const { return file("tessaline.exe"); }

    void write(const std::string& name, const std::string& contents) const;
    std::string read(const std::string& name) const;
    bool exists(const std::string& name) const;
    std::vector<std::string> lines(const std::string& name) const;

private:
    std::string path_;
};

// The folder holding win_tests.exe, tessaline.exe and the sample pictures made for the tests.
std::string buildDirectory();

// Polls until the condition holds or the time is up; true when it held.
bool waitFor(const std::function<bool()>& condition, std::chrono::milliseconds timeout = std::chrono::seconds(10));

// Writes a picture file of the given type ("bmp", "jpg", "gif", "png") and size, drawn by WIC.
void writePicture(const std::string& path, const std::string& type, int width, int height, unsigned colour = 0x3366CC);

}  // namespace tl::wintest
