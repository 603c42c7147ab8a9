#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

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
// brought near the size (a JPEG decoded at a half, three eighths, a quarter or an eighth); false when it can't get the
// memory or a side is not positive.
bool resamplePixels(const uint8_t* source,
                    int sourceWidth,
                    int sourceHeight,
                    size_t sourceStride,
                    uint8_t* target,
                    int targetWidth,
                    int targetHeight,
                    size_t targetStride);

// Resamples a picture whose rows arrive one at a time, in order from row 0 (as a decoder makes them), to
// exactly targetWidth x targetHeight with resamplePixels' filter and the same result to the byte, holding
// only the few source rows the filter needs at once. Each target row is written as soon as the last source
// row it takes is in.
class RowResampler {
  public:
    // Target row t (0 = the first made) goes to target + t * targetStride, or, with bottomUp, to
    // target + (targetHeight - 1 - t) * targetStride (a bottom-up bitmap filled from a top-down decoder). Each
    // row's bytes past targetWidth * 3 up to targetStride are zeroed. With a side not positive nothing is
    // ever written to the target, though row() still hands out somewhere to put a row. Throws
    // std::bad_alloc when it can't get its memory.
    RowResampler(int sourceWidth,
                 int sourceHeight,
                 uint8_t* target,
                 int targetWidth,
                 int targetHeight,
                 size_t targetStride,
                 bool bottomUp);
    ~RowResampler();
    RowResampler(const RowResampler&) = delete;
    RowResampler& operator=(const RowResampler&) = delete;

    // Where source row y goes: sourceWidth * 3 bytes of blue, green, red, and kRowSlack writable bytes past
    // them for a writer's vector stores. Rows are asked for in order 0, 1, 2 ..., at most one ahead of the
    // last rowDone.
    uint8_t* row(int y);
    // Source row y is written: makes every target row whose source rows are all in. Rows must be done in
    // order; a call out of turn is ignored.
    void rowDone(int y);
    // How many target rows are written so far.
    int targetRowsDone() const;

    static constexpr size_t kRowSlack = 64;

  private:
    struct State;
    std::unique_ptr<State> state_;
    std::unique_ptr<uint8_t[]> unused_;
};

}  // namespace tl
