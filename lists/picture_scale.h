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

// How large a side a picture should have to be resampled down to targetSide: a quarter larger. A JPEG decoded
// at an eighth or a quarter is made of its blocks' lowest frequencies alone, blunt at the blocks' edges;
// from that little larger the filter smooths it over, and the result stays within a hair of the whole
// picture resized (PSNR above 40 dB on photos).
int sideToResampleFrom(int targetSide);

// Resizes a picture of 24-bit pixels (laid out as for shrinkPixels) to exactly targetWidth x targetHeight,
// either way, with a Lanczos filter of three lobes widened by the shrink factor: sharp, and no moire from
// fine patterns. Its cost grows with the factor, so it is meant for the last step from a picture already
// brought near the size (a JPEG decoded at a half, a quarter or an eighth); false when it can't get the
// memory or a side is not positive.
bool resamplePixels(const uint8_t* source,
                    int sourceWidth,
                    int sourceHeight,
                    size_t sourceStride,
                    uint8_t* target,
                    int targetWidth,
                    int targetHeight,
                    size_t targetStride);

}  // namespace tl
