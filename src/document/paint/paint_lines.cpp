// Outlines in the anti-aliased plot: BitsLine, BitsRectangle, BitsPolygon, BitsEllipse.
#include "document/paint/paint.h"
#include "document/paint/paint_internal.h"

#include <cmath>
#include <cstdlib>

namespace ostrivex {

using namespace paint_detail;

namespace paint_detail {

// A sample that falls on a whole number would split its weight evenly over two pixels
// and round the tie either way; moving it by 0.001 settles which pixel gets the most.
static double nudged(double v) { return v == std::floor(v) ? v + 0.001 : v; }

void plotSample(Bits& bits, const Region& region, double x, double y, const Channels& col,
                int32_t q) {
    const double xa = x - 0.5, ya = y - 0.5;
    const double yb = ya + 1.0;
    const int32_t cx = vbRound(xa), cx2 = cx + 1;
    const int32_t cy = vbRound(ya), cy2 = vbRound(yb);
    const double u = cx + 0.5 - xa;
    const double wx = u * 256.0 - u; // (u) * 255, in the order the weights were first taken
    const double wx2 = 255.0 - wx;
    const double wy = cy + 0.5 - ya;
    const double wy2 = yb - cy2 + 0.5;
    const int32_t px[4] = {cx, cx2, cx, cx2};
    const int32_t py[4] = {cy, cy, cy2, cy2};
    const double cover[4] = {wy * wx, wy * wx2, wy2 * wx, wy2 * wx2};
    for (int i = 0; i < 4; ++i) {
        if (!paintable(bits, region, px[i], py[i])) continue;
        const int32_t coverage = clampByteD(cover[i]);
        const double b = (coverage / 255.0) * q / 255.0;
        uint8_t* d = bits.pixel(px[i], py[i]);
        for (int c = 0; c < 3; ++c) d[c] = clampByteD(d[c] - b * (d[c] - col.c[c]));
    }
}

} // namespace paint_detail

void BitsLine(Bits& bits, const Region& region, DoneBits&, int32_t x1, int32_t y1,
              int32_t x2, int32_t y2, int32_t colour, int32_t pressure) {
    const Channels col = channelsOf(colour);
    const int32_t dx = x2 - x1, dy = y2 - y1;
    const int32_t n = std::max(std::abs(dx), std::abs(dy)) + 1;
    // Two samples per step, half a step apart.
    const double ix = double(dx) / n / 2.0, iy = double(dy) / n / 2.0;
    const int32_t q = lineOpacity(pressure);
    double x = x1, y = y1;
    for (int64_t half = 0; half < int64_t(n) * 2; ++half) {
        x = nudged(x + ix);
        y = nudged(y + iy);
        plotSample(bits, region, x, y, col, q);
    }
}

void BitsRectangle(Bits& bits, const Region& region, DoneBits& done, int32_t x1, int32_t y1,
                   int32_t x2, int32_t y2, int32_t colour, int32_t pressure) {
    BitsLine(bits, region, done, x1, y1, x2, y1, colour, pressure);
    BitsLine(bits, region, done, x2, y1, x2, y2, colour, pressure);
    BitsLine(bits, region, done, x2, y2, x1, y2, colour, pressure);
    BitsLine(bits, region, done, x1, y2, x1, y1, colour, pressure);
}

void BitsPolygon(Bits& bits, const Region& region, DoneBits& done, int32_t cx, int32_t cy,
                 int32_t px, int32_t py, int32_t sides, int32_t colour, int32_t pressure) {
    if (sides <= 0) return;
    const int32_t dx = px - cx, dy = py - cy;
    // The angle constants are rounded to four places on purpose: the vertices of every
    // polygon drawn so far depend on them.
    double a;
    if (dx == 0)
        a = (dy > 0 ? 1 : (dy < 0 ? -1 : 0)) * 1.5708;
    else
        a = std::atan(double(dy) / dx);
    if (dx < 0)
        a += 3.1416;
    else if (dy < 0)
        a += 6.2832;
    const double s = 6.28318 / sides;
    const double r = vbRound(std::sqrt(double(dx) * dx + double(dy) * dy));
    const double last = a + 6.28318 - s + 0.001;
    for (double angle = a; angle <= last; angle += s) {
        BitsLine(bits, region, done, vbRound(cx + r * std::cos(angle)),
                 vbRound(cy + r * std::sin(angle)), vbRound(cx + r * std::cos(angle + s)),
                 vbRound(cy + r * std::sin(angle + s)), colour, pressure);
    }
}

void BitsEllipse(Bits& bits, const Region& region, DoneBits&, int32_t cx, int32_t cy,
                 int32_t rx, int32_t ry, int32_t colour, int32_t pressure) {
    const Channels col = channelsOf(colour);
    const int32_t q = lineOpacity(pressure);
    // About 0.53 pixel of arc per sample on the larger radius.
    constexpr double kTurn = 6.283185;
    const int32_t m = std::max(rx, ry);
    double step = kTurn * 0.085;
    if (m > 0)
        step = kTurn * 0.085 / m;
    else if (m < 0)
        step = -(kTurn * 0.085) / m;
    for (double angle = 0.0; angle < kTurn; angle += step) {
        const double x = nudged(cx + rx * std::cos(angle));
        const double y = nudged(cy + ry * std::sin(angle));
        plotSample(bits, region, x, y, col, q);
    }
}

} // namespace ostrivex
