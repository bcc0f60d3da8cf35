// The gradient tool's pixels (see paint_gradient.h for the rule).
#include "document/paint/paint_gradient.h"

#include "pixel/vbmath.h"

#include <algorithm>
#include <cmath>

namespace ostrivex {

double GradientWeight(const GradientParams& gradient, int32_t x, int32_t y) {
    const double dx = double(gradient.x2) - gradient.x1, dy = double(gradient.y2) - gradient.y1;
    const double px = double(x) - gradient.x1, py = double(y) - gradient.y1;
    double t = 0.0;
    if (gradient.radial) {
        const double r = std::sqrt(dx * dx + dy * dy);
        if (r > 0.0) t = std::sqrt(px * px + py * py) / r;
    } else {
        const double len2 = dx * dx + dy * dy;
        if (len2 > 0.0) t = (px * dx + py * dy) / len2;
    }
    t = std::clamp(t, 0.0, 1.0);
    const int32_t f = std::max<int32_t>(1, gradient.frequency);
    const double u = t * f;
    const int32_t run = std::min<int32_t>(int32_t(std::floor(u)), f - 1);
    double w = u - run;
    if (run % 2 == 1) w = 1.0 - w;
    return w;
}

void BitsGradient(Bits& bits, const Region& region, const GradientParams& gradient) {
    if (bits.empty() || (gradient.x1 == gradient.x2 && gradient.y1 == gradient.y2)) return;
    const double p = gradient.pressure / 100.0;
    const uint32_t c1 = uint32_t(gradient.colour1), c2 = uint32_t(gradient.colour2);
    // Channel order of Bits: blue, green, red.
    const double from[3] = {double(colourB(c1)), double(colourG(c1)), double(colourR(c1))};
    const double to[3] = {double(colourB(c2)), double(colourG(c2)), double(colourR(c2))};
    const int32_t w = bits.width(), h = bits.height();
    for (const Band& band : region.bands()) {
        const int32_t top = std::max(0, band.top), bottom = std::min(h, band.bottom);
        for (int32_t y = top; y < bottom; ++y) {
            for (const Span& span : band.spans) {
                const int32_t left = std::max(0, span.x1), right = std::min(w, span.x2);
                for (int32_t x = left; x < right; ++x) {
                    const double wt = GradientWeight(gradient, x, y);
                    uint8_t* px = bits.pixel(x, y);
                    for (int c = 0; c < 3; ++c) {
                        const double old = px[c];
                        double v;
                        if (gradient.transparent) {
                            const double a = p * (1.0 - wt);
                            v = from[c] * a + old * (1.0 - a);
                        } else {
                            const double g = from[c] + (to[c] - from[c]) * wt;
                            v = g * p + old * (1.0 - p);
                        }
                        px[c] = clampByteD(v);
                    }
                }
            }
        }
    }
}

} // namespace ostrivex
