// Contrast's spill of the plain kernel: the overflow of each channel in turn is spread half
// and half over the other two, so that the hue is held. (The wide kernel, tone_wide.cpp,
// has the same round on sixteen 16-bit lanes.)
#pragma once

#include <cstdint>

namespace ostrivex::contrast {

// What a channel gives the other two: half its overflow below 0 or above 255 (truncated),
// else nothing.
inline int32_t spillOf(int32_t c) {
    const int32_t under = c / 2, over = (c - 255) / 2;
    return c < 0 ? under : (c > 255 ? over : 0);
}
inline int32_t limitByte(int32_t c) {
    const int32_t lo = c < 0 ? 0 : c;
    return lo > 255 ? 255 : lo;
}

// Blue spills into green and red, then green into blue and red, then red into green and
// blue, each with the values as they stand by then. A pixel inside 0..255 is unchanged.
// Written without branches, so a group of pixels runs as vector code.
inline __attribute__((always_inline)) void spillChannels(int32_t& b, int32_t& g, int32_t& r) {
    const int32_t sb = spillOf(b);
    g += sb;
    r += sb;
    b = limitByte(b);
    const int32_t sg = spillOf(g);
    b += sg;
    r += sg;
    g = limitByte(g);
    const int32_t sr = spillOf(r);
    g += sr;
    b += sr;
    r = limitByte(r);
}

} // namespace ostrivex::contrast
