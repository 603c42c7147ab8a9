#include "lists/jpeg_stream.h"

#include <bit>
#include <cstring>

#include "lists/jpeg_decoder.h"

namespace tl::jpeg {

namespace {

// Natural (row-major) position of each coefficient in the order the file codes them.
constexpr std::array<uint8_t, 64> makeZigzag() {
    std::array<uint8_t, 64> order{};
    int x = 0;
    int y = 0;
    for (int k = 0; k < 64; ++k) {
        order[static_cast<size_t>(k)] = static_cast<uint8_t>(y * 8 + x);
        if ((x + y) % 2 == 0) {  // going up and right
            if (x == 7) {
                ++y;
            } else if (y == 0) {
                ++x;
            } else {
                ++x;
                --y;
            }
        } else {  // going down and left
            if (y == 7) {
                ++x;
            } else if (x == 0) {
                ++y;
            } else {
                --x;
                ++y;
            }
        }
    }
    return order;
}
constexpr std::array<uint8_t, 64> kZigzag = makeZigzag();

uint16_t be16(const uint8_t* p) {
    return static_cast<uint16_t>(p[0] << 8 | p[1]);
}

// The signed value of `size` magnitude bits.
int extend(uint32_t bits, int size) {
    return bits < (1u << (size - 1)) ? static_cast<int>(bits) - (1 << size) + 1 : static_cast<int>(bits);
}

bool isSofMarker(uint8_t m) {
    return m >= 0xC0 && m <= 0xCF && m != 0xC4 && m != 0xC8 && m != 0xCC;
}

bool readFrame(const uint8_t* seg, size_t length, bool supportedType, Frame& frame) {
    if (length < 6) {
        return false;
    }
    frame.height = be16(seg + 1);
    frame.width = be16(seg + 3);
    const int count = seg[5];
    if (!supportedType || seg[0] != 8 || frame.width == 0 || frame.height == 0 || (count != 1 && count != 3) ||
        length < 6 + 3 * static_cast<size_t>(count)) {
        return false;
    }
    frame.componentCount = count;
    for (int i = 0; i < count; ++i) {
        const uint8_t* c = seg + 6 + 3 * i;
        Component& comp = frame.components[static_cast<size_t>(i)];
        comp.id = c[0];
        comp.h = c[1] >> 4;
        comp.v = c[1] & 15;
        comp.quant = c[2];
        if (comp.h < 1 || comp.h > 4 || comp.v < 1 || comp.v > 4 || comp.quant > 3) {
            return false;
        }
        for (int j = 0; j < i; ++j) {
            if (frame.components[static_cast<size_t>(j)].id == comp.id) {
                return false;
            }
        }
    }
    return true;
}

bool readHuffmanTables(const uint8_t* seg, size_t length, Frame& frame) {
    while (length > 16) {
        const int type = seg[0] >> 4;
        const int slot = seg[0] & 15;
        size_t total = 0;
        for (int i = 1; i <= 16; ++i) {
            total += seg[i];
        }
        if (type > 1 || slot > 3 || total > 256 || length < 17 + total) {
            return false;
        }
        HuffmanTable& table = type == 0 ? frame.dc[static_cast<size_t>(slot)] : frame.ac[static_cast<size_t>(slot)];
        if (!buildHuffmanTable(seg + 1, seg + 17, type == 1, table)) {
            return false;
        }
        seg += 17 + total;
        length -= 17 + total;
    }
    return length == 0;
}

bool readQuantTables(const uint8_t* seg, size_t length, Frame& frame, std::array<bool, 4>& defined) {
    while (length > 0) {
        const int precision = seg[0] >> 4;
        const int slot = seg[0] & 15;
        const size_t size = 1 + 64 * (precision == 0 ? 1u : 2u);
        if (precision > 1 || slot > 3 || length < size) {
            return false;
        }
        auto& table = frame.quant[static_cast<size_t>(slot)];
        for (size_t k = 0; k < 64; ++k) {
            table[k] = precision == 0 ? seg[1 + k] : be16(seg + 1 + 2 * k);
        }
        defined[static_cast<size_t>(slot)] = true;
        seg += size;
        length -= size;
    }
    return true;
}

// The scan must code every component at once: files that send them in separate scans are left to others.
bool readScan(const uint8_t* seg, size_t length, Frame& frame, const std::array<bool, 4>& quantDefined) {
    if (frame.componentCount == 0 || length < 1) {
        return false;
    }
    const int count = seg[0];
    if (count != frame.componentCount || length != 4 + 2 * static_cast<size_t>(count)) {
        return false;
    }
    std::array<bool, kMaxComponents> seen{};
    for (int i = 0; i < count; ++i) {
        const uint8_t* s = seg + 1 + 2 * i;
        int index = -1;
        for (int c = 0; c < frame.componentCount; ++c) {
            if (frame.components[static_cast<size_t>(c)].id == s[0]) {
                index = c;
            }
        }
        if (index < 0 || seen[static_cast<size_t>(index)]) {
            return false;
        }
        seen[static_cast<size_t>(index)] = true;
        Component& comp = frame.components[static_cast<size_t>(index)];
        comp.dcTable = s[1] >> 4;
        comp.acTable = s[1] & 15;
        if (comp.dcTable > 3 || comp.acTable > 3 || !frame.dc[static_cast<size_t>(comp.dcTable)].defined ||
            !frame.ac[static_cast<size_t>(comp.acTable)].defined || !quantDefined[static_cast<size_t>(comp.quant)]) {
            return false;
        }
        frame.scanOrder[static_cast<size_t>(i)] = index;
    }
    return true;
}

// Block layout, from the sampling factors. A lone component is coded block by block whatever factors
// it declares.
bool layOut(Frame& frame) {
    const uint64_t pixelBytes = jpegBmpRowBytes(frame.width) * static_cast<uint64_t>(frame.height);
    if (pixelBytes > kMaxPixelBytes) {
        return false;
    }
    if (frame.componentCount == 1) {
        frame.components[0].h = 1;
        frame.components[0].v = 1;
    }
    int blocks = 0;
    for (int c = 0; c < frame.componentCount; ++c) {
        const Component& comp = frame.components[static_cast<size_t>(c)];
        frame.hMax = std::max(frame.hMax, comp.h);
        frame.vMax = std::max(frame.vMax, comp.v);
        blocks += comp.h * comp.v;
    }
    if (blocks > kMaxBlocksInMcu) {
        return false;
    }
    frame.mcusAcross = (frame.width + 8 * frame.hMax - 1) / (8 * frame.hMax);
    frame.mcuRows = (frame.height + 8 * frame.vMax - 1) / (8 * frame.vMax);
    for (int c = 0; c < frame.componentCount; ++c) {
        Component& comp = frame.components[static_cast<size_t>(c)];
        // Upsampling by a fraction (3:2) is something no common encoder writes.
        if (frame.hMax % comp.h != 0 || frame.vMax % comp.v != 0) {
            return false;
        }
        comp.width = (frame.width * comp.h + frame.hMax - 1) / frame.hMax;
        comp.height = (frame.height * comp.v + frame.vMax - 1) / frame.vMax;
        comp.blocksAcross = frame.mcusAcross * comp.h;
    }
    return true;
}

}  // namespace

bool buildHuffmanTable(const uint8_t* counts, const uint8_t* symbols, bool ac, HuffmanTable& table) {
    constexpr int look = HuffmanTable::kLookBits;
    table = HuffmanTable{};
    int total = 0;
    for (int l = 0; l < 16; ++l) {
        total += counts[l];
    }
    for (int i = 0; i < total; ++i) {
        table.symbols[static_cast<size_t>(i)] = symbols[i];
        if (!ac && symbols[i] > 15) {
            return false;
        }
    }
    uint32_t code = 0;
    int index = 0;
    for (int l = 1; l <= 16; ++l) {
        const int n = counts[l - 1];
        // As other decoders do, a code of all ones is refused.
        if (n > 0 && code + static_cast<uint32_t>(n) >= (1u << l)) {
            return false;
        }
        table.offset[static_cast<size_t>(l)] = index - static_cast<int32_t>(code);
        for (int i = 0; i < n; ++i, ++code, ++index) {
            if (l <= look) {
                const uint32_t first = code << (look - l);
                for (uint32_t j = 0; j < (1u << (look - l)); ++j) {
                    table.fast[first + j] = {static_cast<uint8_t>(l), symbols[index]};
                }
            }
        }
        table.limit[static_cast<size_t>(l)] = code << (16 - l);
        code <<= 1;
    }
    table.limit[17] = 0xFFFFFFFF;
    if (ac) {
        for (uint32_t i = 0; i < table.fast.size(); ++i) {
            const HuffmanTable::Fast f = table.fast[i];
            const int run = f.symbol >> 4;
            const int size = f.symbol & 15;
            if (f.length == 0) {
                continue;
            }
            if (size == 0) {
                if (run == 0) {  // end of block: a run past the last coefficient
                    table.fastAc[i] = {0, 64, f.length};
                }
            } else if (f.length + size <= look) {
                const uint32_t bits = (i >> (look - f.length - size)) & ((1u << size) - 1);
                table.fastAc[i] = {static_cast<int16_t>(extend(bits, size)), static_cast<uint8_t>(run),
                                   static_cast<uint8_t>(f.length + size)};
            }
        }
    }
    table.defined = true;
    return true;
}

HeaderStatus readHeaders(std::span<const uint8_t> file, Frame& frame) {
    const uint8_t* const p = file.data();
    const size_t n = file.size();
    if (n < 4 || p[0] != 0xFF || p[1] != 0xD8) {
        return HeaderStatus::notJpeg;
    }
    bool sawFrame = false;
    bool jfif = false;
    int adobeTransform = -1;
    std::array<bool, 4> quantDefined{};
    size_t at = 2;
    for (;;) {
        // Anything between segments is skipped up to the next 0xFF, and fill bytes before a marker too.
        while (at < n && p[at] != 0xFF) {
            ++at;
        }
        while (at < n && p[at] == 0xFF) {
            ++at;
        }
        if (at >= n) {
            return HeaderStatus::unsupported;
        }
        const uint8_t marker = p[at++];
        if (marker == 0x00 || marker == 0x01 || marker == 0xD8 || (marker >= 0xD0 && marker <= 0xD7)) {
            continue;  // no segment follows
        }
        if (marker == 0xD9 || at + 2 > n) {
            return HeaderStatus::unsupported;  // the picture ends before its scan
        }
        const size_t length = be16(p + at);
        if (length < 2 || length > n - at) {
            return HeaderStatus::unsupported;
        }
        const uint8_t* const seg = p + at + 2;
        const size_t segLength = length - 2;
        at += length;
        bool ok = true;
        if (isSofMarker(marker)) {
            // Baseline and extended sequential Huffman only; progressive, lossless, hierarchical and
            // arithmetic-coded frames still give their size.
            ok = !sawFrame && readFrame(seg, segLength, marker == 0xC0 || marker == 0xC1, frame);
            sawFrame = true;
        } else if (marker == 0xC4) {
            ok = readHuffmanTables(seg, segLength, frame);
        } else if (marker == 0xDB) {
            ok = readQuantTables(seg, segLength, frame, quantDefined);
        } else if (marker == 0xDD) {
            ok = segLength == 2;
            frame.restartInterval = ok ? be16(seg) : 0;
        } else if (marker == 0xE0) {
            jfif = jfif || (segLength >= 14 && std::memcmp(seg, "JFIF", 5) == 0);
        } else if (marker == 0xEE) {
            if (segLength >= 12 && std::memcmp(seg, "Adobe", 5) == 0) {
                adobeTransform = seg[11];
            }
        } else if (marker == 0xDA) {
            if (!readScan(seg, segLength, frame, quantDefined) || !layOut(frame)) {
                return HeaderStatus::unsupported;
            }
            // Three components are YCbCr unless the file says RGB: by an Adobe marker without JFIF, or
            // by naming its components R, G and B.
            const auto& c = frame.components;
            frame.rgb =
                frame.componentCount == 3 && !jfif &&
                (adobeTransform == 0 || (adobeTransform < 0 && c[0].id == 'R' && c[1].id == 'G' && c[2].id == 'B'));
            frame.scanStart = at;
            return HeaderStatus::ok;
        }
        if (!ok) {
            return HeaderStatus::unsupported;
        }
    }
}

EntropyDecoder::EntropyDecoder(const Frame& frame, std::span<const uint8_t> file)
    : frame_(frame), pos_(file.data() + frame.scanStart), end_(file.data() + file.size()) {
    restartsLeft_ = frame.restartInterval;
    for (int i = 0; i < frame.componentCount; ++i) {
        const int c = frame.scanOrder[static_cast<size_t>(i)];
        const Component& comp = frame.components[static_cast<size_t>(c)];
        for (int v = 0; v < comp.v; ++v) {
            for (int h = 0; h < comp.h; ++h) {
                plan_[static_cast<size_t>(blocksInMcu_++)] = {c, h, v};
            }
        }
    }
}

void EntropyDecoder::decodeRow(const CoefficientRow& row) {
    for (int mcu = 0; mcu < frame_.mcusAcross; ++mcu) {
        if (frame_.restartInterval > 0) {
            if (restartsLeft_ == 0) {
                restart();
                restartsLeft_ = frame_.restartInterval;
            }
            --restartsLeft_;
        }
        if (starved_) {
            continue;  // the blocks stay clear: flat grey
        }
        for (int b = 0; b < blocksInMcu_; ++b) {
            const BlockPlan& plan = plan_[static_cast<size_t>(b)];
            const auto c = static_cast<size_t>(plan.component);
            const Component& comp = frame_.components[c];
            const auto index = static_cast<size_t>(plan.row * comp.blocksAcross + mcu * comp.h + plan.offset);
            row.last[c][index] = static_cast<uint8_t>(decodeBlock(row.blocks[c] + index * 64, plan.component));
        }
        if (count_ < 0) {
            starved_ = true;
        }
    }
}

namespace {

// A code longer than the look-up table resolves, found by the canonical code limits.
int decodeLongCode(const HuffmanTable& table, uint64_t& bits, int& count) {
    const auto top = static_cast<uint32_t>(bits >> 48);
    int l = HuffmanTable::kLookBits + 1;
    while (top >= table.limit[static_cast<size_t>(l)]) {
        ++l;
    }
    if (l > 16) {
        // No such code: read as zero, as other decoders do.
        bits <<= 16;
        count -= 16;
        return 0;
    }
    bits <<= l;
    count -= l;
    return table
        .symbols[static_cast<size_t>(table.offset[static_cast<size_t>(l)] + static_cast<int32_t>(top >> (16 - l)))];
}

[[gnu::always_inline]] inline int decodeSymbol(const HuffmanTable& table, uint64_t& bits, int& count) {
    const HuffmanTable::Fast fast = table.fast[bits >> (64 - HuffmanTable::kLookBits)];
    if (fast.length != 0) {
        bits <<= fast.length;
        count -= fast.length;
        return fast.symbol;
    }
    return decodeLongCode(table, bits, count);
}

[[gnu::always_inline]] inline uint32_t takeBits(int n, uint64_t& bits, int& count) {
    const auto value = static_cast<uint32_t>(bits >> (64 - n));
    bits <<= n;
    count -= n;
    return value;
}

}  // namespace

// The bit buffer lives in locals while a block is decoded, so that it stays in registers.
int EntropyDecoder::decodeBlock(int16_t* out, int component) {
    constexpr int look = HuffmanTable::kLookBits;
    const Component& comp = frame_.components[static_cast<size_t>(component)];
    const HuffmanTable& ac = frame_.ac[static_cast<size_t>(comp.acTable)];
    const uint16_t* const q = frame_.quant[static_cast<size_t>(comp.quant)].data();
    Bits b{bits_, count_};
    if (b.count < 32) {
        b = refill(b);
    }
    const int size = decodeSymbol(frame_.dc[static_cast<size_t>(comp.dcTable)], b.bits, b.count);
    int& predictor = predictors_[static_cast<size_t>(component)];
    if (size != 0) {
        // Damaged data can push the sum anywhere; it wraps rather than overflows.
        predictor = static_cast<int>(static_cast<uint32_t>(predictor) +
                                     static_cast<uint32_t>(extend(takeBits(size, b.bits, b.count), size)));
    }
    out[0] = static_cast<int16_t>(static_cast<uint32_t>(predictor) * q[0]);
    int last = 0;
    for (int k = 1; k < 64;) {
        if (b.count < 32) {
            b = refill(b);
        }
        const HuffmanTable::FastAc fast = ac.fastAc[b.bits >> (64 - look)];
        if (fast.length != 0) {
            b.bits <<= fast.length;
            b.count -= fast.length;
            k += fast.run;
            if (k > 63) {
                break;
            }
            out[kZigzag[static_cast<size_t>(k)]] = static_cast<int16_t>(fast.value * q[k]);
            last = k++;
            continue;
        }
        const int symbol = decodeSymbol(ac, b.bits, b.count);
        const int run = symbol >> 4;
        const int size2 = symbol & 15;
        if (size2 == 0) {
            if (run != 15) {
                break;
            }
            k += 16;
            continue;
        }
        k += run;
        const int value = extend(takeBits(size2, b.bits, b.count), size2);
        if (k > 63) {
            break;
        }
        out[kZigzag[static_cast<size_t>(k)]] = static_cast<int16_t>(static_cast<uint32_t>(value) * q[k]);
        last = k++;
    }
    bits_ = b.bits;
    count_ = b.count;
    return last;
}

EntropyDecoder::Bits EntropyDecoder::refill(Bits in) {
    auto [bits, count] = in;
    if (atMarker_) {
        return in;  // zeros come in from the right
    }
    if (end_ - pos_ >= 8) {
        uint64_t word = 0;
        std::memcpy(&word, pos_, 8);
        if constexpr (std::endian::native == std::endian::little) {
            word = __builtin_bswap64(word);
        }
        // Without a 0xFF among the next eight bytes (no stuffing, no marker) they go in at once. Bits of a
        // byte only partly taken stay below `count`: they are that byte's own, so taking it later changes
        // nothing.
        const uint64_t inverted = ~word;
        if (((inverted - 0x0101010101010101) & word & 0x8080808080808080) == 0) {
            bits |= word >> count;
            const int bytes = (64 - count) >> 3;
            pos_ += bytes;
            return {bits, count + 8 * bytes};
        }
    }
    while (count <= 56) {
        if (pos_ >= end_) {
            atMarker_ = true;
            break;
        }
        const uint8_t byte = *pos_;
        if (byte == 0xFF) {
            if (end_ - pos_ < 2 || pos_[1] != 0x00) {
                atMarker_ = true;  // stays on the marker, for restart() to find
                break;
            }
            pos_ += 2;
        } else {
            ++pos_;
        }
        bits |= static_cast<uint64_t>(byte) << (56 - count);
        count += 8;
    }
    return {bits, count};
}

void EntropyDecoder::restart() {
    bits_ = 0;
    count_ = 0;
    atMarker_ = false;
    predictors_ = {};
    const int expected = nextRestart_;
    nextRestart_ = (nextRestart_ + 1) & 7;
    // Normally the expected marker is right here. Otherwise, as other decoders do: bytes before a marker are
    // passed over, and so are markers of restarts already past; a marker of one of the next two restarts,
    // or one that isn't a restart (the end of the picture), is left in place, so this stretch has no data
    // and comes out grey.
    for (;;) {
        while (end_ - pos_ >= 2 && (pos_[0] != 0xFF || pos_[1] == 0x00 || pos_[1] == 0xFF)) {
            ++pos_;
        }
        if (end_ - pos_ < 2) {
            return;  // the data has run out
        }
        const int marker = pos_[1];
        if (marker < 0xC0) {
            pos_ += 2;
            continue;
        }
        if (marker < 0xD0 || marker > 0xD7) {
            return;
        }
        const int ahead = (marker - 0xD0 - expected) & 7;
        if (ahead == 1 || ahead == 2) {
            return;
        }
        pos_ += 2;
        if (ahead == 0 || ahead < 6) {
            starved_ = false;
            return;
        }
    }
}

}  // namespace tl::jpeg
