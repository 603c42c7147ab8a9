#pragma once

#include <cstdint>

namespace tl {

// tmrFlashMe's tick: the window flashes six times, 200 ms apart, then the timer goes back to its resting
// interval of 1 ms and stops until it is enabled again.
class FlashCounter {
  public:
    static constexpr unsigned kFlashIntervalMs = 200;
    static constexpr unsigned kRestingIntervalMs = 1;
    static constexpr int16_t kFlashes = 6;

    struct Tick {
        unsigned interval;  // the timer's interval after the tick
        bool enabled;       // whether the timer keeps running
    };

    // One tick, given the timer's interval; the caller flashes the window once for every tick.
    Tick tick(unsigned interval);
    int16_t count() const { return count_; }

  private:
    int16_t count_ = 0;
};

}  // namespace tl
