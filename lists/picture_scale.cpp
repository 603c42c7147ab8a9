#include "lists/picture_scale.h"

#include "lists/picture_scale_kernels.h"

#include <algorithm>
#include <cmath>
#include <memory_resource>
#include <new>
#include <numbers>
#include <vector>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

// The resampler's buffers and tables (a few hundred KB for a screen) come from the default memory resource,
// which the program points at the page allocator: a program idling in the tray after a change then doesn't
// keep them in its heap.
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
    std::pmr::vector<size_t> columnStart(tw + 1);
    for (size_t t = 0; t <= tw; ++t) {
        columnStart[t] = (t * sw + tw - 1) / tw;
    }
    std::pmr::vector<uint64_t> sums(tw * 3);
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

// For each target pixel along one side: the first source pixel it takes, and `taps` weights from there
// (zero past the ones it uses), summing to exactly 1 << kWeightBits.
struct Filter {
    int taps = 0;
    std::pmr::vector<int> first;
    std::pmr::vector<int16_t> weights;
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
    // The Lanczos kernel sin(pi x) sin(pi x / 3) / (pi x)^2 * 3: the sines at a pixel's first tap come from
    // the library, those at the next taps from turning them by the step between taps, as the library's sine
    // is slow in some runtimes (Windows' takes several milliseconds over the filters of a screen-sized
    // picture).
    constexpr double pi = std::numbers::pi;
    const double turnCos = std::cos(pi / widen);
    const double turnSin = std::sin(pi / widen);
    const double turnCos3 = std::cos(pi / widen / kLobes);
    const double turnSin3 = std::sin(pi / widen / kLobes);
    for (int t = 0; t < targetSide; ++t) {
        // Pixel centres line up: the target pixel's centre in source pixels.
        const double centre = (t + 0.5) * ratio - 0.5;
        const int lo = std::clamp(static_cast<int>(std::ceil(centre - support)), 0, sourceSide - f.taps);
        const int hi = std::min(static_cast<int>(std::floor(centre + support)), lo + f.taps - 1);
        double sum = 0;
        std::fill(w.begin(), w.end(), 0.0);
        const double start = pi * (lo - centre) / widen;
        double sine = std::sin(start);
        double cosine = std::cos(start);
        double sine3 = std::sin(start / kLobes);
        double cosine3 = std::cos(start / kLobes);
        for (int j = lo; j <= hi; ++j) {
            const double x = std::abs(j - centre) / widen;
            const double v = x < 1e-9 ? 1 : x >= kLobes ? 0 : kLobes * sine * sine3 / (pi * x * pi * x);
            w[static_cast<size_t>(j - lo)] = v;
            sum += v;
            const double turned = sine * turnCos + cosine * turnSin;
            cosine = cosine * turnCos - sine * turnSin;
            sine = turned;
            const double turned3 = sine3 * turnCos3 + cosine3 * turnSin3;
            cosine3 = cosine3 * turnCos3 - sine3 * turnSin3;
            sine3 = turned3;
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

// The second pass's filter for the AVX2 kernel: eight target pixels at a time, each group reading the source
// values its pixels' taps span, in pairs, with every pixel's two weights for each pair side by side.
struct GroupFilter {
    std::pmr::vector<int> start;
    std::pmr::vector<int> offset;
    std::pmr::vector<int32_t> weights;
};

GroupFilter makeGroupFilter(const Filter& f, int targetWidth) {
    const auto groups = static_cast<size_t>(targetWidth + 7) / 8;
    const auto width = static_cast<size_t>(targetWidth);
    const auto taps = static_cast<size_t>(f.taps);
    GroupFilter g;
    g.start.resize(groups);
    g.offset.resize(groups + 1);
    for (size_t i = 0; i < groups; ++i) {
        const size_t last = std::min(i * 8 + 8, width) - 1;
        g.start[i] = f.first[i * 8];
        // The taps start further right from pixel to pixel, so the last one's end is the group's.
        const int span = f.first[last] + f.taps - g.start[i];
        g.offset[i + 1] = g.offset[i] + (span + 1) / 2;
    }
    g.weights.assign(static_cast<size_t>(g.offset[groups]) * 8, 0);
    for (size_t i = 0; i < groups; ++i) {
        for (size_t x = i * 8; x < std::min(i * 8 + 8, width); ++x) {
            const auto from = static_cast<size_t>(f.first[x] - g.start[i]);
            for (size_t k = 0; k < taps; ++k) {
                const size_t at = from + k;
                const auto weight = static_cast<uint16_t>(f.weights[x * taps + k]);
                int32_t& pair = g.weights[(static_cast<size_t>(g.offset[i]) + at / 2) * 8 + x % 8];
                pair = static_cast<int32_t>(static_cast<uint32_t>(pair) | uint32_t{weight} << (at % 2 * 16));
            }
        }
    }
    return g;
}

bool avx2Usable() {
#if defined(__GNUC__) && (defined(__x86_64__) || defined(__i386__))
    static const bool yes = [] {
        __builtin_cpu_init();
        return scale::scaleAvx2Compiled() && __builtin_cpu_supports("avx2");
    }();
    return yes;
#else
    return false;
#endif
}

#if defined(__SSE2__)
constexpr bool kSse2 = true;
#else
constexpr bool kSse2 = false;
#endif

// The kernels asked for where the build and the processor have them, else the best below.
scale::Kernels usable(scale::Kernels kernels) {
    if (kernels == scale::Kernels::Avx2 && !avx2Usable()) {
        kernels = scale::Kernels::Sse2;
    }
    if (kernels == scale::Kernels::Sse2 && !kSse2) {
        kernels = scale::Kernels::Plain;
    }
    return kernels;
}

// One row of the first pass: the weighted sum of `taps` source rows, `count` values each.
void verticalPass(scale::Kernels kernels,
                  const uint8_t* const* rows,
                  const int16_t* weights,
                  int taps,
                  size_t count,
                  int16_t* out) {
    constexpr int shift = kWeightBits - kMiddleBits;
    size_t i = 0;
#if defined(__SSE2__)
    const __m128i zero = _mm_setzero_si128();
    const __m128i rounding = _mm_set1_epi32(1 << (shift - 1));
    for (; kernels != scale::Kernels::Plain && i + 16 <= count; i += 16) {
        __m128i sums[4] = {rounding, rounding, rounding, rounding};
        int k = 0;
        // Two rows at a time: their samples interleaved, then widened to 16 bits, so one multiply-add gives
        // both products' sum.
        for (; k + 1 < taps; k += 2) {
            const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(rows[k] + i));
            const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(rows[k + 1] + i));
            const __m128i w = _mm_set1_epi32(
                static_cast<int32_t>(static_cast<uint32_t>(weights[k + 1]) << 16 | static_cast<uint16_t>(weights[k])));
            const __m128i lo = _mm_unpacklo_epi8(a, b);
            const __m128i hi = _mm_unpackhi_epi8(a, b);
            sums[0] = _mm_add_epi32(sums[0], _mm_madd_epi16(_mm_unpacklo_epi8(lo, zero), w));
            sums[1] = _mm_add_epi32(sums[1], _mm_madd_epi16(_mm_unpackhi_epi8(lo, zero), w));
            sums[2] = _mm_add_epi32(sums[2], _mm_madd_epi16(_mm_unpacklo_epi8(hi, zero), w));
            sums[3] = _mm_add_epi32(sums[3], _mm_madd_epi16(_mm_unpackhi_epi8(hi, zero), w));
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
#else
    static_cast<void>(kernels);
#endif
    for (; i < count; ++i) {
        int32_t sum = 1 << (shift - 1);
        for (int k = 0; k < taps; ++k) {
            sum += rows[k][i] * weights[k];
        }
        out[i] = static_cast<int16_t>(std::clamp(sum >> shift, -32768, 32767));
    }
}

// The second pass's weights (padded to an even count) in pairs, each pair's two 16-bit weights side by side
// and four times over, for the SSE2 kernel to multiply by as they are.
std::pmr::vector<int32_t> makeSse2Pairs(const Filter& f) {
    std::pmr::vector<int32_t> pairs(f.weights.size() * 2);
    for (size_t i = 0; i + 1 < f.weights.size(); i += 2) {
        const uint32_t pair =
            uint32_t{static_cast<uint16_t>(f.weights[i + 1])} << 16 | static_cast<uint16_t>(f.weights[i]);
        std::fill_n(&pairs[i * 2], 4, static_cast<int32_t>(pair));
    }
    return pairs;
}

// The second pass along one row of the first's results (blue, green, red interleaved), into target pixels;
// `pairs` is makeSse2Pairs' for the SSE2 kernel.
void horizontalPass(scale::Kernels kernels,
                    const int16_t* middle,
                    const Filter& f,
                    const int32_t* pairs,
                    int targetWidth,
                    uint8_t* out) {
    constexpr int shift = kWeightBits + kMiddleBits;
    const auto taps = static_cast<size_t>(f.taps);
    for (size_t x = 0; x < static_cast<size_t>(targetWidth); ++x) {
        const int16_t* s = middle + static_cast<size_t>(f.first[x]) * 3;
        const int16_t* w = &f.weights[x * taps];
#if defined(__SSE2__)
        if (kernels != scale::Kernels::Plain) {
            // Two taps at a time: the pixels' blue, green and red interleaved pairwise, so one multiply-add
            // gives the three channels' sums of both (and a fourth lane that is dropped). The weights are padded
            // to an even count with zeros.
            __m128i sum = _mm_set1_epi32(1 << (shift - 1));
            const int32_t* pair = pairs + x * taps * 2;
            for (size_t k = 0; k < taps; k += 2, s += 6, pair += 4) {
                const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s));
                const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + 3));
                sum = _mm_add_epi32(sum, _mm_madd_epi16(_mm_unpacklo_epi16(a, b),
                                                        _mm_loadu_si128(reinterpret_cast<const __m128i*>(pair))));
            }
            const __m128i words = _mm_packs_epi32(_mm_srai_epi32(sum, shift), sum);
            const auto bytes = static_cast<uint32_t>(_mm_cvtsi128_si32(_mm_packus_epi16(words, words)));
            out[x * 3] = static_cast<uint8_t>(bytes);
            out[x * 3 + 1] = static_cast<uint8_t>(bytes >> 8);
            out[x * 3 + 2] = static_cast<uint8_t>(bytes >> 16);
            continue;
        }
#else
        static_cast<void>(kernels);
        static_cast<void>(pairs);
#endif
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
    }
}

// The first pass's row is read a little past its values: the SSE2 second pass reads a few values beyond the
// last pixel it uses, the AVX2 one a value or two past the last plane, and the AVX2 first pass makes whole
// runs of 16.
constexpr size_t kMiddlePadding = 32;
static_assert(RowResampler::kRowSlack >= 16, "the AVX2 first pass reads source rows in runs of 16");

// Makes target rows from the source rows they take: both filters, the kernels and a row of the first pass's
// results. With the AVX2 kernels the source rows are to be given as planes (splitRow).
class RowMaker {
  public:
    RowMaker(scale::Kernels kernels, int sourceWidth, int sourceHeight, int targetWidth, int targetHeight)
        : kernels_(usable(kernels)),
          across_(makeFilter(sourceWidth, targetWidth, true)),
          down_(makeFilter(sourceHeight, targetHeight, false)),
          sourceWidth_(static_cast<size_t>(sourceWidth)),
          values_(sourceWidth_ * 3),
          targetWidth_(targetWidth),
          middle_(values_ + kMiddlePadding) {
        if (planar()) {
            groups_ = makeGroupFilter(across_, targetWidth);
        } else if (kernels_ == scale::Kernels::Sse2) {
            sse2Pairs_ = makeSse2Pairs(across_);
        }
    }

    bool planar() const { return kernels_ == scale::Kernels::Avx2; }
    int taps() const { return down_.taps; }
    int first(int targetRow) const { return down_.first[static_cast<size_t>(targetRow)]; }
    // Puts a row of 24-bit pixels into `planes` as the AVX2 kernels read it.
    void splitRow(const uint8_t* bgr, uint8_t* planes) const { scale::splitPlanesAvx2(bgr, sourceWidth_, planes); }

    // Makes target row t from the source rows it takes (rows[0] being source row first(t)), its padding up to
    // targetStride zeroed.
    void make(int t, const uint8_t* const* rows, uint8_t* out, size_t targetStride) {
        const int16_t* weights = &down_.weights[static_cast<size_t>(t) * static_cast<size_t>(down_.taps)];
        if (planar()) {
            scale::verticalPassAvx2(rows, weights, down_.taps, values_, middle_.data());
            const scale::GroupFilter groups{groups_.start.data(), groups_.offset.data(), groups_.weights.data()};
            scale::horizontalPassAvx2(middle_.data(), sourceWidth_, groups, targetWidth_, out);
        } else {
            verticalPass(kernels_, rows, weights, down_.taps, values_, middle_.data());
            horizontalPass(kernels_, middle_.data(), across_, sse2Pairs_.data(), targetWidth_, out);
        }
        std::fill(out + static_cast<size_t>(targetWidth_) * 3, out + targetStride, uint8_t{0});
    }

  private:
    scale::Kernels kernels_;
    Filter across_;
    Filter down_;
    GroupFilter groups_;
    std::pmr::vector<int32_t> sse2Pairs_;
    size_t sourceWidth_;
    size_t values_;
    int targetWidth_;
    std::pmr::vector<int16_t> middle_;
};

}  // namespace

namespace scale {

Kernels& kernelsInUse() {
    static Kernels kernels = usable(Kernels::Avx2);
    return kernels;
}

}  // namespace scale

int sideToResampleFrom(int targetSide) {
    return targetSide + targetSide / 4;
}

namespace {

// Source rows go into a ring of the rows the next target row takes and one more, which the writer of the next
// row may fill ahead: the oldest of them is never needed again once the next is asked for. With the AVX2
// kernels the ring holds planes, split from a row's pixels when it is done; otherwise the rows themselves, or
// only pointers to them where the caller keeps them (resamplePixels).
class RowFeed {
  public:
    RowFeed(int sourceWidth,
            int sourceHeight,
            uint8_t* target,
            int targetWidth,
            int targetHeight,
            size_t targetStride,
            bool bottomUp,
            bool ownRows)
        : maker_(scale::kernelsInUse(), sourceWidth, sourceHeight, targetWidth, targetHeight),
          target_(target),
          sourceHeight_(sourceHeight),
          targetHeight_(targetHeight),
          targetStride_(targetStride),
          bottomUp_(bottomUp),
          slotBytes_((static_cast<size_t>(sourceWidth) * 3 + RowResampler::kRowSlack + 63) & ~size_t{63}),
          ringRows_(static_cast<size_t>(maker_.taps()) + 1),
          rowAt_(ringRows_),
          rows_(static_cast<size_t>(maker_.taps())) {
        if (ownRows || maker_.planar()) {
            slots_.resize(ringRows_ * slotBytes_);
        }
        // The writer fills one of two while the other's planes are split, or fills the next ahead.
        if (ownRows && maker_.planar()) {
            staging_.resize(2 * slotBytes_);
        }
    }

    // Where the writer puts source row y.
    uint8_t* row(int y) {
        const auto at = static_cast<size_t>(std::max(y, 0));
        return staging_.empty() ? slot(at) : &staging_[at % 2 * slotBytes_];
    }

    // Source row y is in `bgr`: makes every target row whose source rows are all in. Rows out of turn are
    // left out.
    void add(int y, const uint8_t* bgr) {
        if (y != rowsIn_ || y >= sourceHeight_) {
            return;
        }
        const size_t at = static_cast<size_t>(y) % ringRows_;
        if (maker_.planar()) {
            maker_.splitRow(bgr, slot(at));
            rowAt_[at] = slot(at);
        } else {
            rowAt_[at] = bgr;
        }
        ++rowsIn_;
        const int taps = maker_.taps();
        while (targetRowsDone_ < targetHeight_ && maker_.first(targetRowsDone_) + taps <= rowsIn_) {
            const int first = maker_.first(targetRowsDone_);
            for (int k = 0; k < taps; ++k) {
                rows_[static_cast<size_t>(k)] = rowAt_[static_cast<size_t>(first + k) % ringRows_];
            }
            const auto t = static_cast<size_t>(bottomUp_ ? targetHeight_ - 1 - targetRowsDone_ : targetRowsDone_);
            maker_.make(targetRowsDone_, rows_.data(), target_ + t * targetStride_, targetStride_);
            ++targetRowsDone_;
        }
    }

    int targetRowsDone() const { return targetRowsDone_; }

  private:
    uint8_t* slot(size_t y) { return slots_.data() + y % ringRows_ * slotBytes_; }

    RowMaker maker_;
    uint8_t* target_;
    int sourceHeight_;
    int targetHeight_;
    size_t targetStride_;
    bool bottomUp_;
    size_t slotBytes_;
    size_t ringRows_;
    std::pmr::vector<uint8_t> slots_;
    std::pmr::vector<uint8_t> staging_;
    std::vector<const uint8_t*> rowAt_;
    std::vector<const uint8_t*> rows_;
    int rowsIn_ = 0;
    int targetRowsDone_ = 0;
};

}  // namespace

struct RowResampler::State : RowFeed {
    using RowFeed::RowFeed;
};

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
        RowFeed feed(sourceWidth, sourceHeight, target, targetWidth, targetHeight, targetStride, false, false);
        for (int y = 0; y < sourceHeight; ++y) {
            feed.add(y, source + static_cast<size_t>(y) * sourceStride);
        }
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

RowResampler::RowResampler(int sourceWidth,
                           int sourceHeight,
                           uint8_t* target,
                           int targetWidth,
                           int targetHeight,
                           size_t targetStride,
                           bool bottomUp) {
    if (sourceWidth > 0 && sourceHeight > 0 && targetWidth > 0 && targetHeight > 0) {
        state_ = std::make_unique<State>(sourceWidth, sourceHeight, target, targetWidth, targetHeight, targetStride,
                                         bottomUp, true);
    } else {
        // Somewhere for the rows of a picture that makes nothing.
        unused_ = std::make_unique<uint8_t[]>(static_cast<size_t>(std::max(sourceWidth, 0)) * 3 + kRowSlack);
    }
}

RowResampler::~RowResampler() = default;

uint8_t* RowResampler::row(int y) {
    return state_ ? state_->row(y) : unused_.get();
}

void RowResampler::rowDone(int y) {
    if (state_) {
        state_->add(y, state_->row(y));
    }
}

int RowResampler::targetRowsDone() const {
    return state_ ? state_->targetRowsDone() : 0;
}

}  // namespace tl
