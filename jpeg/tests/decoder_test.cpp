#include "jpeg/decoder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <memory_resource>
#include <random>

#include "base/page_memory.h"
#include "jpeg/tests/reference.h"

namespace tl::test {
namespace {

// Files made and decoded by cjpeg and djpeg (libjpeg-turbo-progs), the known-good tools.
class JpegDecoder : public testing::Test {
  protected:
    void SetUp() override {
        if (!haveJpegTools()) {
            GTEST_SKIP() << "cjpeg and djpeg (libjpeg-turbo-progs) are needed";
        }
    }

    // Within 2 levels per channel and 0.5 on average of what libjpeg's default decoding shows; two threads
    // decode the same bytes as one.
    void expectLikeReference(const char* what, int width, int height, const char* switches) {
        SCOPED_TRACE(std::string(what) + " " + std::to_string(width) + "x" + std::to_string(height) + " " + switches);
        const std::vector<uint8_t> jpeg = encodeJpeg(dir, testPicture(width, height), switches);
        ASSERT_FALSE(jpeg.empty()) << "cjpeg failed";
        const auto reference = referenceDecode(dir, jpeg);
        ASSERT_TRUE(reference) << "djpeg failed";
        const auto ours = decodeWithOurs(jpeg, 1);
        ASSERT_TRUE(ours) << "not handled";
        const Difference d = compareImages(*ours, *reference);
        EXPECT_LE(d.max, 2);
        EXPECT_LE(d.mean, 0.5);
        const auto threaded = decodeWithOurs(jpeg, 2);
        ASSERT_TRUE(threaded);
        EXPECT_EQ(threaded->rgb, ours->rgb);
    }

    TempDir dir;
};

TEST_F(JpegDecoder, DecodesEverySamplingSizeAndRestartIntervalLikeTheReference) {
    const struct {
        const char* what;
        int width, height;
        const char* switches;
    } cases[] = {
        {"4:4:4", 67, 45, "-sample 1x1"},
        {"4:2:0", 67, 45, "-sample 2x2"},
        {"4:1:1", 67, 45, "-sample 4x1"},
        {"luma 3x1, boxed chroma", 67, 45, "-sample 3x1"},
        {"luma 4x2", 75, 37, "-sample 4x2"},
        {"chroma sampled apart", 67, 45, "-sample 2x2,1x2,2x1"},
        {"luma below chroma", 67, 45, "-sample 1x1,2x2,1x1"},
        {"grey", 67, 45, "-grayscale"},
        {"RGB", 67, 45, "-rgb"},
        {"16-bit tables (extended)", 40, 40, "-quality 1"},
        {"one pixel", 1, 1, "-sample 2x2"},
        {"two wide 4:2:2", 2, 3, "-sample 2x1"},
        {"wide strip", 4001, 3, "-sample 2x2"},
        {"tall strip", 3, 1001, "-sample 2x2"},
        {"tall strip 4:4:0", 5, 333, "-sample 1x2"},
        {"restart every MCU row", 99, 70, "-sample 2x2 -restart 1"},
        {"restart every MCU", 40, 24, "-sample 1x1 -restart 1B"},
        {"grey, restart every 7 blocks", 61, 30, "-grayscale -restart 7B"},
    };
    for (const auto& c : cases) {
        expectLikeReference(c.what, c.width, c.height, c.switches);
    }
}

// Offset of the first segment with this marker (its 0xFF), or 0.
size_t findSegment(const std::vector<uint8_t>& jpeg, uint8_t marker) {
    size_t at = 2;
    while (at + 4 <= jpeg.size() && jpeg[at] == 0xFF) {
        if (jpeg[at + 1] == marker) {
            return at;
        }
        if (jpeg[at + 1] == 0xDA) {
            break;
        }
        at += 2 + (jpeg[at + 2] << 8 | jpeg[at + 3]);
    }
    return 0;
}

std::vector<uint8_t> segment(uint8_t marker, std::vector<uint8_t> body) {
    const size_t length = body.size() + 2;
    body.insert(body.begin(), {0xFF, marker, static_cast<uint8_t>(length >> 8), static_cast<uint8_t>(length)});
    return body;
}

std::vector<uint8_t> join(std::initializer_list<std::vector<uint8_t>> parts) {
    std::vector<uint8_t> out;
    for (const auto& p : parts) {
        out.insert(out.end(), p.begin(), p.end());
    }
    return out;
}

const std::vector<uint8_t> kSoi = {0xFF, 0xD8};
const std::vector<uint8_t> kEoi = {0xFF, 0xD9};

// The heap, counting what is taken and not yet given back.
class CountingMemory final : public std::pmr::memory_resource {
  public:
    size_t outstanding = 0;
    size_t largest = 0;

  private:
    void* do_allocate(size_t bytes, size_t alignment) override {
        outstanding += bytes;
        largest = std::max(largest, bytes);
        return std::pmr::new_delete_resource()->allocate(bytes, alignment);
    }
    void do_deallocate(void* p, size_t bytes, size_t alignment) override {
        outstanding -= bytes;
        std::pmr::new_delete_resource()->deallocate(p, bytes, alignment);
    }
    bool do_is_equal(const std::pmr::memory_resource& other) const noexcept override { return this == &other; }
};

TEST_F(JpegDecoder, TakesItsScratchFromTheMemoryItIsGivenAndGivesItAllBack) {
    const std::vector<uint8_t> jpeg = encodeJpeg(dir, testPicture(300, 200), "-sample 2x2");
    const JpegHeader header = readJpegHeader(jpeg);
    ASSERT_TRUE(header.handled);
    const size_t size = jpegBmpRowBytes(header.width) * static_cast<size_t>(header.height);
    std::vector<uint8_t> fromHeap(size);
    ASSERT_EQ(decodeJpeg(jpeg, fromHeap, JpegOptions{1}), JpegResult::decoded);
    for (const int threads : {1, 2}) {
        SCOPED_TRACE(threads);
        CountingMemory counting;
        std::vector<uint8_t> counted(size);
        ASSERT_EQ(decodeJpeg(jpeg, counted, JpegOptions{threads, &counting}), JpegResult::decoded);
        EXPECT_GE(counting.largest, kPageBytes) << "the row buffers came from elsewhere";
        EXPECT_EQ(counting.outstanding, 0u);
        EXPECT_EQ(counted, fromHeap);
        std::vector<uint8_t> paged(size);
        ASSERT_EQ(decodeJpeg(jpeg, paged, JpegOptions{threads, &pageMemory()}), JpegResult::decoded);
        EXPECT_EQ(paged, fromHeap);
    }
}

struct Refusal {
    const char* what;
    std::vector<uint8_t> file;
    int width;  // still known from the headers, or 0
};

void expectRefused(const Refusal& r) {
    SCOPED_TRACE(r.what);
    const JpegHeader h = readJpegHeader(r.file);
    EXPECT_FALSE(h.handled);
    EXPECT_EQ(h.width, r.width);
    std::vector<uint8_t> pixels(64 * 1024, 0xEE);
    EXPECT_EQ(decodeJpeg(r.file, pixels), JpegResult::notHandled);
    EXPECT_EQ(std::count(pixels.begin(), pixels.end(), 0xEE), static_cast<ptrdiff_t>(pixels.size()))
        << "a refused file leaves the pixels alone";
}

TEST_F(JpegDecoder, LeavesOtherKindsOfJpegToOtherDecoders) {
    const RgbImage picture = testPicture(40, 30);
    const std::vector<uint8_t> plain = encodeJpeg(dir, picture, "-sample 2x2");
    const size_t sof = findSegment(plain, 0xC0);
    ASSERT_NE(sof, 0u);
    auto patched = [&](size_t offset, std::initializer_list<uint8_t> bytes) {
        std::vector<uint8_t> f = plain;
        std::copy(bytes.begin(), bytes.end(), f.begin() + static_cast<ptrdiff_t>(offset));
        return f;
    };
    dir.write("separate.scans", "0;\n1;\n2;\n");
    const std::vector<uint8_t> sof4 =
        segment(0xC0, {8, 0, 16, 0, 16, 4, 1, 0x11, 0, 2, 0x11, 0, 3, 0x11, 0, 4, 0x11, 0});
    const std::vector<uint8_t> sof2 = segment(0xC0, {8, 0, 16, 0, 16, 2, 1, 0x11, 0, 2, 0x11, 0});
    const Refusal cases[] = {
        {"progressive", encodeJpeg(dir, picture, "-progressive"), 40},
        {"arithmetic coding", encodeJpeg(dir, picture, "-arithmetic"), 40},
        {"components in separate scans", encodeJpeg(dir, picture, "-scans " + dir.file("separate.scans")), 40},
        {"12-bit samples", patched(sof + 4, {12}), 40},
        {"height given later (DNL)", patched(sof + 5, {0, 0}), 40},
        {"absurd size", patched(sof + 5, {0xFF, 0xF0, 0xFF, 0xF0}), 0xFFF0},
        {"just over 2 GB of pixels", patched(sof + 5, {0x46, 0x00, 0xA0, 0x00}), 0xA000},
        {"CMYK", join({kSoi, sof4, kEoi}), 16},
        {"two components", join({kSoi, sof2, kEoi}), 16},
        {"no scan", join({kSoi, segment(0xC0, {8, 0, 16, 0, 16, 1, 1, 0x11, 0}), kEoi}), 16},
        {"segment running past the end", join({kSoi, {0xFF, 0xE1, 0x7F, 0xFF, 'E', 'x'}}), 0},
        {"not a JPEG", {'B', 'M', 0, 0, 0, 0}, 0},
        {"empty", {}, 0},
    };
    for (const Refusal& r : cases) {
        ASSERT_FALSE(r.file.empty() && std::string(r.what) != "empty") << r.what;
        expectRefused(r);
    }
}

TEST_F(JpegDecoder, SkipsLargeApplicationSegmentsAndComments) {
    std::vector<uint8_t> jpeg = encodeJpeg(dir, testPicture(30, 20), "-sample 2x2");
    const auto expected = decodeWithOurs(jpeg, 1);
    ASSERT_TRUE(expected);
    // A 60 KB EXIF-like thumbnail full of marker-like bytes, and a comment, before the frame.
    std::vector<uint8_t> exif = {'E', 'x', 'i', 'f', 0, 0};
    for (int i = 0; exif.size() < 60000; ++i) {
        exif.push_back(static_cast<uint8_t>(i % 3 == 0 ? 0xFF : 0xD8 + i % 7));
    }
    const std::vector<uint8_t> comment = segment(0xFE, {'h', 'i'});
    jpeg.erase(jpeg.begin(), jpeg.begin() + 2);
    const std::vector<uint8_t> file = join({kSoi, segment(0xE1, exif), comment, jpeg});
    const auto decoded = decodeWithOurs(file, 1);
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->rgb, expected->rgb);
}

// Row order and channel order are checked against the reference above; the padding is not.
TEST_F(JpegDecoder, PadsRowsWithZerosAndRefusesABufferTooSmall) {
    // 5 pixels make 15 bytes a row, padded to 16.
    const std::vector<uint8_t> jpeg = encodeJpeg(dir, testPicture(5, 3), "-sample 1x1");
    std::vector<uint8_t> pixels(48, 0xEE);
    ASSERT_EQ(decodeJpeg(jpeg, pixels), JpegResult::decoded);
    EXPECT_EQ((std::vector{pixels[15], pixels[31], pixels[47]}), (std::vector<uint8_t>{0, 0, 0}));
    std::vector<uint8_t> small(47, 0xEE);
    EXPECT_EQ(decodeJpeg(jpeg, small), JpegResult::notHandled);
}

TEST_F(JpegDecoder, ShowsAFileCutShortAsTheReferenceDoes) {
    for (const char* switches : {"-sample 2x2 -restart 1", "-grayscale -restart 3B"}) {
        SCOPED_TRACE(switches);
        const std::vector<uint8_t> full = encodeJpeg(dir, testPicture(64, 48), switches);
        const size_t scan = findSegment(full, 0xDA);
        ASSERT_NE(scan, 0u);
        for (const double part : {0.0, 0.3, 0.7}) {
            const size_t cut = scan + 14 + static_cast<size_t>(part * static_cast<double>(full.size() - scan - 14));
            const std::vector<uint8_t> cutShort(full.begin(), full.begin() + static_cast<ptrdiff_t>(cut));
            const auto ours = decodeWithOurs(cutShort, 2);
            const auto reference = referenceDecode(dir, cutShort);
            ASSERT_TRUE(ours && reference) << "cut at " << cut;
            const Difference d = compareImages(*ours, *reference);
            EXPECT_LE(d.max, 2) << "cut at " << cut;
            EXPECT_LE(d.mean, 0.5) << "cut at " << cut;
        }
    }
}

// Every cut and a few thousand random changes of real files: whatever comes of it, nothing is read or
// written out of bounds (the sanitizers watch), and a refused file is refused before any pixel is written.
TEST_F(JpegDecoder, SurvivesDamagedFiles) {
    const std::vector<std::vector<uint8_t>> originals = {
        encodeJpeg(dir, testPicture(48, 40), "-sample 2x2 -restart 1"),
        encodeJpeg(dir, testPicture(33, 17), "-sample 1x1 -optimize"),
        encodeJpeg(dir, testPicture(20, 31), "-grayscale -restart 2B"),
        encodeJpeg(dir, testPicture(41, 9, 7), "-sample 2x1 -quality 100"),
        encodeJpeg(dir, testPicture(17, 23, 3), "-sample 2x2,1x2,2x1"),
    };
    const auto tryDecode = [](const std::vector<uint8_t>& file, int threads) {
        const JpegHeader h = readJpegHeader(file);
        if (!h.handled) {
            std::vector<uint8_t> none(16, 0xEE);
            EXPECT_EQ(decodeJpeg(file, none), JpegResult::notHandled);
            return;
        }
        std::vector<uint8_t> pixels(jpegBmpRowBytes(h.width) * static_cast<size_t>(h.height));
        EXPECT_EQ(decodeJpeg(file, pixels, JpegOptions{threads}), JpegResult::decoded);
    };
    for (const auto& original : originals) {
        ASSERT_FALSE(original.empty());
        for (size_t cut = 0; cut < original.size(); cut += 5) {
            tryDecode(std::vector<uint8_t>(original.begin(), original.begin() + static_cast<ptrdiff_t>(cut)), 1);
        }
    }
    std::mt19937 random(20240611);
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(3);
    for (int round = 0; round < 6000 && std::chrono::steady_clock::now() < deadline; ++round) {
        std::vector<uint8_t> file = originals[static_cast<size_t>(round) % originals.size()];
        const int changes = 1 + static_cast<int>(random() % 4);
        for (int i = 0; i < changes; ++i) {
            // Half the changes go to the headers, where the tables are.
            const size_t span = random() % 2 == 0 ? std::min<size_t>(file.size(), 700) : file.size();
            const size_t at = random() % span;
            // A random byte, one bit flipped, a marker byte, or one more.
            const auto r = static_cast<uint8_t>(random());
            const uint8_t changed[] = {r, static_cast<uint8_t>(file[at] ^ (1u << (r % 8))), 0xFF,
                                       static_cast<uint8_t>(file[at] + 1)};
            file[at] = changed[random() % 4];
        }
        tryDecode(file, round % 8 == 0 ? 2 : 1);
    }
}

}  // namespace
}  // namespace tl::test
