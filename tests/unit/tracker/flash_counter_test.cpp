#include "tracker/flash_counter.h"

#include <gtest/gtest.h>

namespace tl {
namespace {

TEST(FlashCounter, SixFlashesAt200MsThenRestsAtOneAndStartsOverNextTime) {
    FlashCounter counter;
    EXPECT_EQ(counter.tick(1000).interval, 200u) << "a design interval other than 1 is replaced at the first tick";
    EXPECT_EQ(counter.tick(750).interval, 750u) << "later ticks keep whatever interval the timer has";
    for (int round = 0; round < 2; ++round) {
        unsigned interval = round == 0 ? 750 : FlashCounter::kRestingIntervalMs;
        int ticks = round == 0 ? 2 : 0;
        for (bool enabled = true; enabled; ++ticks) {
            const auto t = counter.tick(interval);
            interval = t.interval;
            enabled = t.enabled;
        }
        EXPECT_EQ(ticks, 6) << "round " << round;
        EXPECT_EQ(interval, FlashCounter::kRestingIntervalMs);
        EXPECT_EQ(counter.count(), 0) << "the count starts over for the next time the timer is enabled";
    }
}

}  // namespace
}  // namespace tl
