// The picture every benchmark works on: noise from a fixed linear congruential sequence, so
// that tables, branches and spill loops see realistic variety and every run sees the same
// bytes. Channel 3 is noise too.
#pragma once

#include "pixel/bits.h"

#include <cstdint>

namespace ostrivex::bench {

inline Bits PatternImage(int32_t w, int32_t h) {
    Bits b(w, h);
    uint32_t s = 12345u;
    for (int32_t y = 0; y < h; ++y) {
        uint8_t* p = b.row(y);
        for (int32_t i = 0; i < w * 4; ++i) {
            s = s * 1103515245u + 12345u;
            p[i] = uint8_t(s >> 16);
        }
    }
    return b;
}

} // namespace ostrivex::bench
