#include "lists/image_facts.h"

#include <gtest/gtest.h>

namespace tl {
namespace {

TEST(ImageFacts, SizeTextThresholdsAreDecimalWhileTheDivisorIsNot) {
    const std::pair<double, const char*> cases[] = {
        {0, "0 bytes"},
        {10000, "10000 bytes"},
        {10001, "10 KB"},
        {10752, "10 KB"},  // 10.5 KB: halves go to the even neighbour
        {11776, "12 KB"},  // 11.5 KB
        {1024000, "1000 KB"},
        {1024512, "1000 KB"},  // 1000.5 rounds to 1000, under the threshold
        {1025000, "1 MB"},
        {2621440, "2 MB"},            // 2.5 MB
        {3670016, "4 MB"},            // 3.5 MB
        {64424509440.0, "61440 MB"},  // past 16 bits: still shown
    };
    for (const auto& [bytes, want] : cases) {
        EXPECT_EQ(sizeText(bytes), want) << bytes << " bytes";
    }
}

TEST(ImageFacts, DimensionsAndDate) {
    EXPECT_EQ(dimensionsText(1024, 768), "1024 x 768 pixels");
    EXPECT_EQ(dimensionsText(1, 65535), "1 x 65535 pixels");
    EXPECT_EQ(dateText("  12/05/2024 14:03:00 "), "12/05/2024 14:03:00");
    EXPECT_EQ(dateText(""), "");
}

struct FitCase {
    int32_t width, height, boxWidth, boxHeight;
    std::optional<PreviewSize> want;
};

TEST(ImageFacts, PreviewFitsTheBoxKeepingProportions) {
    const FitCase cases[] = {
        // The manager's browse preview box is 303 x 257.
        {100, 50, 303, 257, PreviewSize{303, 152}},  // 151.5 rounds to the even 152
        {1024, 768, 303, 257, PreviewSize{303, 227}},
        {768, 1024, 303, 257, PreviewSize{193, 257}},
        {10, 10, 303, 257, PreviewSize{257, 257}},  // small pictures are enlarged too
        {6060, 5140, 303, 257, PreviewSize{303, 257}},
        {1, 30000, 303, 257, PreviewSize{0, 257}},
        {65535, 1, 303, 257, PreviewSize{303, 0}},  // by height it would not fit in 16 bits
        {0, 600, 200, 150, std::nullopt},
        {800, 600, 0, 150, std::nullopt},
    };
    for (const FitCase& c : cases) {
        EXPECT_EQ(fitPreview(c.width, c.height, c.boxWidth, c.boxHeight), c.want)
            << c.width << "x" << c.height << " in " << c.boxWidth << "x" << c.boxHeight;
    }
}

}  // namespace
}  // namespace tl
