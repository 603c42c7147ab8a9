#include "jpeg/entropy.h"

#include <bit>
#include <cstring>

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

}  // namespace

const std::array<uint8_t, 64> kZigzag = makeZigzag();

EntropyDecoder::EntropyDecoder(const Frame& frame,
                               std::span<const uint8_t> file,
                               const std::array<int, kMaxComponents>& blockSizes)
    : frame_(frame), stream_(file.data() + frame.scanStart, file.data() + file.size()) {
    restartsLeft_ = frame.restartInterval;
    for (size_t c = 0; c < kMaxComponents; ++c) {
        for (size_t k = 0; k < 64; ++k) {
            const int at = kZigzag[k];
            orders_[c][k] = static_cast<uint8_t>(at / 8 < blockSizes[c] && at % 8 < blockSizes[c] ? at : 63);
        }
    }
    for (int i = 0; i < frame.componentCount; ++i) {
        const int c = frame.scanOrder[static_cast<size_t>(i)];
        const Component& comp = frame.components[static_cast<size_t>(c)];
        for (int v = 0; v < comp.v; ++v) {
            for (int h = 0; h < comp.h; ++h) {
                plan_[static_cast<size_t>(blocksInMcu_++)] = {c,
                                                              h,
                                                              v,
                                                              &frame.dc[static_cast<size_t>(comp.dcTable)],
                                                              &frame.ac[static_cast<size_t>(comp.acTable)],
                                                              frame.quant[static_cast<size_t>(comp.quant)].data(),
                                                              orders_[static_cast<size_t>(c)].data()};
            }
        }
    }
}

void EntropyDecoder::decodeRow(const CoefficientRow& row) {
    Bits b = bits_;
    for (int mcu = 0; mcu < frame_.mcusAcross; ++mcu) {
        if (frame_.restartInterval > 0) {
            if (restartsLeft_ == 0) {
                b = {0, 0};
                predictors_ = {};
                if (stream_.restart()) {
                    starved_ = false;
                }
                restartsLeft_ = frame_.restartInterval;
            }
            --restartsLeft_;
        }
        if (starved_) {
            continue;  // the blocks stay clear: flat grey
        }
        for (int i = 0; i < blocksInMcu_; ++i) {
            const BlockPlan& plan = plan_[static_cast<size_t>(i)];
            const auto c = static_cast<size_t>(plan.component);
            const Component& comp = frame_.components[c];
            const auto index = static_cast<size_t>(plan.row * comp.blocksAcross + mcu * comp.h + plan.offset);
            row.last[c][index] = static_cast<uint8_t>(decodeBlock(b, row.blocks[c] + index * 64, plan));
        }
        if (b.count < 0) {
            starved_ = true;
            ranOut_ = true;
        }
    }
    bits_ = b;
}

// No such code: read as zero, as other decoders do.
int decodeLongCode(const HuffmanTable& table, uint64_t& bits, int& count) {
    const auto top = static_cast<uint32_t>(bits >> 48);
    int l = HuffmanTable::kLookBits + 1;
    while (top >= table.limit[static_cast<size_t>(l)]) {
        ++l;
    }
    if (l > 16) {
        bits <<= 16;
        count -= 16;
        return 0;
    }
    bits <<= l;
    count -= l;
    return table
        .symbols[static_cast<size_t>(table.offset[static_cast<size_t>(l)] + static_cast<int32_t>(top >> (16 - l)))];
}

[[gnu::always_inline]] inline int EntropyDecoder::decodeBlock(Bits& b, int16_t* out, const BlockPlan& plan) {
    constexpr int look = HuffmanTable::kLookBits;
    const HuffmanTable& ac = *plan.ac;
    const uint16_t* const q = plan.quant;
    const uint8_t* const order = plan.order;
    if (b.count < 32) {
        b = stream_.refill(b);
    }
    int difference = 0;
    const HuffmanTable::FastValue dc = plan.dc->fastValue[b.bits >> (64 - look)];
    if (dc.length != 0) {
        b.bits <<= dc.length;
        b.count -= dc.length;
        difference = dc.value;
    } else if (const int size = decodeSymbol(*plan.dc, b.bits, b.count); size != 0) {
        difference = extendValue(takeBits(size, b.bits, b.count), size);
    }
    // Damaged data can push the sum anywhere; it wraps rather than overflows.
    int& predictor = predictors_[static_cast<size_t>(plan.component)];
    predictor = static_cast<int>(static_cast<uint32_t>(predictor) + static_cast<uint32_t>(difference));
    out[0] = static_cast<int16_t>(static_cast<uint32_t>(predictor) * q[0]);
    int last = 0;
    for (int k = 1; k < 64;) {
        if (b.count < 32) {
            b = stream_.refill(b);
        }
        const HuffmanTable::FastValue fast = ac.fastValue[b.bits >> (64 - look)];
        if (fast.length != 0) {
            b.bits <<= fast.length;
            b.count -= fast.length;
            k += fast.run;
            if (k > 63) {
                break;
            }
            out[order[k]] = static_cast<int16_t>(fast.value * q[k]);
            last = k++;
            continue;
        }
        const int symbol = decodeSymbol(ac, b.bits, b.count);
        const int run = symbol >> 4;
        const int bits = symbol & 15;
        if (bits == 0) {
            if (run != 15) {
                break;
            }
            k += 16;
            continue;
        }
        k += run;
        const int value = extendValue(takeBits(bits, b.bits, b.count), bits);
        if (k > 63) {
            break;
        }
        out[order[k]] = static_cast<int16_t>(static_cast<uint32_t>(value) * q[k]);
        last = k++;
    }
    return last;
}

BitStream::Bits BitStream::refill(Bits in) {
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

bool BitStream::restart() {
    atMarker_ = false;
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
            return false;  // the data has run out
        }
        const int marker = pos_[1];
        if (marker < 0xC0) {
            pos_ += 2;
            continue;
        }
        if (marker < 0xD0 || marker > 0xD7) {
            return false;
        }
        const int ahead = (marker - 0xD0 - expected) & 7;
        if (ahead == 1 || ahead == 2) {
            return false;
        }
        pos_ += 2;
        if (ahead == 0 || ahead < 6) {
            return true;
        }
    }
}

}  // namespace tl::jpeg
