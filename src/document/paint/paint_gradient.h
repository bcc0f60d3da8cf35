// The gradient tool's pixels: a two-colour gradient laid between two image points.
//
// Linear: the gradient runs along the line from (x1, y1) to (x2, y2); a pixel takes the
// position t of its projection onto that line, 0 at the first point and 1 at the second.
// Radial: t is the pixel's distance from (x1, y1) divided by the distance from (x1, y1) to
// (x2, y2). Before the start t is 0 and past the end it is 1, so the end colours run on
// to the image's edges.
//
// Frequency f (1 or more) is the number of colour runs between the two points: the colour
// goes from colour 1 to colour 2, then back, alternately, f times. With u = t * f, run
// k = floor(u) (the last run also takes u = f) and w = u - k, mirrored (1 - w) in odd runs;
// the gradient colour is colour1 + (colour2 - colour1) * w per channel.
//
// Pressure p = pressure / 100 blends it over the image: new = g * p + old * (1 - p). With
// `transparent` colour 2 is not painted: colour 1 fades into the untouched image, weight
// a = p * (1 - w), new = colour1 * a + old * (1 - a). Each channel is rounded once, at the
// end, to nearest with ties to even. Only pixels of the region (and of the image) change;
// two equal points give no direction and change nothing.
#pragma once

#include "pixel/bits.h"
#include "pixel/region.h"

#include <cstdint>

namespace ostrivex {

struct GradientParams {
    int32_t x1 = 0, y1 = 0; // where the drag started: colour 1
    int32_t x2 = 0, y2 = 0; // where it ended: colour 2 (for f = 1)
    bool radial = false;
    int32_t colour1 = 0xFFFFFF; // 0x00BBGGRR
    int32_t colour2 = 0;
    int32_t pressure = 100;  // percent
    int32_t frequency = 1;   // values below 1 count as 1
    bool transparent = false;
};

// The gradient's weight w (0 = colour 1, 1 = colour 2) at image pixel (x, y).
double GradientWeight(const GradientParams& gradient, int32_t x, int32_t y);

void BitsGradient(Bits& bits, const Region& region, const GradientParams& gradient);

} // namespace ostrivex
