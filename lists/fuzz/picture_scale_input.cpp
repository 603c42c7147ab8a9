#include "lists/fuzz/picture_scale_input.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

#include "base/fuzz/fuzz_check.h"
#include "lists/picture_scale.h"

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
