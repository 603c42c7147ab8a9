#pragma once

#include <windows.h>

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "base/unique_handle_win.h"

namespace tl {

// A decoded picture held as a 24-bit bottom-up DIB section, so that its bits are exactly a BMP file's
// pixel data: rows of width * 3 bytes (blue, green, red) padded to a multiple of 4, the bottom row first.
// A BMP file of it is a BITMAPFILEHEADER, infoHeader() and then imageSize() bytes from bits().
class Picture {
  public:
    Picture() = default;
    Picture(Picture&&) noexcept = default;
    Picture& operator=(Picture&&) noexcept = default;

    explicit operator bool() const { return static_cast<bool>(bitmap_); }
    int width() const { return width_; }
    int height() const { return height_; }
    HBITMAP bitmap() const { return bitmap_.get(); }
    const BYTE* bits() const { return bits_; }
    BYTE* bits() { return bits_; }
    size_t stride() const { return rowBytes(width_); }
    size_t imageSize() const { return stride() * static_cast<size_t>(height_); }
    BITMAPINFOHEADER infoHeader() const;

    // A blank (zeroed) picture of the given size; empty when the system can't make one.
    static Picture create(int width, int height);
    static size_t rowBytes(int width) { return (static_cast<size_t>(width) * 3 + 3) & ~static_cast<size_t>(3); }

    // Gives the bitmap away (for a control that takes it over); the picture is empty afterwards.
    unique_hbitmap releaseBitmap();

  private:
    unique_hbitmap bitmap_;
    BYTE* bits_ = nullptr;
    int width_ = 0;
    int height_ = 0;
};

// Decodes a BMP, JPEG, GIF (its first frame) or PNG file: JPEG files by our own decoder where it can,
// everything else through WIC. nullopt when the file can't be opened or decoded, is a JPEG cut short or
// with data missing, or the picture is over the size limit (base/picture_limits.h) or too large for the
// memory at hand.
std::optional<Picture> loadPicture(const std::string& path);

// A picture and the size its file says it has: the picture itself may have been decoded smaller.
struct LoadedPicture {
    Picture picture;
    int naturalWidth = 0;
    int naturalHeight = 0;
};

// The least size a caller needs a picture decoded at, given its natural size.
using SizeNeeded = std::function<std::pair<int, int>(int naturalWidth, int naturalHeight)>;

// Decodes the picture at the smallest size its format allows that still covers what `needed` asks for (a
// JPEG at a half, three eighths, a quarter or an eighth), else whole. nullopt as for loadPicture.
std::optional<LoadedPicture> loadPictureFor(const std::string& path, const SizeNeeded& needed);

// The same for a size known beforehand.
std::optional<Picture> loadPictureAtLeast(const std::string& path, int width, int height);

// Decodes the picture resampled to exactly the size `fitted` gives for its natural size: a JPEG at the
// reduced size that covers a quarter more, resampled row by row as it is decoded, so nothing larger than
// the result is ever held; anything else decoded whole first. nullopt as for loadPicture.
std::optional<LoadedPicture> loadPictureFitted(const std::string& path, const SizeNeeded& fitted);

// A copy of the picture at another size: averaged when shrinking, halftone-stretched when enlarging.
// Empty on failure.
Picture scaledPicture(const Picture& source, int width, int height);

// A copy of the picture resampled to exactly width x height with a sharp filter (resamplePixels), for a
// picture already near that size. Empty on failure.
Picture resampledPicture(const Picture& source, int width, int height);

}  // namespace tl
