// Pictures for the effect tests: random colours with the key colour laid in runs, single
// pixels and one whole row, and the key checks every effect must pass.
#pragma once

#include "pixel/bits.h"
#include "pixel/effects/frame.h"
#include "pixel_test_util.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>

namespace ostrivex::test {

// A key colour that random pictures rarely hit by chance: 0x00BBGGRR.
constexpr int32_t kTestKey = 0x00FF00FF; // magenta

inline Bits keyedPicture(int w, int h, uint32_t seed, int32_t key = kTestKey) {
    Bits b = patternBits(w, h, seed);
    std::mt19937 rng(seed);
    const uint32_t k = effects::wordOf(uint32_t(key));
    auto put = [&](int x, int y) { store32(b.pixel(x, y), (load32(b.pixel(x, y)) & 0xFF000000u) | k); };
    for (int i = 0; i < w * h / 8; ++i) put(int(rng() % uint32_t(w)), int(rng() % uint32_t(h)));
    if (h > 3)
        for (int x = 0; x < w; ++x) put(x, h / 2); // a row of key pixels only
    if (w > 6)
        for (int x = 1; x < w / 2; ++x) put(x, 1); // a run
    // Near misses of the key, which effects must leave as they are made.
    if (w > 2) store32(b.pixel(w - 1, 0), (k ^ 1u));
    return b;
}

// The key rule: every source pixel of the key colour is in dest unchanged (all four bytes),
// and no other pixel of dest has the key colour.
inline ::testing::AssertionResult keepsKey(const Bits& src, const Bits& dest, int32_t key) {
    const effects::Key k(key);
    if (dest.width() != src.width() || dest.height() != src.height())
        return ::testing::AssertionFailure() << "size " << dest.width() << "x" << dest.height();
    for (int y = 0; y < src.height(); ++y)
        for (int x = 0; x < src.width(); ++x) {
            const uint32_t s = load32(src.pixel(x, y)), d = load32(dest.pixel(x, y));
            if (k.is(s) && d != s)
                return ::testing::AssertionFailure() << "key pixel changed at " << x << "," << y;
            if (!k.is(s) && k.is(d))
                return ::testing::AssertionFailure() << "new key pixel at " << x << "," << y;
        }
    return ::testing::AssertionSuccess();
}

// Whether the guard band of a picture is all zero.
inline bool guardIsZero(const Bits& b) {
    for (int y = -2; y < b.height() + 2; ++y)
        for (int x = -2; x < b.width() + 2; ++x)
            if ((x < 0 || y < 0 || x >= b.width() || y >= b.height()) && load32(b.pixel(x, y)) != 0) return false;
    return true;
}

} // namespace ostrivex::test
