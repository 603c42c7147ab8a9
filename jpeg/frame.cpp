#include "jpeg/frame.h"

#include <algorithm>
#include <bit>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "base/picture_limits.h"
#include "jpeg/decoder.h"
#include "jpeg/progressive.h"

namespace tl::jpeg {

int componentIndex(const Frame& frame, int id) {
    int index = -1;
    for (int c = 0; c < frame.componentCount; ++c) {
        if (frame.components[static_cast<size_t>(c)].id == id) {
            index = c;  // the last one, should a frame repeat an id
        }
    }
    return index;
}

uint16_t be16(const uint8_t* p) {
    return static_cast<uint16_t>(p[0] << 8 | p[1]);
}

namespace {

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

bool readQuantTables(const uint8_t* seg, size_t length, Frame& frame) {
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
        frame.quantDefined[static_cast<size_t>(slot)] = true;
        seg += size;
        length -= size;
    }
    return true;
}

// The scan must code every component at once: sequential files that send them in separate scans are left
// to others.
bool readScan(const uint8_t* seg, size_t length, Frame& frame) {
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
        const int index = componentIndex(frame, s[0]);
        if (index < 0 || seen[static_cast<size_t>(index)]) {
            return false;
        }
        seen[static_cast<size_t>(index)] = true;
        Component& comp = frame.components[static_cast<size_t>(index)];
        comp.dcTable = s[1] >> 4;
        comp.acTable = s[1] & 15;
        if (comp.dcTable > 3 || comp.acTable > 3 || !frame.dc[static_cast<size_t>(comp.dcTable)].defined ||
            !frame.ac[static_cast<size_t>(comp.acTable)].defined ||
            !frame.quantDefined[static_cast<size_t>(comp.quant)]) {
            return false;
        }
        frame.scanOrder[static_cast<size_t>(i)] = index;
    }
    return true;
}

// A progressive frame's first scan may code any of the components, each with its quantization table
// defined by then.
bool readFirstProgressiveScan(const uint8_t* seg, size_t length, const Frame& frame) {
    Scan scan;
    if (frame.componentCount == 0 || !readProgressiveScan(seg, length, frame, scan)) {
        return false;
    }
    for (int i = 0; i < scan.count; ++i) {
        const Component& comp = frame.components[static_cast<size_t>(scan.components[static_cast<size_t>(i)])];
        if (!frame.quantDefined[static_cast<size_t>(comp.quant)]) {
            return false;
        }
    }
    return true;
}

// Block layout, from the sampling factors. A lone component is coded block by block whatever factors
// it declares.
bool layOut(Frame& frame) {
    if (!pictureSizeAllowed(frame.width, frame.height)) {
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

bool readTableSegment(uint8_t marker, const uint8_t* seg, size_t length, Frame& frame) {
    switch (marker) {
        case 0xC4:
            return readHuffmanTables(seg, length, frame);
        case 0xDB:
            return readQuantTables(seg, length, frame);
        case 0xDD:
            frame.restartInterval = length == 2 ? be16(seg) : 0;
            return length == 2;
        default:
            return false;
    }
}

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
    for (uint32_t i = 0; i < table.fast.size(); ++i) {
        const HuffmanTable::Fast f = table.fast[i];
        const int run = ac ? f.symbol >> 4 : 0;
        const int size = f.symbol & 15;
        if (f.length == 0) {
            continue;
        }
        if (size == 0) {
            if (!ac || run == 0) {  // a DC difference of 0, or the end of the block
                table.fastValue[i] = {0, static_cast<uint8_t>(ac ? 64 : 0), f.length};
            }
        } else if (f.length + size <= look) {
            const uint32_t bits = (i >> (look - f.length - size)) & ((1u << size) - 1);
            table.fastValue[i] = {static_cast<int16_t>(extendValue(bits, size)), static_cast<uint8_t>(run),
                                  static_cast<uint8_t>(f.length + size)};
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
        const size_t segmentStart = at - 2;
        at += length;
        bool ok = true;
        if (isSofMarker(marker)) {
            // Baseline, extended sequential and progressive Huffman only; lossless, hierarchical and
            // arithmetic-coded frames still give their size.
            ok = !sawFrame && readFrame(seg, segLength, marker == 0xC0 || marker == 0xC1 || marker == 0xC2, frame);
            frame.progressive = marker == 0xC2;
            sawFrame = true;
        } else if (marker == 0xC4 || marker == 0xDB || marker == 0xDD) {
            ok = readTableSegment(marker, seg, segLength, frame);
        } else if (marker == 0xE0) {
            jfif = jfif || (segLength >= 14 && std::memcmp(seg, "JFIF", 5) == 0);
        } else if (marker == 0xEE) {
            if (segLength >= 12 && std::memcmp(seg, "Adobe", 5) == 0) {
                adobeTransform = seg[11];
            }
        } else if (marker == 0xDA) {
            if (!(frame.progressive ? readFirstProgressiveScan(seg, segLength, frame)
                                    : readScan(seg, segLength, frame)) ||
                !layOut(frame)) {
                return HeaderStatus::unsupported;
            }
            // Three components are YCbCr unless the file says RGB: by an Adobe marker without JFIF, or
            // by naming its components R, G and B.
            const auto& c = frame.components;
            frame.rgb =
                frame.componentCount == 3 && !jfif &&
                (adobeTransform == 0 || (adobeTransform < 0 && c[0].id == 'R' && c[1].id == 'G' && c[2].id == 'B'));
            frame.scanStart = at;
            frame.scanHeader = segmentStart;
            return HeaderStatus::ok;
        }
        if (!ok) {
            return HeaderStatus::unsupported;
        }
    }
}

}  // namespace tl::jpeg

namespace tl {

namespace {

// The first 0xFF from p on, or end. Windows' runtime memchr goes a byte at a time, and a photo's scan data
// runs to megabytes with a 0xFF every few hundred bytes.
const uint8_t* findFF(const uint8_t* p, const uint8_t* end) {
#if defined(__SSE2__)
    const __m128i ff = _mm_set1_epi8(static_cast<char>(0xFF));
    for (; end - p >= 16; p += 16) {
        const int mask = _mm_movemask_epi8(_mm_cmpeq_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p)), ff));
        if (mask != 0) {
            return p + std::countr_zero(static_cast<unsigned>(mask));
        }
    }
#endif
    while (p < end && *p != 0xFF) {
        ++p;
    }
    return p;
}

}  // namespace

bool jpegReachesEnd(std::span<const uint8_t> file) {
    const uint8_t* const p = file.data();
    const size_t n = file.size();
    if (n < 4 || p[0] != 0xFF || p[1] != 0xD8) {
        return false;
    }
    bool sawScan = false;
    size_t at = 2;
    for (;;) {
        // Scan data and anything between segments run to the next 0xFF; fill bytes before a marker too.
        const uint8_t* const ff = findFF(p + at, p + n);
        if (ff == p + n) {
            return false;
        }
        at = static_cast<size_t>(ff - p);
        while (at < n && p[at] == 0xFF) {
            ++at;
        }
        if (at >= n) {
            return false;
        }
        const uint8_t marker = p[at++];
        if (marker == 0xD9) {
            return sawScan;
        }
        // A stuffed zero inside scan data, a restart, and the other markers that carry no segment.
        if (marker == 0x00 || marker == 0x01 || marker == 0xD8 || (marker >= 0xD0 && marker <= 0xD7)) {
            continue;
        }
        if (at + 2 > n) {
            return false;
        }
        const size_t length = jpeg::be16(p + at);
        if (length < 2 || length > n - at) {
            return false;
        }
        at += length;
        sawScan = sawScan || marker == 0xDA;
    }
}

}  // namespace tl
