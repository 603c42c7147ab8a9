#include <gtest/gtest.h>

#include "changer/delay_entry.h"
#include "changer/preview_layout.h"

namespace tl {
namespace {

TEST(PreviewLayout, EachModePlacesThePictureInTheWindow) {
    const struct {
        int16_t mode;
        PixelSize picture, inner;
        std::optional<PreviewLayout> expected;
    } cases[] = {
        // Natural size: the window is fitted around the picture and its frame.
        {kPreviewNatural, {640, 480}, {300, 200}, PreviewLayout{false, 0, 0, 640, 480, PixelSize{656, 519}}},
        {kPreviewStretched, {640, 480}, {300, 200}, PreviewLayout{true, 0, 0, 300, 200, std::nullopt}},
        // Centred, halves rounded to even: 99.5 -> 100, 74.5 -> 74, 100.5 -> 100, 76.5 -> 76.
        {kPreviewCentred, {100, 50}, {300, 200}, PreviewLayout{false, 100, 75, 100, 50, std::nullopt}},
        {kPreviewCentred, {101, 51}, {300, 200}, PreviewLayout{false, 100, 74, 101, 51, std::nullopt}},
        {kPreviewCentred, {100, 50}, {301, 203}, PreviewLayout{false, 100, 76, 100, 50, std::nullopt}},
        // Larger than the window: clipped on every side.
        {kPreviewCentred, {640, 480}, {300, 200}, PreviewLayout{false, -170, -140, 640, 480, std::nullopt}},
        {-1, {10, 10}, {10, 10}, std::nullopt},
        {3, {10, 10}, {10, 10}, std::nullopt},
    };
    const auto fields = [](const std::optional<PreviewLayout>& l) {
        const PixelSize window = l && l->windowSize ? *l->windowSize : PixelSize{-1, -1};
        return l ? std::vector<int>{l->stretch, l->left, l->top, l->width, l->height, window.width, window.height}
                 : std::vector<int>{};
    };
    for (const auto& c : cases) {
        EXPECT_EQ(fields(layoutPreview(c.mode, c.picture, c.inner, {16, 39})), fields(c.expected))
            << "mode " << c.mode << ", " << c.picture.width << " in " << c.inner.width;
    }
}

TEST(PreviewLayout, ClicksCycleThroughTheThreeModesAndThePositionRoundTripsThroughTwips) {
    // A value from an edited settings file: anything past 2 starts again at 0.
    for (const auto& [mode, next] : {std::pair{kPreviewNatural, kPreviewStretched},
                                     {kPreviewStretched, kPreviewCentred},
                                     {kPreviewCentred, kPreviewNatural},
                                     {int16_t{32767}, kPreviewNatural},
                                     {int16_t{-3}, int16_t{-2}}}) {
        EXPECT_EQ(nextPreviewMode(mode), next) << mode;
    }

    const struct {
        int pixels, dpi;
        int16_t twips;
    } cases[] = {
        {100, 96, 1500}, {100, 144, 1000}, {0, 96, 0}, {-20, 96, -300}, {5000, 96, 32767}, {-5000, 96, -32768},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(pixelsToTwips(c.pixels, c.dpi), c.twips) << c.pixels << " at " << c.dpi;
        if (c.twips != 32767 && c.twips != -32768) {
            EXPECT_EQ(twipsToPixels(c.twips, c.dpi), c.pixels);
        }
    }
}

TEST(DelayEntry, AcceptsOneTo32000AndRefusesTheRest) {
    const struct {
        const char* text;
        char separator;
        int expected;  // minutes, 0 out of range, -1 not a number
    } cases[] = {
        {"1", '.', 1},    {"32000", '.', 32000}, {" 15 ", '.', 15}, {"2.5", '.', 2},   {"3.5", '.', 4},
        {"2,5", ',', 2},  {"0", '.', 0},         {"-5", '.', 0},    {"32001", '.', 0}, {"0.4", '.', 0},
        {"abc", '.', -1}, {"12abc", '.', -1},    {"2.5", ',', -1},
    };
    for (const auto& c : cases) {
        const DelayEntry entry = checkDelayEntry(c.text, c.separator);
        if (c.expected > 0) {
            ASSERT_TRUE(std::holds_alternative<DelayAccepted>(entry)) << c.text;
            EXPECT_EQ(std::get<DelayAccepted>(entry).minutes, c.expected) << c.text;
        } else if (c.expected == 0) {
            EXPECT_TRUE(std::holds_alternative<DelayOutOfRange>(entry)) << c.text;
        } else {
            EXPECT_TRUE(std::holds_alternative<DelayNotANumber>(entry)) << c.text << " with " << c.separator;
        }
    }
}

}  // namespace
}  // namespace tl
