#pragma once

#include <cstdint>

namespace tl {

// The largest picture the program decodes: 2^28 pixels (256 megapixels, 16,384 x 16,384), 768 MB as the
// 24-bit bitmap it becomes. That takes the 200-megapixel photos of today's phones and a 100-megapixel
// panorama with room to spare, and stops a header that claims 65,535 x 65,535 (12 GB) before anything is
// allocated for it. Every decoder of ours and the WIC path ask here.
inline constexpr int64_t kMaxPicturePixels = int64_t{1} << 28;

// Whether a picture of that size may be decoded: both sides at least 1, and no more than kMaxPicturePixels.
inline bool pictureSizeAllowed(int64_t width, int64_t height) {
    return width > 0 && height > 0 && width <= kMaxPicturePixels && height <= kMaxPicturePixels / width;
}

}  // namespace tl
