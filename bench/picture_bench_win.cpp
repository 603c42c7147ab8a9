// Times the picture layer on one file: decoding into the BMP-ready DIB, the fitted preview copy, and the
// whole facts panel. Usage: picture_bench_win <picture> [rounds]
#include <windows.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

#include "lists/facts_panel_win.h"
#include "lists/picture_win.h"

namespace {

using Clock = std::chrono::steady_clock;

double msSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

void report(const char* what, std::vector<double> ms) {
    std::sort(ms.begin(), ms.end());
    std::printf("%-34s best %8.1f ms   median %8.1f ms\n", what, ms.front(), ms[ms.size() / 2]);
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

    std::vector<double> load, scale, panel;
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

    HWND window = ::CreateWindowExA(0, "STATIC", "bench", WS_OVERLAPPEDWINDOW, 0, 0, 400, 400, nullptr, nullptr,
                                    nullptr, nullptr);
    {
        FactsPanel facts;
        facts.preview =
            ::CreateWindowExA(0, "STATIC", "", WS_CHILD | SS_BITMAP, 0, 0, 303, 257, window, nullptr, nullptr, nullptr);
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
    report("decode into the 24-bit DIB", load);
    report("preview copy 303 x 227", scale);
    report("ShowImageFacts (keeping the DIB)", panel);
    return 0;
}
