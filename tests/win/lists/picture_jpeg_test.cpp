#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <span>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "jpeg/decoder.h"
#include "lists/picture_win.h"
#include "support/program.h"

namespace tl::wintest {
namespace {

// writePicture draws 16-pixel squares, alternately of the given colour and of grey 0xF0. Away from their
// edges a JPEG keeps them within a level or two.
TEST(PictureJpeg, DecodesJpegFilesIntoBottomUpBgrRows) {
    ProgramDir dir(false);
    constexpr unsigned colour = 0x2080E0;
    // The last is big enough for the decoder's second thread.
    const SIZE sizes[] = {{640, 480}, {33, 17}, {1, 1}, {1203, 901}};
    for (const SIZE size : sizes) {
        SCOPED_TRACE(std::to_string(size.cx) + "x" + std::to_string(size.cy));
        writePicture(dir.file("a.jpg"), "jpg", size.cx, size.cy, colour);
        const std::optional<Picture> picture = loadPicture(dir.file("a.jpg"));
        ASSERT_TRUE(picture);
        ASSERT_EQ(picture->width(), size.cx);
        ASSERT_EQ(picture->height(), size.cy);
        int checked = 0;
        for (int y = 0; y < size.cy; ++y) {
            for (int x = 0; x < size.cx; ++x) {
                const bool inside = x % 16 >= 4 && x % 16 < 12 && y % 16 >= 4 && y % 16 < 12;
                if (!inside && size.cx > 1) {
                    continue;
                }
                const bool coloured = (x / 16 + y / 16) % 2 == 0;
                const BYTE* p = picture->bits() + picture->stride() * static_cast<size_t>(size.cy - 1 - y) + 3 * x;
                for (int c = 0; c < 3; ++c) {
                    const int expected = coloured ? static_cast<int>((colour >> (8 * c)) & 0xFF) : 0xF0;
                    ASSERT_NEAR(p[c], expected, 3) << "channel " << c << " of " << x << "," << y;
                }
                ++checked;
            }
        }
        EXPECT_GT(checked, 0);
        const size_t used = static_cast<size_t>(size.cx) * 3;
        for (size_t row = 0; row < static_cast<size_t>(size.cy); ++row) {
            for (size_t at = used; at < picture->stride(); ++at) {
                ASSERT_EQ(picture->bits()[row * picture->stride() + at], 0) << "padding of row " << row;
            }
        }
    }
}

// A JPEG is decoded at the smallest of a half, three eighths, a quarter or an eighth that still covers what the caller
// needs, with its natural size beside it; other pictures whole.
TEST(PictureJpeg, DecodesNoLargerThanNeeded) {
    ProgramDir dir(false);
    writePicture(dir.file("a.jpg"), "jpg", 1203, 901, 0x2080E0);
    writePicture(dir.file("a.png"), "png", 203, 101, 0x2080E0);
    const struct {
        const char* name;
        int neededWidth, neededHeight;
        int width, height;
    } cases[] = {{"a.jpg", 300, 225, 301, 226}, {"a.jpg", 151, 100, 151, 113}, {"a.jpg", 302, 10, 452, 338},
                 {"a.jpg", 453, 10, 602, 451},  {"a.jpg", 1000, 1, 1203, 901}, {"a.png", 20, 10, 203, 101}};
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.name) + " for " + std::to_string(c.neededWidth) + "x" +
                     std::to_string(c.neededHeight));
        const auto loaded = loadPictureFor(dir.file(c.name), [&](int width, int height) {
            EXPECT_EQ(std::pair(width, height), std::pair(1203, 901)) << "asked with the natural size";
            return std::pair{c.neededWidth, c.neededHeight};
        });
        ASSERT_TRUE(loaded);
        EXPECT_EQ(std::tuple(loaded->picture.width(), loaded->picture.height(), loaded->naturalWidth > 0),
                  std::tuple(c.width, c.height, true));
        const std::optional<Picture> atLeast = loadPictureAtLeast(dir.file(c.name), c.neededWidth, c.neededHeight);
        ASSERT_TRUE(atLeast);
        EXPECT_EQ(std::pair(atLeast->width(), atLeast->height()), std::pair(c.width, c.height));
    }
}

// For Scale a picture comes at exactly the size asked for, a JPEG resampled row by row as it is decoded at
// a reduced size: the same picture, within rounding, as the whole one resampled.
TEST(PictureJpeg, ComesFittedToExactlyTheSizeAskedFor) {
    ProgramDir dir(false);
    writePicture(dir.file("a.jpg"), "jpg", 1203, 901, 0x2080E0);
    writePicture(dir.file("a.png"), "png", 203, 101, 0x2080E0);
    const struct {
        const char* name;
        int width, height;
    } cases[] = {{"a.jpg", 300, 225},   {"a.jpg", 640, 479}, {"a.jpg", 1203, 901},
                 {"a.jpg", 1500, 1123}, {"a.jpg", 1, 1},     {"a.png", 101, 50}};
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.name) + " to " + std::to_string(c.width) + "x" + std::to_string(c.height));
        const auto fitted = loadPictureFitted(dir.file(c.name), [&](int, int) { return std::pair{c.width, c.height}; });
        ASSERT_TRUE(fitted);
        ASSERT_EQ(std::pair(fitted->picture.width(), fitted->picture.height()), std::pair(c.width, c.height));
        EXPECT_GT(fitted->naturalWidth, 200);
        const std::optional<Picture> whole = loadPicture(dir.file(c.name));
        ASSERT_TRUE(whole);
        const Picture expected = resampledPicture(*whole, c.width, c.height);
        ASSERT_TRUE(expected);
        // Squares shrunk to a few pixels are all edges, which a decode at a reduced size softens a little more
        // than the whole picture's resampling (photos stay within 35 dB, as the native tests hold), so the
        // check is loose; as a picture upside down would pass it too, that is held apart.
        double difference = 0;
        double upsideDown = 0;
        for (int y = 0; y < c.height; ++y) {
            const BYTE* a = fitted->picture.bits() + fitted->picture.stride() * static_cast<size_t>(y);
            const BYTE* b = expected.bits() + expected.stride() * static_cast<size_t>(y);
            const BYTE* flipped = expected.bits() + expected.stride() * static_cast<size_t>(c.height - 1 - y);
            for (int x = 0; x < c.width * 3; ++x) {
                difference += std::abs(a[x] - b[x]);
                upsideDown += std::abs(a[x] - flipped[x]);
            }
            for (size_t at = static_cast<size_t>(c.width) * 3; at < fitted->picture.stride(); ++at) {
                ASSERT_EQ(a[at], 0) << "padding of row " << y;
            }
        }
        const double pixels = 3.0 * c.width * c.height;
        EXPECT_LT(difference / pixels, 16.0) << "mean difference per channel";
        if (c.height > 100) {
            EXPECT_LT(difference, upsideDown / 3) << "closer to the picture upside down";
        }
    }
}

// 16 x 16, progressive, in hexadecimal: red in the left half, blue in the bottom half, green 60 throughout.
const char kProgressiveJpeg[] =
    "FFD8FFE000104A46494600010100000100010000FFDB0043000D090A0B0A080D0B0A0B0E0E0D0F13201513121213271C1E17202E293130"
    "2E292D2C333A4A3E333646372C2D405741464C4E525352323E5A615A50604A51524FFFDB0043010E0E0E131113261515264F352D354F4F"
    "4F4F4F4F4F4F4F4F4F4F4F4F4F4F4F4F4F4F4F4F4F4F4F4F4F4F4F4F4F4F4F4F4F4F4F4F4F4F4F4F4F4F4F4F4F4F4F4FFFC20011080010"
    "001003011100021101031101FFC4001500010100000000000000000000000000000405FFC4001501010100000000000000000000000000"
    "000504FFDA000C03010002100310000001348A4FA07AC9A80A07FFC40014100100000000000000000000000000000020FFDA0008010100"
    "0105021FFFC40014110100000000000000000000000000000020FFDA0008010301013F011FFFC400141101000000000000000000000000"
    "00000020FFDA0008010201013F011FFFC40014100100000000000000000000000000000020FFDA0008010100063F021FFFC40014100100"
    "000000000000000000000000000020FFDA0008010100013F211FFFDA000C0301000200030000001036AFFFC40014110100000000000000"
    "000000000000000020FFDA0008010301013F101FFFC40014110100000000000000000000000000000020FFDA0008010201013F101FFFC4"
    "0014100100000000000000000000000000000020FFDA0008010100013F101FFFD9";

// Progressive files, common from phones and the web, go through our own decoder too: WIC takes several
// times as long on them.
TEST(PictureJpeg, DecodesProgressiveJpegItself) {
    ProgramDir dir(false);
    std::string bytes;
    for (const char* hex = kProgressiveJpeg; *hex; hex += 2) {
        bytes.push_back(static_cast<char>(std::stoi(std::string(hex, 2), nullptr, 16)));
    }
    dir.write("progressive.jpg", bytes);
    const std::span<const uint8_t> file(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
    ASSERT_TRUE(readJpegHeader(file).handled);
    const std::optional<Picture> picture = loadPicture(dir.file("progressive.jpg"));
    ASSERT_TRUE(picture);
    ASSERT_EQ(picture->width(), 16);
    ASSERT_EQ(picture->height(), 16);
    std::vector<uint8_t> ours(picture->imageSize());
    ASSERT_EQ(decodeJpeg(file, ours), JpegResult::decoded);
    EXPECT_TRUE(std::equal(ours.begin(), ours.end(), picture->bits()));
    const auto pixel = [&](int x, int y) { return picture->bits() + picture->stride() * (15 - y) + 3 * x; };
    const BYTE* topLeft = pixel(3, 3);
    const BYTE* bottomRight = pixel(12, 12);
    EXPECT_NEAR(topLeft[0], 30, 25);
    EXPECT_NEAR(topLeft[1], 60, 25);
    EXPECT_NEAR(topLeft[2], 200, 25);
    EXPECT_NEAR(bottomRight[0], 220, 25);
    EXPECT_NEAR(bottomRight[2], 30, 25);
    // Cut short, it is no wallpaper: refused, not shown without its last scans.
    dir.write("cut.jpg", bytes.substr(0, bytes.size() - 40));
    EXPECT_FALSE(loadPicture(dir.file("cut.jpg")));
}

}  // namespace
}  // namespace tl::wintest
