// Times the resample behind Scale: a JPEG decoded at 3/8 or 1/2 (2250 x 1500, 3000 x 2000) down to the
// 1620 x 1080 a 1920 x 1080 desktop shows, the whole picture at once and fed a row at a time, with the best
// kernels the processor allows and, for comparison, with the SSE2 ones every x86-64 has.
// Usage: picture_scale_bench [rounds]
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "bench/timing.h"
#include "lists/picture_scale.h"
#include "lists/picture_scale_kernels.h"

namespace {

// A photo-like picture: smooth gradients under some noise, so no filter sum is trivially flat.
std::vector<uint8_t> samplePicture(int width, int height) {
    std::vector<uint8_t> pixels(static_cast<size_t>(width) * static_cast<size_t>(height) * 3);
    std::mt19937 gen(42);
    size_t i = 0;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const auto noise = static_cast<int>(gen() % 32);
            pixels[i++] = static_cast<uint8_t>((x * 255 / width + noise) & 0xFF);
            pixels[i++] = static_cast<uint8_t>((y * 255 / height + noise) & 0xFF);
            pixels[i++] = static_cast<uint8_t>(((x + y) * 128 / (width + height) + noise * 3) & 0xFF);
        }
    }
    return pixels;
}

}  // namespace

int main(int argc, char** argv) {
    using namespace tl;
    const int rounds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 9;
    constexpr int kTargetWidth = 1620;
    constexpr int kTargetHeight = 1080;
    const size_t targetStride = (static_cast<size_t>(kTargetWidth) * 3 + 3) & ~size_t{3};
    std::vector<uint8_t> target(targetStride * kTargetHeight);
    for (const auto& [width, height] : {std::pair{2250, 1500}, std::pair{3000, 2000}}) {
        const std::vector<uint8_t> source = samplePicture(width, height);
        const size_t stride = static_cast<size_t>(width) * 3;
        std::vector<double> whole, rows, sse2;
        const scale::Kernels best = scale::kernelsInUse();
        for (int r = 0; r < rounds; ++r) {
            scale::kernelsInUse() = scale::Kernels::Sse2;
            auto start = bench::Clock::now();
            resamplePixels(source.data(), width, height, stride, target.data(), kTargetWidth, kTargetHeight,
                           targetStride);
            sse2.push_back(bench::msSince(start));

            scale::kernelsInUse() = best;
            start = bench::Clock::now();
            if (!resamplePixels(source.data(), width, height, stride, target.data(), kTargetWidth, kTargetHeight,
                                targetStride)) {
                std::fprintf(stderr, "resamplePixels refused\n");
                return 1;
            }
            whole.push_back(bench::msSince(start));

            start = bench::Clock::now();
            RowResampler resampler(width, height, target.data(), kTargetWidth, kTargetHeight, targetStride, true);
            for (int y = 0; y < height; ++y) {
                std::memcpy(resampler.row(y), source.data() + static_cast<size_t>(y) * stride, stride);
                resampler.rowDone(y);
            }
            rows.push_back(bench::msSince(start));
        }
        const std::string size = std::to_string(width) + "x" + std::to_string(height) + " to 1620x1080";
        const char* kernels = best == scale::Kernels::Avx2 ? "AVX2" : "SSE2";
        bench::report((size + ", whole picture, SSE2").c_str(), sse2, 52);
        bench::report((size + ", whole picture, " + kernels).c_str(), whole, 52);
        bench::report((size + ", a row at a time, " + kernels).c_str(), rows, 52);
    }
    return 0;
}
