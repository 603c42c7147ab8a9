#pragma once

#include <cstddef>
#include <cstdint>

// The pixel side of the JPEG decoder: inverse DCT, chroma upsampling and colour conversion. Each has a
// plain version and vector ones (SSE2, and AVX2 where the processor has it) giving the very same bytes;
// the plain ones are kept callable so the tests can hold the others to that.
namespace tl::jpeg {

// Inverse DCT of one dequantized block (natural order) into 8 rows of 8 samples, `stride` bytes apart.
// `last` is the zigzag position of the last non-zero coefficient: 0 means a flat block.
void idctBlock(const int16_t* block, int last, uint8_t* out, size_t stride);
void idctBlockPlain(const int16_t* block, uint8_t* out, size_t stride);
// Two blocks side by side: the right one's samples go to out + 8.
void idctBlockPair(const int16_t* left, int lastLeft, const int16_t* right, int lastRight, uint8_t* out, size_t stride);
// Inverse DCT of one block into `size` rows of `size` samples (4, 3, 2 or 1), for a picture decoded at 4, 3,
// 2 or 1 eighths of its size: the block's 8-point transform from its lowest size x size frequencies alone, taken at
// the centre of each group of samples an output stands for. A flat block gives the 8 x 8 transform's value.
void idctBlockReduced(const int16_t* block, int last, int size, uint8_t* out, size_t stride);
void idctReducedPlain(const int16_t* block, int size, uint8_t* out, size_t stride);

// Chroma upsampling. Widths count input samples; edges repeat the outermost sample.
// Doubles across, each output 3/4 the nearer input and 1/4 the other.
void upsampleH2V1(const uint8_t* in, int width, uint8_t* out);
void upsampleH2V1Plain(const uint8_t* in, int width, uint8_t* out);
// Doubles down: one output row from its nearer input row and the farther one (the row above for the
// upper of the two output rows, the row below for the lower).
void upsampleH1V2(const uint8_t* nearer, const uint8_t* farther, int width, bool lower, uint8_t* out);
// Doubles both ways: one output row as above, doubled across in the same step.
void upsampleH2V2(const uint8_t* nearer, const uint8_t* farther, int width, uint8_t* out);
void upsampleH2V2Plain(const uint8_t* nearer, const uint8_t* farther, int width, uint8_t* out);
// Repeats each sample `factor` times.
void upsampleBox(const uint8_t* in, int width, int factor, uint8_t* out);

// Colour conversion to BMP's blue, green, red order, `width` pixels.
void yccToBgr(const uint8_t* y, const uint8_t* cb, const uint8_t* cr, int width, uint8_t* out);
void yccToBgrPlain(const uint8_t* y, const uint8_t* cb, const uint8_t* cr, int width, uint8_t* out);
void greyToBgr(const uint8_t* y, int width, uint8_t* out);
void rgbToBgr(const uint8_t* r, const uint8_t* g, const uint8_t* b, int width, uint8_t* out);

// The AVX2 versions, from a translation unit of their own; callable only when avx2Compiled() and the
// processor has AVX2. yccToBgrAvx2 converts whole runs of 32 pixels and says how many it did.
bool avx2Compiled();
void idctPairAvx2(const int16_t* left, const int16_t* right, uint8_t* out, size_t stride);
int yccToBgrAvx2(const uint8_t* y, const uint8_t* cb, const uint8_t* cr, int width, uint8_t* out);

}  // namespace tl::jpeg
