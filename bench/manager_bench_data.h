#pragma once

// What both list manager benchmarks use: the paths of the listed and the added files, a user and a file
// remover that stay quiet, and the timing helpers.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "base/ui.h"
#include "manager/manager_view.h"

namespace bench {

using Clock = std::chrono::steady_clock;

inline double msSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

inline void report(const char* what, std::vector<double> ms) {
    std::sort(ms.begin(), ms.end());
    std::printf("%-34s best %8.1f ms   median %8.1f ms\n", what, ms.front(), ms[ms.size() / 2]);
}

class SilentUi : public tl::Ui {
  public:
    int messageBox(std::string_view, std::string_view, unsigned) override { return tl::kIdOk; }
    void beep() override {}
};

class NoRemover : public tl::FileRemover {
  public:
    bool removeFileFromDisk(const std::string&, bool, bool) override { return false; }
};

// A camera's pictures sorted into yearly folders, as a list of 20,000 holds them.
inline std::string listedPath(int i) {
    return "D:\\Photos\\Family\\Holiday " + std::to_string(2000 + i % 20) + "\\IMG_" + std::to_string(100000 + i) +
           ".JPG";
}

// The newly imported pictures, added from one folder.
inline std::string addedName(int i) {
    return "DSC" + std::to_string(500000 + i) + ".jpg";
}

}  // namespace bench
