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

// The picture compressed by cjpeg with the given switches ("-sample 2x2 -restart 1"); empty on failure.
std::vector<uint8_t> encodeJpeg(const TempDir& dir, const RgbImage& picture, const std::string& switches);

// The file decoded by djpeg with its default (accurate) settings.
std::optional<RgbImage> referenceDecode(const TempDir& dir, const std::vector<uint8_t>& jpeg);

// The file decoded by our decoder, turned from BMP rows into an RgbImage; nullopt when not handled.
// `complete`, if given, says whether the picture was whole (not JpegResult::damaged).
std::optional<RgbImage> decodeWithOurs(const std::vector<uint8_t>& jpeg, int threads, bool* complete = nullptr);

struct Difference {
    int max = 0;      // largest difference of one channel of one pixel
    double mean = 0;  // mean absolute difference over every channel of every pixel
};
Difference compareImages(const RgbImage& a, const RgbImage& b);

}  // namespace tl::test
