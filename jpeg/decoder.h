#pragma once

#include <cstddef>
#include <cstdint>
#include <memory_resource>
#include <span>

// Our own decoder for the JPEG files people keep as wallpapers (sequential or progressive Huffman-coded,
// 8-bit, grey, YCbCr or RGB), written for speed: a 24-megapixel photo is decoded straight into BMP pixel
// rows. Whatever it does not handle (arithmetic coding, 12-bit, CMYK, lossless, damage it can't get past)
// it says so before writing anything, and the caller hands the file to a general decoder instead.
namespace tl {

// What a JPEG file's headers say, read without decoding the picture.
struct JpegHeader {
    int width = 0;
    int height = 0;
    // decodeJpeg will decode it; when false, width and height may still be known (an arithmetic-coded file,
    // or a picture over the size limit of base/picture_limits.h).
    bool handled = false;
};

enum class JpegResult {
    decoded,
    notHandled,  // not a JPEG of a kind this decoder takes: `pixels` untouched, another decoder may try
    // The file ended, or its data was damaged, before the picture did, or it lacks its end-of-image marker
    // (jpegReachesEnd). The pixels are written all the same, what is missing as other decoders show it (flat
    // grey, or a progressive picture's coarser version); whether such a picture is fit to show is the
    // caller's decision.
    damaged,
};

struct JpegOptions {
    // 1 decodes on the calling thread alone; 2 also uses a second thread for the entropy decoding.
    int threads = 2;
    // Where the row and coefficient buffers come from (about 1.5 MB for a 24-megapixel photo; a progressive
    // one keeps all its coefficients, 2 bytes a sample: 72 MB at 4:2:0, 144 MB at 4:4:4); null: the heap.
    std::pmr::memory_resource* scratch = nullptr;
    // 8 decodes the whole picture; 4, 3, 2 or 1 decode it at that many eighths of its size, each side rounded
    // up (jpegScaledSide), from the low frequencies of its blocks: much less work than the whole picture.
    int eighths = 8;
};

// Reads the headers up to the first scan.
JpegHeader readJpegHeader(std::span<const uint8_t> file);

// Whether the file starts as a JPEG and its segments and scan data run on to an end-of-image marker after
// at least one scan. False for a file cut short, whichever decoder would take it.
bool jpegReachesEnd(std::span<const uint8_t> file);

// Bytes in one BMP pixel row: width * 3 padded to a multiple of 4.
size_t jpegBmpRowBytes(int width);

// A side of the picture decoded at that many eighths of its size.
int jpegScaledSide(int side, int eighths);

// The fewest eighths (1, 2, 3 or 4, else 8) at which a width x height picture still covers
// targetWidth x targetHeight.
int jpegEighthsToCover(int width, int height, int targetWidth, int targetHeight);

// Takes a picture's rows as the decoder makes them, top row first: each is asked for, written (width * 3
// bytes of blue, green, red), then handed back. Whoever resizes the picture on the way needs only the few
// rows its filter spans, never the whole picture.
class JpegRowSink {
  public:
    virtual uint8_t* row(int y) = 0;
    virtual void rowDone(int y) = 0;

  protected:
    ~JpegRowSink() = default;
};

// Decodes into BMP pixel data: rows of blue, green, red, each padded with zeros to a multiple of 4 bytes,
// the bottom row first. `pixels` holds jpegBmpRowBytes(width) * height bytes for the size the eighths
// give. A file cut short is decoded as far as it goes (damaged). notHandled (also for eighths other
// than 1, 2, 3, 4 or 8) leaves `pixels` as it was.
JpegResult decodeJpeg(std::span<const uint8_t> file, std::span<uint8_t> pixels, const JpegOptions& options = {});

// Decodes as decodeJpeg does, every row of the size the eighths give to `sink` in turn (also when the
// result is damaged; none when notHandled).
JpegResult decodeJpegRows(std::span<const uint8_t> file, JpegRowSink& sink, const JpegOptions& options = {});

}  // namespace tl
