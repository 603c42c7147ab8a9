#include "lists/fuzz/picture_scale_input.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "base/fuzz/fuzz_check.h"
#include "lists/picture_scale.h"
#include "lists/picture_scale_kernels.h"

namespace tl::fuzz {

namespace {

void check(bool holds, const char* what) {
    fuzz::check(holds, "picture_scale", what);
}

size_t rowBytes(int width) {
    return (static_cast<size_t>(width) * 3 + 3) & ~static_cast<size_t>(3);
}

}  // namespace

void pictureScaleInput(std::span<const uint8_t> input) {
    if (input.size() < 5) {
        return;
    }
    const int sw = 1 + (input[0] & 127);
    const int sh = 1 + (input[1] & 127);
    // Bit 7 of the first byte: the Lanczos resample, to any size, rather than the averaged shrink.
    const bool resample = (input[0] & 128) != 0;
    const int tw = resample ? 1 + (input[2] & 127) : std::min(sw, 1 + (input[2] & 127));
    const int th = resample ? 1 + (input[3] & 127) : std::min(sh, 1 + (input[3] & 127));
    const std::span<const uint8_t> fill = input.subspan(4);
    const size_t sStride = rowBytes(sw);
    const size_t tStride = rowBytes(tw);
    std::vector<uint8_t> source(sStride * static_cast<size_t>(sh));
    for (size_t i = 0; i < source.size(); ++i) {
        source[i] = fill[i % fill.size()];
    }
    std::vector<uint8_t> target(tStride * static_cast<size_t>(th), 0xEE);
    if (resample) {
        check(resamplePixels(source.data(), sw, sh, sStride, target.data(), tw, th, tStride), "resample refused");
        // The plain kernels give the bytes the vector ones in use do.
        const scale::Kernels inUse = scale::kernelsInUse();
        scale::kernelsInUse() = scale::Kernels::Plain;
        std::vector<uint8_t> plain(target.size(), 0xEE);
        const bool plainMade = resamplePixels(source.data(), sw, sh, sStride, plain.data(), tw, th, tStride);
        scale::kernelsInUse() = inUse;
        check(plainMade && plain == target, "the plain kernels resampled differently");
        // The same rows fed one at a time, bottom up if bit 7 of the second byte says so, the next row filled
        // before the last is handed in if bit 7 of the third does: the same bytes.
        const bool bottomUp = (input[1] & 128) != 0;
        const bool ahead = (input[2] & 128) != 0;
        std::vector<uint8_t> streamed(target.size(), 0xEE);
        RowResampler resampler(sw, sh, streamed.data(), tw, th, tStride, bottomUp);
        const auto copyRow = [&](int y) {
            std::memcpy(resampler.row(y), source.data() + static_cast<size_t>(y) * sStride,
                        static_cast<size_t>(sw) * 3);
        };
        for (int y = 0; y < sh; ++y) {
            if (!ahead || y == 0) {
                copyRow(y);
            }
            if (ahead && y + 1 < sh) {
                copyRow(y + 1);
            }
            resampler.rowDone(y);
        }
        check(resampler.targetRowsDone() == th, "rows left unmade");
        for (int y = 0; y < th; ++y) {
            const size_t from = static_cast<size_t>(bottomUp ? th - 1 - y : y) * tStride;
            check(std::memcmp(streamed.data() + from, target.data() + static_cast<size_t>(y) * tStride, tStride) == 0,
                  "rows fed one at a time resampled differently");
        }
    } else {
        shrinkPixels(source.data(), sw, sh, sStride, target.data(), tw, th, tStride);
    }
    // The shrink leaves a row's padding alone; the resample clears it, as a bitmap's must be.
    const uint8_t padding = resample ? 0 : 0xEE;
    for (int y = 0; y < th; ++y) {
        const uint8_t* row = target.data() + static_cast<size_t>(y) * tStride;
        check(std::all_of(row + static_cast<size_t>(tw) * 3, row + tStride, [&](uint8_t b) { return b == padding; }),
              "a row's padding written");
    }
    // One colour in, the same colour out (the resample's fixed-point weights within a level), padding aside.
    if (fill.size() == 1) {
        const int tolerance = resample ? 1 : 0;
        check(std::all_of(target.begin(), target.end(),
                          [&](uint8_t b) { return std::abs(b - fill[0]) <= tolerance || b == padding; }),
              "a plain picture changed colour");
    }
}

}  // namespace tl::fuzz
