#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory_resource>
#include <span>

#include "base/page_memory.h"
#include "jpeg/entropy.h"
#include "jpeg/frame.h"

// The JPEG decoder's reading of progressive files: the picture comes in several scans, each adding some
// coefficients (a band of zigzag positions) or some bits of them, so the coefficients of the whole picture
// are kept until the last scan is in, then handed to the row pipeline a row of MCUs at a time.
namespace tl::jpeg {

// One scan's header: which components, which coefficients (zigzag positions ss to se) and which of their
// bits: al is the lowest bit it sends, ah the one above it that earlier scans stopped at (0 the first time).
struct Scan {
    int count = 0;
    std::array<int, kMaxComponents> components{};  // indexes into the frame's components, in coding order
    int ss = 0;
    int se = 0;
    int ah = 0;
    int al = 0;
    std::array<int, kMaxComponents> tables{};  // each component's Huffman table: DC or AC as the band is
};

// Reads a progressive frame's SOS segment. False when the scan can't be decoded: malformed, a band or bit
// position the format doesn't allow, or a Huffman table it needs not defined.
bool readProgressiveScan(const uint8_t* seg, size_t length, const Frame& frame, Scan& scan);

class ProgressiveDecoder {
  public:
    // Takes the coefficient memory for the whole picture: two bytes a sample and eight bytes a block.
    ProgressiveDecoder(Frame& frame, std::span<const uint8_t> file, std::pmr::memory_resource& memory);

    // Decodes every scan from the first to the end of the picture. False when the picture ends early: the
    // file ends before its end marker, the data of a scan runs out, or a scan or table is damaged. Whatever
    // came before stands (a scan that can't be decoded is passed over): the coarse picture other decoders
    // show. The work is bounded by the file's size and the picture's: every scan decoded must bring bits
    // no earlier scan brought.
    bool decodeScans();

    // Row r of MCUs, dequantized in place. Each row can be taken once, after decodeScans.
    CoefficientRow takeRow(int r);

  private:
    using Bits = BitStream::Bits;
    struct Plane {
        ScratchArray<int16_t> blocks;     // rows of blocksAcross blocks, natural order, as coded
        ScratchArray<uint64_t> nonzero;   // per block: bit k set when AC coefficient k (zigzag) isn't 0
        ScratchArray<uint8_t> last;       // one row of MCUs' worth, for takeRow
        std::array<int16_t, 64> quant{};  // natural order, taken at the component's first scan
        bool quantTaken = false;
        std::array<int8_t, 64> lowestBit{};  // per zigzag position: the lowest bit received, -1 none
        int blocksWide = 0;                  // blocks coded by a scan of this component alone
        int blocksHigh = 0;
    };

    bool startScan(const Scan& scan);
    // Decodes the scan whose data starts at `data`; returns where its data ended.
    const uint8_t* decodeScan(const Scan& scan, const uint8_t* data);
    template <typename Reset, typename Unit>
    void forEachUnit(BitStream& stream, int across, int down, Reset&& reset, Unit&& unit);
    void decodeDc(const Scan& scan, BitStream& stream);
    void decodeAcFirst(const Scan& scan, BitStream& stream);
    void decodeAcRefine(const Scan& scan, BitStream& stream);

    Frame& frame_;
    std::span<const uint8_t> file_;
    std::array<Plane, kMaxComponents> planes_;
    bool ranOut_ = false;
    std::array<int, kMaxComponents> predictors_{};  // DC scans' last values, reset by restart markers
};

}  // namespace tl::jpeg
