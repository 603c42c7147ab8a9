// A JPEG made smaller the way Scale makes it: decoded at the reduced size the format allows, then resampled
// to the exact size. Held up against the whole picture decoded by djpeg and resized by ImageMagick.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "jpeg/decoder.h"
#include "jpeg/tests/reference.h"
#include "lists/picture_scale.h"

namespace tl::test {
namespace {

class ScaledJpeg : public testing::Test {
  protected:
    void SetUp() override {
        if (!haveJpegTools() || std::system("convert -version >/dev/null 2>&1") != 0) {
            GTEST_SKIP() << "cjpeg, djpeg (libjpeg-turbo-progs) and convert (imagemagick) are needed";
        }
    }

    // Our way down to width x height; two threads decode the same bytes as one.
    RgbImage ours(const std::vector<uint8_t>& jpeg, int width, int height) {
        const JpegHeader header = readJpegHeader(jpeg);
        const int eighths =
            jpegEighthsToCover(header.width, header.height, sideToResampleFrom(width), sideToResampleFrom(height));
        const auto decoded = decodeWithOurs(jpeg, 1, nullptr, eighths);
        const auto threaded = decodeWithOurs(jpeg, 2, nullptr, eighths);
        EXPECT_TRUE(decoded && threaded && decoded->rgb == threaded->rgb) << eighths << " eighths";
        if (!decoded) {
            return {};
        }
        RgbImage out{width, height, std::vector<uint8_t>(static_cast<size_t>(width) * height * 3)};
        EXPECT_TRUE(resamplePixels(decoded->rgb.data(), decoded->width, decoded->height,
                                   static_cast<size_t>(decoded->width) * 3, out.rgb.data(), width, height,
                                   static_cast<size_t>(width) * 3));
        return out;
    }

    TempDir dir;
};

TEST_F(ScaledJpeg, IsCloseToTheWholePictureResizedByAGoodFilter) {
    const struct {
        const char* what;
        int width, height;
        const char* switches;
        // Picked to decode at an eighth, a quarter, three eighths, a half and whole, with the least room to
        // spare.
        int targetWidth, targetHeight;
    } cases[] = {
        {"4:2:0 at an eighth", 1003, 757, "-sample 2x2", 100, 76},
        {"4:4:4 at a quarter", 517, 389, "-sample 1x1", 104, 78},
        {"4:4:4 at three eighths", 517, 389, "-sample 1x1", 150, 112},
        {"4:2:0 at three eighths, chroma upsampled", 1003, 757, "-sample 2x2", 300, 226},
        {"progressive 4:2:2 at three eighths", 517, 389, "-sample 2x1 -progressive", 150, 112},
        {"4:2:2 at a half", 401, 299, "-sample 2x1", 160, 120},
        {"4:4:0 at a quarter", 333, 251, "-sample 1x2", 67, 50},
        {"4:1:1 at a half", 321, 203, "-sample 4x1", 128, 81},
        {"luma 3x1 at a half", 257, 191, "-sample 3x1", 103, 76},
        {"luma 4x2 at an eighth", 641, 487, "-sample 4x2", 64, 48},
        {"chroma sampled apart at a quarter", 299, 213, "-sample 2x2,1x2,2x1", 60, 43},
        {"luma below chroma at a half", 223, 167, "-sample 1x1,2x2,1x1", 89, 67},
        {"grey at a quarter", 413, 307, "-grayscale", 83, 61},
        {"RGB at a half", 207, 153, "-rgb", 83, 61},
        {"restart every MCU row at a half", 389, 287, "-sample 2x2 -restart 1", 156, 115},
        {"restart every 5 blocks at an eighth", 811, 601, "-sample 1x1 -restart 5B", 81, 60},
        {"progressive at a quarter", 517, 389, "-sample 2x2 -progressive", 104, 78},
        {"whole, shrunk a little", 151, 113, "-sample 2x2", 101, 75},
        {"whole, enlarged", 61, 47, "-sample 2x2", 150, 115},
    };
    // Cut from one photo: making them one by one takes ImageMagick a while.
    const RgbImage photo = photoPicture(dir, 1024, 768, 7);
    ASSERT_EQ(photo.width, 1024);
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        RgbImage picture{c.width, c.height, {}};
        for (int y = 0; y < c.height; ++y) {
            const auto row = photo.rgb.begin() + y * 1024 * 3;
            picture.rgb.insert(picture.rgb.end(), row, row + c.width * 3);
        }
        const std::vector<uint8_t> jpeg = encodeJpeg(dir, picture, std::string(c.switches) + " -quality 92");
        const auto whole = referenceDecode(dir, jpeg);
        ASSERT_TRUE(whole);
        const RgbImage scaled = ours(jpeg, c.targetWidth, c.targetHeight);
        for (const char* filter : {"Lanczos", "Box"}) {
            const auto reference = referenceResize(dir, *whole, c.targetWidth, c.targetHeight, filter);
            ASSERT_TRUE(reference);
            EXPECT_GE(psnr(scaled, *reference), 35.0) << filter;
        }
    }
}

// The largest minus the smallest value of a picture's inner part (the edges, where a filter's lobes are cut
// off, left aside).
int innerSwing(const RgbImage& picture) {
    int lowest = 255;
    int highest = 0;
    for (int y = 4; y < picture.height - 4; ++y) {
        for (int x = 4; x < picture.width - 4; ++x) {
            const uint8_t v =
                picture.rgb[(static_cast<size_t>(y) * static_cast<size_t>(picture.width) + static_cast<size_t>(x)) * 3];
            lowest = std::min<int>(lowest, v);
            highest = std::max<int>(highest, v);
        }
    }
    return highest - lowest;
}

// One-pixel lines shrunk by factors that are not whole numbers: a filter that samples rather than averages
// turns them into broad bands of black and white; ours gives a grey as even as ImageMagick's Lanczos.
TEST_F(ScaledJpeg, ShowsNoMoireOnFineLines) {
    for (const bool across : {true, false}) {
        RgbImage lines{640, 480, std::vector<uint8_t>(640 * 480 * 3)};
        for (int y = 0; y < lines.height; ++y) {
            for (int x = 0; x < lines.width; ++x) {
                const uint8_t v = ((across ? x : y) % 2 == 0) ? 255 : 0;
                std::fill_n(&lines.rgb[(static_cast<size_t>(y) * 640 + static_cast<size_t>(x)) * 3], 3, v);
            }
        }
        const std::vector<uint8_t> jpeg = encodeJpeg(dir, lines, "-sample 1x1 -quality 100");
        const auto whole = referenceDecode(dir, jpeg);
        ASSERT_TRUE(whole);
        for (const auto& [width, height] :
             {std::pair{180, 135}, std::pair{237, 177}, std::pair{411, 308}, std::pair{480, 360}}) {
            SCOPED_TRACE(std::to_string(width) + "x" + std::to_string(height) + (across ? " across" : " down"));
            const auto reference = referenceResize(dir, *whole, width, height, "Lanczos");
            ASSERT_TRUE(reference);
            // Decoded at a half or three eighths, the blocks' own low-pass leaves a faint ripple of their period
            // (45 levels at three eighths, where a box filter, what halftone stretching does, leaves 85).
            EXPECT_LE(innerSwing(ours(jpeg, width, height)), std::max(innerSwing(*reference) + 8, 48));
        }
    }
}

}  // namespace
}  // namespace tl::test
