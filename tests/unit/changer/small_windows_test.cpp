#include <gtest/gtest.h>

#include "changer/delay_entry.h"
#include "changer/preview_layout.h"

namespace tl {
namespace {

TEST(PreviewLayout, NaturalSizeFitsTheWindowAroundThePicture) {
    const auto layout = layoutPreview(kPreviewNatural, {640, 480}, {300, 200}, {16, 39});
    ASSERT_TRUE(layout);
    EXPECT_FALSE(layout->stretch);
    EXPECT_EQ(layout->left, 0);
    EXPECT_EQ(layout->top, 0);
    EXPECT_EQ(layout->width, 640);
    EXPECT_EQ(layout->height, 480);
    ASSERT_TRUE(layout->windowSize);
    EXPECT_EQ(layout->windowSize->width, 656);
    EXPECT_EQ(layout->windowSize->height, 519);
}

TEST(PreviewLayout, StretchedFillsTheInnerArea) {
    const auto layout = layoutPreview(kPreviewStretched, {640, 480}, {300, 200}, {16, 39});
    ASSERT_TRUE(layout);
    EXPECT_TRUE(layout->stretch);
    EXPECT_EQ(layout->left, 0);
    EXPECT_EQ(layout->top, 0);
    EXPECT_EQ(layout->width, 300);
    EXPECT_EQ(layout->height, 200);
    EXPECT_FALSE(layout->windowSize) << "only the natural mode resizes the window";
}

TEST(PreviewLayout, CentredRoundsHalvesToEven) {
    const struct {
        PixelSize picture, inner;
        int left, top;
    } cases[] = {
        {{100, 50}, {300, 200}, 100, 75},
        {{101, 51}, {300, 200}, 100, 74},      // 99.5 -> 100, 74.5 -> 74
        {{100, 50}, {301, 203}, 100, 76},      // 100.5 -> 100, 76.5 -> 76
        {{640, 480}, {300, 200}, -170, -140},  // larger than the window: clipped on every side
    };
    for (const auto& c : cases) {
        const auto layout = layoutPreview(kPreviewCentred, c.picture, c.inner, {16, 39});
        ASSERT_TRUE(layout);
        EXPECT_FALSE(layout->stretch);
        EXPECT_EQ(layout->left, c.left) << c.picture.width << " in " << c.inner.width;
        EXPECT_EQ(layout->top, c.top) << c.picture.height << " in " << c.inner.height;
        EXPECT_EQ(layout->width, c.picture.width);
        EXPECT_FALSE(layout->windowSize);
    }
}

TEST(PreviewLayout, UnknownModesLayNothingOut) {
    for (int16_t mode : {int16_t{-1}, int16_t{3}, int16_t{32767}}) {
        EXPECT_FALSE(layoutPreview(mode, {10, 10}, {10, 10}, {0, 0})) << mode;
    }
}

TEST(PreviewLayout, ClicksCycleThroughTheThreeModes) {
    int16_t mode = kPreviewNatural;
    mode = nextPreviewMode(mode);
    EXPECT_EQ(mode, kPreviewStretched);
    mode = nextPreviewMode(mode);
    EXPECT_EQ(mode, kPreviewCentred);
    mode = nextPreviewMode(mode);
    EXPECT_EQ(mode, kPreviewNatural);
    // A value from an edited settings file: anything past 2 starts again at 0.
    EXPECT_EQ(nextPreviewMode(7), kPreviewNatural);
    EXPECT_EQ(nextPreviewMode(32767), kPreviewNatural);
    EXPECT_EQ(nextPreviewMode(-3), -2);
}

TEST(PreviewLayout, PositionRoundTripsThroughTwips) {
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
        int expected;  // minutes, 0 out of range, -1 not a number
    } cases[] = {
        {"1", 1},     {"32000", 32000}, {" 15 ", 15}, {"2.5", 2},  {"3.5", 4}, {"0", 0},      {"-5", 0},
        {"32001", 0}, {"40000", 0},     {"0.4", 0},   {"abc", -1}, {"", -1},   {"12abc", -1},
    };
    for (const auto& c : cases) {
        const DelayEntry entry = checkDelayEntry(c.text, '.');
        if (c.expected > 0) {
            ASSERT_TRUE(std::holds_alternative<DelayAccepted>(entry)) << c.text;
            EXPECT_EQ(std::get<DelayAccepted>(entry).minutes, c.expected) << c.text;
        } else if (c.expected == 0) {
            EXPECT_TRUE(std::holds_alternative<DelayOutOfRange>(entry)) << c.text;
        } else {
            EXPECT_TRUE(std::holds_alternative<DelayNotANumber>(entry)) << c.text;
        }
    }
}

TEST(DelayEntry, ReadsTheUsersDecimalSeparator) {
    EXPECT_TRUE(std::holds_alternative<DelayAccepted>(checkDelayEntry("2,5", ',')));
    EXPECT_EQ(std::get<DelayAccepted>(checkDelayEntry("2,5", ',')).minutes, 2);
}

}  // namespace
}  // namespace tl
