// Filters on hue, saturation and luminosity, and the grey rotation: hand-worked pixels,
// then the fast paths against a plain per-pixel reference on random images and on every
// one of the 2^24 colours.
#include "pixel/bitfilter.h"
#include "pixel/hsl.h"
#include "pixel/region.h"
#include "filter_test_util.h"
#include "pixel_test_util.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>

using namespace ostrivex;
using namespace ostrivex::test;

namespace {

uint8_t limit(int32_t v) {
    return uint8_t(std::clamp(v, 0, 255));
}

void putRgb(Bits& out, int x, int y, float h, float s, float l) {
    int32_t r, g, b;
    HSLToRGB(h, s, l, r, g, b);
    out(0, x, y) = limit(b);
    out(1, x, y) = limit(g);
    out(2, x, y) = limit(r);
}

// The plain formulas, one pixel at a time.
Bits referenceRotateH(const Bits& src, int32_t offset, int32_t saturation) {
    Bits out = src;
    const float s = float(offset / 16.67), f = float(saturation / 100.0);
    for (int y = 0; y < src.height(); ++y)
        for (int x = 0; x < src.width(); ++x) {
            float h, sat, l;
            RGBToHSL(src(2, x, y), src(1, x, y), src(0, x, y), h, sat, l);
            h = h + s;
            if (h > 5.0f) h = h - 6.0f;
            putRgb(out, x, y, h, f * sat, l);
        }
    return out;
}

Bits referenceColorize(const Bits& src, float hue, float saturation, float luminosity) {
    Bits out = src;
    for (int y = 0; y < src.height(); ++y)
        for (int x = 0; x < src.width(); ++x) {
            const int sum = src(0, x, y) + src(1, x, y) + src(2, x, y);
            putRgb(out, x, y, hue, saturation, float(sum / 765.0 * luminosity));
        }
    return out;
}

Bits referenceStretchH(const Bits& src, int32_t offset, int32_t saturation, int32_t stretch) {
    Bits out = src;
    const float o = float(offset / 16.67), f = float(saturation / 100.0), n = float(stretch / 10.0);
    for (int y = 0; y < src.height(); ++y)
        for (int x = 0; x < src.width(); ++x) {
            const float l = float((src(0, x, y) + src(1, x, y) + src(2, x, y)) / 765.0);
            float h = float(3.0 * std::sin(n * l) + o);
            if (h < -1.0f)
                h = h + 6.0f;
            else if (h > 5.0f)
                h = h - 6.0f;
            putRgb(out, x, y, h, f, l);
        }
    return out;
}

Bits referenceReplaceHS(const Bits& src, uint32_t colour, uint32_t newColour, int32_t hueTol,
                        int32_t satTol, int32_t applyTol) {
    Bits out = src;
    const int r1 = colour & 255, g1 = (colour >> 8) & 255, b1 = (colour >> 16) & 255;
    const int r2 = newColour & 255, g2 = (newColour >> 8) & 255, b2 = (newColour >> 16) & 255;
    float h1, s1, l1;
    RGBToHSL(r1, g1, b1, h1, s1, l1);
    const float hT = float(hueTol / 100.0), sT = float(satTol / 100.0);
    const double a = applyTol * 127.5 / 100.0;
    const int t = int(std::nearbyint(a * a + 1.0));
    for (int y = 0; y < src.height(); ++y)
        for (int x = 0; x < src.width(); ++x) {
            const int b = src(0, x, y), g = src(1, x, y), r = src(2, x, y);
            float h, s, l;
            RGBToHSL(r, g, b, h, s, l);
            const int d = (b - b1) * (b - b1) + (g - g1) * (g - g1) + (r - r1) * (r - r1);
            if (std::fabs(h - h1) <= hT && std::fabs(s - s1) <= sT && d <= t) {
                const float k = float(1.0 - double(d) / t);
                out(0, x, y) = uint8_t(std::nearbyint(b + (b2 - b) * double(k)));
                out(1, x, y) = uint8_t(std::nearbyint(g + (g2 - g) * double(k)));
                out(2, x, y) = uint8_t(std::nearbyint(r + (r2 - r) * double(k)));
            }
        }
    return out;
}

Bits referenceRotateL(const Bits& src, int32_t offset, int32_t steps) {
    Bits out = src;
    const float o = float(offset / 10.0), n = float(steps / 2.5);
    for (int y = 0; y < src.height(); ++y)
        for (int x = 0; x < src.width(); ++x) {
            const int b = src(0, x, y), g = src(1, x, y), r = src(2, x, y);
            double v =
                std::sin((g * 0.707 + b * 0.071 + r * 0.222) / 255.0 * n + o) * 127.5 + 127.5;
            if (v > 255.0)
                v -= 255.0;
            else if (v < 0.0)
                v += 255.0;
            out(0, x, y) = out(1, x, y) = out(2, x, y) = uint8_t(std::nearbyint(v));
        }
    return out;
}

} // namespace

TEST(ToneHsl, ColorizeFromTheMeanLuminosity) {
    // "SEPIATONE": hue 0.5, saturation 0.25, luminosity 1.
    // Sum 612: L = 0.8, min = 0.8 - 0.25 * 0.2 = 0.75, max = 0.85: red 216.75, blue
    // 191.25, green 0.75 + 0.5 * 0.1 = 0.8 -> 204. Sum 204: L = 0.26667, min = 0.2,
    // max = 0.33333: red 85, blue 51, green 68. Black and white stay.
    const Bits src =
        makeBits(4, 1, {{204, 204, 204, 1}, {10, 100, 94, 2}, {0, 0, 0, 3}, {255, 255, 255, 4}});
    EXPECT_TRUE(sameBits(
        makeBits(4, 1, {{191, 204, 217, 1}, {51, 68, 85, 2}, {0, 0, 0, 3}, {255, 255, 255, 4}}),
        run(src, [](cBitFilter& f) { return f.COLORIZE(0.5f, 0.25f, 1.0f); })));
    // Luminosity 0.5 and hue 4 (blue), saturation 1: L = 0.4, min 0, max 0.8.
    EXPECT_TRUE(sameBits(makeBits(1, 1, {{204, 0, 0, 7}}),
                         run(makeBits(1, 1, {{204, 204, 204, 7}}),
                             [](cBitFilter& f) { return f.COLORIZE(4.0f, 1.0f, 0.5f); })));
}

TEST(ToneHsl, RotateHTurnsHueAndScalesSaturation) {
    // Offset 50: s = 2.9994. Red (hue 0) -> 2.9994: green max, red min, blue 0.9994 * 255.
    // Blue (hue 4) -> 6.9994 - 6 = 0.9994: red max, blue min, green 254.85.
    // Offset 34: s = 2.0396. Red -> 2.0396: green max, red min, blue 0.0396 * 255 = 10.1.
    // Blue -> 6.0396 - 6 = 0.0396: red max, blue min, green 10.1. Grey stays grey.
    const Bits src = makeBits(3, 1, {{0, 0, 255, 1}, {255, 0, 0, 2}, {77, 77, 77, 3}});
    const Bits r50 = run(src, [](cBitFilter& f) { return f.RotateH(50, 100); });
    EXPECT_TRUE(
        sameBits(makeBits(3, 1, {{255, 255, 0, 1}, {0, 255, 255, 2}, {77, 77, 77, 3}}), r50));
    const Bits r34 = run(src, [](cBitFilter& f) { return f.RotateH(34, 100); });
    EXPECT_TRUE(sameBits(makeBits(3, 1, {{10, 255, 0, 1}, {0, 10, 255, 2}, {77, 77, 77, 3}}), r34));
    // Saturation 0: every pixel becomes the grey of its luminosity (0.5 -> 127.5 -> 128).
    EXPECT_TRUE(sameBits(makeBits(3, 1, {{128, 128, 128, 1}, {128, 128, 128, 2}, {77, 77, 77, 3}}),
                         run(src, [](cBitFilter& f) { return f.RotateH(20, 0); })));
}

TEST(ToneHsl, StretchHFromLuminosity) {
    // Stretch 0, offset 0: hue 0 at full saturation. L = 0.4: min 0, max 0.8 -> red 204.
    // L = 0.8: min = 0.8 - 0.2 = 0.6 -> 153, max 1 -> 255.
    const Bits src = makeBits(2, 1, {{102, 102, 102, 1}, {204, 204, 204, 2}});
    EXPECT_TRUE(sameBits(makeBits(2, 1, {{0, 0, 204, 1}, {153, 153, 255, 2}}),
                         run(src, [](cBitFilter& f) { return f.StretchH(0, 100, 0); })));
    // Stretch 10 (n = 1): H = 3 sin(0.4) = 1.16826: green max 204, blue 0,
    // red = 0 - (1.16826 - 2) * 0.8 = 0.6654 -> 169.68.
    EXPECT_TRUE(sameBits(makeBits(1, 1, {{0, 204, 170, 1}}),
                         run(makeBits(1, 1, {{102, 102, 102, 1}}),
                             [](cBitFilter& f) { return f.StretchH(0, 100, 10); })));
    // Stretch 100 (n = 10): H = 3 sin(4) = -2.2704 < -1 -> 3.7296: blue max, red min,
    // green = 0 - (3.7296 - 4) * 0.8 = 0.2163 -> 55.16.
    EXPECT_TRUE(sameBits(makeBits(1, 1, {{204, 55, 0, 1}}),
                         run(makeBits(1, 1, {{102, 102, 102, 1}}),
                             [](cBitFilter& f) { return f.StretchH(0, 100, 100); })));
    // Offset 100: H = 5.9988 > 5 -> -0.0012: red max, blue = 0.0012 * 0.8 -> 0.24.
    EXPECT_TRUE(sameBits(makeBits(1, 1, {{0, 0, 204, 1}}),
                         run(makeBits(1, 1, {{102, 102, 102, 1}}),
                             [](cBitFilter& f) { return f.StretchH(100, 100, 0); })));
}

TEST(ToneHsl, ReplaceHSTestsPlainHueDifference) {
    // Red to blue; hue and saturation tolerance 0.1, apply tolerance 200 (t = 65026).
    // (0, 20, 255): hue 0.078, d = 400, k = 0.9938486: 253.43, 0.12, 1.57.
    // (20, 0, 255): hue -0.078: blue 20 + 235 k = 253.55. (0, 30, 255): hue 0.118 > 0.1.
    const Bits src =
        makeBits(4, 1, {{0, 0, 255, 1}, {0, 20, 255, 2}, {20, 0, 255, 3}, {0, 30, 255, 4}});
    EXPECT_TRUE(sameBits(
        makeBits(4, 1, {{255, 0, 0, 1}, {253, 0, 2, 2}, {254, 0, 2, 3}, {0, 30, 255, 4}}),
        run(src, [](cBitFilter& f) { return f.ReplaceHS(0x0000FFu, 0xFF0000u, 10, 10, 200); })));
    // A colour at hue 4.98 and a pixel at hue -0.98 are neighbours on the colour circle,
    // but the plain difference is 5.96: only the exact colour is replaced.
    const Bits wrap = makeBits(2, 1, {{255, 0, 250, 0}, {250, 0, 255, 0}});
    EXPECT_TRUE(sameBits(
        makeBits(2, 1, {{0, 255, 0, 0}, {250, 0, 255, 0}}),
        run(wrap, [](cBitFilter& f) { return f.ReplaceHS(0xFF00FAu, 0x00FF00u, 10, 10, 200); })));
}

TEST(ToneHsl, RotateLGreyFromSine) {
    // Steps 25: n = 10. Black: sin(0) -> 127.5 -> 128. White: w = 255, sin(10) * 127.5 +
    // 127.5 = 58.14. Green 100: sin(70.7 / 25.5) -> 173.49. (40, 80, 120): w = 86.04 ->
    // 98.12.
    const Bits src =
        makeBits(4, 1, {{0, 0, 0, 1}, {255, 255, 255, 2}, {0, 100, 0, 3}, {40, 80, 120, 4}});
    EXPECT_TRUE(sameBits(
        makeBits(4, 1, {{128, 128, 128, 1}, {58, 58, 58, 2}, {173, 173, 173, 3}, {98, 98, 98, 4}}),
        run(src, [](cBitFilter& f) { return f.RotateL(0, 25); })));
    // Offset 10 (o = 1), steps 0: sin(1) * 127.5 + 127.5 = 234.79 everywhere.
    EXPECT_TRUE(sameBits(
        makeBits(4, 1,
                 {{235, 235, 235, 1}, {235, 235, 235, 2}, {235, 235, 235, 3}, {235, 235, 235, 4}}),
        run(src, [](cBitFilter& f) { return f.RotateL(10, 0); })));
}

TEST(ToneHsl, FastPathsEqualThePlainFormulasOnRandomImages) {
    for (uint32_t seed : {1u, 2u, 3u}) {
        const Bits src = patternBits(263, 97, seed);
        for (auto [offset, sat] : {std::pair{0, 100}, {40, 80}, {100, 37}, {77, 0}, {17, 100}})
            EXPECT_TRUE(sameBits(referenceRotateH(src, offset, sat),
                                 run(src, [=](cBitFilter& f) { return f.RotateH(offset, sat); })))
                << "RotateH " << offset << " " << sat;
        for (auto [h, s, l] :
             {std::tuple{0.5f, 0.25f, 1.0f}, {-0.7f, 1.0f, 0.6f}, {4.9f, 0.5f, 1.0f}})
            EXPECT_TRUE(sameBits(referenceColorize(src, h, s, l),
                                 run(src, [=](cBitFilter& f) { return f.COLORIZE(h, s, l); })));
        for (auto [o, s, n] : {std::tuple{0, 100, 0}, {30, 70, 55}, {100, 100, 100}})
            EXPECT_TRUE(sameBits(referenceStretchH(src, o, s, n),
                                 run(src, [=](cBitFilter& f) { return f.StretchH(o, s, n); })));
        for (auto [ht, st, at] : {std::tuple{50, 50, 100}, {100, 100, 200}, {5, 20, 150}})
            EXPECT_TRUE(sameBits(referenceReplaceHS(src, 0x2060A0u, 0x10E0F0u, ht, st, at),
                                 run(src, [=](cBitFilter& f) {
                                     return f.ReplaceHS(0x2060A0u, 0x10E0F0u, ht, st, at);
                                 })));
        for (auto [o, n] : {std::pair{0, 25}, {33, 100}, {100, 7}})
            EXPECT_TRUE(sameBits(referenceRotateL(src, o, n),
                                 run(src, [=](cBitFilter& f) { return f.RotateL(o, n); })));
    }
}

TEST(ToneHsl, FastPathsEqualThePlainFormulasOnEveryColour) {
    const Bits& src = everyColour();
    EXPECT_TRUE(sameBits(referenceRotateH(src, 40, 80),
                         run(src, [](cBitFilter& f) { return f.RotateH(40, 80); })));
    EXPECT_TRUE(sameBits(
        referenceReplaceHS(src, 0x2060A0u, 0xFFFFFFu, 30, 40, 200),
        run(src, [](cBitFilter& f) { return f.ReplaceHS(0x2060A0u, 0xFFFFFFu, 30, 40, 200); })));
    EXPECT_TRUE(sameBits(referenceRotateL(src, 45, 60),
                         run(src, [](cBitFilter& f) { return f.RotateL(45, 60); })));
}
