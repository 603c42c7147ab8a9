#pragma once

#include <cstdint>

namespace tl {

// The program's one shared random generator: the random wallpaper choice reseeds it from the time of
// day before each draw, and the list sort draws its pivots from it.
class RandomSource {
public:
    virtual ~RandomSource() = default;
    // Uniform in [0, 1).
    virtual double next() = 0;
    virtual void reseed(double seed) = 0;
};

// A deterministic generator (the same seed gives the same sequence).
class DefaultRandom : public RandomSource {
public:
    explicit DefaultRandom(uint64_t seed = 0x2545F4914F6CDD1Dull) : state_(seed) {}
    double next() override;
    void reseed(double seed) override;

private:
    uint64_t state_;
};

// The process-wide instance.
RandomSource& sharedRandom();

}  // namespace tl
