// The filters built on hue, saturation and luminosity: COLORIZE, RotateH, StretchH,
// ReplaceHS, and the grey rotation RotateL.
//
// Speed without changing a byte:
// - COLORIZE and StretchH depend on B + G + R only: a table of 766 output pixels made
//   with RGBToHSL/HSLToRGB themselves.
// - RotateH and ReplaceHS need the conversion of every pixel. They run a branch-free copy
//   of the two conversions that performs the very same single-precision operations in the
//   same order (so each result is bit-identical to RGBToHSL and HSLToRGB), which the
//   compiler vectorises; an AVX2 clone is picked at run time where the processor has it.
//   Contracting a * b + c into one fused operation would break the identity, so this file
//   must not be built with FMA enabled (the AVX2 clone does not enable it).
// - RotateL depends on the double sum G * 0.707 + B * 0.071 + R * 0.222: a cache keyed by
//   the integer 707 G + 71 B + 222 R that holds the double sum it was made for, so a hit
//   is exactly the same computation.
#include "pixel/bitfilter.h"
#include "pixel/hsl.h"
#include "pixel/tone_kernels.h"
#include "pixel/vbmath.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

namespace ostrivex {

using namespace tone;

namespace {

// The kernels below assume that floating-point operations raise no trap (they never do
// here: exceptions are masked), which lets the compiler turn every select into a
// vector blend. Results are unchanged by this.
#pragma GCC push_options
#pragma GCC optimize("no-trapping-math")

// Local helpers, so that everything inlined into the kernels shares their options.
inline uint32_t loadPixel(const uint8_t* p) {
    uint32_t v;
    __builtin_memcpy(&v, p, 4);
    return v;
}
inline void storePixel(uint8_t* p, uint32_t v) {
    __builtin_memcpy(p, &v, 4);
}
inline float maxf(float a, float b) {
    return a > b ? a : b;
}
inline float minf(float a, float b) {
    return a < b ? a : b;
}

// Round to nearest, ties to even, for |x| < 2^22: adding 1.5 * 2^23 leaves no fraction
// bits, so the addition itself rounds (in the default mode, to even).
inline float roundEven(float x) {
    const float k = 12582912.0f;
    return (x + k) - k;
}

inline uint32_t toChannel(float v) {
    const float r = roundEven(v * 255.0f);
    // Results outside 0..255 need a hue outside -1..5 (no dialog gives one); they are
    // limited to the byte range.
    return uint32_t(int32_t(minf(255.0f, maxf(0.0f, r))));
}

struct Hsl {
    float h, s, l;
};

// RGBToHSL without branches: the same operations, all computed, then chosen by selects
// (a select between values already made is what lets the loops vectorise).
inline Hsl hslOf(uint32_t v) {
    const float b = float(int32_t(v & 255u)) / 255.0f;
    const float g = float(int32_t((v >> 8) & 255u)) / 255.0f;
    const float r = float(int32_t((v >> 16) & 255u)) / 255.0f;
    const float mx = maxf(maxf(r, g), b);
    const float mn = minf(minf(r, g), b);
    const float l = (mx + mn) / 2.0f;
    const float d = mx - mn;
    const float darkDen = mx + mn;
    const float lightDen = 2.0f - mx - mn;
    const float s = d / (l <= 0.5f ? darkDen : lightDen);
    const bool redMax = r == mx, greenMax = g == mx;
    const float gb = g - b, br = b - r, rg = r - g;
    const float num = redMax ? gb : (greenMax ? br : rg);
    const float base = redMax ? 0.0f : (greenMax ? 2.0f : 4.0f);
    const float h = base + num / d; // 0 + x is x, bit for bit
    const bool grey = d == 0.0f;
    return {grey ? 0.0f : h, grey ? 0.0f : s, l};
}

// HSLToRGB without branches, packed with the marker byte of v. mn - t * d for t < 0 is
// mn + |t| * d exactly, so one expression serves both halves of each sextant pair.
inline uint32_t rgbOf(float h, float s, float l, uint32_t v) {
    const float darkMin = l * (1.0f - s);
    const float lightMin = l - s * (1.0f - l);
    const float mn = l <= 0.5f ? darkMin : lightMin;
    const float mx = 2.0f * l - mn;
    const float d = mx - mn;
    const int sector = h < 1.0f ? 0 : (h < 3.0f ? 1 : 2);
    const float h2 = h - 2.0f, h4 = h - 4.0f;
    const float t = sector == 0 ? h : (sector == 1 ? h2 : h4);
    const float mid = mn + __builtin_fabsf(t) * d;
    const bool below = t < 0.0f;
    const float lo = below ? mid : mn;
    const float hi = below ? mn : mid;
    float r = sector == 0 ? mx : (sector == 1 ? lo : hi);
    float g = sector == 1 ? mx : (sector == 0 ? hi : lo);
    float b = sector == 2 ? mx : (sector == 0 ? lo : hi);
    const bool grey = s == 0.0f;
    r = grey ? l : r;
    g = grey ? l : g;
    b = grey ? l : b;
    return (v & 0xFF000000u) | toChannel(b) | (toChannel(g) << 8) | (toChannel(r) << 16);
}

__attribute__((target_clones("avx2", "default"), optimize("no-trapping-math"))) void
rotateHueRun(const uint8_t* s, uint8_t* p, int32_t n, float shift, float f) {
    for (int32_t i = 0; i < n; ++i) {
        const uint32_t v = loadPixel(s + 4 * i);
        const Hsl c = hslOf(v);
        const float h = c.h + shift;
        const float wrapped = h - 6.0f;
        storePixel(p + 4 * i, rgbOf(h > 5.0f ? wrapped : h, f * c.s, c.l, v));
    }
}

__attribute__((target_clones("avx2", "default"), optimize("no-trapping-math"))) void
hueSatRun(const uint8_t* p, int32_t n, float* hue, float* sat) {
    for (int32_t i = 0; i < n; ++i) {
        const Hsl c = hslOf(loadPixel(p + 4 * i));
        hue[i] = c.h;
        sat[i] = c.s;
    }
}

#pragma GCC pop_options

// An output pixel (marker byte 0) from the plain conversion, limited to bytes.
uint32_t packHsl(float h, float s, float l) {
    int32_t r, g, b;
    HSLToRGB(h, s, l, r, g, b);
    return uint32_t(clampByte(b)) | uint32_t(clampByte(g)) << 8 | uint32_t(clampByte(r)) << 16;
}

// Applies a table indexed by B + G + R.
void applySumTable(const uint8_t* s, uint8_t* p, int32_t n, const uint32_t* table) {
    for (int32_t i = 0; i < n; ++i) {
        const uint32_t v = load32(s + 4 * i);
        const uint32_t sum = (v & 255u) + ((v >> 8) & 255u) + ((v >> 16) & 255u);
        store32(p + 4 * i, (v & kMarkerMask) | table[sum]);
    }
}

} // namespace

Bits cBitFilter::COLORIZE(float hue, float saturation, float luminosity) {
    std::array<uint32_t, 766> table{};
    for (int32_t sum = 0; sum < 766; ++sum) {
        const float l = float(double(sum) / 765.0 * double(luminosity));
        table[size_t(sum)] = packHsl(hue, saturation, l);
    }
    return pointFilter(
        [&](const uint8_t* s, uint8_t* p, int32_t n) { applySumTable(s, p, n, table.data()); });
}

Bits cBitFilter::StretchH(int32_t offset, int32_t saturation, int32_t stretch) {
    const float o = float(offset / 16.67);
    const float f = float(saturation / 100.0);
    const float n = float(stretch / 10.0);
    std::array<uint32_t, 766> table{};
    for (int32_t sum = 0; sum < 766; ++sum) {
        const float l = float(double(sum) / 765.0);
        float h = float(3.0 * std::sin(double(n * l)) + double(o));
        if (h < -1.0f)
            h = h + 6.0f;
        else if (h > 5.0f)
            h = h - 6.0f;
        table[size_t(sum)] = packHsl(h, f, l);
    }
    return pointFilter(
        [&](const uint8_t* s, uint8_t* p, int32_t n) { applySumTable(s, p, n, table.data()); });
}

Bits cBitFilter::RotateH(int32_t offset, int32_t saturation) {
    // 16.67 steps of the slider make one unit of hue (60 degrees).
    const float shift = float(offset / 16.67);
    const float f = float(saturation / 100.0);
    return pointFilter(
        [&](const uint8_t* s, uint8_t* p, int32_t n) { rotateHueRun(s, p, n, shift, f); });
}

Bits cBitFilter::ReplaceHS(uint32_t colour, uint32_t newColour, int32_t hueTolerance,
                           int32_t satTolerance, int32_t applyTolerance) {
    const int32_t r1 = colourR(colour), g1 = colourG(colour), b1 = colourB(colour);
    const int32_t r2 = colourR(newColour), g2 = colourG(newColour), b2 = colourB(newColour);
    float h1, s1, l1;
    RGBToHSL(r1, g1, b1, h1, s1, l1);
    const float hT = float(hueTolerance / 100.0);
    const float sT = float(satTolerance / 100.0);
    const int32_t t = distanceThreshold(applyTolerance);
    constexpr int32_t kChunk = 256;
    float hue[kChunk], sat[kChunk];
    return pointFilter([&](const uint8_t* __restrict src, uint8_t* __restrict dst, int32_t count) {
        std::memcpy(dst, src, size_t(count) * 4u);
        for (int32_t start = 0; start < count; start += kChunk) {
            const int32_t n = std::min(kChunk, count - start);
            uint8_t* p = dst + 4 * start;
            hueSatRun(p, n, hue, sat);
            for (int32_t i = 0; i < n; ++i) {
                // The hue difference is plain: hue does not wrap around.
                if (!(std::fabs(hue[i] - h1) <= hT && std::fabs(sat[i] - s1) <= sT)) continue;
                uint8_t* q = p + 4 * i;
                const int32_t d = colourDistance(q[0], q[1], q[2], b1, g1, r1);
                if (d > t) continue;
                const float k = blendFactor(d, t);
                q[0] = blendByte(q[0], b2, k);
                q[1] = blendByte(q[1], g2, k);
                q[2] = blendByte(q[2], r2, k);
            }
        }
    });
}

Bits cBitFilter::RotateL(int32_t offset, int32_t steps) {
    const float o = float(offset / 10.0);
    const float n = float(steps / 2.5);
    std::array<double, 256> wg{}, wb{}, wr{};
    for (int32_t i = 0; i < 256; ++i) {
        wg[size_t(i)] = i * 0.707;
        wb[size_t(i)] = i * 0.071;
        wr[size_t(i)] = i * 0.222;
    }
    auto grey = [&](double w) {
        double v = std::sin(w / 255.0 * double(n) + double(o)) * 127.5 + 127.5;
        if (v > 255.0)
            v = v - 255.0;
        else if (v < 0.0)
            v = v + 255.0;
        return uint32_t(clampByte(vbRound(v)));
    };
    struct Entry {
        double w;
        uint32_t grey;
    };
    std::vector<Entry> cache(255001, Entry{std::numeric_limits<double>::quiet_NaN(), 0});
    return pointFilter([&](const uint8_t* __restrict s, uint8_t* __restrict p, int32_t count) {
        for (int32_t i = 0; i < count; ++i) {
            const uint32_t v = load32(s + 4 * i);
            const uint32_t b = v & 255u, g = (v >> 8) & 255u, r = (v >> 16) & 255u;
            const double w = wg[g] + wb[b] + wr[r];
            Entry& e = cache[707u * g + 71u * b + 222u * r];
            if (!(e.w == w)) e = Entry{w, grey(w)};
            store32(p + 4 * i, packPixel(v, e.grey, e.grey, e.grey));
        }
    });
}

} // namespace ostrivex
