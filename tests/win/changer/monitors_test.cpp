// Several monitors and Fill under Wine. Wine 8 reports one monitor on its virtual desktop, and without one
// it paints no wallpaper and does not follow RandR changes reliably, so the arrangements are given to the
// program's own composition (decoding, resampling and the BMP writer, as the changer calls them) as
// monitor lists; each monitor's rectangle of the bitmap is read back as the desktop lays it, tiled or
// spanned, and the bitmaps are kept beside the tests to look at. The real program fills its one monitor.
#include <windows.h>
// After windows.h, whose types it uses.
#include <versionhelpers.h>

#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "changer/monitor_layout.h"
#include "changer/monitors_win.h"
#include "support/program_test.h"

namespace tl::wintest {
namespace {

// A 24-bit BMP file read back: its size and its pixels.
struct Bitmap {
    long width = 0, height = 0;
    std::string bytes;
    explicit Bitmap(const std::string& path) {
        std::ifstream in(path, std::ios::binary);
        bytes.assign(std::istreambuf_iterator<char>(in), {});
        if (bytes.size() < 54) {
            return;
        }
        const auto* info = reinterpret_cast<const BITMAPINFOHEADER*>(bytes.data() + sizeof(BITMAPFILEHEADER));
        width = info->biWidth;
        height = info->biHeight;
    }
    unsigned pixel(long x, long y) const {
        const size_t stride = (static_cast<size_t>(width) * 3 + 3) & ~size_t{3};
        const size_t at = 54 + static_cast<size_t>(height - 1 - y) * stride + static_cast<size_t>(x) * 3;
        if (at + 3 > bytes.size()) {
            return 0xDEAD;
        }
        const auto* p = reinterpret_cast<const unsigned char*>(bytes.data() + at);
        return (unsigned{p[2]} << 16) | (unsigned{p[1]} << 8) | p[0];
    }
};

// A BMP file of one colour.
std::string solidBitmap(long width, long height, unsigned colour) {
    const size_t stride = (static_cast<size_t>(width) * 3 + 3) & ~size_t{3};
    BITMAPFILEHEADER file{};
    BITMAPINFOHEADER info{sizeof info, width, height, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
    file.bfType = 0x4D42;
    file.bfOffBits = sizeof file + sizeof info;
    file.bfSize = static_cast<DWORD>(file.bfOffBits + stride * static_cast<size_t>(height));
    std::string out(reinterpret_cast<const char*>(&file), sizeof file);
    out.append(reinterpret_cast<const char*>(&info), sizeof info);
    std::string row(stride, '\0');
    for (size_t x = 0; x < static_cast<size_t>(width); ++x) {
        row[x * 3] = static_cast<char>(colour & 0xFF);
        row[x * 3 + 1] = static_cast<char>((colour >> 8) & 0xFF);
        row[x * 3 + 2] = static_cast<char>((colour >> 16) & 0xFF);
    }
    for (long y = 0; y < height; ++y) {
        out += row;
    }
    return out;
}

// The colour the desktop shows at a desktop point of the composed bitmap.
unsigned shownAt(const Bitmap& b, const ScreenRect& desktop, bool spanned, int32_t x, int32_t y) {
    const BitmapPoint at = bitmapPointOf(desktop, spanned, x, y);
    return b.pixel(at.x, at.y);
}

class Monitors : public ProgramTest {};

constexpr unsigned kRed = 0xCC0000, kGreen = 0x00AA00, kBlue = 0x0000CC;

TEST_F(Monitors, EachMonitorShowsItsOwnPictureInItsRectangleAndFillCoversOneMonitor) {
    // Pictures of other sizes than the monitors', one colour each: every pixel of a monitor is its picture's colour
    // whatever the resampling, and a wrong offset, seam or wrap shows as another colour or black.
    const std::vector<TestPicture> pictures = {{"a.bmp", nullptr, 1600, 1200, kRed, "Fill..."},
                                               {"b.bmp", nullptr, 640, 400, kGreen, "2"},
                                               {"c.bmp", nullptr, 33, 47, kBlue, "Fill..."}};
    write(pictures);
    for (const TestPicture& p : pictures) {
        dir.write(p.name, solidBitmap(p.width, p.height, p.colour));
    }
    struct Arrangement {
        const char* name;
        std::vector<ScreenRect> monitors;  // the primary at (0, 0)
    };
    const Arrangement arrangements[] = {
        {"left-lower-and-portrait", {{0, 0, 1024, 768}, {-800, 100, 800, 600}, {1024, 0, 600, 800}}},
        {"above-and-right", {{0, 0, 1024, 768}, {100, -600, 800, 600}, {1024, 300, 1280, 1024}}},
    };
    std::vector<WallpaperEntry> shown;
    for (size_t i = 0; i < pictures.size(); ++i) {
        shown.push_back({paths[i], i == 1 ? kStretch : kFill, 0, 0, 0});
    }
    const unsigned colours[] = {kRed, kGreen, kBlue};
    for (const Arrangement& a : arrangements) {
        for (const bool spanned : {false, true}) {
            const std::vector<ScreenRect> turn = monitorsInTurn(a.monitors);
            // The switch took one picture per monitor, the last monitor's being the current line's.
            std::vector<WallpaperEntry> taken(shown.begin(), shown.begin() + static_cast<long>(turn.size()));
            WallpaperPlan plan = planWallpaper(MonitorLayout::EachOwn, turn, taken, 0.25, 1.5);
            plan.spanned = spanned;
            const std::string name = std::string(a.name) + (spanned ? "-spanned" : "-tiled") + ".bmp";
            const std::string path = buildDirectory() + "\\monitors-" + name;
            ASSERT_TRUE(composeWallpaper(plan, path)) << name;
            const Bitmap b(path);
            ASSERT_EQ(b.width, plan.desktop.width) << name;
            ASSERT_EQ(b.height, plan.desktop.height) << name;
            for (size_t k = 0; k < turn.size(); ++k) {
                const ScreenRect& m = turn[k];
                int wrong = 0;
                for (int32_t y = m.top; y < m.bottom(); y += (y + 7 < m.bottom() - 1 ? 7 : 1)) {
                    for (int32_t x = m.left; x < m.right(); x += (x + 7 < m.right() - 1 ? 7 : 1)) {
                        wrong += shownAt(b, plan.desktop, spanned, x, y) != colours[k];
                    }
                }
                EXPECT_EQ(wrong, 0) << name << ": the monitor at " << m.left << "," << m.top << " is not all "
                                    << std::hex << colours[k];
            }
            std::printf("composed for the %s arrangement: %s\n", a.name, path.c_str());
        }
    }

    // The real program on its one monitor: the Fill entry covers the screen; spanned where the system says
    // Windows 8 or later (Wine says 10), tiled before; the list keeps Fill's keyword.
    const std::string listBefore = dir.read("MyWallpapers.wall");
    RunningProgram tl(dir);
    HWND form = started(tl, 1024, 768);
    ASSERT_NE(form, nullptr) << bitmapSizeText();
    const Bitmap filled(bitmap());
    int wrong = 0;
    for (int32_t y = 0; y < 768; y += 5) {
        for (int32_t x = 0; x < 1024; x += 5) {
            wrong += filled.pixel(x, y) != kRed;
        }
    }
    EXPECT_EQ(wrong, 0) << "Fill covers the whole screen";
    EXPECT_EQ(desktopValue("WallpaperStyle"), ::IsWindows8OrGreater() ? "22" : "0");
    EXPECT_EQ(desktopValue("TileWallpaper"), ::IsWindows8OrGreater() ? "0" : "1");
    EXPECT_EQ(desktopValue("Wallpaper"), bitmap());
    ASSERT_TRUE(quit(tl, form));
    EXPECT_EQ(dir.read("MyWallpapers.wall"), listBefore) << "Fill keeps its keyword, the others their numbers";
}

}  // namespace
}  // namespace tl::wintest
