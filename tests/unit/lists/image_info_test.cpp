#include "lists/image_info.h"

#include <gtest/gtest.h>

#include <random>
#include <tuple>

#include "base/file_system_posix.h"
#include "support/picture_bytes.h"
#include "support/temp_dir.h"

namespace tl {
namespace {

using Bytes = std::string;

// The value's low n bytes, most significant first.
Bytes bigEndian(uint32_t v, int n) {
    Bytes b;
    for (int i = n - 1; i >= 0; --i) {
        b += static_cast<char>((v >> (8 * i)) & 0xFF);
    }
    return b;
}
Bytes littleEndian16(uint16_t v) {
    return {static_cast<char>(v & 0xFF), static_cast<char>(v >> 8)};
}

Bytes png(uint32_t width, uint32_t height, uint8_t bitDepth, uint8_t colourType, char fourth = 'G') {
    return Bytes("\x89PN", 3) + fourth + Bytes("\r\n\x1A\n\0\0\0\x0DIHDR", 12) + bigEndian(width, 4) +
           bigEndian(height, 4) + static_cast<char>(bitDepth) + static_cast<char>(colourType) + Bytes(7, '\0');
}

Bytes gif(uint16_t width, uint16_t height, uint8_t packed) {
    return "GIF89a" + littleEndian16(width) + littleEndian16(height) + static_cast<char>(packed) + Bytes(2, '\0');
}

// A marker segment: FF, marker, big-endian length (counting itself), then length - 2 bytes of payload.
Bytes segment(uint8_t marker, size_t length, char fill = '\x11') {
    return '\xFF' + (static_cast<char>(marker) + bigEndian(static_cast<uint32_t>(length), 2)) + Bytes(length - 2, fill);
}

// A start-of-frame segment: 8-bit samples, the size, and the components (their records left zero).
Bytes frame(uint8_t marker, uint16_t width, uint16_t height, uint8_t components) {
    Bytes b = segment(marker, 8 + 3u * components, '\0');
    return b.replace(4, 6, '\x08' + bigEndian(height, 2) + bigEndian(width, 2) + static_cast<char>(components));
}

const Bytes kSoi("\xFF\xD8", 2);
const Bytes kApp0 = segment(0xE0, 16);

Bytes jpeg(uint8_t marker, uint16_t width, uint16_t height, uint8_t components = 3) {
    return kSoi + kApp0 + segment(0xDB, 67) + frame(marker, width, height, components) + segment(0xC4, 31);
}

// Type, width, height, depth.
using Expect = std::tuple<int32_t, int32_t, int32_t, int>;
Expect facts(const cImageInfo& info) {
    return {info.ImageType(), info.Width(), info.Height(), info.Depth()};
}

constexpr int32_t G = cImageInfo::kGif, J = cImageInfo::kJpeg, P = cImageInfo::kPng, B = cImageInfo::kBmp;
const Expect kUnknown{0, 0, 0, 0};

void check(const std::vector<std::tuple<const char*, Bytes, Expect>>& cases) {
    PosixFileSystem fs;
    cImageInfo info(fs);
    for (const auto& [what, bytes, want] : cases) {
        info.readHeader(bytes);
        EXPECT_EQ(facts(info), want) << what;
    }
}

TEST(ImageHeaders, PngGifAndBmp) {
    check({
        {"PNG RGB 8", png(640, 480, 8, 2), {P, 640, 480, 24}},
        {"PNG wider than 16 bits", png(70000, 3, 8, 2), {P, 4464, 3, 24}},
        {"PNG grey 1 bit", png(5, 7, 1, 0), {P, 5, 7, 1}},
        {"PNG palette of 4 bits", png(9, 9, 4, 3), {P, 9, 9, 8}},
        {"PNG RGBA 16", png(9, 9, 16, 6), {P, 9, 9, 64}},
        {"PNG RGBA with a nonsense depth keeps 8 bits", png(9, 9, 100, 6), {P, 9, 9, 144}},
        {"PNG fourth signature byte not looked at", png(33, 44, 8, 2, 'X'), {P, 33, 44, 24}},
        {"PNG colour type 5", png(9, 9, 8, 5), kUnknown},
        {"PNG colour type 5 with a JPEG further on", png(9, 9, 8, 5) + jpeg(0xC0, 120, 80), {J, 120, 80, 24}},
        {"PNG header cut after the width", png(300, 200, 8, 2).substr(0, 22), {P, 300, 0, 0}},
        {"GIF 0xF7", gif(320, 200, 0xF7), {G, 320, 200, 8}},
        {"GIF 0x00", gif(65535, 257, 0x00), {G, 65535, 257, 1}},
        {"GIF cut to its signature", Bytes("GIF"), {G, 0, 0, 1}},
        {"BMP 800x600x24", test::bmpHeader(800, 600), {B, 800, 600, 24}},
        {"BMP top-down", test::bmpHeader(800, -600), {B, 800, 64936, 24}},
        {"BMP wider than 16 bits", test::bmpHeader(70000, 1, 8), {B, 4464, 1, 8}},
        {"BMP depth field low byte", test::bmpHeader(3, 5, 0x0110), {B, 3, 5, 0x10}},
        {"BMP cut inside the height", test::bmpHeader(1024, 768).substr(0, 23), {B, 1024, 0, 0}},
        {"empty", Bytes(), kUnknown},
        {"text", Bytes("This is not a picture at all.\r\n"), kUnknown},
        {"all FF", Bytes(70000, '\xFF'), kUnknown},
    });
}

TEST(ImageHeaders, Jpeg) {
    std::vector<std::tuple<const char*, Bytes, Expect>> cases;
    for (int m = 0xC0; m <= 0xCF; ++m) {
        const bool frameMarker = m != 0xC4 && m != 0xC8 && m != 0xCC;
        // A C4/C8/CC look-alike with a frame's layout is skipped by its length; a real frame follows.
        cases.push_back({frameMarker ? "a start-of-frame marker" : "not a frame: C4, C8 or CC",
                         kSoi + kApp0 + frame(static_cast<uint8_t>(m), 11, 22, 3) + frame(0xC0, 33, 44, 1),
                         frameMarker ? Expect{J, 11, 22, 24} : Expect{J, 33, 44, 8}});
    }
    check(cases);
    check({
        {"grey", jpeg(0xC0, 1, 1, 1), {J, 1, 1, 8}},
        {"CMYK", jpeg(0xC0, 5, 5, 4), {J, 5, 5, 32}},
        {"depth computed in 8 bits", jpeg(0xC0, 5, 5, 33), {J, 5, 5, 8}},
        {"only a Huffman table", kSoi + kApp0 + segment(0xC4, 31), kUnknown},
        {"fill bytes before a marker",
         kSoi + kApp0 + Bytes("\xFF\xFF\xFF", 3) + frame(0xC1, 50, 60, 3),
         {J, 50, 60, 24}},
        {"start of image after other bytes", Bytes(1000, '\x42') + jpeg(0xC0, 640, 480), {J, 640, 480, 24}},
        {"FF D8 not followed by FF", Bytes("\xFF\xD8\x00", 3) + frame(0xC0, 640, 480, 3), kUnknown},
        {"stand-alone marker read as if it had a length",
         kSoi + Bytes("\xFF\x01\x00\x02", 4) + frame(0xC0, 3, 4, 3),
         {J, 3, 4, 24}},
    });

    // A large thumbnail in APP1 pushes the frame header out of the 64 KiB buffer: unknown, all zero. At the
    // edge: after SOI and an APP0 of length L the next marker stands at 4 + L. The walk still takes a marker
    // at 65,524 and gives up at 65,525.
    const auto atOffset = [](size_t markerAt) {
        return kSoi + segment(0xE0, markerAt - 4, '\0') + frame(0xC0, 0x1234, 0x0567, 3);
    };
    check({
        {"frame past 64 KiB", kSoi + segment(0xE1, 65530) + frame(0xC0, 4000, 3000, 3), kUnknown},
        {"frame at 65,524", atOffset(65524), {J, 0x1234, 0x0567, 24}},
        {"frame at 65,525", atOffset(65525), kUnknown},
        {"frame cut at the buffer's end", atOffset(65524).substr(0, 65536), {J, 0x1234, 0x0567, 24}},
        {"start of image just inside the end", Bytes(65522, '\0') + Bytes("\xFF\xD8\xFF\xC0", 4), {J, 0, 0, 0}},
        {"start of image at the end", Bytes(65523, '\0') + Bytes("\xFF\xD8\xFF\xC0", 4), kUnknown},
    });
}

// Random and mangled headers: under AddressSanitizer any read outside the 64 KiB buffer fails here.
TEST(ImageInfo, NeverReadsOutsideItsBufferWhateverTheBytes) {
    std::mt19937 gen(77);
    PosixFileSystem fs;
    cImageInfo info(fs);
    const Bytes seeds[] = {jpeg(0xC0, 640, 480), png(9, 9, 8, 2), gif(1, 1, 0), test::bmpHeader(2, 2),
                           kSoi + segment(0xE1, 65000)};
    std::uniform_int_distribution<int> byte(0, 255);
    for (int round = 0; round < 1500; ++round) {
        Bytes b;
        if (round % 3 == 0) {
            // Pure noise, heavy in FF and marker-like bytes, of any length around the buffer's.
            const size_t n = std::uniform_int_distribution<size_t>(0, 66000)(gen);
            b.resize(n);
            for (char& c : b) {
                const int r = byte(gen);
                c = static_cast<char>(r < 96 ? 0xFF : (r < 160 ? 0xC0 + (r & 15) : r));
            }
            if (n > 3 && round % 2) {
                b.replace(0, 3, "\xFF\xD8\xFF");
            }
        } else {
            b = seeds[static_cast<size_t>(round) % std::size(seeds)];
            if (round % 5 == 1) {
                b.resize(65536 + static_cast<size_t>(byte(gen)), '\xFF');
            }
            const int flips = 1 + byte(gen) % 20;
            for (int k = 0; k < flips && !b.empty(); ++k) {
                b[std::uniform_int_distribution<size_t>(0, b.size() - 1)(gen)] = static_cast<char>(byte(gen));
            }
            b.resize(std::uniform_int_distribution<size_t>(0, b.size())(gen));
        }
        info.readHeader(b);
        ASSERT_TRUE(info.ImageType() >= 0 && info.ImageType() <= 4 && info.Width() <= 65535 && info.Height() <= 65535);
        if (info.ImageType() == 0) {
            ASSERT_EQ(facts(info), kUnknown);
        }
    }
}

TEST(ImageInfo, ReadsFilesAndReportsOnesItCannotOpen) {
    test::TempDir dir;
    dir.write("a.jpg", jpeg(0xC2, 1920, 1080) + Bytes(200000, '\x55'));
    dir.write("b.png", png(800, 600, 8, 6));
    PosixFileSystem fs;
    cImageInfo info(fs);
    info.ReadImageInfo(dir.file("a.jpg"));
    EXPECT_EQ(facts(info), Expect(J, 1920, 1080, 24));
    // A later, shorter file reads zeros past its end, not the earlier file's bytes.
    dir.write("c.bmp", "BM");
    info.ReadImageInfo(dir.file("c.bmp"));
    EXPECT_EQ(facts(info), Expect(B, 0, 0, 0));
    info.ReadImageInfo(dir.file("b.png"));
    ASSERT_EQ(info.Depth(), 32);
    try {
        info.ReadImageInfo(dir.file("missing.jpg"));
        FAIL() << "a missing file must reach the caller";
    } catch (const ImageReadError& e) {
        EXPECT_EQ(e.path(), dir.file("missing.jpg"));
    }
    EXPECT_EQ(facts(info), kUnknown) << "the values are reset before the failure";
    EXPECT_FALSE(dir.exists("missing.jpg")) << "reading never creates a file";
}

}  // namespace
}  // namespace tl
