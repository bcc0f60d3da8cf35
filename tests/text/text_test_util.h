// Helpers of the text tests.
#pragma once

#include "pixel/bits.h"
#include "pixel/vbmath.h"

#include <QString>

#include <cstdint>
#include <set>

namespace ostrivex::test {

// The family of the font the test main loaded from tests/data/fonts.
extern QString TestFontFamily;

// A picture of w x h in one colour (0x00BBGGRR).
inline Bits Filled(int w, int h, uint32_t colour) {
    Bits b(w, h);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            b(0, x, y) = colourB(colour);
            b(1, x, y) = colourG(colour);
            b(2, x, y) = colourR(colour);
        }
    return b;
}

inline uint32_t At(const Bits& b, int x, int y) {
    return packColour(b(2, x, y), b(1, x, y), b(0, x, y));
}

// Every colour of the picture.
inline std::set<uint32_t> Colours(const Bits& b) {
    std::set<uint32_t> out;
    for (int y = 0; y < b.height(); ++y)
        for (int x = 0; x < b.width(); ++x)
            out.insert(At(b, x, y));
    return out;
}

inline int CountColour(const Bits& b, uint32_t c) {
    int n = 0;
    for (int y = 0; y < b.height(); ++y)
        for (int x = 0; x < b.width(); ++x)
            n += At(b, x, y) == c;
    return n;
}

} // namespace ostrivex::test
