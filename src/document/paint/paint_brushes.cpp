// Round brushes: BitsBrush, BitsBrushLine, BitsAirbrush, BitsBrightness, BitsMasked,
// BitsMaskedLine, BitsSoften, BitsSharpen.
#include "document/paint/paint.h"
#include "document/paint/paint_internal.h"
#include "pixel/random.h"

#include <cmath>
#include <cstddef>
#include <cstdlib>

namespace ostrivex {

using namespace paint_detail;

namespace {

// Calls fn(pixel, px, py) for each pixel of the circle that is paintable and not yet done
// in this stroke, after marking it done.
template <class Fn>
void forEachFreshPixel(Bits& bits, const Region& region, DoneBits& done, int32_t x, int32_t y,
                       int32_t size, Fn&& fn) {
    forEachCircleOffset(brushRadius(size), [&](int32_t dx, int32_t dy) {
        const int32_t px = x + dx, py = y + dy;
        if (!paintable(bits, region, px, py) || done.get(px, py)) return;
        done.set(px, py);
        fn(bits.pixel(px, py), px, py);
    });
}

// The walk of a brush line: stamps size/10 apart from (x1, y1) towards (x2, y2), at the
// rounded positions.
template <class Stamp>
void walkLine(int32_t x1, int32_t y1, int32_t x2, int32_t y2, int32_t size, Stamp&& stamp) {
    const int32_t dx = x2 - x1, dy = y2 - y1;
    const int32_t n = std::max(std::abs(dx), std::abs(dy)) + 1;
    const double g = size / 10.0;
    const double sx = double(dx) / n * g, sy = double(dy) / n * g;
    const int32_t count = vbRound(n / g);
    double x = x1, y = y1;
    for (int32_t i = 0; i <= count; ++i) {
        stamp(vbRound(x), vbRound(y));
        x += sx;
        y += sy;
    }
}

// Texture pixel for image position (px, py). The period is the texture's upper bound
// (its width + 1, its height + 1), so one column and one row of the guard band (black)
// belong to each tile, as in every tiled texture the program has drawn.
inline const uint8_t* texturePixel(const Bits& texture, int32_t px, int32_t py) {
    return texture.pixel(px % (texture.width() + 1), py % (texture.height() + 1));
}

} // namespace

void BitsBrush(Bits& bits, const Region& region, DoneBits& done, int32_t x, int32_t y,
               int32_t size, int32_t pressure, int32_t colour) {
    const double p = pressure / 100.0;
    const Channels col = channelsOf(colour);
    forEachFreshPixel(bits, region, done, x, y, size, [&](uint8_t* d, int32_t, int32_t) {
        for (int c = 0; c < 3; ++c) d[c] = blend(col.c[c], d[c], p);
    });
}

void BitsBrushLine(Bits& bits, const Region& region, DoneBits& done, int32_t x1, int32_t y1,
                   int32_t x2, int32_t y2, int32_t size, int32_t pressure, int32_t colour,
                   BrushKind kind) {
    if (size <= 0) return; // no spacing to walk by
    walkLine(x1, y1, x2, y2, size, [&](int32_t x, int32_t y) {
        switch (kind) {
        case BrushKind::Brush: BitsBrush(bits, region, done, x, y, size, pressure, colour); break;
        case BrushKind::Soften: BitsSoften(bits, region, done, x, y, size, pressure, false); break;
        case BrushKind::SoftenRepeat:
            BitsSoften(bits, region, done, x, y, size, pressure, true);
            break;
        case BrushKind::Sharpen: BitsSharpen(bits, region, done, x, y, size, pressure); break;
        case BrushKind::Lighten:
            BitsBrightness(bits, region, done, x, y, size, pressure, true);
            break;
        case BrushKind::Darken:
            BitsBrightness(bits, region, done, x, y, size, pressure, false);
            break;
        }
    });
}

void BitsAirbrush(Bits& bits, const Region& region, DoneBits&, int32_t x, int32_t y,
                  int32_t size, int32_t pressure, int32_t density, int32_t falloff,
                  int32_t colour) {
    const double a = pressure / 100.0;
    const double dens = density / 100.0;
    const double f = 1.0 - falloff / 100.0;
    const Channels col = channelsOf(colour);
    const int32_t r = brushRadius(size);
    forEachCircleOffset(r, [&](int32_t dx, int32_t dy) {
        // One number is drawn for every offset of the circle, painted or not.
        const bool hit = Rnd() <= dens;
        const int32_t px = x + dx, py = y + dy;
        if (!hit || !paintable(bits, region, px, py)) return;
        // A brush of radius 0 is its centre alone, at full strength.
        const double d = std::sqrt(double(dx * dx + dy * dy));
        const double t = (1.0 - (r > 0 ? f * d / r : 0.0)) * a;
        // The circle reaches just past r, where t turns slightly negative: clamp.
        uint8_t* p = bits.pixel(px, py);
        for (int c = 0; c < 3; ++c) p[c] = clampByteD(col.c[c] * t + p[c] * (1.0 - t));
    });
}

void BitsBrightness(Bits& bits, const Region& region, DoneBits& done, int32_t x, int32_t y,
                    int32_t size, int32_t pressure, bool lighten) {
    const double k = lighten ? 1.0 + pressure / 100.0 : 1.0 - pressure / 100.0;
    uint8_t table[256];
    for (int32_t i = 0; i < 256; ++i) table[i] = clampByte(vbRound(k * i));
    forEachFreshPixel(bits, region, done, x, y, size, [&](uint8_t* d, int32_t, int32_t) {
        for (int c = 0; c < 3; ++c) d[c] = table[d[c]];
    });
}

void BitsMasked(Bits& bits, const Region& region, DoneBits& done, int32_t x, int32_t y,
                const Bits& texture, int32_t size, int32_t pressure) {
    if (texture.empty()) return;
    const double p = pressure / 100.0;
    forEachFreshPixel(bits, region, done, x, y, size, [&](uint8_t* d, int32_t px, int32_t py) {
        const uint8_t* s = texturePixel(texture, px, py);
        for (int c = 0; c < 3; ++c) d[c] = blend(s[c], d[c], p);
    });
}

void BitsMaskedLine(Bits& bits, const Region& region, DoneBits& done, int32_t x1, int32_t y1,
                    int32_t x2, int32_t y2, int32_t size, int32_t pressure,
                    const Bits& texture) {
    if (size <= 0) return;
    walkLine(x1, y1, x2, y2, size, [&](int32_t x, int32_t y) {
        BitsMasked(bits, region, done, x, y, texture, size, pressure);
    });
}

void BitsSoften(Bits& bits, const Region& region, DoneBits& done, int32_t x, int32_t y,
                int32_t size, int32_t pressure, bool repeat) {
    const int32_t k = vbRound(10.0 - pressure / 10.0);
    const int32_t divisor = k + 4;
    if (divisor == 0) return;
    const std::ptrdiff_t stride = std::ptrdiff_t(bits.stride());
    forEachCircleOffset(brushRadius(size), [&](int32_t dx, int32_t dy) {
        const int32_t px = x + dx, py = y + dy;
        if (!paintable(bits, region, px, py)) return;
        if (done.get(px, py) && !repeat) return;
        done.set(px, py);
        uint8_t* d = bits.pixel(px, py);
        for (int c = 0; c < 3; ++c) {
            const int32_t sum = k * d[c] + d[c - 4] + d[c - stride] + d[c + stride] + d[c + 4];
            d[c] = clampByte(sum / divisor);
        }
    });
}

void BitsSharpen(Bits& bits, const Region& region, DoneBits& done, int32_t x, int32_t y,
                 int32_t size, int32_t pressure) {
    const int32_t k = vbRound(15.0 - pressure / 15.0);
    const int32_t divisor = k - 4;
    if (divisor == 0) return;
    const std::ptrdiff_t stride = std::ptrdiff_t(bits.stride());
    forEachFreshPixel(bits, region, done, x, y, size, [&](uint8_t* d, int32_t, int32_t) {
        for (int c = 0; c < 3; ++c) {
            const int32_t sum = k * d[c] - d[c - 4] - d[c - stride] - d[c + stride] - d[c + 4];
            d[c] = clampByte(sum / divisor); // truncating division, then clamped
        }
    });
}

} // namespace ostrivex
