#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tl {

class FileSystem;

// A picture file that could not be opened or read for its header.
class ImageReadError : public std::runtime_error {
  public:
    explicit ImageReadError(const std::string& path) : std::runtime_error("can't read " + path), path_(path) {}
    const std::string& path() const { return path_; }

  private:
    std::string path_;
};

// Size, colour depth and kind of a picture file, told from its header bytes without decoding it.
// Only 16 bits of each dimension are read, so sizes are at most 65,535 (a larger one reads modulo 65,536).
class cImageInfo {
  public:
    enum Type : int32_t { kUnknown = 0, kGif = 1, kJpeg = 2, kPng = 3, kBmp = 4 };
    // How much of a file the header reader looks at.
    static constexpr size_t kHeaderBytes = 65536;

    explicit cImageInfo(FileSystem& fs) : fs_(fs) {}

    int32_t Width() const { return width_; }
    int32_t Height() const { return height_; }
    uint8_t Depth() const { return depth_; }
    int32_t ImageType() const { return type_; }

    // Reads the file's first 64 KiB and fills the four values (all 0 for an unknown kind). Throws
    // ImageReadError, with the values already 0, when the file can't be opened or read.
    void ReadImageInfo(const std::string& fileName);
    // The same on bytes already in memory: the first kHeaderBytes of them, zeros past their end.
    void readHeader(std::string_view bytes);

  private:
    void reset();

    FileSystem& fs_;
    int32_t width_ = 0;
    int32_t height_ = 0;
    uint8_t depth_ = 0;
    int32_t type_ = kUnknown;
};

}  // namespace tl
