#include "lists/image_info.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <optional>

#include "base/file_system.h"

namespace tl {

namespace {

// The JPEG marker walk never lets its position reach this, so the furthest byte it reads (the
// component count of a frame header, 9 bytes on) stays inside the 65,536-byte buffer.
constexpr size_t kJpegScanEnd = 65525;

int32_t makeWord(uint8_t low, uint8_t high) {
    return high * 256 + low;
}

bool isFrameMarker(uint8_t m) {
    // Every start-of-frame marker; C4 (Huffman tables), C8 (reserved) and CC (arithmetic conditioning)
    // share the range but carry no frame.
    return m >= 0xC0 && m <= 0xCF && m != 0xC4 && m != 0xC8 && m != 0xCC;
}

}  // namespace

void cImageInfo::reset() {
    width_ = 0;
    height_ = 0;
    depth_ = 0;
    type_ = kUnknown;
}

void cImageInfo::ReadImageInfo(const std::string& fileName) {
    reset();
    const std::optional<std::string> bytes = fs_.readFile(fileName, kHeaderBytes);
    if (!bytes) {
        throw ImageReadError(fileName);
    }
    readHeader(*bytes);
}

void cImageInfo::readHeader(std::string_view bytes) {
    reset();
    // A fixed, zero-filled buffer: a file shorter than a header reads zeros past its end.
    const auto buffer = std::make_unique<uint8_t[]>(kHeaderBytes);
    if (!bytes.empty()) {
        std::memcpy(buffer.get(), bytes.data(), std::min(bytes.size(), kHeaderBytes));
    }
    const uint8_t* b = buffer.get();

    // PNG: the fourth signature byte is not looked at.
    if (b[0] == 0x89 && b[1] == 'P' && b[2] == 'N') {
        type_ = kPng;
        const uint8_t bitDepth = b[24];
        // Depth is an 8-bit value: a nonsense bit depth keeps only the low 8 bits of the product.
        switch (b[25]) {
            case 0:
                depth_ = bitDepth;
                break;
            case 2:
                depth_ = static_cast<uint8_t>(bitDepth * 3);
                break;
            case 3:
                depth_ = 8;
                break;
            case 4:
                depth_ = static_cast<uint8_t>(bitDepth * 2);
                break;
            case 6:
                depth_ = static_cast<uint8_t>(bitDepth * 4);
                break;
            default:
                type_ = kUnknown;
                depth_ = 0;
                break;
        }
        if (type_ == kPng) {
            // Big-endian 32-bit fields, of which only the low 16 bits are taken.
            width_ = makeWord(b[19], b[18]);
            height_ = makeWord(b[23], b[22]);
        }
    }

    if (b[0] == 'G' && b[1] == 'I' && b[2] == 'F') {
        type_ = kGif;
        width_ = makeWord(b[6], b[7]);
        height_ = makeWord(b[8], b[9]);
        depth_ = static_cast<uint8_t>((b[10] & 7) + 1);
    }

    if (b[0] == 'B' && b[1] == 'M') {
        type_ = kBmp;
        width_ = makeWord(b[18], b[19]);
        height_ = makeWord(b[22], b[23]);
        depth_ = b[28];
    }

    if (type_ != kUnknown) {
        return;
    }

    // JPEG: find the start of image anywhere in the buffer, then walk the markers to a frame header. Both
    // searches jump from one 0xFF to the next: a file of another kind is mostly bytes that aren't.
    const auto nextFF = [b](size_t from) {
        const void* ff = from < kJpegScanEnd ? std::memchr(b + from, 0xFF, kJpegScanEnd - from) : nullptr;
        return ff ? static_cast<size_t>(static_cast<const uint8_t*>(ff) - b) : kJpegScanEnd;
    };
    size_t i = nextFF(0);
    while (i < kJpegScanEnd && !(b[i + 1] == 0xD8 && b[i + 2] == 0xFF)) {
        i = nextFF(i + 1);
    }
    size_t p = i + 2;
    if (p >= kJpegScanEnd) {
        return;
    }
    for (;;) {
        if (b[p] != 0xFF || b[p + 1] == 0xFF) {  // not yet on a marker, or on a fill byte
            p = b[p] != 0xFF ? nextFF(p + 1) : p + 1;
            if (p >= kJpegScanEnd) {
                return;
            }
            continue;
        }
        const size_t q = p + 1;
        const uint8_t marker = b[q];
        if (isFrameMarker(marker)) {
            type_ = kJpeg;
            height_ = makeWord(b[q + 5], b[q + 4]);
            width_ = makeWord(b[q + 7], b[q + 6]);
            depth_ = static_cast<uint8_t>(b[q + 8] * 8);
            return;
        }
        // Every other marker is taken to carry a length, the stand-alone ones included; p lands on the
        // segment's last byte and the search above steps onto the next marker.
        p = q + static_cast<size_t>(makeWord(b[q + 2], b[q + 1]));
        if (p >= kJpegScanEnd) {
            return;
        }
    }
}

}  // namespace tl
