#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "support/driver.h"
#include "support/program.h"

namespace tl::wintest {

struct TestPicture {
    std::string name;
    const char* type;  // null: a file the test writes itself
    int width, height;
    unsigned colour;
    const char* orientation = "0";  // the list file's field
};

// The real program in a program directory of the test's own, with its settings and its list of pictures.
class ProgramTest : public ::testing::Test {
  protected:
    // setup.pref (sequential order, shown on the desktop, Ctrl+Alt+S, Auto for added files, then the
    // further lines, of other keys) and the list of the pictures, which are written too.
    void write(const std::vector<TestPicture>& pictures,
               const std::string& moreSettings = "",
               const std::string& moreListLines = "") {
        dir.write("setup.pref", "[Tessaline]\r\nDelay=5\r\nMode=2\r\nAutomaticShowOnDesktop=True\r\nLastList=" +
                                    listFile() + "\r\nOutputPath=" + bitmap() +
                                    "\r\nHotKey=83\r\nHotKeyMod=3\r\nDefaultAddOrientation=4\r\nRatioTolerance=0.25"
                                    "\r\nHalfRatio=1.5\r\n" +
                                    moreSettings);
        std::string text;
        paths.clear();
        for (const TestPicture& p : pictures) {
            if (p.type) {
                writePicture(dir.file(p.name), p.type, p.width, p.height, p.colour);
            }
            text += dir.file(p.name) + "\t" + p.orientation + "\r\n";
            paths.push_back(dir.file(p.name));
        }
        dir.write("MyWallpapers.wall", text + moreListLines);
    }
    std::string listFile() const { return dir.file("MyWallpapers.wall"); }
    std::string bitmap() const { return dir.file("tl_current.bmp"); }
    std::string bitmapSizeText() const {
        const auto size = bitmapFileSize(bitmap());
        return size ? std::to_string(size->width) + "x" + std::to_string(size->height) : "no bitmap";
    }
    // Waits until tl_current.bmp, the wallpaper applied, is a BMP of that size.
    bool bitmapBecomes(int width, int height) const {
        return waitFor([&] { return bitmapSizeText() == std::to_string(width) + "x" + std::to_string(height); });
    }
    bool settingIs(const std::string& line) const {
        const auto lines = dir.lines("setup.pref");
        return std::find(lines.begin(), lines.end(), line) != lines.end();
    }
    // frmMain once the first picture (of that size) is applied; null when it did not come.
    HWND started(const RunningProgram& program, int firstWidth, int firstHeight) const {
        HWND form = program.waitForLoaded("TessalineMain");
        return form && bitmapBecomes(firstWidth, firstHeight) ? form : nullptr;
    }
    // The same with the panel restored from the tray.
    HWND startOnThePanel(const RunningProgram& program, int firstWidth, int firstHeight) const {
        HWND form = started(program, firstWidth, firstHeight);
        return form && showPanel(form) ? form : nullptr;
    }
    // Quits from the tray menu; true when the program ended.
    static bool quit(const RunningProgram& program, HWND form) {
        return chooseTrayMenuItem(form, "Quit") && program.hasExited(seconds(10));
    }

    ProgramDir dir;
    std::vector<std::string> paths;
};

}  // namespace tl::wintest
