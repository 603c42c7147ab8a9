#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "support/temp_dir.h"

// JPEG files for the decoder's tests, made and decoded by libjpeg's cjpeg and djpeg as known-good tools.
namespace tl::test {

// Top row first, red, green, blue per pixel; grey pictures are given as equal channels.
struct RgbImage {
    int width = 0;
    int height = 0;
    std::vector<uint8_t> rgb;
};

// cjpeg and djpeg can be run.
bool haveJpegTools();

// Gradients, sharp edges and some noise, so every kind of coefficient and colour turns up.
RgbImage testPicture(int width, int height, unsigned seed = 1);

// A photo-like picture (ImageMagick's plasma, softened as a camera's lens would), the same for the same
// seed; empty when convert fails.
RgbImage photoPicture(const TempDir& dir, int width, int height, unsigned seed);

// The picture compressed by cjpeg with the given switches ("-sample 2x2 -restart 1"); empty on failure.
std::vector<uint8_t> encodeJpeg(const TempDir& dir, const RgbImage& picture, const std::string& switches);

// The file decoded by djpeg with its default (accurate) settings.
std::optional<RgbImage> referenceDecode(const TempDir& dir, const std::vector<uint8_t>& jpeg);

// The file decoded by our decoder (at that many eighths of its size), turned from BMP rows into an RgbImage;
// nullopt when not handled. `complete`, if given, says whether the picture was whole (not
// JpegResult::damaged).
std::optional<RgbImage> decodeWithOurs(const std::vector<uint8_t>& jpeg,
                                       int threads,
                                       bool* complete = nullptr,
                                       int eighths = 8);
// The same, whole, taken a row at a time from decodeJpegRows.
std::optional<RgbImage> decodeRowsWithOurs(const std::vector<uint8_t>& jpeg);

// The picture resized to exactly width x height by ImageMagick with one of its filters ("Lanczos", "Box").
std::optional<RgbImage> referenceResize(const TempDir& dir,
                                        const RgbImage& picture,
                                        int width,
                                        int height,
                                        const std::string& filter);

// Peak signal-to-noise ratio in dB over every channel of every pixel; 0 when the sizes differ.
double psnr(const RgbImage& a, const RgbImage& b);

struct Difference {
    int max = 0;      // largest difference of one channel of one pixel
    double mean = 0;  // mean absolute difference over every channel of every pixel
};
Difference compareImages(const RgbImage& a, const RgbImage& b);

}  // namespace tl::test
