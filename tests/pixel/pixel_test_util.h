// Small helpers shared by the pixel tests: build images from literal pixel lists and
// report the first differing bytes.
#pragma once

#include "pixel/bits.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <initializer_list>
#include <sstream>
#include <string>
#include <vector>

namespace ostrivex::test {

struct Px {
    uint8_t b, g, r, a = 0;
};

// A w x h image from pixels given row by row.
inline Bits makeBits(int w, int h, std::initializer_list<Px> pixels) {
    Bits out(w, h);
    int i = 0;
    for (const Px& p : pixels) {
        uint8_t* d = out.pixel(i % w, i / w);
        d[0] = p.b; d[1] = p.g; d[2] = p.r; d[3] = p.a;
        ++i;
    }
    return out;
}

// A w x h image whose pixels follow a deterministic pattern (every byte varies).
inline Bits patternBits(int w, int h, uint32_t seed = 1) {
    Bits out(w, h);
    uint32_t s = seed * 2654435761u + 12345u;
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
            for (int c = 0; c < 4; ++c) {
                s = s * 1103515245u + 12345u;
                out(c, x, y) = static_cast<uint8_t>(s >> 16);
            }
    return out;
}

// gtest assertion: equal size and bytes; reports the first differing pixels.
inline ::testing::AssertionResult sameBits(const Bits& expected, const Bits& actual) {
    if (expected.width() != actual.width() || expected.height() != actual.height())
        return ::testing::AssertionFailure()
               << "size " << actual.width() << "x" << actual.height() << ", expected "
               << expected.width() << "x" << expected.height();
    std::ostringstream diff;
    int shown = 0;
    for (int y = -2; y < expected.height() + 2; ++y)
        for (int x = -2; x < expected.width() + 2; ++x)
            for (int c = 0; c < 4; ++c)
                if (expected(c, x, y) != actual(c, x, y) && shown < 8) {
                    diff << " (c" << c << "," << x << "," << y << "): got "
                         << int(actual(c, x, y)) << " want " << int(expected(c, x, y)) << ";";
                    ++shown;
                }
    if (shown) return ::testing::AssertionFailure() << "bytes differ:" << diff.str();
    return ::testing::AssertionSuccess();
}

// Blue, green and red of the pixel at x, y.
inline std::array<int, 3> bgr(const Bits& bits, int x, int y) {
    const uint8_t* p = bits.pixel(x, y);
    return {p[0], p[1], p[2]};
}

} // namespace ostrivex::test
