#include "jpeg/decoder.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <cstring>
#include <memory>
#include <mutex>
#include <new>
#include <system_error>
#include <thread>
#include <vector>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "base/page_memory.h"
#include "jpeg/entropy.h"
#include "jpeg/pixels.h"
#include "jpeg/progressive.h"

namespace tl {

using namespace jpeg;

namespace {

// Room for one row of MCUs' coefficients.
class CoefficientSlot {
  public:
    CoefficientSlot(const Frame& frame, std::pmr::memory_resource& memory) {
        for (int c = 0; c < frame.componentCount; ++c) {
            const Component& comp = frame.components[static_cast<size_t>(c)];
            const auto blocks = static_cast<size_t>(comp.blocksAcross) * static_cast<size_t>(comp.v);
            blocks_[static_cast<size_t>(c)] = ScratchArray<int16_t>(memory, blocks * 64);
            last_[static_cast<size_t>(c)] = ScratchArray<uint8_t>(memory, blocks);
            row.blocks[static_cast<size_t>(c)] = blocks_[static_cast<size_t>(c)].data();
            row.last[static_cast<size_t>(c)] = last_[static_cast<size_t>(c)].data();
        }
    }
    CoefficientRow row;

  private:
    std::array<ScratchArray<int16_t>, kMaxComponents> blocks_;
    std::array<ScratchArray<uint8_t>, kMaxComponents> last_;
};

// Clears the top left size x size coefficients of a block and its last one, the only ones the entropy
// decoder writes for a block decoded smaller (sizes 4, 3, 2 and 1; a few more may be cleared).
[[gnu::always_inline]] inline void clearCorner(int16_t* block, int size) {
    if (size >= 3) {
        for (int y = 0; y < 4; ++y) {
            std::memset(block + 8 * y, 0, 4 * sizeof(int16_t));
        }
    } else {
        std::memset(block, 0, 2 * sizeof(int16_t));
        std::memset(block + 8, 0, 2 * sizeof(int16_t));
    }
    block[63] = 0;
}

// Turns rows of coefficients into BMP rows: inverse DCT into a few rows of samples per component, then,
// as soon as every component has the rows a picture row needs, upsampling and colour conversion straight
// into the caller's pixels. At a reduced size each block gives fewer samples (4, 3, 2 or 1 a side for the
// picture's densest component); a component sampled more sparsely keeps up to 8 a side, so it needs less
// upsampling, or none.
class RowBuilder {
  public:
    RowBuilder(const Frame& frame, int eighths, JpegRowSink& rows, std::pmr::memory_resource& memory)
        : frame_(frame),
          rows_(rows),
          width_(jpegScaledSide(frame.width, eighths)),
          height_(jpegScaledSide(frame.height, eighths)),
          rowsPerMcuRow_(frame.vMax * eighths) {
        for (int c = 0; c < frame.componentCount; ++c) {
            const Component& comp = frame.components[static_cast<size_t>(c)];
            Plane& plane = planes_[static_cast<size_t>(c)];
            int hScale = frame.hMax / comp.h;
            int vScale = frame.vMax / comp.v;
            plane.blockSize = eighths;
            // No 6-point transform: at three eighths a sparser component is upsampled from 3 a side.
            const bool powerOfTwo = (plane.blockSize & (plane.blockSize - 1)) == 0;
            while (powerOfTwo && plane.blockSize < 8 && hScale % 2 == 0 && vScale % 2 == 0) {
                plane.blockSize *= 2;
                hScale /= 2;
                vScale /= 2;
            }
            plane.hScale = hScale;
            plane.vScale = vScale;
            plane.width = (comp.width * plane.blockSize + 7) / 8;
            plane.height = (comp.height * plane.blockSize + 7) / 8;
            plane.stride = static_cast<size_t>(comp.blocksAcross) * static_cast<size_t>(plane.blockSize);
            // Two MCU rows: picture rows wait at most a few sample rows for the next MCU row's chroma.
            plane.ringRows = 2 * plane.blockSize * comp.v;
            plane.ring = ScratchArray<uint8_t>(memory, plane.stride * static_cast<size_t>(plane.ringRows));
            if (hScale == 1 && vScale == 1) {
                plane.mode = Mode::direct;
            } else if (hScale == 2 && vScale == 1 && plane.width > 2) {
                plane.mode = Mode::h2v1;
            } else if (hScale == 1 && vScale == 2) {
                plane.mode = Mode::h1v2;
            } else if (hScale == 2 && vScale == 2 && plane.width > 2) {
                plane.mode = Mode::h2v2;
            } else {
                plane.mode = Mode::box;
            }
            plane.upsampled = ScratchArray<uint8_t>(memory, plane.stride * static_cast<size_t>(hScale) + 32);
            plane.blocksUsed = (comp.width + 7) / 8;
        }
    }

    // The samples a side each component's blocks are decoded to.
    std::array<int, kMaxComponents> blockSizes() const {
        std::array<int, kMaxComponents> sizes{};
        for (size_t c = 0; c < kMaxComponents; ++c) {
            sizes[c] = planes_[c].blockSize;
        }
        return sizes;
    }
    int width() const { return width_; }
    int height() const { return height_; }
    // Picture rows each MCU row makes (the last may make fewer).
    int rowsPerMcuRow() const { return rowsPerMcuRow_; }

    void addRow(const CoefficientRow& row) {
        for (int c = 0; c < frame_.componentCount; ++c) {
            const Component& comp = frame_.components[static_cast<size_t>(c)];
            Plane& plane = planes_[static_cast<size_t>(c)];
            int16_t* const blocks = row.blocks[static_cast<size_t>(c)];
            const uint8_t* const last = row.last[static_cast<size_t>(c)];
            const int size = plane.blockSize;
            for (int by = 0; by < comp.v; ++by) {
                const int top = plane.rowsDone + size * by;
                // Blocks past the picture's right and bottom edges are decoded but never shown.
                const int shown = top < plane.height ? plane.blocksUsed : 0;
                uint8_t* const out = plane.row(top);
                const size_t first = static_cast<size_t>(by) * static_cast<size_t>(comp.blocksAcross);
                int bx = 0;
                if (size == 8) {
                    for (; bx + 1 < shown; bx += 2) {
                        const size_t index = first + static_cast<size_t>(bx);
                        idctBlockPair(blocks + index * 64, last[index], blocks + (index + 1) * 64, last[index + 1],
                                      out + 8 * bx, plane.stride);
                    }
                    if (bx < shown) {
                        const size_t index = first + static_cast<size_t>(bx);
                        idctBlock(blocks + index * 64, last[index], out + 8 * bx, plane.stride);
                    }
                } else {
                    for (; bx < shown; ++bx) {
                        const size_t index = first + static_cast<size_t>(bx);
                        idctBlockReduced(blocks + index * 64, last[index], size, out + size * bx, plane.stride);
                    }
                }
                // A block decoded smaller has its coefficients in its top left corner and in its last one.
                for (bx = 0; bx < comp.blocksAcross; ++bx) {
                    const size_t index = first + static_cast<size_t>(bx);
                    int16_t* const block = blocks + index * 64;
                    if (last[index] == 0) {
                        block[0] = 0;
                    } else if (size == 8) {
                        std::memset(block, 0, 64 * sizeof(int16_t));
                    } else {
                        clearCorner(block, size);
                    }
                }
            }
            plane.rowsDone += size * comp.v;
        }
        while (nextRow_ < height_ && rowReady(nextRow_)) {
            emitRow(nextRow_++);
        }
    }

  private:
    enum class Mode { direct, h2v1, h1v2, h2v2, box };
    struct Plane {
        ScratchArray<uint8_t> ring;
        size_t stride = 0;
        int ringRows = 0;
        int rowsDone = 0;
        int blockSize = 8;  // samples a side each block gives
        int width = 0;      // samples across and rows, at this size
        int height = 0;
        int hScale = 1;  // the upsampling each way
        int vScale = 1;
        int blocksUsed = 0;
        Mode mode = Mode::direct;
        ScratchArray<uint8_t> upsampled;
        uint8_t* row(int r) { return ring.data() + static_cast<size_t>(r % ringRows) * stride; }
    };

    // The last sample row of the component that picture row y is made from.
    int lastRowNeeded(int c, int y) const {
        const Plane& plane = planes_[static_cast<size_t>(c)];
        if (plane.mode == Mode::h1v2 || plane.mode == Mode::h2v2) {
            return std::min(y / 2 + (y & 1), plane.height - 1);
        }
        return y / plane.vScale;
    }

    bool rowReady(int y) const {
        for (int c = 0; c < frame_.componentCount; ++c) {
            if (lastRowNeeded(c, y) >= planes_[static_cast<size_t>(c)].rowsDone) {
                return false;
            }
        }
        return true;
    }

    const uint8_t* componentRow(int c, int y) {
        Plane& plane = planes_[static_cast<size_t>(c)];
        uint8_t* const up = plane.upsampled.data();
        switch (plane.mode) {
            case Mode::direct:
                return plane.row(y);
            case Mode::h2v1:
                upsampleH2V1(plane.row(y), plane.width, up);
                return up;
            case Mode::h1v2:
            case Mode::h2v2: {
                const int k = y / 2;
                const bool lower = (y & 1) != 0;
                const int far = lower ? std::min(k + 1, plane.height - 1) : std::max(k - 1, 0);
                if (plane.mode == Mode::h1v2) {
                    upsampleH1V2(plane.row(k), plane.row(far), plane.width, lower, up);
                } else {
                    upsampleH2V2(plane.row(k), plane.row(far), plane.width, up);
                }
                return up;
            }
            case Mode::box:
                if (plane.hScale == 1) {
                    return plane.row(y / plane.vScale);
                }
                upsampleBox(plane.row(y / plane.vScale), plane.width, plane.hScale, up);
                return up;
        }
        return up;
    }

    void emitRow(int y) {
        uint8_t* const out = rows_.row(y);
        const uint8_t* c0 = componentRow(0, y);
        if (frame_.componentCount == 1) {
            greyToBgr(c0, width_, out);
        } else {
            const uint8_t* c1 = componentRow(1, y);
            const uint8_t* c2 = componentRow(2, y);
            if (frame_.rgb) {
                rgbToBgr(c0, c1, c2, width_, out);
            } else {
                yccToBgr(c0, c1, c2, width_, out);
            }
        }
        rows_.rowDone(y);
    }

    const Frame& frame_;
    JpegRowSink& rows_;
    const int width_;
    const int height_;
    const int rowsPerMcuRow_;
    std::array<Plane, kMaxComponents> planes_;
    int nextRow_ = 0;
};

void decodeOnOneThread(const Frame& frame,
                       EntropyDecoder& entropy,
                       RowBuilder& builder,
                       std::pmr::memory_resource& memory) {
    CoefficientSlot slot(frame, memory);
    for (int r = 0; r < frame.mcuRows; ++r) {
        entropy.decodeRow(slot.row);
        builder.addRow(slot.row);
    }
}

// Writes a byte into each page of the pixels not yet written, from the top of the picture (the end of the
// buffer) down, as far as `limit`: a fresh DIB section's pages fault in on first touch, which costs a
// 24-megapixel picture tens of milliseconds, better spent on a thread that would otherwise wait.
class PageToucher {
  public:
    PageToucher(uint8_t* pixels, size_t size) : pixels_(pixels), next_(size) {}
    // False when there's nothing left to touch below `limit`.
    bool touchSome(size_t limit) {
        constexpr size_t kPage = 4096;
        size_t at = std::min(next_, limit);
        if (at == 0) {
            return false;
        }
        for (int i = 0; i < 16 && at > 0; ++i) {
            at = at > kPage ? at - kPage : 0;
            *static_cast<volatile uint8_t*>(pixels_ + at) = 0;
        }
        next_ = at;
        return true;
    }

  private:
    uint8_t* const pixels_;
    size_t next_;
};

// A count one thread raises and the other waits for. The waiter spins a little before it sleeps: a row
// takes a fraction of a millisecond, and putting a thread to sleep and waking it costs about as much on
// some systems (under Wine every sleep is a round trip to the server).
class Progress {
  public:
    int value() const { return value_.load(); }
    void advance(int to) {
        value_.store(to);
        if (sleepers_.load() > 0) {
            std::lock_guard lock(mutex_);
            changed_.notify_all();
        }
    }
    template <typename Ready>
    void waitUntil(Ready ready) {
        // A few hundred pauses cover a short wait; yielding after that lets the other thread have this core
        // when the machine is busy.
        for (int i = 0; i < 2000; ++i) {
            if (ready()) {
                return;
            }
            if (i < 300) {
                pause();
            } else {
                std::this_thread::yield();
            }
        }
        std::unique_lock lock(mutex_);
        sleepers_.fetch_add(1);
        changed_.wait(lock, ready);
        sleepers_.fetch_sub(1);
    }

  private:
    static void pause() {
#if defined(__SSE2__)
        _mm_pause();
#endif
    }
    std::atomic<int> value_{0};
    std::atomic<int> sleepers_{0};
    std::mutex mutex_;
    std::condition_variable changed_;
};

// The entropy decoding runs on a second thread a few MCU rows ahead of the rest; when it has to wait for
// a free slot it faults in the pages of picture rows still to come. False when no thread could be started.
bool decodeOnTwoThreads(const Frame& frame,
                        EntropyDecoder& entropy,
                        RowBuilder& builder,
                        std::span<uint8_t> pixels,
                        std::pmr::memory_resource& memory) {
    constexpr int kSlots = 4;
    std::vector<CoefficientSlot> slots;
    slots.reserve(kSlots);
    for (int i = 0; i < kSlots; ++i) {
        slots.emplace_back(frame, memory);
    }
    Progress decoded;
    Progress built;
    // Picture rows from MCU row r down lie in the first bytes of the bottom-up pixels, and the builder only
    // writes them once it has that row.
    const size_t stride = jpegBmpRowBytes(builder.width());
    const auto bytesFromRow = [&](int r) {
        const int rowsAbove = std::min(builder.height(), r * builder.rowsPerMcuRow());
        return static_cast<size_t>(builder.height() - rowsAbove) * stride;
    };
    std::thread worker;
    try {
        worker = std::thread([&] {
            PageToucher pages(pixels.data(), pixels.empty() ? 0 : bytesFromRow(0));
            bool pagesLeft = true;
            for (int r = 0; r < frame.mcuRows; ++r) {
                const auto slotFree = [&] { return r - built.value() < kSlots; };
                while (!slotFree()) {
                    if (pagesLeft) {
                        pagesLeft = pages.touchSome(bytesFromRow(r));
                    } else {
                        built.waitUntil(slotFree);
                    }
                }
                entropy.decodeRow(slots[static_cast<size_t>(r % kSlots)].row);
                decoded.advance(r + 1);
            }
        });
    } catch (const std::system_error&) {
        return false;
    }
    for (int r = 0; r < frame.mcuRows; ++r) {
        decoded.waitUntil([&] { return decoded.value() > r; });
        builder.addRow(slots[static_cast<size_t>(r % kSlots)].row);
        built.advance(r + 1);
    }
    worker.join();
    return true;
}

// Every scan into the whole picture's coefficients first, then the rows as a sequential picture's.
JpegResult decodeProgressive(Frame& frame,
                             std::span<const uint8_t> file,
                             int eighths,
                             JpegRowSink& rows,
                             std::pmr::memory_resource& memory) {
    ProgressiveDecoder scans(frame, file, memory);
    const bool whole = scans.decodeScans();
    RowBuilder builder(frame, eighths, rows, memory);
    for (int r = 0; r < frame.mcuRows; ++r) {
        builder.addRow(scans.takeRow(r));
    }
    return whole ? JpegResult::decoded : JpegResult::damaged;
}

}  // namespace

size_t jpegBmpRowBytes(int width) {
    return (static_cast<size_t>(width) * 3 + 3) & ~static_cast<size_t>(3);
}

int jpegScaledSide(int side, int eighths) {
    return static_cast<int>((static_cast<int64_t>(side) * eighths + 7) / 8);
}

int jpegEighthsToCover(int width, int height, int targetWidth, int targetHeight) {
    for (const int eighths : {1, 2, 3, 4}) {
        if (jpegScaledSide(width, eighths) >= targetWidth && jpegScaledSide(height, eighths) >= targetHeight) {
            return eighths;
        }
    }
    return 8;
}

JpegHeader readJpegHeader(std::span<const uint8_t> file) {
    try {
        const auto frame = std::make_unique<Frame>();
        const bool ok = readHeaders(file, *frame) == HeaderStatus::ok;
        return {frame->width, frame->height, ok};
    } catch (const std::bad_alloc&) {
        return {};
    }
}

namespace {

// BMP pixel data, the bottom row first, each row padded with zeros.
class BmpRows final : public JpegRowSink {
  public:
    BmpRows(uint8_t* pixels, int width, int height)
        : pixels_(pixels), height_(height), used_(static_cast<size_t>(width) * 3), stride_(jpegBmpRowBytes(width)) {}
    uint8_t* row(int y) override { return pixels_ + static_cast<size_t>(height_ - 1 - y) * stride_; }
    void rowDone(int y) override { std::memset(row(y) + used_, 0, stride_ - used_); }

  private:
    uint8_t* const pixels_;
    const int height_;
    const size_t used_;
    const size_t stride_;
};

// `pixels`, where the rows go to memory of the picture's size, may be faulted in ahead by an idle thread.
JpegResult decode(std::span<const uint8_t> file,
                  JpegRowSink& rows,
                  std::span<uint8_t> pixels,
                  Frame& frame,
                  const JpegOptions& options) {
    // Data that stops before the end-of-image marker may still fill every block: a file still being
    // written, or one cut between a progressive picture's scans.
    const bool reachesEnd = jpegReachesEnd(file);
    std::pmr::memory_resource& memory = options.scratch ? *options.scratch : *std::pmr::new_delete_resource();
    if (frame.progressive) {
        const JpegResult result = decodeProgressive(frame, file, options.eighths, rows, memory);
        return reachesEnd ? result : JpegResult::damaged;
    }
    RowBuilder builder(frame, options.eighths, rows, memory);
    EntropyDecoder entropy(frame, file, builder.blockSizes());
    if (options.threads < 2 || frame.mcuRows < 2 || !decodeOnTwoThreads(frame, entropy, builder, pixels, memory)) {
        decodeOnOneThread(frame, entropy, builder, memory);
    }
    return entropy.ranOut() || !reachesEnd ? JpegResult::damaged : JpegResult::decoded;
}

// The file's headers when the decoder takes it at the options' size.
std::unique_ptr<Frame> handledHeaders(std::span<const uint8_t> file, const JpegOptions& options) {
    const int eighths = options.eighths;
    if (eighths != 1 && eighths != 2 && eighths != 3 && eighths != 4 && eighths != 8) {
        return nullptr;
    }
    auto frame = std::make_unique<Frame>();
    if (readHeaders(file, *frame) != HeaderStatus::ok) {
        return nullptr;
    }
    return frame;
}

}  // namespace

JpegResult decodeJpeg(std::span<const uint8_t> file, std::span<uint8_t> pixels, const JpegOptions& options) {
    try {
        const std::unique_ptr<Frame> frame = handledHeaders(file, options);
        if (!frame) {
            return JpegResult::notHandled;
        }
        const int width = jpegScaledSide(frame->width, options.eighths);
        const int height = jpegScaledSide(frame->height, options.eighths);
        if (pixels.size() < jpegBmpRowBytes(width) * static_cast<size_t>(height)) {
            return JpegResult::notHandled;
        }
        BmpRows rows(pixels.data(), width, height);
        return decode(file, rows, pixels, *frame, options);
    } catch (const std::bad_alloc&) {
        return JpegResult::notHandled;
    }
}

JpegResult decodeJpegRows(std::span<const uint8_t> file, JpegRowSink& sink, const JpegOptions& options) {
    try {
        const std::unique_ptr<Frame> frame = handledHeaders(file, options);
        return frame ? decode(file, sink, {}, *frame, options) : JpegResult::notHandled;
    } catch (const std::bad_alloc&) {
        return JpegResult::notHandled;
    }
}

}  // namespace tl
