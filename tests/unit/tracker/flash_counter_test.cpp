#include "tracker/flash_counter.h"

#include <gtest/gtest.h>

namespace tl {
namespace {

TEST(FlashCounter, SixFlashesAt200MsThenRestsAtOneAndStops) {
    FlashCounter counter;
    unsigned interval = FlashCounter::kRestingIntervalMs;
    for (int round = 0; round < 2; ++round) {
        int ticks = 0;
        bool enabled = true;
        while (enabled) {
            const auto t = counter.tick(interval);
            ++ticks;
            interval = t.interval;
            enabled = t.enabled;
            if (enabled) {
                EXPECT_EQ(interval, 200u) << "tick " << ticks;
            }
        }
        EXPECT_EQ(ticks, 6) << "round " << round;
        EXPECT_EQ(interval, 1u);
        EXPECT_EQ(counter.count(), 0) << "the count starts over for the next time the timer is enabled";
    }
}

TEST(FlashCounter, ADesignIntervalOtherThanOneIsReplacedOnTheFirstTick) {
    FlashCounter counter;
    EXPECT_EQ(counter.tick(1000).interval, 200u);
    EXPECT_EQ(counter.tick(750).interval, 750u) << "later ticks keep whatever interval the timer has";
    EXPECT_EQ(counter.count(), 2);
}

}  // namespace
}  // namespace tl
