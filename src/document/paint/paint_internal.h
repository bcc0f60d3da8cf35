// Pieces shared by the paint primitives: the pixel test, the blend and the brush circle.
#pragma once

#include "document/paint/paint.h"
#include "pixel/vbmath.h"

#include <cstdint>

namespace ostrivex::paint_detail {

// Inside the image and inside the region.
inline bool paintable(const Bits& bits, const Region& region, int32_t x, int32_t y) {
    return x >= 0 && y >= 0 && x < bits.width() && y < bits.height() &&
           region.contains(x, y);
}

// new*p + old*(1-p), rounded ties to even. With p in 0..1 the result is a byte.
inline uint8_t blend(double fresh, double old, double p) {
    return clampByteD(fresh * p + old * (1.0 - p));
}

// Colour channels in Bits order: blue, green, red.
struct Channels {
    int32_t c[3];
};
inline Channels channelsOf(int32_t colour) {
    const uint32_t v = uint32_t(colour);
    return {{colourB(v), colourG(v), colourR(v)}};
}

// Brush radius for a size: Round(size * 0.5), ties to even (size 1 gives 0, size 3 gives 2).
inline int32_t brushRadius(int32_t size) { return vbRound(size * 0.5); }

// Calls fn(dx, dy) for every offset of the brush circle of radius r, dx outer and dy
// inner: the neighbourhood brushes change the image in place, so the order is part of
// their result.
template <class Fn>
inline void forEachCircleOffset(int32_t r, Fn&& fn) {
    const int32_t limit = r * r + 1;
    for (int32_t dx = -r; dx <= r; ++dx)
        for (int32_t dy = -r; dy <= r; ++dy)
            if (dx * dx + dy * dy < limit) fn(dx, dy);
}

// Opacity of the anti-aliased plot: Round(pressure * 2.55), never 0.
inline int32_t lineOpacity(int32_t pressure) {
    const int32_t q = vbRound(pressure * 2.55);
    return q == 0 ? 1 : q;
}

// One anti-aliased sample at (x, y) spread over the four pixels around it.
void plotSample(Bits& bits, const Region& region, double x, double y, const Channels& col,
                int32_t q);

} // namespace ostrivex::paint_detail
