#include "jpeg/fuzz/jpeg_input.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

#include "base/fuzz/fuzz_check.h"
#include "base/page_memory.h"
#include "base/picture_limits.h"

namespace tl::fuzz {

namespace {

constexpr const char* kTarget = "jpeg";
// Pictures up to this many pixels are compared between thread counts and checked byte by byte; bigger
// ones (a header can claim up to the size limit) are only decoded, to keep the executions fast.
constexpr int64_t kCheckedPixels = 1 << 20;
// Pictures claiming more than this are decoded at an eighth of their size, whatever the choice byte says,
// and those claiming more than kDecodedPixels not at all: a progressive picture's coefficients are kept
// whole, and clearing tens of megabytes for each of a few bytes of data would slow the fuzzing a
// hundredfold while the paths are those of a smaller picture.
constexpr int64_t kFullSizePixels = 1 << 18;
constexpr int64_t kDecodedPixels = 1 << 20;

void check(bool holds, const char* what) {
    fuzz::check(holds, kTarget, what);
}

// Holds the decoder to its row order and compares each row with the same picture decoded whole.
class RowChecker final : public JpegRowSink {
  public:
    RowChecker(const uint8_t* pixels, int width, int height)
        : pixels_(pixels), height_(height), used_(static_cast<size_t>(width) * 3), row_(used_) {}
    uint8_t* row(int y) override {
        check(y == next_ && !open_ && y < height_, "rows asked for out of order");
        open_ = true;
        return row_.data();
    }
    void rowDone(int y) override {
        check(y == next_ && open_, "a row handed back that wasn't asked for");
        const uint8_t* whole =
            pixels_ + static_cast<size_t>(height_ - 1 - y) * jpegBmpRowBytes(static_cast<int>(used_ / 3));
        check(std::memcmp(whole, row_.data(), used_) == 0, "a row differs from the whole picture's");
        open_ = false;
        ++next_;
    }
    bool allRows() const { return next_ == height_ && !open_; }

  private:
    const uint8_t* pixels_;
    const int height_;
    const size_t used_;
    std::vector<uint8_t> row_;
    int next_ = 0;
    bool open_ = false;
};

}  // namespace

JpegFuzzChoice jpegFuzzChoice(uint8_t first) {
    JpegFuzzChoice choice;
    choice.options.threads = (first & 1) != 0 ? 2 : 1;                    // bit 0
    choice.options.scratch = (first & 2) != 0 ? &pageMemory() : nullptr;  // bit 1
    choice.compareThreads = (first & 4) != 0;                             // bit 2
    // Bits 3, 4 and 6: the size, in eighths (bits 3 and 4 alone as before three eighths were added).
    constexpr int kEighths[] = {8, 4, 2, 1, 3, 3, 8, 4};
    choice.options.eighths = kEighths[((first >> 3) & 3) | ((first >> 4) & 4)];
    choice.compareRows = (first & 32) != 0;  // bit 5
    // Bit 7 is free for further options.
    return choice;
}

void jpegInput(std::span<const uint8_t> input) {
    if (input.empty()) {
        return;
    }
    JpegFuzzChoice choice = jpegFuzzChoice(input[0]);
    const std::span<const uint8_t> file = input.subspan(1);

    const JpegHeader header = readJpegHeader(file);
    const bool whole = jpegReachesEnd(file);
    if (!header.handled) {
        // Refused before a pixel is written.
        uint8_t canary[64];
        std::memset(canary, 0xEE, sizeof canary);
        check(decodeJpeg(file, canary, choice.options) == JpegResult::notHandled, "refused by the header reader only");
        check(std::all_of(std::begin(canary), std::end(canary), [](uint8_t b) { return b == 0xEE; }),
              "a refused file wrote pixels");
        return;
    }
    check(pictureSizeAllowed(header.width, header.height), "a picture over the size limit was handled");
    const int64_t claimed = static_cast<int64_t>(header.width) * header.height;
    if (claimed > kFullSizePixels) {
        choice.options.eighths = 1;
    }

    const int width = jpegScaledSide(header.width, choice.options.eighths);
    const int height = jpegScaledSide(header.height, choice.options.eighths);
    const size_t stride = jpegBmpRowBytes(width);
    const size_t size = stride * static_cast<size_t>(height);
    check(decodeJpeg(file, std::span<uint8_t>(), choice.options) == JpegResult::notHandled,
          "decoded into a buffer too small");
    if (claimed > kDecodedPixels) {
        return;
    }
    // Not zeroed: a big claimed picture costs no time unless its rows are written.
    const std::unique_ptr<uint8_t[]> pixels(new uint8_t[size]);
    const JpegResult result = decodeJpeg(file, {pixels.get(), size}, choice.options);
    check(result != JpegResult::notHandled, "refused a file its header reader took");
    check(result == JpegResult::damaged || whole, "decoded a file that stops before its end-of-image marker");
    if (result != JpegResult::decoded || static_cast<int64_t>(width) * height > kCheckedPixels) {
        return;
    }
    const size_t used = static_cast<size_t>(width) * 3;
    for (int y = 0; y < height; ++y) {
        const uint8_t* row = pixels.get() + static_cast<size_t>(y) * stride;
        check(std::all_of(row + used, row + stride, [](uint8_t b) { return b == 0; }), "row padding not zero");
    }
    if (choice.compareThreads) {
        JpegOptions other = choice.options;
        other.threads = choice.options.threads == 1 ? 2 : 1;
        const std::unique_ptr<uint8_t[]> again(new uint8_t[size]);
        check(decodeJpeg(file, {again.get(), size}, other) == JpegResult::decoded, "decoded once, refused once");
        check(std::memcmp(pixels.get(), again.get(), size) == 0, "one thread and two decode differently");
    }
    if (choice.compareRows) {
        RowChecker rows(pixels.get(), width, height);
        check(decodeJpegRows(file, rows, choice.options) == JpegResult::decoded, "decoded whole, not by rows");
        check(rows.allRows(), "a row left out");
    }
}

}  // namespace tl::fuzz
