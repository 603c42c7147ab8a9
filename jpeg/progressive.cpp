#include "jpeg/progressive.h"

#include <algorithm>
#include <bit>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace tl::jpeg {

namespace {

// Offset of the next marker's 0xFF from `at` on, or `n` when there is none. Stuffed zeros, fill bytes and
// restart markers are passed over: they belong to a scan's data, which may be passed over whole.
size_t nextMarker(const uint8_t* p, size_t n, size_t at) {
    while (at + 1 < n) {
        const void* found = std::memchr(p + at, 0xFF, n - at - 1);
        if (!found) {
            return n;
        }
        at = static_cast<size_t>(static_cast<const uint8_t*>(found) - p);
        const uint8_t marker = p[at + 1];
        if (marker == 0xFF) {
            ++at;
        } else if (marker == 0x00 || (marker >= 0xD0 && marker <= 0xD7)) {
            at += 2;
        } else {
            return at;
        }
    }
    return n;
}

// Zigzag positions from k on, and below k.
uint64_t fromPosition(int k) {
    return k >= 64 ? 0 : ~uint64_t{0} << k;
}
uint64_t belowPosition(int k) {
    return k >= 64 ? ~uint64_t{0} : (uint64_t{1} << k) - 1;
}

// A refining scan's bit for each coefficient already non-zero among `which`: a 1 adds `bit` to its
// magnitude, unless an earlier scan sent that bit already (damage; other decoders ignore it too).
[[gnu::always_inline]] inline void correctBits(BitStream& stream,
                                               BitStream::Bits& b,
                                               int16_t* block,
                                               uint64_t which,
                                               int bit) {
    while (which != 0) {
        if (b.count < 1) {
            b = stream.refill(b);
        }
        const int k = std::countr_zero(which);
        which &= which - 1;
        const auto take = static_cast<int>(b.bits >> 63);
        b.bits <<= 1;
        --b.count;
        int16_t& c = block[kZigzag[static_cast<size_t>(k)]];
        const int value = c;
        const int step = value >= 0 ? bit : -bit;
        const int apply = take & static_cast<int>((value & bit) == 0);
        c = static_cast<int16_t>(value + (step & -apply));
    }
}

void dequantize(int16_t* block, int last, const int16_t* quant) {
    if (last == 0) {
        block[0] = static_cast<int16_t>(block[0] * quant[0]);
        return;
    }
#if defined(__SSE2__)
    for (int i = 0; i < 64; i += 8) {
        auto* at = reinterpret_cast<__m128i*>(block + i);
        const __m128i q = _mm_loadu_si128(reinterpret_cast<const __m128i*>(quant + i));
        _mm_storeu_si128(at, _mm_mullo_epi16(_mm_loadu_si128(at), q));
    }
#else
    for (int i = 0; i < 64; ++i) {
        block[i] = static_cast<int16_t>(block[i] * quant[i]);
    }
#endif
}

}  // namespace

bool readProgressiveScan(const uint8_t* seg, size_t length, const Frame& frame, Scan& scan) {
    if (length < 1) {
        return false;
    }
    const int count = seg[0];
    if (count < 1 || count > frame.componentCount || length != 4 + 2 * static_cast<size_t>(count)) {
        return false;
    }
    const uint8_t* const band = seg + 1 + 2 * count;
    scan.count = count;
    scan.ss = band[0];
    scan.se = band[1];
    scan.ah = band[2] >> 4;
    scan.al = band[2] & 15;
    // A DC scan may code several components, a scan of AC coefficients just one. Each refining scan sends
    // one more bit, and a 16-bit coefficient has no more than 14 below its top.
    const bool dc = scan.ss == 0;
    if ((dc ? scan.se != 0 : (scan.se < scan.ss || scan.se > 63 || count != 1)) ||
        (scan.ah != 0 && scan.al != scan.ah - 1) || scan.al > 13) {
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
        scan.components[static_cast<size_t>(i)] = index;
        const int table = dc ? s[1] >> 4 : s[1] & 15;
        // A DC refinement sends plain bits, without a table.
        const bool needsTable = !dc || scan.ah == 0;
        if (needsTable && (table > 3 || !(dc ? frame.dc : frame.ac)[static_cast<size_t>(table)].defined)) {
            return false;
        }
        scan.tables[static_cast<size_t>(i)] = table & 3;
    }
    return true;
}

ProgressiveDecoder::ProgressiveDecoder(Frame& frame, std::span<const uint8_t> file, std::pmr::memory_resource& memory)
    : frame_(frame), file_(file) {
    for (int c = 0; c < frame.componentCount; ++c) {
        const Component& comp = frame.components[static_cast<size_t>(c)];
        Plane& plane = planes_[static_cast<size_t>(c)];
        const size_t blocks = static_cast<size_t>(comp.blocksAcross) * static_cast<size_t>(frame.mcuRows * comp.v);
        if (blocks > SIZE_MAX / 64) {
            throw std::bad_alloc();
        }
        plane.blocks = ScratchArray<int16_t>(memory, blocks * 64);
        plane.nonzero = ScratchArray<uint64_t>(memory, blocks);
        plane.last = ScratchArray<uint8_t>(memory, static_cast<size_t>(comp.blocksAcross * comp.v));
        plane.lowestBit.fill(-1);
        plane.blocksWide = (comp.width + 7) / 8;
        plane.blocksHigh = (comp.height + 7) / 8;
    }
}

bool ProgressiveDecoder::decodeScans() {
    const uint8_t* const p = file_.data();
    const size_t n = file_.size();
    bool whole = true;
    size_t at = frame_.scanHeader;
    for (;;) {
        at = nextMarker(p, n, at);
        if (n - at < 2) {
            return false;  // the file ends before the picture does
        }
        const uint8_t marker = p[at + 1];
        at += 2;
        if (marker == 0xD9) {
            return whole;
        }
        if (marker == 0x01 || marker == 0xD8) {
            continue;  // no segment follows
        }
        if (n - at < 2 || be16(p + at) < 2 || be16(p + at) > n - at) {
            return false;
        }
        const uint8_t* const seg = p + at + 2;
        const size_t length = be16(p + at) - 2u;
        at += length + 2;
        if (marker == 0xDA) {
            Scan scan;
            if (!readProgressiveScan(seg, length, frame_, scan) || !startScan(scan)) {
                whole = false;  // its data is passed over on the way to the next marker
                continue;
            }
            at = static_cast<size_t>(decodeScan(scan, p + at) - p);
        } else if (marker == 0xC4 || marker == 0xDB || marker == 0xDD) {
            if (!readTableSegment(marker, seg, length, frame_)) {
                return false;
            }
        } else if (marker >= 0xC0 && marker <= 0xCF) {
            return false;  // a second frame: not something one picture has
        }
    }
}

// A scan is decoded only when it brings, for every coefficient of its band in every component it codes,
// the bit just below the last one received (any bits, the first time). The first scan of a component
// fixes its quantization table, as other decoders do.
bool ProgressiveDecoder::startScan(const Scan& scan) {
    const int expected = scan.ah == 0 ? -1 : scan.ah;
    for (int i = 0; i < scan.count; ++i) {
        const auto c = static_cast<size_t>(scan.components[static_cast<size_t>(i)]);
        const Plane& plane = planes_[c];
        for (int k = scan.ss; k <= scan.se; ++k) {
            if (plane.lowestBit[static_cast<size_t>(k)] != expected) {
                return false;
            }
        }
        if (!plane.quantTaken && !frame_.quantDefined[static_cast<size_t>(frame_.components[c].quant)]) {
            return false;
        }
    }
    for (int i = 0; i < scan.count; ++i) {
        const auto c = static_cast<size_t>(scan.components[static_cast<size_t>(i)]);
        Plane& plane = planes_[c];
        std::fill(plane.lowestBit.begin() + scan.ss, plane.lowestBit.begin() + scan.se + 1,
                  static_cast<int8_t>(scan.al));
        if (!plane.quantTaken) {
            const auto& table = frame_.quant[static_cast<size_t>(frame_.components[c].quant)];
            for (size_t k = 0; k < 64; ++k) {
                plane.quant[kZigzag[k]] = static_cast<int16_t>(table[k]);
            }
            plane.quantTaken = true;
        }
    }
    return true;
}

const uint8_t* ProgressiveDecoder::decodeScan(const Scan& scan, const uint8_t* data) {
    BitStream stream(data, file_.data() + file_.size());
    if (scan.ss == 0) {
        decodeDc(scan, stream);
    } else if (scan.ah == 0) {
        decodeAcFirst(scan, stream);
    } else {
        decodeAcRefine(scan, stream);
    }
    return stream.position();
}

// Runs unit(bits, x, y) for each MCU of the scan in order, `across` by `down`, with the restart markers'
// resets and, once the data has run out, nothing more until the next restart marker: those MCUs keep what
// earlier scans gave them.
template <typename Reset, typename Unit>
[[gnu::always_inline]] inline void ProgressiveDecoder::forEachUnit(BitStream& stream,
                                                                   int across,
                                                                   int down,
                                                                   Reset&& reset,
                                                                   Unit&& unit) {
    const int interval = frame_.restartInterval;
    int restartsLeft = interval;
    bool starved = false;
    Bits b{0, 0};
    for (int y = 0; y < down; ++y) {
        for (int x = 0; x < across; ++x) {
            if (interval > 0) {
                if (restartsLeft == 0) {
                    b = {0, 0};
                    reset();
                    if (stream.restart()) {
                        starved = false;
                    }
                    restartsLeft = interval;
                }
                --restartsLeft;
            }
            if (starved) {
                if (interval == 0) {
                    return;
                }
                continue;
            }
            unit(b, x, y);
            if (b.count < 0) {
                starved = true;
                ranOut_ = true;
            }
        }
    }
}

void ProgressiveDecoder::decodeDc(const Scan& scan, BitStream& stream) {
    // The blocks of one MCU: for a scan of several components, each one's h by v blocks; for a scan of one,
    // a single block, whatever its sampling factors.
    struct Place {
        int16_t* blocks;
        size_t blocksAcross;
        int component;
        int h;  // blocks of the component across and down an MCU
        int v;
        int x;  // this block's place among them
        int y;
        const HuffmanTable* table;
    };
    std::array<Place, kMaxBlocksInMcu> places{};
    int count = 0;
    const bool interleaved = scan.count > 1;
    for (int i = 0; i < scan.count; ++i) {
        const int c = scan.components[static_cast<size_t>(i)];
        const Component& comp = frame_.components[static_cast<size_t>(c)];
        const int h = interleaved ? comp.h : 1;
        const int v = interleaved ? comp.v : 1;
        for (int y = 0; y < v; ++y) {
            for (int x = 0; x < h; ++x) {
                places[static_cast<size_t>(count++)] = {
                    planes_[static_cast<size_t>(c)].blocks.data(),
                    static_cast<size_t>(comp.blocksAcross),
                    c,
                    h,
                    v,
                    x,
                    y,
                    &frame_.dc[static_cast<size_t>(scan.tables[static_cast<size_t>(i)])]};
            }
        }
    }
    const Plane& only = planes_[static_cast<size_t>(scan.components[0])];
    const int across = interleaved ? frame_.mcusAcross : only.blocksWide;
    const int down = interleaved ? frame_.mcuRows : only.blocksHigh;
    const auto blockAt = [&](const Place& place, int x, int y) {
        const size_t row = static_cast<size_t>(y * place.v + place.y);
        return place.blocks + (row * place.blocksAcross + static_cast<size_t>(x * place.h + place.x)) * 64;
    };
    const int al = scan.al;
    if (scan.ah != 0) {
        const auto bit = static_cast<int16_t>(1 << al);
        forEachUnit(
            stream, across, down, [] {},
            [&](Bits& b, int x, int y) {
                if (b.count < kMaxBlocksInMcu) {
                    b = stream.refill(b);
                }
                for (int i = 0; i < count; ++i) {
                    if (takeBits(1, b.bits, b.count) != 0) {
                        int16_t* const block = blockAt(places[static_cast<size_t>(i)], x, y);
                        block[0] = static_cast<int16_t>(block[0] | bit);
                    }
                }
            });
        return;
    }
    predictors_ = {};
    forEachUnit(
        stream, across, down, [&] { predictors_ = {}; },
        [&](Bits& b, int x, int y) {
            for (int i = 0; i < count; ++i) {
                const Place& place = places[static_cast<size_t>(i)];
                if (b.count < 32) {
                    b = stream.refill(b);
                }
                int difference = 0;
                const HuffmanTable::FastValue fast = place.table->fastValue[b.bits >> (64 - HuffmanTable::kLookBits)];
                if (fast.length != 0) {
                    b.bits <<= fast.length;
                    b.count -= fast.length;
                    difference = fast.value;
                } else if (const int size = decodeSymbol(*place.table, b.bits, b.count); size != 0) {
                    difference = extendValue(takeBits(size, b.bits, b.count), size);
                }
                // Damaged data can push the sum anywhere; it wraps rather than overflows.
                int& predictor = predictors_[static_cast<size_t>(place.component)];
                predictor = static_cast<int>(static_cast<uint32_t>(predictor) + static_cast<uint32_t>(difference));
                blockAt(place, x, y)[0] = static_cast<int16_t>(static_cast<uint32_t>(predictor) << al);
            }
        });
}

void ProgressiveDecoder::decodeAcFirst(const Scan& scan, BitStream& stream) {
    constexpr int look = HuffmanTable::kLookBits;
    const auto c = static_cast<size_t>(scan.components[0]);
    Plane& plane = planes_[c];
    const HuffmanTable& table = frame_.ac[static_cast<size_t>(scan.tables[0])];
    const auto blocksAcross = static_cast<size_t>(frame_.components[c].blocksAcross);
    int16_t* const blocks = plane.blocks.data();
    uint64_t* const nonzero = plane.nonzero.data();
    const int ss = scan.ss;
    const int se = scan.se;
    const int al = scan.al;
    int endOfBands = 0;
    forEachUnit(
        stream, plane.blocksWide, plane.blocksHigh, [&] { endOfBands = 0; },
        [&](Bits& b, int x, int y) {
            if (endOfBands > 0) {
                --endOfBands;
                return;
            }
            const size_t index = static_cast<size_t>(y) * blocksAcross + static_cast<size_t>(x);
            int16_t* const block = blocks + index * 64;
            uint64_t mask = nonzero[index];
            for (int k = ss; k <= se;) {
                if (b.count < 32) {
                    b = stream.refill(b);
                }
                const HuffmanTable::FastValue fast = table.fastValue[b.bits >> (64 - look)];
                int value = 0;
                if (fast.length != 0) {
                    b.bits <<= fast.length;
                    b.count -= fast.length;
                    k += fast.run;  // 64 for the end of the band
                    value = fast.value;
                } else {
                    const int symbol = decodeSymbol(table, b.bits, b.count);
                    const int run = symbol >> 4;
                    const int size = symbol & 15;
                    if (size == 0) {
                        if (run == 15) {
                            k += 16;
                            continue;
                        }
                        // The end of this band, and of the next 2^run - 1 + (run more bits) blocks' bands.
                        endOfBands = (1 << run) - 1;
                        if (run != 0) {
                            endOfBands += static_cast<int>(takeBits(run, b.bits, b.count));
                        }
                        break;
                    }
                    k += run;
                    value = extendValue(takeBits(size, b.bits, b.count), size);
                }
                if (k > se) {
                    break;
                }
                const auto coefficient = static_cast<int16_t>(static_cast<uint32_t>(value) << al);
                block[kZigzag[static_cast<size_t>(k)]] = coefficient;
                mask |= static_cast<uint64_t>(coefficient != 0) << k;
                ++k;
            }
            nonzero[index] = mask;
        });
}

// A refining scan sends one more bit of every coefficient of the band: for those already non-zero a plain
// bit each, in order; the codes tell where coefficients turn non-zero (by the count of zero ones passed)
// and their sign, or end the band for this block and maybe the next ones.
void ProgressiveDecoder::decodeAcRefine(const Scan& scan, BitStream& stream) {
    const auto c = static_cast<size_t>(scan.components[0]);
    Plane& plane = planes_[c];
    const HuffmanTable& table = frame_.ac[static_cast<size_t>(scan.tables[0])];
    const auto blocksAcross = static_cast<size_t>(frame_.components[c].blocksAcross);
    int16_t* const blocks = plane.blocks.data();
    uint64_t* const nonzero = plane.nonzero.data();
    const int ss = scan.ss;
    const int se = scan.se;
    const int bit = 1 << scan.al;
    const uint64_t band = fromPosition(ss) & belowPosition(se + 1);
    int endOfBands = 0;
    forEachUnit(
        stream, plane.blocksWide, plane.blocksHigh, [&] { endOfBands = 0; },
        [&](Bits& b, int x, int y) {
            const size_t index = static_cast<size_t>(y) * blocksAcross + static_cast<size_t>(x);
            int16_t* const block = blocks + index * 64;
            uint64_t mask = nonzero[index];
            int k = ss;
            if (endOfBands == 0) {
                while (k <= se) {
                    if (b.count < 32) {
                        b = stream.refill(b);
                    }
                    const int symbol = decodeSymbol(table, b.bits, b.count);
                    const int run = symbol >> 4;
                    int value = 0;
                    if ((symbol & 15) != 0) {
                        value = takeBits(1, b.bits, b.count) != 0 ? bit : -bit;
                    } else if (run != 15) {
                        endOfBands = 1 << run;
                        if (run != 0) {
                            endOfBands += static_cast<int>(takeBits(run, b.bits, b.count));
                        }
                        break;
                    }
                    // The new coefficient (or, for a run of 16 zeros, none) goes after `run` zero ones.
                    uint64_t zeros = ~mask & band & fromPosition(k);
                    for (int i = 0; i < run; ++i) {
                        zeros &= zeros - 1;
                    }
                    const int at = zeros != 0 ? std::countr_zero(zeros) : se + 1;
                    correctBits(stream, b, block, mask & band & fromPosition(k) & belowPosition(at), bit);
                    if (value != 0 && at <= se) {
                        block[kZigzag[static_cast<size_t>(at)]] = static_cast<int16_t>(value);
                        mask |= uint64_t{1} << at;
                    }
                    k = at + 1;
                }
            }
            if (endOfBands > 0) {
                correctBits(stream, b, block, mask & band & fromPosition(k), bit);
                --endOfBands;
            }
            nonzero[index] = mask;
        });
}

CoefficientRow ProgressiveDecoder::takeRow(int r) {
    CoefficientRow row;
    for (int c = 0; c < frame_.componentCount; ++c) {
        const Component& comp = frame_.components[static_cast<size_t>(c)];
        Plane& plane = planes_[static_cast<size_t>(c)];
        const size_t count = static_cast<size_t>(comp.blocksAcross * comp.v);
        const size_t first = static_cast<size_t>(r) * count;
        int16_t* const blocks = plane.blocks.data() + first * 64;
        const uint64_t* const nonzero = plane.nonzero.data() + first;
        for (size_t i = 0; i < count; ++i) {
            const int last = nonzero[i] != 0 ? 63 - std::countl_zero(nonzero[i]) : 0;
            plane.last[i] = static_cast<uint8_t>(last);
            dequantize(blocks + i * 64, last, plane.quant.data());
        }
        row.blocks[static_cast<size_t>(c)] = blocks;
        row.last[static_cast<size_t>(c)] = plane.last.data();
    }
    return row;
}

}  // namespace tl::jpeg
