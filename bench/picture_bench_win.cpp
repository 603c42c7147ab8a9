// Times the picture layer on one file: decoding into the BMP-ready DIB, that plus writing it out as a BMP
// file (what applying a wallpaper does before calling the desktop), the fitted preview copy, and the
// whole facts panel. Usage: picture_bench_win <picture> [rounds]
#include <windows.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

#include "base/utf8_win.h"
#include "bench/timing.h"
#include "lists/facts_panel_win.h"
#include "lists/picture_win.h"

namespace {

using tl::bench::Clock;
using tl::bench::msSince;
using tl::bench::report;

// Writes the picture as a BMP file, as the changer writes tl_current.bmp.
bool writeBmp(const tl::Picture& picture, const std::string& path) {
    const BITMAPINFOHEADER info = picture.infoHeader();
    BITMAPFILEHEADER file{};
    file.bfType = 0x4D42;
    file.bfOffBits = sizeof file + sizeof info;
    file.bfSize = static_cast<DWORD>(file.bfOffBits + picture.imageSize());
    tl::unique_hfile out(::CreateFileW(tl::widen(path).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
    DWORD written = 0;
    return out && ::WriteFile(out.get(), &file, sizeof file, &written, nullptr) &&
           ::WriteFile(out.get(), &info, sizeof info, &written, nullptr) &&
           ::WriteFile(out.get(), picture.bits(), static_cast<DWORD>(picture.imageSize()), &written, nullptr);
}

}  // namespace

int main(int argc, char** argv) {
    using namespace tl;
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s <picture> [rounds]\n", argv[0]);
        return 2;
    }
    const std::string path = argv[1];
    const int rounds = argc > 2 ? std::max(1, std::atoi(argv[2])) : 5;
    scoped_com_init com;

    std::vector<double> load, loadAndWrite, scale, panel, fitted;
    wchar_t temp[MAX_PATH + 1] = {};
    ::GetTempPathW(MAX_PATH + 1, temp);
    const std::string bmpPath = tl::narrow(temp) + "tl_bench_current.bmp";
    int width = 0;
    int height = 0;
    for (int i = 0; i < rounds; ++i) {
        auto start = Clock::now();
        std::optional<Picture> p = loadPicture(path);
        load.push_back(msSince(start));
        if (!p) {
            std::fprintf(stderr, "can't load %s\n", path.c_str());
            return 1;
        }
        width = p->width();
        height = p->height();
        start = Clock::now();
        Picture small = scaledPicture(*p, 303, 227);
        scale.push_back(msSince(start));
    }
    for (int i = 0; i < rounds; ++i) {
        // What Scale decodes for a 1920 x 1080 screen: the picture fitted into it.
        const auto start = Clock::now();
        const auto fit = loadPictureFitted(path, [](int w, int h) {
            const double factor = std::min(1920.0 / w, 1080.0 / h);
            return std::pair{std::max(1, static_cast<int>(w * factor)), std::max(1, static_cast<int>(h * factor))};
        });
        fitted.push_back(msSince(start));
        if (!fit) {
            std::fprintf(stderr, "can't fit %s\n", path.c_str());
            return 1;
        }
    }
    for (int i = 0; i < rounds; ++i) {
        const auto start = Clock::now();
        std::optional<Picture> p = loadPicture(path);
        if (!p || !writeBmp(*p, bmpPath)) {
            std::fprintf(stderr, "can't write %s\n", bmpPath.c_str());
            return 1;
        }
        loadAndWrite.push_back(msSince(start));
    }
    ::DeleteFileW(tl::widen(bmpPath).c_str());

    HWND window = ::CreateWindowExW(0, L"STATIC", L"bench", WS_OVERLAPPEDWINDOW, 0, 0, 400, 400, nullptr, nullptr,
                                    nullptr, nullptr);
    {
        FactsPanel facts;
        facts.preview = ::CreateWindowExW(0, L"STATIC", L"", WS_CHILD | SS_BITMAP, 0, 0, 303, 257, window, nullptr,
                                          nullptr, nullptr);
        facts.previewDefaultWidth = 303;
        facts.previewDefaultHeight = 257;
        facts.keepPicture = true;
        for (int i = 0; i < rounds; ++i) {
            WallpaperEntry entry{path};
            const auto start = Clock::now();
            ShowImageFacts(entry, facts);
            panel.push_back(msSince(start));
        }
    }
    ::DestroyWindow(window);

    std::printf("%s: %d x %d, %d rounds\n", path.c_str(), width, height, rounds);
    report("decode into the 24-bit DIB", load, 34);
    report("decode and write a BMP file", loadAndWrite, 34);
    report("preview copy 303 x 227", scale, 34);
    report("decode fitted into 1920 x 1080", fitted, 34);
    report("ShowImageFacts (keeping the DIB)", panel, 34);
    return 0;
}
