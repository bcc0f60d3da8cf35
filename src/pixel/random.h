// One seedable source of uniform random numbers for every pixel operation, so that a
// test or the batch tool can fix the sequence (`Randomize(seed)`), while the editor
// seeds it from the clock at start.
#pragma once

#include <cstdint>
#include <random>

namespace ostrivex {

class RandomSource {
public:
    // A uniform single-precision number in [0, 1).
    float next() {
        // 24 random bits give every float of [0, 1) with a step of 2^-24.
        return static_cast<float>(engine_() >> 8) * (1.0f / 16777216.0f);
    }
    void seed(uint32_t s) { engine_.seed(s); }

private:
    std::mt19937 engine_{20240601u};
};

// The program-wide generator.
RandomSource& globalRandom();

// `Rnd`: the next number in [0, 1) of the program-wide generator.
inline float Rnd() { return globalRandom().next(); }
// `Randomize`: reseed the program-wide generator.
inline void Randomize(uint32_t seed) { globalRandom().seed(seed); }

} // namespace ostrivex
