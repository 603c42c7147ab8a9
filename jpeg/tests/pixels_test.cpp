#include "jpeg/pixels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <vector>

namespace tl::jpeg {
namespace {

using Block = std::array<int16_t, 64>;
using Samples = std::array<uint8_t, 64>;

// The coefficients an encoder with all quantizers 1 would write for these samples.
Block forwardDct(const Samples& samples) {
    const double pi = std::acos(-1.0);
    Block out{};
    for (int v = 0; v < 8; ++v) {
        for (int u = 0; u < 8; ++u) {
            double sum = 0;
            for (int y = 0; y < 8; ++y) {
                for (int x = 0; x < 8; ++x) {
                    sum += (samples[static_cast<size_t>(y * 8 + x)] - 128) * std::cos((2 * x + 1) * u * pi / 16) *
                           std::cos((2 * y + 1) * v * pi / 16);
                }
            }
            const double cu = u == 0 ? std::sqrt(0.5) : 1.0;
            const double cv = v == 0 ? std::sqrt(0.5) : 1.0;
            out[static_cast<size_t>(v * 8 + u)] = static_cast<int16_t>(std::lround(sum * cu * cv / 4));
        }
    }
    return out;
}

Samples inverse(const Block& block, bool plain, int last = 63) {
    Samples out{};
    if (plain) {
        idctBlockPlain(block.data(), out.data(), 8);
    } else {
        idctBlock(block.data(), last, out.data(), 8);
    }
    return out;
}

// Random pictures and the hardest real ones (full-swing checkerboards and stripes) make the largest
// coefficients and intermediate sums.
const std::vector<Samples>& testBlocks() {
    static std::vector<Samples> blocks;
    if (!blocks.empty()) {
        return blocks;
    }
    std::mt19937 random(5);
    for (int i = 0; i < 800; ++i) {
        Samples s{};
        const int spread = 1 + static_cast<int>(random() % 256);
        const int base = static_cast<int>(random() % 256);
        for (auto& v : s) {
            v = static_cast<uint8_t>(
                std::clamp(base + static_cast<int>(random() % static_cast<unsigned>(spread)) - spread / 2, 0, 255));
        }
        blocks.push_back(s);
    }
    for (int pattern = 0; pattern < 4; ++pattern) {
        for (const bool inverted : {false, true}) {
            Samples s{};
            for (int y = 0; y < 8; ++y) {
                for (int x = 0; x < 8; ++x) {
                    const int bits[] = {x + y, x, y, (x / 2 + y / 2)};
                    s[static_cast<size_t>(y * 8 + x)] = ((bits[pattern] & 1) != 0) != inverted ? 255 : 0;
                }
            }
            blocks.push_back(s);
        }
    }
    return blocks;
}

TEST(JpegPixels, InverseDctGivesBackTheSamplesAndTheFastOnesMatchThePlainOneByteForByte) {
    const std::vector<Samples>& blocks = testBlocks();
    for (size_t i = 0; i + 1 < blocks.size(); i += 2) {
        const Block left = forwardDct(blocks[i]);
        const Block right = forwardDct(blocks[i + 1]);
        const Samples plain = inverse(left, true);
        const Samples plainRight = inverse(right, true);
        for (size_t k = 0; k < 64; ++k) {
            ASSERT_NEAR(plain[k], blocks[i][k], 1) << "block " << i << ", sample " << k;
            ASSERT_NEAR(plainRight[k], blocks[i + 1][k], 1) << "block " << i + 1 << ", sample " << k;
        }
        ASSERT_EQ(inverse(left, false), plain);
        // Side by side, as two at a time.
        std::array<uint8_t, 128> pair{};
        idctBlockPair(left.data(), 63, right.data(), 63, pair.data(), 16);
        Samples leftOut{};
        Samples rightOut{};
        for (size_t y = 0; y < 8; ++y) {
            std::copy_n(&pair[y * 16], 8, &leftOut[y * 8]);
            std::copy_n(&pair[y * 16 + 8], 8, &rightOut[y * 8]);
        }
        ASSERT_EQ(leftOut, plain);
        ASSERT_EQ(rightOut, plainRight);
    }
    for (const int dc : {-1024, -1023, -5, -4, -3, 0, 3, 4, 5, 1016, 1023}) {
        Block flat{};
        flat[0] = static_cast<int16_t>(dc);
        EXPECT_EQ(inverse(flat, false, 0), inverse(flat, true)) << "DC " << dc;
    }
}

// At a reduced size the vector transform matches the plain one too, also on damaged blocks whose sums
// saturate; its quality is held up against the reference in the decoder's tests.
TEST(JpegPixels, ReducedInverseDctMatchesThePlainOne) {
    std::vector<Block> blocks;
    for (const Samples& samples : testBlocks()) {
        blocks.push_back(forwardDct(samples));
    }
    std::mt19937 random(11);
    for (int i = 0; i < 200; ++i) {
        Block wild{};
        for (auto& c : wild) {
            c = static_cast<int16_t>(i % 2 == 0 ? (random() % 2 != 0 ? 32767 : -32768) : static_cast<int>(random()));
        }
        blocks.push_back(wild);
    }
    for (const int size : {4, 3, 2, 1}) {
        for (size_t i = 0; i < blocks.size(); ++i) {
            std::array<uint8_t, 32> fast{};
            std::array<uint8_t, 32> plain{};
            idctBlockReduced(blocks[i].data(), 63, size, fast.data(), 8);
            idctReducedPlain(blocks[i].data(), size, plain.data(), 8);
            ASSERT_EQ(fast, plain) << "size " << size << ", block " << i;
        }
    }
}

std::vector<uint8_t> randomRow(std::mt19937& random, int width) {
    std::vector<uint8_t> row(static_cast<size_t>(width) + 16);
    for (auto& v : row) {
        v = static_cast<uint8_t>(random());
    }
    return row;
}

TEST(JpegPixels, FastUpsamplingMatchesThePlainOne) {
    std::mt19937 random(9);
    for (int width = 1; width <= 70; ++width) {
        for (int round = 0; round < 5; ++round) {
            const auto nearer = randomRow(random, width);
            const auto farther = randomRow(random, width);
            std::vector<uint8_t> fast(2 * nearer.size(), 0);
            std::vector<uint8_t> plain(2 * nearer.size(), 0);
            upsampleH2V1(nearer.data(), width, fast.data());
            upsampleH2V1Plain(nearer.data(), width, plain.data());
            ASSERT_EQ(fast, plain) << "across, width " << width;
            upsampleH2V2(nearer.data(), farther.data(), width, fast.data());
            upsampleH2V2Plain(nearer.data(), farther.data(), width, plain.data());
            ASSERT_EQ(fast, plain) << "both ways, width " << width;
        }
    }
}

TEST(JpegPixels, FastColourConversionMatchesThePlainOne) {
    std::vector<uint8_t> cr(256);
    for (int i = 0; i < 256; ++i) {
        cr[static_cast<size_t>(i)] = static_cast<uint8_t>(i);
    }
    for (const int luma : {0, 1, 77, 128, 254, 255}) {
        const std::vector<uint8_t> y(256, static_cast<uint8_t>(luma));
        for (int blue = 0; blue < 256; ++blue) {
            const std::vector<uint8_t> cb(256, static_cast<uint8_t>(blue));
            std::vector<uint8_t> fast(768);
            std::vector<uint8_t> plain(768);
            yccToBgr(y.data(), cb.data(), cr.data(), 256, fast.data());
            yccToBgrPlain(y.data(), cb.data(), cr.data(), 256, plain.data());
            ASSERT_EQ(fast, plain) << "Y " << luma << ", Cb " << blue;
        }
    }
    std::mt19937 random(3);
    for (int width = 1; width <= 50; ++width) {
        const auto y = randomRow(random, width);
        const auto cb = randomRow(random, width);
        const auto r = randomRow(random, width);
        std::vector<uint8_t> fast(3 * y.size(), 0xEE);
        std::vector<uint8_t> plain(3 * y.size(), 0xEE);
        yccToBgr(y.data(), cb.data(), r.data(), width, fast.data());
        yccToBgrPlain(y.data(), cb.data(), r.data(), width, plain.data());
        ASSERT_EQ(fast, plain) << "width " << width << " (nothing written past the row either)";
    }
}

}  // namespace
}  // namespace tl::jpeg
