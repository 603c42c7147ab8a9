#include "lists/picture_scale.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <numbers>
#include <vector>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

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

namespace {

constexpr int kLobes = 3;
// Filter weights carry 14 fractional bits, so a weight of 1 and the negative lobes fit in 16 bits; the
// rows between the two passes keep 6 bits below the sample's, so the second pass rounds only once.
constexpr int kWeightBits = 14;
constexpr int kMiddleBits = 6;

double lanczos(double x) {
    x = std::abs(x);
    if (x < 1e-9) {
        return 1;
    }
    if (x >= kLobes) {
        return 0;
    }
    const double px = std::numbers::pi * x;
    return kLobes * std::sin(px) * std::sin(px / kLobes) / (px * px);
}

// For each target pixel along one side: the first source pixel it takes, and `taps` weights from there
// (zero past the ones it uses), summing to exactly 1 << kWeightBits.
struct Filter {
    int taps = 0;
    std::vector<int> first;
    std::vector<int16_t> weights;
};

Filter makeFilter(int sourceSide, int targetSide, bool evenTaps) {
    const double ratio = static_cast<double>(sourceSide) / targetSide;
    const double widen = std::max(ratio, 1.0);
    const double support = kLobes * widen;
    Filter f;
    f.taps = std::min(static_cast<int>(std::ceil(2 * support)) + 1, sourceSide);
    // The weights run to an even count where asked, the one past the last source pixel weighing nothing.
    const auto taps = static_cast<size_t>(f.taps + (evenTaps ? f.taps % 2 : 0));
    f.first.resize(static_cast<size_t>(targetSide));
    f.weights.assign(static_cast<size_t>(targetSide) * taps, 0);
    std::vector<double> w(taps);
    for (int t = 0; t < targetSide; ++t) {
        // Pixel centres line up: the target pixel's centre in source pixels.
        const double centre = (t + 0.5) * ratio - 0.5;
        const int lo = std::clamp(static_cast<int>(std::ceil(centre - support)), 0, sourceSide - f.taps);
        const int hi = std::min(static_cast<int>(std::floor(centre + support)), lo + f.taps - 1);
        double sum = 0;
        std::fill(w.begin(), w.end(), 0.0);
        for (int j = lo; j <= hi; ++j) {
            const double v = lanczos((j - centre) / widen);
            w[static_cast<size_t>(j - lo)] = v;
            sum += v;
        }
        int16_t* const out = &f.weights[static_cast<size_t>(t) * taps];
        f.first[static_cast<size_t>(t)] = lo;
        // The taps cut off at the picture's edges are left out and the rest made to sum to 1 again; the
        // rounding's remainder goes to the largest weight.
        int total = 0;
        size_t largest = 0;
        for (size_t k = 0; k < taps; ++k) {
            out[k] = static_cast<int16_t>(std::lround(w[k] / sum * (1 << kWeightBits)));
            total += out[k];
            if (out[k] > out[largest]) {
                largest = k;
            }
        }
        out[largest] = static_cast<int16_t>(out[largest] + (1 << kWeightBits) - total);
    }
    f.taps = static_cast<int>(taps);
    return f;
}

// One row of the first pass: the weighted sum of `taps` source rows, `count` values each.
void verticalPass(const uint8_t* const* rows, const int16_t* weights, int taps, size_t count, int16_t* out) {
    constexpr int shift = kWeightBits - kMiddleBits;
    size_t i = 0;
#if defined(__SSE2__)
    const __m128i zero = _mm_setzero_si128();
    const __m128i rounding = _mm_set1_epi32(1 << (shift - 1));
    for (; i + 16 <= count; i += 16) {
        __m128i sums[4] = {rounding, rounding, rounding, rounding};
        int k = 0;
        // Two rows at a time: their samples interleaved, one multiply-add gives both products' sum.
        for (; k + 1 < taps; k += 2) {
            const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(rows[k] + i));
            const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(rows[k + 1] + i));
            const __m128i w = _mm_set1_epi32(
                static_cast<int32_t>(static_cast<uint32_t>(weights[k + 1]) << 16 | static_cast<uint16_t>(weights[k])));
            const __m128i lo = _mm_unpacklo_epi8(a, zero);
            const __m128i hi = _mm_unpackhi_epi8(a, zero);
            const __m128i lo2 = _mm_unpacklo_epi8(b, zero);
            const __m128i hi2 = _mm_unpackhi_epi8(b, zero);
            sums[0] = _mm_add_epi32(sums[0], _mm_madd_epi16(_mm_unpacklo_epi16(lo, lo2), w));
            sums[1] = _mm_add_epi32(sums[1], _mm_madd_epi16(_mm_unpackhi_epi16(lo, lo2), w));
            sums[2] = _mm_add_epi32(sums[2], _mm_madd_epi16(_mm_unpacklo_epi16(hi, hi2), w));
            sums[3] = _mm_add_epi32(sums[3], _mm_madd_epi16(_mm_unpackhi_epi16(hi, hi2), w));
        }
        if (k < taps) {
            const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(rows[k] + i));
            const __m128i w = _mm_set1_epi32(static_cast<uint16_t>(weights[k]));
            const __m128i lo = _mm_unpacklo_epi8(a, zero);
            const __m128i hi = _mm_unpackhi_epi8(a, zero);
            sums[0] = _mm_add_epi32(sums[0], _mm_madd_epi16(_mm_unpacklo_epi16(lo, zero), w));
            sums[1] = _mm_add_epi32(sums[1], _mm_madd_epi16(_mm_unpackhi_epi16(lo, zero), w));
            sums[2] = _mm_add_epi32(sums[2], _mm_madd_epi16(_mm_unpacklo_epi16(hi, zero), w));
            sums[3] = _mm_add_epi32(sums[3], _mm_madd_epi16(_mm_unpackhi_epi16(hi, zero), w));
        }
        const __m128i first = _mm_packs_epi32(_mm_srai_epi32(sums[0], shift), _mm_srai_epi32(sums[1], shift));
        const __m128i second = _mm_packs_epi32(_mm_srai_epi32(sums[2], shift), _mm_srai_epi32(sums[3], shift));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out + i), first);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out + i + 8), second);
    }
#endif
    for (; i < count; ++i) {
        int32_t sum = 1 << (shift - 1);
        for (int k = 0; k < taps; ++k) {
            sum += rows[k][i] * weights[k];
        }
        out[i] = static_cast<int16_t>(std::clamp(sum >> shift, -32768, 32767));
    }
}

// The second pass along one row of the first's results, into target pixels. `middle` has kMiddlePadding
// values to spare past the row's, as the vector loads read a few beyond the last pixel they use.
constexpr size_t kMiddlePadding = 16;

void horizontalPass(const int16_t* middle, const Filter& f, int targetWidth, uint8_t* out) {
    constexpr int shift = kWeightBits + kMiddleBits;
    const auto taps = static_cast<size_t>(f.taps);
    for (size_t x = 0; x < static_cast<size_t>(targetWidth); ++x) {
        const int16_t* s = middle + static_cast<size_t>(f.first[x]) * 3;
        const int16_t* w = &f.weights[x * taps];
#if defined(__SSE2__)
        // Two taps at a time: the pixels' blue, green and red interleaved pairwise, so one multiply-add
        // gives the three channels' sums of both (and a fourth lane that is dropped). The weights are padded
        // to an even count with zeros.
        __m128i sum = _mm_set1_epi32(1 << (shift - 1));
        for (size_t k = 0; k < taps; k += 2, s += 6) {
            const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s));
            const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + 3));
            const __m128i pair = _mm_set1_epi32(
                static_cast<int32_t>(static_cast<uint32_t>(w[k + 1]) << 16 | static_cast<uint16_t>(w[k])));
            sum = _mm_add_epi32(sum, _mm_madd_epi16(_mm_unpacklo_epi16(a, b), pair));
        }
        const __m128i words = _mm_packs_epi32(_mm_srai_epi32(sum, shift), sum);
        const auto bytes = static_cast<uint32_t>(_mm_cvtsi128_si32(_mm_packus_epi16(words, words)));
        out[x * 3] = static_cast<uint8_t>(bytes);
        out[x * 3 + 1] = static_cast<uint8_t>(bytes >> 8);
        out[x * 3 + 2] = static_cast<uint8_t>(bytes >> 16);
#else
        int32_t b = 1 << (shift - 1);
        int32_t g = b;
        int32_t r = b;
        for (size_t k = 0; k < taps; ++k, s += 3) {
            b += s[0] * w[k];
            g += s[1] * w[k];
            r += s[2] * w[k];
        }
        out[x * 3] = static_cast<uint8_t>(std::clamp(b >> shift, 0, 255));
        out[x * 3 + 1] = static_cast<uint8_t>(std::clamp(g >> shift, 0, 255));
        out[x * 3 + 2] = static_cast<uint8_t>(std::clamp(r >> shift, 0, 255));
#endif
    }
}

// Target row y from the down.taps source rows it takes (rows[0] being source row down.first[y]), through
// `middle`, a row of the first pass's results with kMiddlePadding to spare.
void makeTargetRow(const Filter& across,
                   const Filter& down,
                   size_t y,
                   const uint8_t* const* rows,
                   size_t values,
                   int16_t* middle,
                   uint8_t* out,
                   int targetWidth,
                   size_t targetStride) {
    verticalPass(rows, &down.weights[y * static_cast<size_t>(down.taps)], down.taps, values, middle);
    horizontalPass(middle, across, targetWidth, out);
    std::fill(out + static_cast<size_t>(targetWidth) * 3, out + targetStride, uint8_t{0});
}

}  // namespace

int sideToResampleFrom(int targetSide) {
    return targetSide + targetSide / 4;
}

bool resamplePixels(const uint8_t* source,
                    int sourceWidth,
                    int sourceHeight,
                    size_t sourceStride,
                    uint8_t* target,
                    int targetWidth,
                    int targetHeight,
                    size_t targetStride) {
    if (sourceWidth <= 0 || sourceHeight <= 0 || targetWidth <= 0 || targetHeight <= 0) {
        return false;
    }
    try {
        const Filter across = makeFilter(sourceWidth, targetWidth, true);
        const Filter down = makeFilter(sourceHeight, targetHeight, false);
        const size_t values = static_cast<size_t>(sourceWidth) * 3;
        std::vector<int16_t> middle(values + kMiddlePadding);
        std::vector<const uint8_t*> rows(static_cast<size_t>(down.taps));
        for (size_t y = 0; y < static_cast<size_t>(targetHeight); ++y) {
            const auto first = static_cast<size_t>(down.first[y]);
            for (size_t k = 0; k < rows.size(); ++k) {
                rows[k] = source + (first + k) * sourceStride;
            }
            makeTargetRow(across, down, y, rows.data(), values, middle.data(), target + y * targetStride, targetWidth,
                          targetStride);
        }
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

struct RowResampler::State {
    Filter across;
    Filter down;
    uint8_t* target = nullptr;
    int targetWidth = 0;
    int targetHeight = 0;
    size_t targetStride = 0;
    bool bottomUp = false;
    bool sidesPositive = false;
    size_t values = 0;
    // Source row y lives in slot y % ringRows of the ring, slots rowBytes apart.
    size_t rowBytes = 0;
    size_t ringRows = 1;
    std::vector<uint8_t> ring;
    std::vector<int16_t> middle;
    std::vector<const uint8_t*> rows;
    int rowsIn = 0;
    int targetRowsDone = 0;
};

RowResampler::RowResampler(int sourceWidth,
                           int sourceHeight,
                           uint8_t* target,
                           int targetWidth,
                           int targetHeight,
                           size_t targetStride,
                           bool bottomUp)
    : state_(std::make_unique<State>()) {
    State& s = *state_;
    s.sidesPositive = sourceWidth > 0 && sourceHeight > 0 && targetWidth > 0 && targetHeight > 0;
    s.values = static_cast<size_t>(std::max(sourceWidth, 0)) * 3;
    // Whole cache lines per slot, so a row's writer and the filter's reads of its neighbours never share one.
    s.rowBytes = (s.values + kRowSlack + 63) & ~size_t{63};
    if (s.sidesPositive) {
        s.across = makeFilter(sourceWidth, targetWidth, true);
        s.down = makeFilter(sourceHeight, targetHeight, false);
        // The rows the next target row takes, and one more for the writer to fill ahead: the oldest of them is
        // never needed again once the next is asked for.
        s.ringRows = static_cast<size_t>(s.down.taps) + 1;
        s.middle.resize(s.values + kMiddlePadding);
        s.rows.resize(static_cast<size_t>(s.down.taps));
        s.target = target;
        s.targetWidth = targetWidth;
        s.targetHeight = targetHeight;
        s.targetStride = targetStride;
        s.bottomUp = bottomUp;
    }
    s.ring.resize(s.ringRows * s.rowBytes);
}

RowResampler::~RowResampler() = default;

uint8_t* RowResampler::row(int y) {
    State& s = *state_;
    return s.ring.data() + static_cast<size_t>(std::max(y, 0)) % s.ringRows * s.rowBytes;
}

void RowResampler::rowDone(int y) {
    State& s = *state_;
    if (y != s.rowsIn || !s.sidesPositive) {
        return;
    }
    ++s.rowsIn;
    const int taps = s.down.taps;
    while (s.targetRowsDone < s.targetHeight &&
           s.down.first[static_cast<size_t>(s.targetRowsDone)] + taps <= s.rowsIn) {
        const auto t = static_cast<size_t>(s.targetRowsDone);
        const int first = s.down.first[t];
        for (int k = 0; k < taps; ++k) {
            s.rows[static_cast<size_t>(k)] = row(first + k);
        }
        const size_t at = s.bottomUp ? static_cast<size_t>(s.targetHeight) - 1 - t : t;
        makeTargetRow(s.across, s.down, t, s.rows.data(), s.values, s.middle.data(), s.target + at * s.targetStride,
                      s.targetWidth, s.targetStride);
        ++s.targetRowsDone;
    }
}

int RowResampler::targetRowsDone() const {
    return state_->targetRowsDone;
}

}  // namespace tl
