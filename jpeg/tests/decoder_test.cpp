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

// Offsets of every scan header (SOS marker): coded data never holds 0xFF 0xDA.
std::vector<size_t> scanHeaders(const std::vector<uint8_t>& jpeg) {
    std::vector<size_t> found;
    for (size_t i = 0; i + 1 < jpeg.size(); ++i) {
        if (jpeg[i] == 0xFF && jpeg[i + 1] == 0xDA) {
            found.push_back(i);
        }
    }
    return found;
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

// Files made and decoded by cjpeg and djpeg (libjpeg-turbo-progs), the known-good tools.
class JpegDecoder : public testing::Test {
  protected:
    void SetUp() override {
        if (!haveJpegTools()) {
            GTEST_SKIP() << "cjpeg and djpeg (libjpeg-turbo-progs) are needed";
        }
    }

    // Within 2 levels per channel and 0.5 on average of what libjpeg's default decoding shows; two threads,
    // and rows handed out one at a time, give the same bytes as one thread. Gives our picture.
    std::optional<RgbImage> expectLikeReference(const std::vector<uint8_t>& jpeg) {
        EXPECT_FALSE(jpeg.empty()) << "cjpeg failed";
        const auto reference = referenceDecode(dir, jpeg);
        EXPECT_TRUE(reference) << "djpeg failed";
        bool complete = false;
        const auto ours = decodeWithOurs(jpeg, 1, &complete);
        EXPECT_TRUE(ours) << "not handled";
        if (!reference || !ours) {
            return std::nullopt;
        }
        EXPECT_TRUE(complete);
        const Difference d = compareImages(*ours, *reference);
        EXPECT_LE(d.max, 2);
        EXPECT_LE(d.mean, 0.5);
        const auto threaded = decodeWithOurs(jpeg, 2);
        EXPECT_TRUE(threaded && threaded->rgb == ours->rgb);
        const auto byRows = decodeRowsWithOurs(jpeg);
        EXPECT_TRUE(byRows && byRows->height == ours->height && byRows->rgb == ours->rgb);
        return ours;
    }

    // Scan scripts for cjpeg -scans (components: first-last coefficient, bit above, lowest bit).
    std::string script(const char* name, const char* scans) {
        dir.write(name, scans);
        return "-scans " + dir.file(name);
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
        SCOPED_TRACE(std::string(c.what) + " " + std::to_string(c.width) + "x" + std::to_string(c.height));
        expectLikeReference(encodeJpeg(dir, testPicture(c.width, c.height), c.switches));
    }
}

// A progressive file holds the same coefficients as the sequential one cjpeg makes with the same switches,
// only sent in another order: it must decode to the very same bytes.
TEST_F(JpegDecoder, DecodesProgressiveFilesToTheBytesOfTheirSequentialTwins) {
    const std::string spectral =
        script("spectral", "0,1,2: 0-0,0,0; 0: 1-2,0,0; 2: 1-63,0,0; 0: 3-9,0,0; 1: 1-63,0,0; 0: 10-63,0,0;");
    const std::string approximation = script("approximation",
                                             "0,1,2: 0-0,0,3; 0: 1-5,0,3; 0: 6-63,0,4; 1: 1-63,0,2; 0,1,2: 0-0,3,2;"
                                             "0: 6-63,4,3; 0: 1-63,3,2; 2: 1-63,0,1; 0,1,2: 0-0,2,1; 0: 1-63,2,1;"
                                             "1: 1-63,2,1; 0,1,2: 0-0,1,0; 1: 1-63,1,0; 2: 1-63,1,0; 0: 1-63,1,0;");
    const std::string dcApart = script("dc-apart",
                                       "0: 0-0,0,1; 2: 0-0,0,1; 1: 0-0,0,1; 0: 1-63,0,0; 1,2: 0-0,1,0; 1: 1-63,0,0;"
                                       "0: 0-0,1,0; 2: 1-63,0,0;");
    const std::string grey =
        script("grey", "0: 0-0,0,1; 0: 1-9,0,2; 0: 10-63,0,1; 0: 1-9,2,1; 0: 0-0,1,0; 0: 1-63,1,0;");
    const struct {
        const char* what;
        int width, height;
        std::string switches;  // for both
        std::string progression;
    } cases[] = {
        {"4:2:0", 67, 45, "-sample 2x2", "-progressive"},
        {"4:4:4, fine quantization", 67, 45, "-sample 1x1 -quality 98", "-progressive"},
        {"4:2:2", 67, 45, "-sample 2x1", "-progressive"},
        {"4:4:0", 5, 333, "-sample 1x2", "-progressive"},
        {"4:1:1", 67, 45, "-sample 4x1", "-progressive"},
        {"luma 3x1, boxed chroma", 67, 45, "-sample 3x1", "-progressive"},
        {"luma 4x2", 75, 37, "-sample 4x2", "-progressive"},
        {"chroma sampled apart", 67, 45, "-sample 2x2,1x2,2x1", "-progressive"},
        {"luma below chroma", 67, 45, "-sample 1x1,2x2,1x1", "-progressive"},
        {"grey", 67, 45, "-grayscale", "-progressive"},
        {"RGB", 67, 45, "-rgb", "-progressive"},
        {"16-bit tables", 40, 40, "-quality 1", "-progressive"},
        {"one pixel", 1, 1, "-sample 2x2", "-progressive"},
        {"wide strip", 1001, 3, "-sample 2x2", "-progressive"},
        {"restart every MCU row", 99, 70, "-sample 2x2 -restart 1", "-progressive"},
        {"restart every 5 MCUs", 61, 50, "-sample 2x1 -restart 5B", "-progressive"},
        {"spectral selection alone", 67, 45, "-sample 2x2", spectral},
        {"successive approximation, several passes", 67, 45, "-sample 2x2 -quality 95", approximation},
        {"DC scans apart and in a pair", 67, 45, "-sample 2x1", dcApart},
        {"grey, approximation, restarts", 61, 30, "-grayscale -restart 2B", grey},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.what) + " " + std::to_string(c.width) + "x" + std::to_string(c.height));
        const RgbImage picture = testPicture(c.width, c.height);
        const std::vector<uint8_t> progressive = encodeJpeg(dir, picture, c.switches + " " + c.progression);
        ASSERT_NE(findSegment(progressive, 0xC2), 0u) << "cjpeg made no progressive file";
        const auto ours = expectLikeReference(progressive);
        const auto sequential = decodeWithOurs(encodeJpeg(dir, picture, c.switches), 1);
        ASSERT_TRUE(ours && sequential);
        EXPECT_EQ(ours->rgb, sequential->rgb);
    }
}

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
    for (const char* switches : {"-sample 2x2", "-sample 2x2 -progressive"}) {
        SCOPED_TRACE(switches);
        const std::vector<uint8_t> jpeg = encodeJpeg(dir, testPicture(300, 200), switches);
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
        {"arithmetic coding", encodeJpeg(dir, picture, "-arithmetic"), 40},
        {"arithmetic coding, progressive", encodeJpeg(dir, picture, "-arithmetic -progressive"), 40},
        {"components in separate scans", encodeJpeg(dir, picture, "-scans " + dir.file("separate.scans")), 40},
        {"12-bit samples", patched(sof + 4, {12}), 40},
        {"height given later (DNL)", patched(sof + 5, {0, 0}), 40},
        {"absurd size", patched(sof + 5, {0xFF, 0xF0, 0xFF, 0xF0}), 0xFFF0},
        {"one row over the size limit", patched(sof + 5, {0x40, 0x01, 0x40, 0x00}), 0x4000},
        {"one column over the size limit", patched(sof + 5, {0x40, 0x00, 0x40, 0x01}), 0x4001},
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
    // 16,384 x 16,384 is the largest picture taken: its header passes (decoding it would take 768 MB).
    EXPECT_TRUE(readJpegHeader(patched(sof + 5, {0x40, 0x00, 0x40, 0x00})).handled);
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

// Cut in a sequential file's only scan, or in a progressive file's late scans: a progressive picture then
// shows what the scans before gave. (Where its low coefficients are still coarse, djpeg smooths the blocks
// and we don't: those cuts are left to the damage test below.)
TEST_F(JpegDecoder, ShowsAFileCutShortAsTheReferenceDoesAndSaysItIsDamaged) {
    const std::string lowFirst =
        script("low-first",
               "0,1,2: 0-0,0,0; 0: 1-9,0,0; 1: 1-9,0,0; 2: 1-9,0,0; 0: 10-63,0,1; 1: 10-63,0,0;"
               "2: 10-63,0,0; 0: 10-63,1,0;");
    const struct {
        std::string switches;
        int scan;  // the cuts fall in the data of this scan (counted from 0; -1 the last scan) and those after
    } cases[] = {
        {"-sample 2x2 -restart 1", 0},
        {"-grayscale -restart 3B", 0},
        {"-sample 2x2 -progressive", -1},
        {"-sample 2x2 -restart 1 " + lowFirst, 4},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.switches);
        const std::vector<uint8_t> full = encodeJpeg(dir, testPicture(64, 48), c.switches);
        const std::vector<size_t> scans = scanHeaders(full);
        ASSERT_GT(scans.size(), static_cast<size_t>(std::max(c.scan, 0)));
        std::vector<size_t> cuts;
        for (size_t i = c.scan < 0 ? scans.size() - 1 : static_cast<size_t>(c.scan); i < scans.size(); ++i) {
            // Within the scan's data: a file that ends inside a marker segment is one djpeg gives up on.
            const size_t data = scans[i] + 14;
            size_t end = data;
            while (end + 1 < full.size() &&
                   !(full[end] == 0xFF && full[end + 1] != 0 && (full[end + 1] & 0xF8) != 0xD0)) {
                ++end;
            }
            for (const double part : {0.0, 0.3, 0.7}) {
                cuts.push_back(data + static_cast<size_t>(part * static_cast<double>(end - data)));
            }
        }
        for (const size_t cut : cuts) {
            SCOPED_TRACE(cut);
            const std::vector<uint8_t> cutShort(full.begin(), full.begin() + static_cast<ptrdiff_t>(cut));
            bool complete = true;
            const auto ours = decodeWithOurs(cutShort, 2, &complete);
            const auto reference = referenceDecode(dir, cutShort);
            ASSERT_TRUE(ours && reference);
            const Difference d = compareImages(*ours, *reference);
            EXPECT_LE(d.max, 2);
            EXPECT_LE(d.mean, 0.5);
            EXPECT_FALSE(complete);
        }
    }
}

// A scan that brings no bit not already in (here a copy of one before it) is passed over, so no file,
// however many scans it holds, makes more work than the bits of the picture; the picture is said to be
// damaged, as it isn't what its encoder wrote.
// Only data that runs on to the end-of-image marker makes a whole picture: a file cut just before it, or
// between a progressive file's scans, fills every block yet is damaged, as is one with a stretch of its data
// gone; what follows the marker (a phone's motion photo) changes nothing.
TEST_F(JpegDecoder, OnlyAFileThatReachesItsEndMarkerIsWhole) {
    for (const char* switches : {"-sample 2x1", "-sample 2x2 -progressive"}) {
        SCOPED_TRACE(switches);
        const std::vector<uint8_t> full = encodeJpeg(dir, testPicture(64, 48), switches);
        const std::vector<size_t> scans = scanHeaders(full);
        ASSERT_FALSE(scans.empty());
        const auto expected = decodeWithOurs(full, 1);
        ASSERT_TRUE(expected);
        std::vector<uint8_t> trailer = full;
        trailer.insert(trailer.end(), {0x00, 0x00, 0x00, 0x18, 'f', 't', 'y', 'p', 0xFF, 0xD8});
        std::vector<uint8_t> holed = full;
        const size_t data = scans[0] + 14;
        const size_t third = (full.size() - data) / 3;
        holed.erase(holed.begin() + static_cast<ptrdiff_t>(data + third),
                    holed.begin() + static_cast<ptrdiff_t>(data + 2 * third));
        const struct {
            const char* what;
            std::vector<uint8_t> file;
            bool reachesEnd, whole;
        } cases[] = {
            {"with a trailer", trailer, true, true},
            {"no end marker", std::vector<uint8_t>(full.begin(), full.end() - 2), false, false},
            {"cut before the last scan",  // progressive only
             std::vector<uint8_t>(full.begin(), full.begin() + (scans.size() > 1 ? scans.back() : 0)), false, false},
            {"a third of the data gone", holed, true, false},
        };
        for (const auto& c : cases) {
            if (c.file.empty()) {
                continue;
            }
            SCOPED_TRACE(c.what);
            EXPECT_EQ(jpegReachesEnd(c.file), c.reachesEnd);
            for (const int threads : {1, 2}) {
                bool whole = false;
                const auto ours = decodeWithOurs(c.file, threads, &whole);
                ASSERT_TRUE(ours);
                EXPECT_EQ(whole, c.whole) << threads;
                if (c.whole) {
                    EXPECT_EQ(ours->rgb, expected->rgb);
                }
            }
        }
    }
}

TEST_F(JpegDecoder, PassesOverAScanThatBringsNothingNew) {
    const std::vector<uint8_t> jpeg = encodeJpeg(dir, testPicture(64, 48), "-sample 2x2 -progressive");
    const auto expected = decodeWithOurs(jpeg, 1);
    const std::vector<size_t> scans = scanHeaders(jpeg);
    ASSERT_TRUE(expected && scans.size() > 3);
    std::vector<uint8_t> repeated = jpeg;
    repeated.insert(repeated.begin() + static_cast<ptrdiff_t>(scans[3]),
                    jpeg.begin() + static_cast<ptrdiff_t>(scans[2]), jpeg.begin() + static_cast<ptrdiff_t>(scans[3]));
    bool complete = true;
    const auto decoded = decodeWithOurs(repeated, 1, &complete);
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->rgb, expected->rgb);
    EXPECT_FALSE(complete);
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
        encodeJpeg(dir, testPicture(40, 32, 5), "-sample 2x2 -progressive -restart 1"),
        encodeJpeg(dir, testPicture(25, 19, 9), "-grayscale -progressive -quality 95"),
        encodeJpeg(dir, testPicture(30, 22, 4),
                   "-sample 2x1 " + script("damage",
                                           "0,1,2: 0-0,0,2; 0: 1-63,0,3; 1,2: 0-0,2,1; 0: 0-0,2,1; 0: 1-63,3,2;"
                                           "1: 1-63,0,0; 0,1,2: 0-0,1,0; 0: 1-63,2,1; 0: 1-63,1,0;"
                                           "2: 1-63,0,0;")),
    };
    for (const auto& original : originals) {
        ASSERT_FALSE(original.empty());
    }
    // Whole or reduced by turns.
    const auto tryDecode = [](const std::vector<uint8_t>& file, int threads, size_t turn) {
        const JpegHeader h = readJpegHeader(file);
        if (!h.handled) {
            std::vector<uint8_t> none(16, 0xEE);
            EXPECT_EQ(decodeJpeg(file, none), JpegResult::notHandled);
            return;
        }
        JpegOptions options;
        options.threads = threads;
        constexpr int kEighths[] = {8, 4, 3, 2, 1};
        options.eighths = kEighths[turn % 5];
        std::vector<uint8_t> pixels(jpegBmpRowBytes(jpegScaledSide(h.width, options.eighths)) *
                                    static_cast<size_t>(jpegScaledSide(h.height, options.eighths)));
        EXPECT_NE(decodeJpeg(file, pixels, options), JpegResult::notHandled);
    };
    for (const auto& original : originals) {
        for (size_t cut = 0; cut < original.size(); cut += 5) {
            tryDecode(std::vector<uint8_t>(original.begin(), original.begin() + static_cast<ptrdiff_t>(cut)), 1,
                      cut / 5);
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
        tryDecode(file, round % 8 == 0 ? 2 : 1, static_cast<size_t>(round / 8));
    }
}

}  // namespace
}  // namespace tl::test
