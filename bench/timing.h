#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

// Timing for the benchmarks: each figure is the best and the median of a few rounds.
namespace tl::bench {

using Clock = std::chrono::steady_clock;

inline double msSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

inline void report(const char* what, std::vector<double> ms, int labelWidth = 44) {
    std::sort(ms.begin(), ms.end());
    std::printf("%-*s best %7.1f ms   median %7.1f ms\n", labelWidth, what, ms.front(), ms[ms.size() / 2]);
}

}  // namespace tl::bench
