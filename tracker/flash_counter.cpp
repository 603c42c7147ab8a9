#include "tracker/flash_counter.h"

namespace tl {

FlashCounter::Tick FlashCounter::tick(unsigned interval) {
    if (count_ == 0) {
        interval = kFlashIntervalMs;
    }
    ++count_;
    if (count_ == kFlashes) {
        count_ = 0;
        return {kRestingIntervalMs, false};
    }
    return {interval, true};
}

}  // namespace tl
