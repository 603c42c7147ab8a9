#pragma once

#include <cstddef>
#include <cstdint>

namespace tl {

// Shrinks a picture of 24-bit pixels (3 bytes each, rows stride bytes apart) to a smaller size, each
// target pixel the average of the source pixels it covers, so a large photo's preview keeps its detail
// instead of the shimmer of sampled pixels. Rows are taken in the same order in and out. The target must
// not be larger than the source on either side.
void shrinkPixels(const uint8_t* source,
                  int sourceWidth,
                  int sourceHeight,
                  size_t sourceStride,
                  uint8_t* target,
                  int targetWidth,
                  int targetHeight,
                  size_t targetStride);

}  // namespace tl
