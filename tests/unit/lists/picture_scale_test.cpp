#include "lists/picture_scale.h"

#include <gtest/gtest.h>

#include "lists/picture_scale_kernels.h"

#include <array>
#include <cstring>
#include <random>
#include <string>
#include <vector>

namespace tl {
namespace {

size_t strideOf(int width) {
    return (static_cast<size_t>(width) * 3 + 3) & ~size_t{3};
}

// A picture whose pixel (x, y) is given by a function; the row padding is filled with a marker that
// must never show up in a result.
struct Pixels {
    int width, height;
    std::vector<uint8_t> bytes;
    template <typename F>
    Pixels(int w, int h, F colour) : width(w), height(h), bytes(strideOf(w) * static_cast<size_t>(h), 0xEE) {
        for (int y = 0; y < h; ++y) {
            for (int x = 0; x < w; ++x) {
                const uint32_t c = colour(x, y);
                uint8_t* p = at(x, y);
                p[0] = static_cast<uint8_t>(c & 0xFF);
                p[1] = static_cast<uint8_t>((c >> 8) & 0xFF);
                p[2] = static_cast<uint8_t>((c >> 16) & 0xFF);
            }
        }
    }
    uint8_t* at(int x, int y) { return &bytes[static_cast<size_t>(y) * strideOf(width) + static_cast<size_t>(x) * 3]; }
    uint32_t colour(int x, int y) {
        const uint8_t* p = at(x, y);
        return p[0] | (p[1] << 8) | (p[2] << 16);
    }
};

Pixels shrink(Pixels& from, int w, int h) {
    Pixels to(w, h, [](int, int) { return 0x000000u; });
    shrinkPixels(from.bytes.data(), from.width, from.height, strideOf(from.width), to.bytes.data(), w, h, strideOf(w));
    return to;
}

TEST(PictureScale, AveragesTheSourcePixelsEachTargetPixelCovers) {
    // 2 x 2 blocks of four different pixels shrink to their average, channel by channel.
    Pixels blocks(4, 2, [](int x, int y) {
        const uint32_t v[2][4] = {{0x000000, 0x0A0A0A, 0xFF0000, 0xFF0000}, {0x141414, 0x1E1E1E, 0xFF00FF, 0xFF00FF}};
        return v[y][x];
    });
    Pixels half = shrink(blocks, 2, 1);
    EXPECT_EQ(half.colour(0, 0), 0x0F0F0Fu);  // (0 + 10 + 20 + 30) / 4 = 15
    EXPECT_EQ(half.colour(1, 0), 0xFF0080u);  // 127.5 rounds up

    Pixels one = shrink(blocks, 1, 1);
    EXPECT_EQ(one.colour(0, 0) & 0xFF, (0 + 10 + 0 + 0 + 20 + 30 + 255 + 255 + 4u) / 8);
}

// The resampler too, either way, with sides of one and filters cut off at both edges; it pads its rows with
// zeros.
TEST(PictureScale, KeepsFlatColoursAndPaddingOutOfTheResultAndShrinkingRefusesToEnlarge) {
    for (const auto& [sw, sh, tw, th] : std::vector<std::array<int, 4>>{
             {6000, 3, 303, 1}, {7, 13, 5, 11}, {3, 3, 2, 2}, {33, 1, 1, 1}, {1, 65, 1, 64}, {9, 9, 9, 9}}) {
        Pixels flat(sw, sh, [](int, int) { return 0x3366CCu; });
        Pixels small = shrink(flat, tw, th);
        Pixels resampled(tw, th, [](int, int) { return 0u; });
        ASSERT_TRUE(
            resamplePixels(flat.bytes.data(), sw, sh, strideOf(sw), resampled.bytes.data(), tw, th, strideOf(tw)));
        Pixels enlarged(sh, sw, [](int, int) { return 0u; });
        ASSERT_TRUE(
            resamplePixels(resampled.bytes.data(), tw, th, strideOf(tw), enlarged.bytes.data(), sh, sw, strideOf(sh)));
        for (Pixels* p : {&small, &resampled, &enlarged}) {
            for (int y = 0; y < p->height; ++y) {
                for (int x = 0; x < p->width; ++x) {
                    ASSERT_EQ(p->colour(x, y), 0x3366CCu)
                        << sw << "x" << sh << " to " << p->width << "x" << p->height << " at " << x << "," << y;
                }
            }
        }
        for (int y = 0; y < th; ++y) {
            for (size_t i = static_cast<size_t>(tw) * 3; i < strideOf(tw); ++i) {
                ASSERT_EQ(resampled.bytes[static_cast<size_t>(y) * strideOf(tw) + i], 0);
            }
        }
    }
    Pixels src(2, 2, [](int, int) { return 0x112233u; });
    Pixels big(3, 2, [](int, int) { return 0x445566u; });
    shrinkPixels(src.bytes.data(), 2, 2, strideOf(2), big.bytes.data(), 3, 2, strideOf(3));
    EXPECT_EQ(big.colour(0, 0), 0x445566u) << "left untouched";
}

// Every kernel (plain, SSE2, AVX2 where the processor has them) gives the same bytes, the whole picture at
// once or fed a row at a time, either way up, whatever the sizes, also when the writer fills a row (and
// scribbles past it) before handing in the one before; the padding cleared. Sides not positive write
// nothing.
TEST(PictureScale, EveryKernelAndRowByRowFeedingMakeTheSameBytes) {
    using scale::Kernels;
    struct Restore {
        Kernels kernels = scale::kernelsInUse();
        ~Restore() { scale::kernelsInUse() = kernels; }
    } restore;
    std::mt19937 random(7);
    int shape = 0;
    for (const auto& [sw, sh, tw, th] : std::vector<std::array<int, 4>>{{110, 100, 100, 91},
                                                                        {300, 200, 100, 67},
                                                                        {97, 61, 45, 29},
                                                                        {225, 150, 162, 108},
                                                                        {40, 30, 97, 71},
                                                                        {1, 50, 3, 20},
                                                                        {60, 1, 20, 5},
                                                                        {33, 5, 17, 4},
                                                                        {50, 3, 20, 1},
                                                                        {7, 7, 1, 1},
                                                                        {1, 1, 5, 3}}) {
        ++shape;
        // Noise, a third of it black or white, so the negative lobes overshoot and the results clamp.
        Pixels source(sw, sh, [&](int, int) {
            const uint32_t r = static_cast<uint32_t>(random());
            return r % 3 == 0 ? (r & 8 ? 0xFFFFFFu : 0u) : r;
        });
        const size_t stride = static_cast<size_t>(tw) * 3 + 5;
        std::vector<uint8_t> expected(stride * static_cast<size_t>(th), 0xEE);
        scale::kernelsInUse() = Kernels::Plain;
        ASSERT_TRUE(resamplePixels(source.bytes.data(), sw, sh, strideOf(sw), expected.data(), tw, th, stride));
        for (const Kernels kernels : {Kernels::Plain, Kernels::Sse2, Kernels::Avx2}) {
            scale::kernelsInUse() = kernels;
            const std::string what = std::to_string(sw) + "x" + std::to_string(sh) + " to " + std::to_string(tw) + "x" +
                                     std::to_string(th) + ", kernels " + std::to_string(static_cast<int>(kernels));
            std::vector<uint8_t> whole(expected.size(), 0xEE);
            ASSERT_TRUE(resamplePixels(source.bytes.data(), sw, sh, strideOf(sw), whole.data(), tw, th, stride));
            ASSERT_EQ(whole, expected) << what;
            for (const bool bottomUp : {false, true}) {
                std::vector<uint8_t> rows(expected.size(), 0xEE);
                RowResampler resampler(sw, sh, rows.data(), tw, th, stride, bottomUp);
                const auto fill = [&](int y) {
                    uint8_t* row = resampler.row(y);
                    std::memcpy(row, source.at(0, y), static_cast<size_t>(sw) * 3);
                    std::memset(row + static_cast<size_t>(sw) * 3, 0x5A, RowResampler::kRowSlack);
                };
                const bool ahead = shape % 2 == 0;
                if (ahead) {
                    fill(0);
                }
                for (int y = 0; y < sh; ++y) {
                    if (!ahead) {
                        fill(y);
                    } else if (y + 1 < sh) {
                        fill(y + 1);
                    }
                    resampler.rowDone(y);
                }
                ASSERT_EQ(resampler.targetRowsDone(), th) << what;
                for (int y = 0; y < th; ++y) {
                    const size_t at = static_cast<size_t>(bottomUp ? th - 1 - y : y) * stride;
                    ASSERT_TRUE(std::equal(expected.begin() + static_cast<ptrdiff_t>(y * stride),
                                           expected.begin() + static_cast<ptrdiff_t>((y + 1) * stride),
                                           rows.begin() + static_cast<ptrdiff_t>(at)))
                        << what << (bottomUp ? " bottom up" : "") << ", row " << y;
                }
            }
        }
    }
    for (const auto& [sw, sh, tw, th] : std::vector<std::array<int, 4>>{{0, 5, 5, 5}, {5, 5, 5, -1}, {-3, 2, 1, 1}}) {
        std::vector<uint8_t> target(64, 0xEE);
        RowResampler resampler(sw, sh, target.data(), tw, th, 16, false);
        for (int y = 0; y < 3; ++y) {
            std::memset(resampler.row(y), 1, static_cast<size_t>(std::max(sw, 0)) * 3 + RowResampler::kRowSlack);
            resampler.rowDone(y);
        }
        EXPECT_EQ(resampler.targetRowsDone(), 0);
        EXPECT_TRUE(std::all_of(target.begin(), target.end(), [](uint8_t b) { return b == 0xEE; }));
    }
}

}  // namespace
}  // namespace tl
