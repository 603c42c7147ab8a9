#include "jpeg/pixels.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <type_traits>

#include "jpeg/kernels.h"

namespace tl::jpeg {

namespace {

// One 8-point inverse transform of s[0], s[step], ... Products are 64-bit so that damaged coefficients
// can't overflow; on real data every value fits 32 bits.
void inverse8(const int64_t* s, int step, int shift, int64_t bias, int64_t* out) {
    const int64_t s0 = s[0], s1 = s[step], s2 = s[2 * step], s3 = s[3 * step];
    const int64_t s4 = s[4 * step], s5 = s[5 * step], s6 = s[6 * step], s7 = s[7 * step];

    const int64_t z1 = (s2 + s6) * k0_541;
    const int64_t even2 = z1 - s6 * k1_847;
    const int64_t even3 = z1 + s2 * k0_765;
    const int64_t even0 = (s0 + s4) * (1 << kConstBits);
    const int64_t even1 = (s0 - s4) * (1 << kConstBits);
    const int64_t e10 = even0 + even3;
    const int64_t e13 = even0 - even3;
    const int64_t e11 = even1 + even2;
    const int64_t e12 = even1 - even2;

    const int64_t z5 = (s7 + s3 + s5 + s1) * k1_175;
    const int64_t z71 = (s7 + s1) * -k0_899;
    const int64_t z53 = (s5 + s3) * -k2_562;
    const int64_t z73 = (s7 + s3) * -k1_961 + z5;
    const int64_t z51 = (s5 + s1) * -k0_390 + z5;
    const int64_t odd7 = s7 * k0_298 + z71 + z73;
    const int64_t odd5 = s5 * k2_053 + z53 + z51;
    const int64_t odd3 = s3 * k3_072 + z53 + z73;
    const int64_t odd1 = s1 * k1_501 + z71 + z51;

    out[0] = (e10 + odd1 + bias) >> shift;
    out[7] = (e10 - odd1 + bias) >> shift;
    out[1] = (e11 + odd3 + bias) >> shift;
    out[6] = (e11 - odd3 + bias) >> shift;
    out[2] = (e12 + odd5 + bias) >> shift;
    out[5] = (e12 - odd5 + bias) >> shift;
    out[3] = (e13 + odd7 + bias) >> shift;
    out[4] = (e13 - odd7 + bias) >> shift;
}

uint8_t clampSample(int64_t v) {
    return static_cast<uint8_t>(std::clamp<int64_t>(v, 0, 255));
}

// sqrt(2) cos(pi / 8): the 4-point transform's one odd constant beside k0_541, sqrt(2) cos(3 pi / 8).
constexpr int32_t k1_306 = fix(1.306562965);

// The 4-point transform of s0..s3 (the 8-point basis taken at the centres of sample pairs), scaled as the
// 8-point pass is, so both passes shift as there. Written out in full and inlined: through a helper
// writing to memory the compiler stalls on reading the results back.
#define TL_INVERSE4(s0, s1, s2, s3, shift, bias, o0, o1, o2, o3)          \
    do {                                                                  \
        const int32_t even0 = ((s0) + (s2)) * (1 << kConstBits) + (bias); \
        const int32_t even1 = ((s0) - (s2)) * (1 << kConstBits) + (bias); \
        const int32_t odd0 = (s1)*k1_306 + (s3)*k0_541;                   \
        const int32_t odd1 = (s1)*k0_541 - (s3)*k1_306;                   \
        (o0) = (even0 + odd0) >> (shift);                                 \
        (o3) = (even0 - odd0) >> (shift);                                 \
        (o1) = (even1 + odd1) >> (shift);                                 \
        (o2) = (even1 - odd1) >> (shift);                                 \
    } while (false)

// The first pass's results are held to 16 bits, as the vector 8 x 8 transform holds them, which keeps
// damaged blocks from overflowing the second.
void idct4x4(const int16_t* block, uint8_t* out, size_t stride) {
    constexpr int shift1 = kConstBits - kPass1Bits;
    constexpr int32_t bias1 = 1 << (shift1 - 1);
    constexpr int shift2 = kConstBits + kPass1Bits + 3;
    constexpr int32_t bias2 = (1 << (shift2 - 1)) + (128 << shift2);
    int32_t work[16];
    for (size_t x = 0; x < 4; ++x) {
        const int32_t s0 = block[x], s1 = block[8 + x], s2 = block[16 + x], s3 = block[24 + x];
        int32_t o0, o1, o2, o3;
        TL_INVERSE4(s0, s1, s2, s3, shift1, bias1, o0, o1, o2, o3);
        work[x] = std::clamp(o0, -32768, 32767);
        work[4 + x] = std::clamp(o1, -32768, 32767);
        work[8 + x] = std::clamp(o2, -32768, 32767);
        work[12 + x] = std::clamp(o3, -32768, 32767);
    }
    for (size_t y = 0; y < 4; ++y) {
        const int32_t* w = work + 4 * y;
        int32_t o0, o1, o2, o3;
        TL_INVERSE4(w[0], w[1], w[2], w[3], shift2, bias2, o0, o1, o2, o3);
        uint8_t* const row = out + y * stride;
        row[0] = static_cast<uint8_t>(std::clamp(o0, 0, 255));
        row[1] = static_cast<uint8_t>(std::clamp(o1, 0, 255));
        row[2] = static_cast<uint8_t>(std::clamp(o2, 0, 255));
        row[3] = static_cast<uint8_t>(std::clamp(o3, 0, 255));
    }
}
#undef TL_INVERSE4

#if defined(__SSE2__)
// The same transform four lanes at a time: the first pass takes the block's rows as they lie (a lane for
// each column), the multiply-adds pair s0 with s2 and s1 with s3, and saturating packs do the clamping.
// The constants are the pairs for even0, even1 (s0, s2), odd0 and odd1 (s1, s3): a 3-point transform fits
// the same shape, its outputs being the 4-point ones 0, 1 and 3. Gives the 4 x 4 samples, row by row.
__m128i fourLanes(const int16_t* block, __m128i sum, __m128i difference, __m128i odd0k, __m128i odd1k) {
    constexpr int shift1 = kConstBits - kPass1Bits;
    constexpr int shift2 = kConstBits + kPass1Bits + 3;
    const auto pass = [&](__m128i s02, __m128i s13, __m128i bias, auto shift, __m128i& a, __m128i& b) {
        const __m128i even0 = _mm_add_epi32(_mm_madd_epi16(s02, sum), bias);
        const __m128i even1 = _mm_add_epi32(_mm_madd_epi16(s02, difference), bias);
        const __m128i odd0 = _mm_madd_epi16(s13, odd0k);
        const __m128i odd1 = _mm_madd_epi16(s13, odd1k);
        constexpr int n = decltype(shift)::value;
        // a: outputs 0 and 1, b: outputs 2 and 3, four lanes each, saturated to 16 bits.
        a = _mm_packs_epi32(_mm_srai_epi32(_mm_add_epi32(even0, odd0), n),
                            _mm_srai_epi32(_mm_add_epi32(even1, odd1), n));
        b = _mm_packs_epi32(_mm_srai_epi32(_mm_sub_epi32(even1, odd1), n),
                            _mm_srai_epi32(_mm_sub_epi32(even0, odd0), n));
    };
    const auto load = [&](int row) { return _mm_loadl_epi64(reinterpret_cast<const __m128i*>(block + 8 * row)); };
    __m128i a, b;
    pass(_mm_unpacklo_epi16(load(0), load(2)), _mm_unpacklo_epi16(load(1), load(3)), _mm_set1_epi32(1 << (shift1 - 1)),
         std::integral_constant<int, shift1>{}, a, b);
    // a and b hold rows 0, 1 and 2, 3 of the intermediate; turned into columns 0, 1 (c) and 2, 3 (d).
    __m128i t0 = _mm_unpacklo_epi16(a, b);
    __m128i t1 = _mm_unpackhi_epi16(a, b);
    const __m128i c = _mm_unpacklo_epi16(t0, t1);
    const __m128i d = _mm_unpackhi_epi16(t0, t1);
    pass(_mm_unpacklo_epi16(c, d), _mm_unpackhi_epi16(c, d), _mm_set1_epi32((1 << (shift2 - 1)) + (128 << shift2)),
         std::integral_constant<int, shift2>{}, a, b);
    // Now columns 0, 1 (a) and 2, 3 (b) of the samples, a lane for each row: back to rows.
    t0 = _mm_unpacklo_epi16(a, b);
    t1 = _mm_unpackhi_epi16(a, b);
    return _mm_packus_epi16(_mm_unpacklo_epi16(t0, t1), _mm_unpackhi_epi16(t0, t1));
}

__m128i lanePair(int32_t a, int32_t b) {
    return _mm_set1_epi32(static_cast<int32_t>(static_cast<uint32_t>(b) << 16 | static_cast<uint16_t>(a)));
}

void idct4x4Sse2(const int16_t* block, uint8_t* out, size_t stride) {
    const __m128i rows =
        fourLanes(block, lanePair(1 << kConstBits, 1 << kConstBits), lanePair(1 << kConstBits, -(1 << kConstBits)),
                  lanePair(k1_306, k0_541), lanePair(k0_541, -k1_306));
    alignas(16) uint8_t bytes[16];
    _mm_store_si128(reinterpret_cast<__m128i*>(bytes), rows);
    for (size_t y = 0; y < 4; ++y) {
        std::memcpy(out + y * stride, bytes + 4 * y, 4);
    }
}
#endif

// The 3-point transform of s0..s2: the 8-point basis taken at the centres of groups of 8/3 samples is the
// 3-point one, sqrt(2) cos((2i + 1) u pi / 6), scaled as the 8-point pass is.
constexpr int32_t k0_707 = fix(0.707106781);  // sqrt(2) cos(pi / 3)
constexpr int32_t k1_225 = fix(1.224744871);  // sqrt(2) cos(pi / 6)

void idct3x3(const int16_t* block, uint8_t* out, size_t stride) {
    constexpr int shift1 = kConstBits - kPass1Bits;
    constexpr int32_t bias1 = 1 << (shift1 - 1);
    constexpr int shift2 = kConstBits + kPass1Bits + 3;
    constexpr int32_t bias2 = (1 << (shift2 - 1)) + (128 << shift2);
    const auto inverse3 = [](int32_t s0, int32_t s1, int32_t s2, int32_t bias, int shift, int32_t* o) {
        const int32_t even = s0 * (1 << kConstBits) + bias;
        const int32_t half = s2 * k0_707;
        const int32_t odd = s1 * k1_225;
        o[0] = (even + half + odd) >> shift;
        o[1] = (even - 2 * half) >> shift;
        o[2] = (even + half - odd) >> shift;
    };
    int32_t work[9];
    for (size_t x = 0; x < 3; ++x) {
        int32_t column[3];
        inverse3(block[x], block[8 + x], block[16 + x], bias1, shift1, column);
        for (size_t y = 0; y < 3; ++y) {
            // Held to 16 bits as the other transforms hold their first pass.
            work[3 * y + x] = std::clamp(column[y], -32768, 32767);
        }
    }
    for (size_t y = 0; y < 3; ++y) {
        int32_t row[3];
        inverse3(work[3 * y], work[3 * y + 1], work[3 * y + 2], bias2, shift2, row);
        uint8_t* const o = out + y * stride;
        for (size_t x = 0; x < 3; ++x) {
            o[x] = static_cast<uint8_t>(std::clamp(row[x], 0, 255));
        }
    }
}

#if defined(__SSE2__)
void idct3x3Sse2(const int16_t* block, uint8_t* out, size_t stride) {
    const __m128i rows = fourLanes(block, lanePair(1 << kConstBits, k0_707), lanePair(1 << kConstBits, -2 * k0_707),
                                   lanePair(k1_225, 0), lanePair(0, 0));
    alignas(16) uint8_t bytes[16];
    _mm_store_si128(reinterpret_cast<__m128i*>(bytes), rows);
    // Outputs 0, 1 and 3 of the 4-point shape, either way.
    for (const size_t y : {size_t{0}, size_t{1}, size_t{3}}) {
        uint8_t* const o = out + (y == 3 ? 2 : y) * stride;
        o[0] = bytes[4 * y];
        o[1] = bytes[4 * y + 1];
        o[2] = bytes[4 * y + 3];
    }
}
#endif

// At 2 x 2 the transform has no fractions left: sums and differences of the four lowest coefficients.
void idct2x2(const int16_t* block, uint8_t* out, size_t stride) {
    const int32_t dc = block[0], across = block[1], down = block[8], both = block[9];
    const auto sample = [](int32_t sum) { return clampSample(((sum + 4) >> 3) + 128); };
    out[0] = sample(dc + across + down + both);
    out[1] = sample(dc - across + down - both);
    out[stride] = sample(dc + across - down - both);
    out[stride + 1] = sample(dc - across - down + both);
}

struct ColourTables {
    std::array<int32_t, 256> crToR{};
    std::array<int32_t, 256> cbToB{};
    std::array<int32_t, 256> crToG{};  // scaled, summed with cbToG before the shift
    std::array<int32_t, 256> cbToG{};
};
constexpr ColourTables makeColourTables() {
    ColourTables t;
    for (int i = 0; i < 256; ++i) {
        const int32_t x = i - 128;
        t.crToR[static_cast<size_t>(i)] = (kCrToR * x + kHalf) >> kColourBits;
        t.cbToB[static_cast<size_t>(i)] = (kCbToB * x + kHalf) >> kColourBits;
        t.crToG[static_cast<size_t>(i)] = -kCrToG * x;
        t.cbToG[static_cast<size_t>(i)] = -kCbToG * x + kHalf;
    }
    return t;
}
constexpr ColourTables kColour = makeColourTables();

uint8_t clampColour(int v) {
    return static_cast<uint8_t>(std::clamp(v, 0, 255));
}

void h2v1Range(const uint8_t* in, int width, int from, int to, uint8_t* out) {
    for (int i = from; i < to; ++i) {
        const int here = 3 * in[i];
        const int left = in[std::max(i - 1, 0)];
        const int right = in[std::min(i + 1, width - 1)];
        out[2 * i] = static_cast<uint8_t>((here + left + 1) >> 2);
        out[2 * i + 1] = static_cast<uint8_t>((here + right + 2) >> 2);
    }
}

void h2v2Range(const uint8_t* nearer, const uint8_t* farther, int width, int from, int to, uint8_t* out) {
    const auto column = [&](int i) { return 3 * nearer[i] + farther[i]; };
    for (int i = from; i < to; ++i) {
        const int here = 3 * column(i);
        out[2 * i] = static_cast<uint8_t>((here + column(std::max(i - 1, 0)) + 8) >> 4);
        out[2 * i + 1] = static_cast<uint8_t>((here + column(std::min(i + 1, width - 1)) + 7) >> 4);
    }
}

void yccRange(const uint8_t* y, const uint8_t* cb, const uint8_t* cr, int from, int to, uint8_t* out) {
    for (int i = from; i < to; ++i) {
        const int luma = y[i];
        const auto b = static_cast<size_t>(cb[i]);
        const auto r = static_cast<size_t>(cr[i]);
        uint8_t* const p = out + 3 * i;
        p[0] = clampColour(luma + kColour.cbToB[b]);
        p[1] = clampColour(luma + ((kColour.cbToG[b] + kColour.crToG[r]) >> kColourBits));
        p[2] = clampColour(luma + kColour.crToR[r]);
    }
}

#if defined(__SSE2__)

void idctBlockSse2(const int16_t* block, uint8_t* out, size_t stride) {
    __m128i r[8];
    for (int i = 0; i < 8; ++i) {
        r[i] = _mm_loadu_si128(reinterpret_cast<const __m128i*>(block + 8 * i));
    }
    inverseDct(r);
    for (int i = 0; i < 8; i += 2) {
        const __m128i two = _mm_packus_epi16(r[i], r[i + 1]);
        _mm_storel_epi64(reinterpret_cast<__m128i*>(out + static_cast<size_t>(i) * stride), two);
        _mm_storel_epi64(reinterpret_cast<__m128i*>(out + static_cast<size_t>(i + 1) * stride), _mm_srli_si128(two, 8));
    }
}

// Four pixels held as B, G, R, 0 in 32 bits each, packed into the low 12 bytes.
[[gnu::always_inline]] inline __m128i packPixels(__m128i p) {
    const __m128i lowPixel = _mm_set_epi32(0, 0x00FFFFFF, 0, 0x00FFFFFF);
    const __m128i highPixel = _mm_set_epi32(-1, 0, -1, 0);
    const __m128i halves = _mm_or_si128(_mm_and_si128(p, lowPixel), _mm_srli_epi64(_mm_and_si128(p, highPixel), 8));
    return _mm_or_si128(_mm_move_epi64(halves), _mm_slli_si128(_mm_srli_si128(halves, 8), 6));
}

// 16 pixels from their blue, green and red bytes, as 48 bytes of B, G, R.
[[gnu::always_inline]] inline void storeBgr16(__m128i b, __m128i g, __m128i r, uint8_t* out) {
    const __m128i zero = _mm_setzero_si128();
    const __m128i bgLo = _mm_unpacklo_epi8(b, g);
    const __m128i bgHi = _mm_unpackhi_epi8(b, g);
    const __m128i rLo = _mm_unpacklo_epi8(r, zero);
    const __m128i rHi = _mm_unpackhi_epi8(r, zero);
    const __m128i p0 = packPixels(_mm_unpacklo_epi16(bgLo, rLo));
    const __m128i p1 = packPixels(_mm_unpackhi_epi16(bgLo, rLo));
    const __m128i p2 = packPixels(_mm_unpacklo_epi16(bgHi, rHi));
    const __m128i p3 = packPixels(_mm_unpackhi_epi16(bgHi, rHi));
    auto* o = reinterpret_cast<__m128i*>(out);
    _mm_storeu_si128(o, _mm_or_si128(p0, _mm_slli_si128(p1, 12)));
    _mm_storeu_si128(o + 1, _mm_or_si128(_mm_srli_si128(p1, 4), _mm_slli_si128(p2, 8)));
    _mm_storeu_si128(o + 2, _mm_or_si128(_mm_srli_si128(p2, 8), _mm_slli_si128(p3, 4)));
}

int yccToBgrSse2(const uint8_t* y, const uint8_t* cb, const uint8_t* cr, int width, uint8_t* out) {
    const __m128i zero = _mm_setzero_si128();
    const __m128i centre = _mm_set1_epi16(128);
    int i = 0;
    for (; i + 16 <= width; i += 16) {
        const __m128i y8 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(y + i));
        const __m128i cb8 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(cb + i));
        const __m128i cr8 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(cr + i));
        const auto lo = yccTerms(_mm_unpacklo_epi8(y8, zero), _mm_sub_epi16(_mm_unpacklo_epi8(cb8, zero), centre),
                                 _mm_sub_epi16(_mm_unpacklo_epi8(cr8, zero), centre));
        const auto hi = yccTerms(_mm_unpackhi_epi8(y8, zero), _mm_sub_epi16(_mm_unpackhi_epi8(cb8, zero), centre),
                                 _mm_sub_epi16(_mm_unpackhi_epi8(cr8, zero), centre));
        storeBgr16(_mm_packus_epi16(lo.b, hi.b), _mm_packus_epi16(lo.g, hi.g), _mm_packus_epi16(lo.r, hi.r),
                   out + 3 * i);
    }
    return i;
}

// Fancy upsampling of eight inputs from `i` on; their neighbours on both sides must exist.
[[gnu::always_inline]] inline __m128i load8(const uint8_t* p) {
    return _mm_unpacklo_epi8(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(p)), _mm_setzero_si128());
}
[[gnu::always_inline]] inline void storeEvenOdd(__m128i even, __m128i odd, uint8_t* out) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_or_si128(even, _mm_slli_epi16(odd, 8)));
}

int upsampleH2V1Sse2(const uint8_t* in, int width, uint8_t* out) {
    int i = 1;
    for (; i + 9 <= width; i += 8) {
        const __m128i here = load8(in + i);
        const __m128i three = _mm_add_epi16(_mm_add_epi16(here, here), here);
        const __m128i even =
            _mm_srli_epi16(_mm_add_epi16(_mm_add_epi16(three, load8(in + i - 1)), _mm_set1_epi16(1)), 2);
        const __m128i odd =
            _mm_srli_epi16(_mm_add_epi16(_mm_add_epi16(three, load8(in + i + 1)), _mm_set1_epi16(2)), 2);
        storeEvenOdd(even, odd, out + 2 * i);
    }
    return i;
}

[[gnu::always_inline]] inline __m128i columnSum(const uint8_t* nearer, const uint8_t* farther) {
    const __m128i n = load8(nearer);
    return _mm_add_epi16(_mm_add_epi16(_mm_add_epi16(n, n), n), load8(farther));
}

int upsampleH2V2Sse2(const uint8_t* nearer, const uint8_t* farther, int width, uint8_t* out) {
    int i = 1;
    for (; i + 9 <= width; i += 8) {
        const __m128i here = columnSum(nearer + i, farther + i);
        const __m128i three = _mm_add_epi16(_mm_add_epi16(here, here), here);
        const __m128i left = columnSum(nearer + i - 1, farther + i - 1);
        const __m128i right = columnSum(nearer + i + 1, farther + i + 1);
        const __m128i even = _mm_srli_epi16(_mm_add_epi16(_mm_add_epi16(three, left), _mm_set1_epi16(8)), 4);
        const __m128i odd = _mm_srli_epi16(_mm_add_epi16(_mm_add_epi16(three, right), _mm_set1_epi16(7)), 4);
        storeEvenOdd(even, odd, out + 2 * i);
    }
    return i;
}

#endif

bool useAvx2() {
#if defined(__GNUC__) && (defined(__x86_64__) || defined(__i386__))
    static const bool yes = [] {
        __builtin_cpu_init();
        return avx2Compiled() && __builtin_cpu_supports("avx2");
    }();
    return yes;
#else
    return false;
#endif
}

}  // namespace

void idctBlockPlain(const int16_t* block, uint8_t* out, size_t stride) {
    std::array<int64_t, 64> work{};
    std::array<int64_t, 64> in{};
    std::array<int64_t, 8> column{};
    for (size_t i = 0; i < 64; ++i) {
        in[i] = block[i];
    }
    for (size_t x = 0; x < 8; ++x) {
        inverse8(&in[x], 8, kConstBits - kPass1Bits, int64_t{1} << (kConstBits - kPass1Bits - 1), column.data());
        for (size_t y = 0; y < 8; ++y) {
            work[y * 8 + x] = column[y];
        }
    }
    // The level shift of 128 rides along with the rounding.
    constexpr int shift = kConstBits + kPass1Bits + 3;
    constexpr int64_t bias = (int64_t{1} << (shift - 1)) + (int64_t{128} << shift);
    std::array<int64_t, 8> row{};
    for (size_t y = 0; y < 8; ++y) {
        inverse8(&work[y * 8], 1, shift, bias, row.data());
        for (size_t x = 0; x < 8; ++x) {
            out[y * stride + x] = clampSample(row[x]);
        }
    }
}

void idctBlock(const int16_t* block, int last, uint8_t* out, size_t stride) {
    if (last == 0) {
        // Only the DC term: both passes reduce to one rounding.
        const uint8_t value = clampSample(((block[0] + 4) >> 3) + 128);
        for (int y = 0; y < 8; ++y) {
            std::memset(out + static_cast<size_t>(y) * stride, value, 8);
        }
        return;
    }
#if defined(__SSE2__)
    idctBlockSse2(block, out, stride);
#else
    idctBlockPlain(block, out, stride);
#endif
}

void idctBlockPair(const int16_t* left,
                   int lastLeft,
                   const int16_t* right,
                   int lastRight,
                   uint8_t* out,
                   size_t stride) {
    if (lastLeft != 0 && lastRight != 0 && useAvx2()) {
        idctPairAvx2(left, right, out, stride);
        return;
    }
    idctBlock(left, lastLeft, out, stride);
    idctBlock(right, lastRight, out + 8, stride);
}

void idctReducedPlain(const int16_t* block, int size, uint8_t* out, size_t stride) {
    if (size == 4) {
        idct4x4(block, out, stride);
    } else if (size == 3) {
        idct3x3(block, out, stride);
    } else if (size == 2) {
        idct2x2(block, out, stride);
    } else {
        out[0] = clampSample(((block[0] + 4) >> 3) + 128);
    }
}

void idctBlockReduced(const int16_t* block, int last, int size, uint8_t* out, size_t stride) {
    if (last == 0 || size == 1) {
        const uint8_t value = clampSample(((block[0] + 4) >> 3) + 128);
        for (int y = 0; y < size; ++y) {
            std::memset(out + static_cast<size_t>(y) * stride, value, static_cast<size_t>(size));
        }
    } else if (size == 4) {
#if defined(__SSE2__)
        idct4x4Sse2(block, out, stride);
#else
        idct4x4(block, out, stride);
#endif
    } else if (size == 3) {
#if defined(__SSE2__)
        idct3x3Sse2(block, out, stride);
#else
        idct3x3(block, out, stride);
#endif
    } else {
        idct2x2(block, out, stride);
    }
}

void upsampleH2V1Plain(const uint8_t* in, int width, uint8_t* out) {
    h2v1Range(in, width, 0, width, out);
}

void upsampleH2V1(const uint8_t* in, int width, uint8_t* out) {
    int done = 0;
#if defined(__SSE2__)
    h2v1Range(in, width, 0, 1, out);
    done = upsampleH2V1Sse2(in, width, out);
#endif
    h2v1Range(in, width, done, width, out);
}

void upsampleH1V2(const uint8_t* nearer, const uint8_t* farther, int width, bool lower, uint8_t* out) {
    const int bias = lower ? 2 : 1;
    for (int i = 0; i < width; ++i) {
        out[i] = static_cast<uint8_t>((3 * nearer[i] + farther[i] + bias) >> 2);
    }
}

void upsampleH2V2Plain(const uint8_t* nearer, const uint8_t* farther, int width, uint8_t* out) {
    h2v2Range(nearer, farther, width, 0, width, out);
}

void upsampleH2V2(const uint8_t* nearer, const uint8_t* farther, int width, uint8_t* out) {
    int done = 0;
#if defined(__SSE2__)
    h2v2Range(nearer, farther, width, 0, 1, out);
    done = upsampleH2V2Sse2(nearer, farther, width, out);
#endif
    h2v2Range(nearer, farther, width, done, width, out);
}

void upsampleBox(const uint8_t* in, int width, int factor, uint8_t* out) {
    for (int i = 0; i < width; ++i) {
        std::memset(out + static_cast<ptrdiff_t>(i) * factor, in[i], static_cast<size_t>(factor));
    }
}

void yccToBgrPlain(const uint8_t* y, const uint8_t* cb, const uint8_t* cr, int width, uint8_t* out) {
    yccRange(y, cb, cr, 0, width, out);
}

void yccToBgr(const uint8_t* y, const uint8_t* cb, const uint8_t* cr, int width, uint8_t* out) {
    int done = useAvx2() ? yccToBgrAvx2(y, cb, cr, width, out) : 0;
#if defined(__SSE2__)
    done += yccToBgrSse2(y + done, cb + done, cr + done, width - done, out + 3 * done);
#endif
    yccRange(y, cb, cr, done, width, out);
}

void greyToBgr(const uint8_t* y, int width, uint8_t* out) {
    int i = 0;
#if defined(__SSE2__)
    for (; i + 16 <= width; i += 16) {
        const __m128i grey = _mm_loadu_si128(reinterpret_cast<const __m128i*>(y + i));
        storeBgr16(grey, grey, grey, out + 3 * i);
    }
#endif
    for (; i < width; ++i) {
        out[3 * i] = out[3 * i + 1] = out[3 * i + 2] = y[i];
    }
}

void rgbToBgr(const uint8_t* r, const uint8_t* g, const uint8_t* b, int width, uint8_t* out) {
    for (int i = 0; i < width; ++i, out += 3) {
        out[0] = b[i];
        out[1] = g[i];
        out[2] = r[i];
    }
}

}  // namespace tl::jpeg
