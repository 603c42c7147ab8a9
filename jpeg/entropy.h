#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "jpeg/frame.h"

// The JPEG decoder's reading of Huffman-coded scan data: the bit stream every scan shares, and the
// decoding of a sequential scan one row of MCUs at a time.
namespace tl::jpeg {

// Natural (row-major) position of each coefficient in the order the file codes them.
extern const std::array<uint8_t, 64> kZigzag;

// A scan's entropy-coded bytes as bits: stuffed zero bytes are dropped, and a marker ends the data (zeros
// come in after it) until restart() passes a restart marker.
class BitStream {
  public:
    // The bit buffer, held in locals by the decoding loops so that it stays in registers.
    struct Bits {
        uint64_t bits;  // left-aligned; bits below `count` are zero or the stream's own next bits
        int count;      // valid bits; negative once zeros were read past the end of the data
    };

    BitStream(const uint8_t* begin, const uint8_t* end) : pos_(begin), end_(end) {}
    // At least 57 bits in the buffer, or all the data has up to the marker that ends it.
    Bits refill(Bits in);
    // Moves on to the next restart interval's data: true when its restart marker was found, false when
    // that stretch has no data (damage, or the data ran out) and comes out as it stands.
    bool restart();
    // Where reading stopped: never past the marker that ended the data.
    const uint8_t* position() const { return pos_; }

  private:
    const uint8_t* pos_;
    const uint8_t* end_;
    bool atMarker_ = false;
    int nextRestart_ = 0;  // the number (0 to 7) the next restart marker should carry
};

// A code longer than the look-up table resolves, found by the canonical code limits.
int decodeLongCode(const HuffmanTable& table, uint64_t& bits, int& count);

[[gnu::always_inline]] inline int decodeSymbol(const HuffmanTable& table, uint64_t& bits, int& count) {
    const HuffmanTable::Fast fast = table.fast[bits >> (64 - HuffmanTable::kLookBits)];
    if (fast.length != 0) {
        bits <<= fast.length;
        count -= fast.length;
        return fast.symbol;
    }
    return decodeLongCode(table, bits, count);
}

// The next n bits (1 to 32).
[[gnu::always_inline]] inline uint32_t takeBits(int n, uint64_t& bits, int& count) {
    const auto value = static_cast<uint32_t>(bits >> (64 - n));
    bits <<= n;
    count -= n;
    return value;
}

// Coefficients of one row of MCUs, dequantized and in natural order, per component: the component's v
// rows of blocks, each row blocksAcross blocks of 64. `last` gives each block's last non-zero coefficient
// in zigzag order (0: only the DC term), which lets the inverse DCT take short cuts. The decoder writes
// only the non-zero coefficients: whoever uses a block clears it again.
struct CoefficientRow {
    std::array<int16_t*, kMaxComponents> blocks{};
    std::array<uint8_t*, kMaxComponents> last{};
};

// Decodes a sequential scan's MCUs in order. Damage never stops it: a bad code decodes as zero and, once
// the data runs out (a file cut short, a marker where data should be), the rest up to the next restart
// marker is left flat grey, which is what other decoders show.
class EntropyDecoder {
  public:
    // blockSizes: for each component, the samples a side its blocks are decoded to (8: whole). A block made
    // smaller needs only its lowest frequencies; the others go to its coefficient 63, which no smaller
    // transform reads, so that whoever clears the block has only those few to clear.
    EntropyDecoder(const Frame& frame,
                   std::span<const uint8_t> file,
                   const std::array<int, kMaxComponents>& blockSizes);
    void decodeRow(const CoefficientRow& row);
    // The data ran out somewhere before the last MCU: part of the picture is grey.
    bool ranOut() const { return ranOut_; }

  private:
    struct BlockPlan {
        int component;
        int offset;  // in blocks from the MCU's first block of the component
        int row;     // block row within the MCU row
        const HuffmanTable* dc;
        const HuffmanTable* ac;
        const uint16_t* quant;
        const uint8_t* order;  // where each coefficient in the file's order goes
    };
    using Bits = BitStream::Bits;
    int decodeBlock(Bits& b, int16_t* coefficients, const BlockPlan& plan);

    const Frame& frame_;
    BitStream stream_;
    Bits bits_{0, 0};
    bool starved_ = false;
    bool ranOut_ = false;
    int restartsLeft_ = 0;
    std::array<int, kMaxComponents> predictors_{};
    std::array<BlockPlan, kMaxBlocksInMcu> plan_{};
    std::array<std::array<uint8_t, 64>, kMaxComponents> orders_{};
    int blocksInMcu_ = 0;
};

}  // namespace tl::jpeg
