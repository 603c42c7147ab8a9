#include "lists/picture_scale.h"

#include <gtest/gtest.h>

#include <array>
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

}  // namespace
}  // namespace tl
