#include "lists/fuzz/picture_scale_input.h"

#include <algorithm>
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
    const int tw = std::min(sw, 1 + (input[2] & 127));
    const int th = std::min(sh, 1 + (input[3] & 127));
    const std::span<const uint8_t> fill = input.subspan(4);
    const size_t sStride = rowBytes(sw);
    const size_t tStride = rowBytes(tw);
    std::vector<uint8_t> source(sStride * static_cast<size_t>(sh));
    for (size_t i = 0; i < source.size(); ++i) {
        source[i] = fill[i % fill.size()];
    }
    std::vector<uint8_t> target(tStride * static_cast<size_t>(th), 0xEE);
    shrinkPixels(source.data(), sw, sh, sStride, target.data(), tw, th, tStride);
    for (int y = 0; y < th; ++y) {
        const uint8_t* row = target.data() + static_cast<size_t>(y) * tStride;
        check(std::all_of(row + static_cast<size_t>(tw) * 3, row + tStride, [](uint8_t b) { return b == 0xEE; }),
              "wrote into a row's padding");
    }
    // One colour in, the same colour out.
    if (fill.size() == 1) {
        check(std::all_of(target.begin(), target.end(), [&](uint8_t b) { return b == fill[0] || b == 0xEE; }),
              "a plain picture changed colour");
    }
}

}  // namespace tl::fuzz
