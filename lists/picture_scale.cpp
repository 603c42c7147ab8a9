#include "lists/picture_scale.h"

#include <algorithm>
#include <vector>

namespace tl {

void shrinkPixels(const uint8_t* source,
                  int sourceWidth,
                  int sourceHeight,
                  size_t sourceStride,
                  uint8_t* target,
                  int targetWidth,
                  int targetHeight,
                  size_t targetStride) {
    if (sourceWidth <= 0 || sourceHeight <= 0 || targetWidth <= 0 || targetHeight <= 0 || targetWidth > sourceWidth ||
        targetHeight > sourceHeight) {
        return;
    }
    const auto sw = static_cast<size_t>(sourceWidth);
    const auto tw = static_cast<size_t>(targetWidth);
    // Source column x belongs to target column x * tw / sw: target column t starts at ceil(t * sw / tw).
    std::vector<size_t> columnStart(tw + 1);
    for (size_t t = 0; t <= tw; ++t) {
        columnStart[t] = (t * sw + tw - 1) / tw;
    }
    std::vector<uint64_t> sums(tw * 3);
    int sourceRow = 0;
    for (int y = 0; y < targetHeight; ++y) {
        const int rowEnd = static_cast<int>(static_cast<int64_t>(y + 1) * sourceHeight / targetHeight);
        const auto rows = static_cast<uint32_t>(rowEnd - sourceRow);
        std::fill(sums.begin(), sums.end(), uint64_t{0});
        for (; sourceRow < rowEnd; ++sourceRow) {
            const uint8_t* s = source + static_cast<size_t>(sourceRow) * sourceStride;
            for (size_t t = 0; t < tw; ++t) {
                uint32_t b = 0;
                uint32_t g = 0;
                uint32_t r = 0;
                for (size_t x = columnStart[t]; x < columnStart[t + 1]; ++x, s += 3) {
                    b += s[0];
                    g += s[1];
                    r += s[2];
                }
                sums[t * 3] += b;
                sums[t * 3 + 1] += g;
                sums[t * 3 + 2] += r;
            }
        }
        uint8_t* out = target + static_cast<size_t>(y) * targetStride;
        for (size_t x = 0; x < tw; ++x) {
            const uint64_t n = uint64_t{columnStart[x + 1] - columnStart[x]} * rows;
            for (size_t c = 0; c < 3; ++c) {
                out[x * 3 + c] = static_cast<uint8_t>((sums[x * 3 + c] + n / 2) / n);
            }
        }
    }
}

}  // namespace tl
