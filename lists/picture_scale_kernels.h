#pragma once

#include <cstddef>
#include <cstdint>

// The resampler's AVX2 kernels, from a translation unit of their own built for AVX2; callable only when
// scaleAvx2Compiled() and the processor has AVX2. They take a planar layout (a row's blue values, then its
// green, then its red), which lets the second pass make eight target pixels of one channel at once.
namespace tl::scale {

enum class Kernels { Plain, Sse2, Avx2 };
// The kernels resamplePixels and RowResampler use: the best the build and the processor have, unless a test
// picked others to hold them up against each other (a choice the build or processor lacks falls to the best
// below it).
Kernels& kernelsInUse();

bool scaleAvx2Compiled();

// Splits `pixels` 24-bit pixels into three planes of `pixels` bytes each, one after another.
void splitPlanesAvx2(const uint8_t* bgr, size_t pixels, uint8_t* planes);

// The first pass: out[i] = the rounded weighted sum of rows[0..taps)[i] with 6 bits kept below the sample's,
// for i < count rounded up to 16 (the rows must hold that many bytes, out that many values).
void verticalPassAvx2(const uint8_t* const* rows, const int16_t* weights, int taps, size_t count, int16_t* out);

// The second pass's filter laid out for eight target pixels at a time: group g takes the source values from
// start[g], in pairs; pair m of it weighs with the eight int32s at weights + (offset[g] + m) * 8, each the
// pair's two 16-bit weights for one pixel (the first in the low half), zero past the pixel's taps.
struct GroupFilter {
    const int* start;
    const int* offset;  // groups + 1 entries: group g has offset[g + 1] - offset[g] pairs
    const int32_t* weights;
};

// The second pass from three planes planeStride values apart (read up to two values past a group's last tap)
// into targetWidth 24-bit pixels.
void horizontalPassAvx2(const int16_t* planes,
                        size_t planeStride,
                        const GroupFilter& filter,
                        int targetWidth,
                        uint8_t* out);

}  // namespace tl::scale
