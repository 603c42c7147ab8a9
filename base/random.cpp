#include "base/random.h"

#include <cstring>

namespace tl {

double DefaultRandom::next() {
    // splitmix64: small, fast and well distributed.
    uint64_t z = (state_ += 0x9E3779B97F4A7C15ull);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
    z ^= z >> 31;
    return static_cast<double>(z >> 11) * 0x1.0p-53;
}

void DefaultRandom::reseed(double seed) {
    uint64_t bits = 0;
    static_assert(sizeof bits == sizeof seed);
    std::memcpy(&bits, &seed, sizeof bits);
    state_ = bits ^ 0x2545F4914F6CDD1Dull;
}

RandomSource& sharedRandom() {
    static DefaultRandom instance;
    return instance;
}

}  // namespace tl
