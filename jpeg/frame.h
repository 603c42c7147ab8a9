#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

// The JPEG decoder's reading of the markers up to the first scan: the frame, its tables and the layout
// of its blocks.
namespace tl::jpeg {

inline constexpr int kMaxComponents = 3;
inline constexpr int kMaxBlocksInMcu = 10;

// A Huffman table ready for decoding. Codes of up to kLookBits bits are resolved by one look-up of the
// next kLookBits bits of the stream; longer ones by the canonical code limits.
struct HuffmanTable {
    static constexpr int kLookBits = 9;
    struct Fast {
        uint8_t length = 0;  // 0: the code is longer than kLookBits
        uint8_t symbol = 0;
    };
    // A code and the value bits after it resolved together. For DC tables the value is the difference
    // and the run 0; for AC tables the run of zeros before the value, or 64 for the end of the block.
    struct FastValue {
        int16_t value = 0;
        uint8_t run = 0;
        uint8_t length = 0;  // 0: not resolvable by look-up
    };
    std::array<Fast, 1 << kLookBits> fast{};
    std::array<FastValue, 1 << kLookBits> fastValue{};
    // limit[l]: the codes of length l are the 16-bit prefixes below it (left-aligned); limit[17] ends it.
    std::array<uint32_t, 18> limit{};
    std::array<int32_t, 17> offset{};  // index in `symbols` of a code of length l, minus the code
    std::array<uint8_t, 256> symbols{};
    bool defined = false;
};

// The signed value that `size` magnitude bits stand for.
inline int extendValue(uint32_t bits, int size) {
    return bits < (1u << (size - 1)) ? static_cast<int>(bits) - (1 << size) + 1 : static_cast<int>(bits);
}

// Builds a table from a DHT's 16 counts and its symbols; false when the codes overflow their lengths.
bool buildHuffmanTable(const uint8_t* counts, const uint8_t* symbols, bool ac, HuffmanTable& table);

struct Component {
    int id = 0;
    int h = 1;  // sampling factors
    int v = 1;
    int quant = 0;  // table numbers
    int dcTable = 0;
    int acTable = 0;
    int width = 0;   // samples across, before upsampling
    int height = 0;  // sample rows
    int blocksAcross = 0;
};

// Everything known at the start of the first scan.
struct Frame {
    int width = 0;
    int height = 0;
    int componentCount = 0;
    std::array<Component, kMaxComponents> components{};
    int hMax = 1;
    int vMax = 1;
    int mcusAcross = 0;
    int mcuRows = 0;
    int restartInterval = 0;
    std::array<int, kMaxComponents> scanOrder{};      // component indexes in the order the scan codes them
    bool rgb = false;                                 // stored as RGB rather than YCbCr
    bool progressive = false;                         // coded in several scans that refine the picture
    std::array<std::array<uint16_t, 64>, 4> quant{};  // in zigzag order, as stored
    std::array<bool, 4> quantDefined{};
    std::array<HuffmanTable, 4> dc{};
    std::array<HuffmanTable, 4> ac{};
    size_t scanStart = 0;   // offset of the first scan's entropy-coded data
    size_t scanHeader = 0;  // offset of the first scan's header (its SOS marker)
};

// The index in frame.components of the component a scan header names by its id; -1 for none.
int componentIndex(const Frame& frame, int id);

// The big-endian 16-bit number at p.
uint16_t be16(const uint8_t* p);

enum class HeaderStatus { ok, notJpeg, unsupported };

// Reads a segment that may stand before any scan: Huffman tables (DHT), quantization tables (DQT) or the
// restart interval (DRI), given by its marker. False when it is malformed.
bool readTableSegment(uint8_t marker, const uint8_t* seg, size_t length, Frame& frame);

// Reads markers from SOI to the first SOS. `frame` is filled as far as it could be read: width and height
// are known for an unsupported frame type too.
HeaderStatus readHeaders(std::span<const uint8_t> file, Frame& frame);

}  // namespace tl::jpeg
