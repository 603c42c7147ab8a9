#pragma once

#include <cstddef>
#include <cstdint>

#if defined(__SSE2__)
#include <immintrin.h>
#endif

// The fixed-point constants of the JPEG decoder's inverse DCT and colour conversion, and the vector
// kernels built on them, written once for 128-bit (SSE2) and 256-bit (AVX2) registers. Everything here is
// in an unnamed namespace on purpose: the AVX2 translation unit gets copies of its own, so no function
// compiled with AVX2 instructions can ever be picked by the linker for code that runs without them.
namespace tl::jpeg {
namespace {

// The inverse DCT is the Loeffler-Ligtenberg-Moschytz factorisation in 13-bit fixed point, columns first,
// keeping 2 extra bits between the passes: the accurate integer transform other decoders use by default,
// so pictures come out as they show them.
constexpr int kConstBits = 13;
constexpr int kPass1Bits = 2;
constexpr int kPass1Shift = kConstBits - kPass1Bits;
constexpr int kPass2Shift = kConstBits + kPass1Bits + 3;
constexpr int32_t fix(double x) {
    return static_cast<int32_t>(x * (1 << kConstBits) + 0.5);
}
// Products of sqrt(2) and the cosines of multiples of pi/16, as the factorisation combines them.
constexpr int32_t k0_298 = fix(0.298631336);
constexpr int32_t k0_390 = fix(0.390180644);
constexpr int32_t k0_541 = fix(0.541196100);
constexpr int32_t k0_765 = fix(0.765366865);
constexpr int32_t k0_899 = fix(0.899976223);
constexpr int32_t k1_175 = fix(1.175875602);
constexpr int32_t k1_501 = fix(1.501321110);
constexpr int32_t k1_847 = fix(1.847759065);
constexpr int32_t k1_961 = fix(1.961570560);
constexpr int32_t k2_053 = fix(2.053119869);
constexpr int32_t k2_562 = fix(2.562915447);
constexpr int32_t k3_072 = fix(3.072711026);

// JFIF's YCbCr to RGB in 16-bit fixed point, rounded: R = Y + 1.402 Cr', G = Y - 0.34414 Cb' - 0.71414 Cr',
// B = Y + 1.772 Cb', where Cb' and Cr' are centred on 128.
constexpr int kColourBits = 16;
constexpr int32_t kHalf = 1 << (kColourBits - 1);
constexpr int32_t colourFix(double x) {
    return static_cast<int32_t>(x * (1 << kColourBits) + 0.5);
}
constexpr int32_t kCrToR = colourFix(1.40200);
constexpr int32_t kCbToB = colourFix(1.77200);
constexpr int32_t kCbToG = colourFix(0.34414);
constexpr int32_t kCrToG = colourFix(0.71414);

#if defined(__SSE2__)

#define TL_KERNEL [[gnu::always_inline]] inline

// The few operations the kernels need, for both register widths.
TL_KERNEL __m128i add16(__m128i a, __m128i b) {
    return _mm_add_epi16(a, b);
}
TL_KERNEL __m128i sub16(__m128i a, __m128i b) {
    return _mm_sub_epi16(a, b);
}
TL_KERNEL __m128i add32(__m128i a, __m128i b) {
    return _mm_add_epi32(a, b);
}
TL_KERNEL __m128i sub32(__m128i a, __m128i b) {
    return _mm_sub_epi32(a, b);
}
TL_KERNEL __m128i madd16(__m128i a, __m128i b) {
    return _mm_madd_epi16(a, b);
}
TL_KERNEL __m128i mulhi16(__m128i a, __m128i b) {
    return _mm_mulhi_epi16(a, b);
}
template <int Shift>
TL_KERNEL __m128i srai16(__m128i a) {
    return _mm_srai_epi16(a, Shift);
}
template <int Shift>
TL_KERNEL __m128i srai32(__m128i a) {
    return _mm_srai_epi32(a, Shift);
}
TL_KERNEL __m128i packs32(__m128i a, __m128i b) {
    return _mm_packs_epi32(a, b);
}
TL_KERNEL __m128i unpackLo16(__m128i a, __m128i b) {
    return _mm_unpacklo_epi16(a, b);
}
TL_KERNEL __m128i unpackHi16(__m128i a, __m128i b) {
    return _mm_unpackhi_epi16(a, b);
}
TL_KERNEL __m128i unpackLo32(__m128i a, __m128i b) {
    return _mm_unpacklo_epi32(a, b);
}
TL_KERNEL __m128i unpackHi32(__m128i a, __m128i b) {
    return _mm_unpackhi_epi32(a, b);
}
TL_KERNEL __m128i unpackLo64(__m128i a, __m128i b) {
    return _mm_unpacklo_epi64(a, b);
}
TL_KERNEL __m128i unpackHi64(__m128i a, __m128i b) {
    return _mm_unpackhi_epi64(a, b);
}
template <typename V>
V splat16(int32_t v);
template <typename V>
V splat32(int32_t v);
template <>
TL_KERNEL __m128i splat16<__m128i>(int32_t v) {
    return _mm_set1_epi16(static_cast<int16_t>(v));
}
template <>
TL_KERNEL __m128i splat32<__m128i>(int32_t v) {
    return _mm_set1_epi32(v);
}

#if defined(__AVX2__)
// 256-bit registers work as two 128-bit lanes: every operation here stays within its lane.
TL_KERNEL __m256i add16(__m256i a, __m256i b) {
    return _mm256_add_epi16(a, b);
}
TL_KERNEL __m256i sub16(__m256i a, __m256i b) {
    return _mm256_sub_epi16(a, b);
}
TL_KERNEL __m256i add32(__m256i a, __m256i b) {
    return _mm256_add_epi32(a, b);
}
TL_KERNEL __m256i sub32(__m256i a, __m256i b) {
    return _mm256_sub_epi32(a, b);
}
TL_KERNEL __m256i madd16(__m256i a, __m256i b) {
    return _mm256_madd_epi16(a, b);
}
TL_KERNEL __m256i mulhi16(__m256i a, __m256i b) {
    return _mm256_mulhi_epi16(a, b);
}
template <int Shift>
TL_KERNEL __m256i srai16(__m256i a) {
    return _mm256_srai_epi16(a, Shift);
}
template <int Shift>
TL_KERNEL __m256i srai32(__m256i a) {
    return _mm256_srai_epi32(a, Shift);
}
TL_KERNEL __m256i packs32(__m256i a, __m256i b) {
    return _mm256_packs_epi32(a, b);
}
TL_KERNEL __m256i unpackLo16(__m256i a, __m256i b) {
    return _mm256_unpacklo_epi16(a, b);
}
TL_KERNEL __m256i unpackHi16(__m256i a, __m256i b) {
    return _mm256_unpackhi_epi16(a, b);
}
TL_KERNEL __m256i unpackLo32(__m256i a, __m256i b) {
    return _mm256_unpacklo_epi32(a, b);
}
TL_KERNEL __m256i unpackHi32(__m256i a, __m256i b) {
    return _mm256_unpackhi_epi32(a, b);
}
TL_KERNEL __m256i unpackLo64(__m256i a, __m256i b) {
    return _mm256_unpacklo_epi64(a, b);
}
TL_KERNEL __m256i unpackHi64(__m256i a, __m256i b) {
    return _mm256_unpackhi_epi64(a, b);
}
template <>
TL_KERNEL __m256i splat16<__m256i>(int32_t v) {
    return _mm256_set1_epi16(static_cast<int16_t>(v));
}
template <>
TL_KERNEL __m256i splat32<__m256i>(int32_t v) {
    return _mm256_set1_epi32(v);
}
#endif

// 32-bit values of a register's worth of 16-bit lanes, as two halves.
template <typename V>
struct Wide {
    V lo;
    V hi;
};
template <typename V>
TL_KERNEL Wide<V> operator+(Wide<V> a, Wide<V> b) {
    return {add32(a.lo, b.lo), add32(a.hi, b.hi)};
}
template <typename V>
TL_KERNEL Wide<V> operator-(Wide<V> a, Wide<V> b) {
    return {sub32(a.lo, b.lo), sub32(a.hi, b.hi)};
}
// a * x + b * y in 32 bits for each lane's (x, y).
template <typename V>
TL_KERNEL Wide<V> madd(V x, V y, int32_t a, int32_t b) {
    const V k = splat32<V>(static_cast<int32_t>(static_cast<uint32_t>(b) << 16 | (static_cast<uint32_t>(a) & 0xFFFF)));
    return {madd16(unpackLo16(x, y), k), madd16(unpackHi16(x, y), k)};
}
template <int Shift, typename V>
TL_KERNEL V shiftDown(Wide<V> v) {
    return packs32(srai32<Shift>(v.lo), srai32<Shift>(v.hi));
}

// The 8-point inverse transform on every lane at once: s[k] holds the k-th input of each, and `bias` (the
// rounding) is added before the shift. The products are regrouped so each output is two pairwise
// multiply-adds; integer sums don't care about the grouping, so the results are the plain version's to
// the bit.
template <int Shift, typename V>
TL_KERNEL void inverse8x8(V* s, V bias) {
    const Wide<V> even2 = madd(s[2], s[6], k0_541, k0_541 - k1_847);
    const Wide<V> even3 = madd(s[2], s[6], k0_541 + k0_765, k0_541);
    const Wide<V> rounding{bias, bias};
    const Wide<V> even0 = madd(s[0], s[4], 1 << kConstBits, 1 << kConstBits) + rounding;
    const Wide<V> even1 = madd(s[0], s[4], 1 << kConstBits, -(1 << kConstBits)) + rounding;
    const Wide<V> e10 = even0 + even3;
    const Wide<V> e13 = even0 - even3;
    const Wide<V> e11 = even1 + even2;
    const Wide<V> e12 = even1 - even2;

    const Wide<V> odd7 = madd(s[7], s[3], k0_298 - k0_899 - k1_961 + k1_175, k1_175 - k1_961) +
                         madd(s[5], s[1], k1_175, k1_175 - k0_899);
    const Wide<V> odd5 = madd(s[7], s[3], k1_175, k1_175 - k2_562) +
                         madd(s[5], s[1], k2_053 - k2_562 - k0_390 + k1_175, k1_175 - k0_390);
    const Wide<V> odd3 = madd(s[7], s[3], k1_175 - k1_961, k3_072 - k2_562 - k1_961 + k1_175) +
                         madd(s[5], s[1], k1_175 - k2_562, k1_175);
    const Wide<V> odd1 = madd(s[7], s[3], k1_175 - k0_899, k1_175) +
                         madd(s[5], s[1], k1_175 - k0_390, k1_501 - k0_899 - k0_390 + k1_175);

    s[0] = shiftDown<Shift>(e10 + odd1);
    s[7] = shiftDown<Shift>(e10 - odd1);
    s[1] = shiftDown<Shift>(e11 + odd3);
    s[6] = shiftDown<Shift>(e11 - odd3);
    s[2] = shiftDown<Shift>(e12 + odd5);
    s[5] = shiftDown<Shift>(e12 - odd5);
    s[3] = shiftDown<Shift>(e13 + odd7);
    s[4] = shiftDown<Shift>(e13 - odd7);
}

// Transposes the 8 x 8 16-bit values in r[0..7] (within each 128-bit lane).
template <typename V>
TL_KERNEL void transpose8x8(V* r) {
    const V a0 = unpackLo16(r[0], r[1]);
    const V a1 = unpackHi16(r[0], r[1]);
    const V a2 = unpackLo16(r[2], r[3]);
    const V a3 = unpackHi16(r[2], r[3]);
    const V a4 = unpackLo16(r[4], r[5]);
    const V a5 = unpackHi16(r[4], r[5]);
    const V a6 = unpackLo16(r[6], r[7]);
    const V a7 = unpackHi16(r[6], r[7]);
    const V b0 = unpackLo32(a0, a2);
    const V b1 = unpackHi32(a0, a2);
    const V b2 = unpackLo32(a1, a3);
    const V b3 = unpackHi32(a1, a3);
    const V b4 = unpackLo32(a4, a6);
    const V b5 = unpackHi32(a4, a6);
    const V b6 = unpackLo32(a5, a7);
    const V b7 = unpackHi32(a5, a7);
    r[0] = unpackLo64(b0, b4);
    r[1] = unpackHi64(b0, b4);
    r[2] = unpackLo64(b1, b5);
    r[3] = unpackHi64(b1, b5);
    r[4] = unpackLo64(b2, b6);
    r[5] = unpackHi64(b2, b6);
    r[6] = unpackLo64(b3, b7);
    r[7] = unpackHi64(b3, b7);
}

// Both passes of the inverse DCT on rows of coefficients already in r[0..7]; the results, level-shifted
// but not yet clamped, come back as rows in r[0..7].
template <typename V>
TL_KERNEL void inverseDct(V* r) {
    // Registers hold rows of coefficients, so the first pass runs down the columns directly.
    inverse8x8<kPass1Shift>(r, splat32<V>(1 << (kPass1Shift - 1)));
    transpose8x8(r);
    inverse8x8<kPass2Shift>(r, splat32<V>((1 << (kPass2Shift - 1)) + (128 << kPass2Shift)));
    transpose8x8(r);
}

template <typename V>
struct Bgr {
    V b, g, r;
};
// Colours of a register's worth of pixels from 16-bit Y and centred Cb, Cr. For 1.402 and 1.772 the
// whole part is added apart and the rest taken from a high multiply of twice the value, rounded with one
// more shift: exactly (x * k + 2^15) >> 16. Green is -Cr' plus one multiply-add, rounded once.
template <typename V>
TL_KERNEL Bgr<V> yccTerms(V y, V cb, V cr) {
    const V one = splat16<V>(1);
    const V rPart = srai16<1>(add16(mulhi16(add16(cr, cr), splat16<V>(kCrToR - 65536)), one));
    const V bPart = srai16<1>(add16(mulhi16(add16(cb, cb), splat16<V>(kCbToB - 131072)), one));
    const V half = splat32<V>(kHalf);
    const Wide<V> sum = madd(cb, cr, -kCbToG, 65536 - kCrToG);
    const V gPart = packs32(srai32<kColourBits>(add32(sum.lo, half)), srai32<kColourBits>(add32(sum.hi, half)));
    return {add16(add16(y, cb), add16(cb, bPart)), add16(sub16(y, cr), gPart), add16(add16(y, cr), rPart)};
}

#undef TL_KERNEL

#endif

}  // namespace
}  // namespace tl::jpeg
