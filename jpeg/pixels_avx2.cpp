// Built with AVX2 enabled on x86-64 and called only on processors that have it. Nothing from the standard
// library is used here: an inline function compiled with AVX2 instructions could otherwise be the copy
// the linker keeps for everyone.
#include "jpeg/kernels.h"
#include "jpeg/pixels.h"

namespace tl::jpeg {

#if defined(__AVX2__)

namespace {

// pshufb masks that gather 16 pixels' blue, green and red bytes into the three 16-byte thirds of their
// B, G, R sequence: masks[third][channel][byte] is the pixel whose byte goes there, or -128 for none.
struct InterleaveMasks {
    alignas(16) int8_t masks[3][3][16];
};
constexpr InterleaveMasks makeInterleaveMasks() {
    InterleaveMasks m{};
    for (int third = 0; third < 3; ++third) {
        for (int byte = 0; byte < 16; ++byte) {
            const int at = 16 * third + byte;
            for (int channel = 0; channel < 3; ++channel) {
                m.masks[third][channel][byte] = static_cast<int8_t>(at % 3 == channel ? at / 3 : -128);
            }
        }
    }
    return m;
}
constexpr InterleaveMasks kInterleave = makeInterleaveMasks();

[[gnu::always_inline]] inline void storeBgr16(__m128i b, __m128i g, __m128i r, uint8_t* out) {
    for (int third = 0; third < 3; ++third) {
        const auto* m = kInterleave.masks[third];
        const __m128i bytes =
            _mm_or_si128(_mm_or_si128(_mm_shuffle_epi8(b, _mm_load_si128(reinterpret_cast<const __m128i*>(m[0]))),
                                      _mm_shuffle_epi8(g, _mm_load_si128(reinterpret_cast<const __m128i*>(m[1])))),
                         _mm_shuffle_epi8(r, _mm_load_si128(reinterpret_cast<const __m128i*>(m[2]))));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 16 * third), bytes);
    }
}

}  // namespace

bool avx2Compiled() {
    return true;
}

// The left block in the low lane of each register, the right one in the high lane.
void idctPairAvx2(const int16_t* left, const int16_t* right, uint8_t* out, size_t stride) {
    __m256i r[8];
    for (int i = 0; i < 8; ++i) {
        const __m128i l = _mm_loadu_si128(reinterpret_cast<const __m128i*>(left + 8 * i));
        const __m128i h = _mm_loadu_si128(reinterpret_cast<const __m128i*>(right + 8 * i));
        r[i] = _mm256_inserti128_si256(_mm256_castsi128_si256(l), h, 1);
    }
    inverseDct(r);
    for (int i = 0; i < 8; i += 2) {
        // Packed, the lanes hold left rows i and i + 1, then right rows i and i + 1; reordered so each
        // half is one whole row of the pair.
        const __m256i rows = _mm256_permute4x64_epi64(_mm256_packus_epi16(r[i], r[i + 1]), 0xD8);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out + static_cast<size_t>(i) * stride),
                         _mm256_castsi256_si128(rows));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out + static_cast<size_t>(i + 1) * stride),
                         _mm256_extracti128_si256(rows, 1));
    }
}

int yccToBgrAvx2(const uint8_t* y, const uint8_t* cb, const uint8_t* cr, int width, uint8_t* out) {
    const __m256i zero = _mm256_setzero_si256();
    const __m256i centre = _mm256_set1_epi16(128);
    int i = 0;
    for (; i + 32 <= width; i += 32) {
        const __m256i y8 = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(y + i));
        const __m256i cb8 = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(cb + i));
        const __m256i cr8 = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(cr + i));
        // Unpacking and packing again both work within lanes, so the pixels come back in their order.
        const auto lo =
            yccTerms(_mm256_unpacklo_epi8(y8, zero), _mm256_sub_epi16(_mm256_unpacklo_epi8(cb8, zero), centre),
                     _mm256_sub_epi16(_mm256_unpacklo_epi8(cr8, zero), centre));
        const auto hi =
            yccTerms(_mm256_unpackhi_epi8(y8, zero), _mm256_sub_epi16(_mm256_unpackhi_epi8(cb8, zero), centre),
                     _mm256_sub_epi16(_mm256_unpackhi_epi8(cr8, zero), centre));
        const __m256i b = _mm256_packus_epi16(lo.b, hi.b);
        const __m256i g = _mm256_packus_epi16(lo.g, hi.g);
        const __m256i r = _mm256_packus_epi16(lo.r, hi.r);
        storeBgr16(_mm256_castsi256_si128(b), _mm256_castsi256_si128(g), _mm256_castsi256_si128(r), out + 3 * i);
        storeBgr16(_mm256_extracti128_si256(b, 1), _mm256_extracti128_si256(g, 1), _mm256_extracti128_si256(r, 1),
                   out + 3 * i + 48);
    }
    return i;
}

#else

bool avx2Compiled() {
    return false;
}
void idctPairAvx2(const int16_t*, const int16_t*, uint8_t*, size_t) {}
int yccToBgrAvx2(const uint8_t*, const uint8_t*, const uint8_t*, int, uint8_t*) {
    return 0;
}

#endif

}  // namespace tl::jpeg
