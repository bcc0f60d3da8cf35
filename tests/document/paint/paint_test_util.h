// Helpers of the paint tests: plain images and regions.
#pragma once

#include "document/paint/paint.h"
#include "pixel/pixel_test_util.h"

namespace ostrivex::test {

// A w x h image of one colour (blue, green, red); alpha 0.
inline Bits solidBits(int w, int h, uint8_t b, uint8_t g, uint8_t r) {
    Bits out(w, h);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            out(0, x, y) = b;
            out(1, x, y) = g;
            out(2, x, y) = r;
        }
    return out;
}

inline Region wholeRegion(const Bits& bits) {
    return Region::rect(0, 0, bits.width(), bits.height());
}

inline void setPx(Bits& bits, int x, int y, uint8_t b, uint8_t g, uint8_t r) {
    bits(0, x, y) = b;
    bits(1, x, y) = g;
    bits(2, x, y) = r;
}

// The three colour channels of a pixel as one 0xBBGGRR-ordered triple for messages.
inline std::vector<int> px(const Bits& bits, int x, int y) {
    return {bits(0, x, y), bits(1, x, y), bits(2, x, y)};
}

// True when every byte of the guard band is still zero.
inline bool guardClear(const Bits& bits) {
    for (int y = -2; y < bits.height() + 2; ++y)
        for (int x = -2; x < bits.width() + 2; ++x) {
            if (x >= 0 && y >= 0 && x < bits.width() && y < bits.height()) continue;
            for (int c = 0; c < 4; ++c)
                if (bits(c, x, y) != 0) return false;
        }
    return true;
}

} // namespace ostrivex::test
