#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "jpeg/frame.h"

// The JPEG decoder's reading of the Huffman-coded blocks of the scan, one row of MCUs at a time.
namespace tl::jpeg {

// Coefficients of one row of MCUs, dequantized and in natural order, per component: the component's v
// rows of blocks, each row blocksAcross blocks of 64. `last` gives each block's last non-zero coefficient
// in zigzag order (0: only the DC term), which lets the inverse DCT take short cuts. The decoder writes
// only the non-zero coefficients: whoever uses a block clears it again.
struct CoefficientRow {
    std::array<int16_t*, kMaxComponents> blocks{};
    std::array<uint8_t*, kMaxComponents> last{};
};

// Decodes the scan's MCUs in order. Damage never stops it: a bad code decodes as zero and, once the data
// runs out (a file cut short, a marker where data should be), the rest up to the next restart marker
// is left flat grey, which is what other decoders show.
class EntropyDecoder {
  public:
    EntropyDecoder(const Frame& frame, std::span<const uint8_t> file);
    void decodeRow(const CoefficientRow& row);

  private:
    struct BlockPlan {
        int component;
        int offset;  // in blocks from the MCU's first block of the component
        int row;     // block row within the MCU row
        const HuffmanTable* dc;
        const HuffmanTable* ac;
        const uint16_t* quant;
    };
    // The bit buffer, held in locals while a row is decoded so that it stays in registers.
    struct Bits {
        uint64_t bits;  // left-aligned; bits below `count` are zero or the stream's own next bits
        int count;      // valid bits; negative once zeros were read past the end of the data
    };
    int decodeBlock(Bits& b, int16_t* coefficients, const BlockPlan& plan);
    Bits refill(Bits in);
    void restart();

    const Frame& frame_;
    const uint8_t* pos_;
    const uint8_t* end_;
    Bits bits_{0, 0};
    bool atMarker_ = false;
    bool starved_ = false;
    int restartsLeft_ = 0;
    int nextRestart_ = 0;  // the number (0 to 7) the next restart marker should carry
    std::array<int, kMaxComponents> predictors_{};
    std::array<BlockPlan, kMaxBlocksInMcu> plan_{};
    int blocksInMcu_ = 0;
};

}  // namespace tl::jpeg
