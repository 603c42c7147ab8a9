#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

#include "support/desktop_probe.h"
#include "support/panel_driver.h"
#include "support/program_dir.h"
#include "support/running_program.h"

namespace tl::wintest {

struct TestPicture {
    std::string name;
    const char* type;
    int width, height;
    unsigned colour;
};

// The real program in a program directory of the test's own: its settings, its list of pictures, and its
// panel restored from the tray.
class ProgramOnPanel : public ::testing::Test {
  protected:
    // setup.pref (sequential, shown on the desktop, Ctrl+Alt+S, Auto for added files, and any further
    // lines) and the list of the pictures, which are written too.
    void write(const std::vector<TestPicture>& pictures,
               const std::string& moreSettings = "",
               const std::string& moreListLines = "") {
        dir.write("setup.pref", "[Tessaline]\r\nDelay=5\r\nMode=2\r\nAutomaticShowOnDesktop=True\r\nLastList=" +
                                    list() + "\r\nOutputPath=" + bitmap() +
                                    "\r\nHotKey=83\r\nHotKeyMod=3\r\nDefaultAddOrientation=4\r\nRatioTolerance=0.25"
                                    "\r\nHalfRatio=1.5\r\n" +
                                    moreSettings);
        std::string text;
        paths.clear();
        for (const TestPicture& p : pictures) {
            writePicture(dir.file(p.name), p.type, p.width, p.height, p.colour);
            text += dir.file(p.name) + "\t0\r\n";
            paths.push_back(dir.file(p.name));
        }
        dir.write("MyWallpapers.wall", text + moreListLines);
    }
    std::string list() const { return dir.file("MyWallpapers.wall"); }
    std::string bitmap() const { return dir.file("tl_current.bmp"); }
    bool bitmapBecomes(int width, int height, std::chrono::milliseconds timeout = std::chrono::seconds(10)) {
        return waitFor(
            [&] {
                const auto size = bitmapFileSize(bitmap());
                return size && size->width == width && size->height == height;
            },
            timeout);
    }
    // frmMain once the first picture (of that size) is applied; null when it did not come.
    HWND started(RunningProgram& program, int firstWidth, int firstHeight) {
        HWND form = program.waitForWindow("TessalineMain");
        return form && bitmapBecomes(firstWidth, firstHeight) ? form : nullptr;
    }
    // The same with the panel restored from the tray.
    HWND startOnThePanel(RunningProgram& program, int firstWidth, int firstHeight) {
        HWND form = started(program, firstWidth, firstHeight);
        return form && showPanel(form) ? form : nullptr;
    }

    ProgramDir dir;
    std::vector<std::string> paths;
};

}  // namespace tl::wintest
