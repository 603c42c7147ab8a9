// Built with AVX2 enabled on x86-64 and called only on processors that have it. Nothing from the standard
// library is used here: an inline function compiled with AVX2 instructions could otherwise be the copy the
// linker keeps for everyone.
#include "lists/picture_scale_kernels.h"

#if defined(__AVX2__)
#include <immintrin.h>
#endif

namespace tl::scale {

#if defined(__AVX2__)

namespace {

// Filter weights carry 14 fractional bits and the first pass keeps 6 below the sample's, as the other kernels
// do.
constexpr int kVerticalShift = 14 - 6;
constexpr int kHorizontalShift = 14 + 6;

// pshufb masks that gather a plane's bytes from three 16-byte thirds of 16 pixels' B, G, R sequence:
// masks[plane][third][byte] is where in that third the plane's byte is, or -128 for elsewhere.
struct SplitMasks {
    alignas(16) int8_t masks[3][3][16];
};
constexpr SplitMasks makeSplitMasks() {
    SplitMasks m{};
    for (int plane = 0; plane < 3; ++plane) {
        for (int third = 0; third < 3; ++third) {
            for (int byte = 0; byte < 16; ++byte) {
                const int at = 3 * byte + plane;
                m.masks[plane][third][byte] = static_cast<int8_t>(at / 16 == third ? at % 16 : -128);
            }
        }
    }
    return m;
}
constexpr SplitMasks kSplit = makeSplitMasks();

[[gnu::always_inline]] inline __m256i loadTwo(const uint8_t* low, const uint8_t* high) {
    return _mm256_inserti128_si256(_mm256_castsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(low))),
                                   _mm_loadu_si128(reinterpret_cast<const __m128i*>(high)), 1);
}

[[gnu::always_inline]] inline __m256i bothLanes(const int8_t* mask) {
    return _mm256_broadcastsi128_si256(_mm_load_si128(reinterpret_cast<const __m128i*>(mask)));
}

// 16 * blocks values of the first pass from position i on.
template <size_t blocks>
[[gnu::always_inline]] inline void verticalBlocks(const uint8_t* const* rows,
                                                  const int16_t* weights,
                                                  int taps,
                                                  size_t i,
                                                  int16_t* out) {
    const __m256i rounding = _mm256_set1_epi32(1 << (kVerticalShift - 1));
    __m256i sums[2 * blocks];
    for (size_t b = 0; b < 2 * blocks; ++b) {
        sums[b] = rounding;
    }
    int k = 0;
    // Two rows at a time, their values interleaved as 16-bit pairs: one multiply-add gives both products'
    // sum.
    for (; k + 1 < taps; k += 2) {
        int32_t pair;
        __builtin_memcpy(&pair, weights + k, sizeof pair);
        const __m256i w = _mm256_set1_epi32(pair);
        for (size_t b = 0; b < blocks; ++b) {
            const __m256i x =
                _mm256_cvtepu8_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(rows[k] + i + 16 * b)));
            const __m256i y =
                _mm256_cvtepu8_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(rows[k + 1] + i + 16 * b)));
            sums[2 * b] = _mm256_add_epi32(sums[2 * b], _mm256_madd_epi16(_mm256_unpacklo_epi16(x, y), w));
            sums[2 * b + 1] = _mm256_add_epi32(sums[2 * b + 1], _mm256_madd_epi16(_mm256_unpackhi_epi16(x, y), w));
        }
    }
    if (k < taps) {
        const __m256i w = _mm256_set1_epi32(static_cast<uint16_t>(weights[k]));
        const __m256i zero = _mm256_setzero_si256();
        for (size_t b = 0; b < blocks; ++b) {
            const __m256i x =
                _mm256_cvtepu8_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(rows[k] + i + 16 * b)));
            sums[2 * b] = _mm256_add_epi32(sums[2 * b], _mm256_madd_epi16(_mm256_unpacklo_epi16(x, zero), w));
            sums[2 * b + 1] = _mm256_add_epi32(sums[2 * b + 1], _mm256_madd_epi16(_mm256_unpackhi_epi16(x, zero), w));
        }
    }
    // Each lane's low and high halves hold values 0-3 and 4-7 of its eight, so the pack keeps them in order.
    for (size_t b = 0; b < blocks; ++b) {
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + i + 16 * b),
                            _mm256_packs_epi32(_mm256_srai_epi32(sums[2 * b], kVerticalShift),
                                               _mm256_srai_epi32(sums[2 * b + 1], kVerticalShift)));
    }
}

}  // namespace

bool scaleAvx2Compiled() {
    return true;
}

void splitPlanesAvx2(const uint8_t* bgr, size_t pixels, uint8_t* planes) {
    size_t i = 0;
    // 32 pixels at a time: the first 16's thirds in the low lanes, the next 16's in the high.
    for (; i + 32 <= pixels; i += 32) {
        const uint8_t* in = bgr + 3 * i;
        const __m256i thirds[3] = {loadTwo(in, in + 48), loadTwo(in + 16, in + 64), loadTwo(in + 32, in + 80)};
        for (int plane = 0; plane < 3; ++plane) {
            const auto* m = kSplit.masks[plane];
            const __m256i bytes = _mm256_or_si256(_mm256_or_si256(_mm256_shuffle_epi8(thirds[0], bothLanes(m[0])),
                                                                  _mm256_shuffle_epi8(thirds[1], bothLanes(m[1]))),
                                                  _mm256_shuffle_epi8(thirds[2], bothLanes(m[2])));
            _mm256_storeu_si256(reinterpret_cast<__m256i*>(planes + static_cast<size_t>(plane) * pixels + i), bytes);
        }
    }
    for (; i < pixels; ++i) {
        planes[i] = bgr[3 * i];
        planes[pixels + i] = bgr[3 * i + 1];
        planes[2 * pixels + i] = bgr[3 * i + 2];
    }
}

void verticalPassAvx2(const uint8_t* const* rows, const int16_t* weights, int taps, size_t count, int16_t* out) {
    size_t i = 0;
    for (; i + 64 <= count; i += 64) {
        verticalBlocks<4>(rows, weights, taps, i, out);
    }
    for (; i < count; i += 16) {
        verticalBlocks<1>(rows, weights, taps, i, out);
    }
}

void horizontalPassAvx2(const int16_t* planes,
                        size_t planeStride,
                        const GroupFilter& filter,
                        int targetWidth,
                        uint8_t* out) {
    const __m256i rounding = _mm256_set1_epi32(1 << (kHorizontalShift - 1));
    // Per lane, from four pixels' blue, green, red and red again, each pixel's three bytes in turn.
    const __m256i order = _mm256_setr_epi8(0, 4, 8, 1, 5, 9, 2, 6, 10, 3, 7, 11, -128, -128, -128, -128, 0, 4, 8, 1, 5,
                                           9, 2, 6, 10, 3, 7, 11, -128, -128, -128, -128);
    const int groups = (targetWidth + 7) / 8;
    for (int g = 0; g < groups; ++g) {
        const int16_t* blue = planes + filter.start[g];
        const int16_t* green = blue + planeStride;
        const int16_t* red = green + planeStride;
        const int32_t* w = filter.weights + static_cast<size_t>(filter.offset[g]) * 8;
        const int pairs = filter.offset[g + 1] - filter.offset[g];
        __m256i b = rounding;
        __m256i gr = rounding;
        __m256i r = rounding;
        // Each pair of source values goes to all eight pixels, each with its own two weights (zero where the
        // pair is outside its taps).
        for (int m = 0; m < pairs; ++m, w += 8) {
            const __m256i weights = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(w));
            int32_t pb;
            int32_t pg;
            int32_t pr;
            __builtin_memcpy(&pb, blue + 2 * m, sizeof pb);
            __builtin_memcpy(&pg, green + 2 * m, sizeof pg);
            __builtin_memcpy(&pr, red + 2 * m, sizeof pr);
            b = _mm256_add_epi32(b, _mm256_madd_epi16(_mm256_set1_epi32(pb), weights));
            gr = _mm256_add_epi32(gr, _mm256_madd_epi16(_mm256_set1_epi32(pg), weights));
            r = _mm256_add_epi32(r, _mm256_madd_epi16(_mm256_set1_epi32(pr), weights));
        }
        const __m256i blueGreen =
            _mm256_packs_epi32(_mm256_srai_epi32(b, kHorizontalShift), _mm256_srai_epi32(gr, kHorizontalShift));
        const __m256i reds = _mm256_packs_epi32(_mm256_srai_epi32(r, kHorizontalShift), _mm256_setzero_si256());
        const __m256i bytes = _mm256_shuffle_epi8(_mm256_packus_epi16(blueGreen, reds), order);
        const __m128i low = _mm256_castsi256_si128(bytes);
        const __m128i high = _mm256_extracti128_si256(bytes, 1);
        uint8_t* const o = out + static_cast<size_t>(g) * 24;
        // The stores run 4 bytes past the group's 24, which the next group writes over; the last groups go
        // through a buffer so nothing past the row's pixels is touched.
        if ((g + 1) * 24 + 4 <= targetWidth * 3) {
            _mm_storeu_si128(reinterpret_cast<__m128i*>(o), low);
            _mm_storeu_si128(reinterpret_cast<__m128i*>(o + 12), high);
        } else {
            uint8_t last[28];
            _mm_storeu_si128(reinterpret_cast<__m128i*>(last), low);
            _mm_storeu_si128(reinterpret_cast<__m128i*>(last + 12), high);
            const int bytesLeft = targetWidth * 3 - g * 24;
            for (int i = 0; i < bytesLeft && i < 24; ++i) {
                o[i] = last[i];
            }
        }
    }
}

#else

bool scaleAvx2Compiled() {
    return false;
}
void splitPlanesAvx2(const uint8_t*, size_t, uint8_t*) {}
void verticalPassAvx2(const uint8_t* const*, const int16_t*, int, size_t, int16_t*) {}
void horizontalPassAvx2(const int16_t*, size_t, const GroupFilter&, int, uint8_t*) {}

#endif

}  // namespace tl::scale
