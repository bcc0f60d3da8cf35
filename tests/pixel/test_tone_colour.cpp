// Colour-distance filters, channel kills and channel shuffles on hand-made pixels.
#include "pixel/bitfilter.h"
#include "pixel/region.h"
#include "filter_test_util.h"
#include "pixel_test_util.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <functional>

using namespace ostrivex;
using namespace ostrivex::test;

namespace {
constexpr uint32_t kRed = 0x0000FFu; // 0x00BBGGRR
constexpr uint32_t kBlue = 0xFF0000u;
} // namespace

TEST(ToneColour, IsolateKeepsOnlyColoursNearTheFirst) {
    // Tolerance 10: t = round(12.75^2 + 1) = round(163.5625) = 164. Distances 0, 169,
    // 128 and exactly 164 (which counts as far).
    const Bits src =
        makeBits(4, 1, {{0, 0, 255, 1}, {0, 12, 250, 2}, {0, 8, 247, 3}, {8, 10, 255, 4}});
    EXPECT_TRUE(
        sameBits(makeBits(4, 1, {{0, 0, 255, 1}, {0, 255, 0, 2}, {0, 8, 247, 3}, {0, 255, 0, 4}}),
                 run(src, [](cBitFilter& f) { return f.ISOLATE(kRed, 0x00FF00u, 10); })));
    // Tolerance 0: t = 1, so only the exact colour (d = 0) stays.
    const Bits near = makeBits(2, 1, {{0, 0, 255, 0}, {0, 0, 254, 0}});
    EXPECT_TRUE(sameBits(makeBits(2, 1, {{0, 0, 255, 0}, {9, 9, 9, 0}}),
                         run(near, [](cBitFilter& f) { return f.ISOLATE(kRed, 0x090909u, 0); })));
}

TEST(ToneColour, IsolateOnEveryColourFollowsTheDistanceRule) {
    // Long rows, so the vector builds of the loop run, not only its tail.
    const Bits& src = everyColour();
    for (int32_t tolerance : {10, 97}) {
        const int32_t t = int32_t(std::nearbyint(std::pow(tolerance * 127.5 / 100, 2) + 1));
        const Bits out =
            run(src, [=](cBitFilter& f) { return f.ISOLATE(0x2060C0u, 0x0A0B0Cu, tolerance); });
        int64_t wrong = 0, far = 0;
        for (int y = 0; y < 4096; ++y)
            for (int x = 0; x < 4096; ++x) {
                const int b = src(0, x, y), g = src(1, x, y), r = src(2, x, y);
                const int d = (b - 0x20) * (b - 0x20) + (g - 0x60) * (g - 0x60) +
                              (r - 0xC0) * (r - 0xC0);
                const bool isFar = d >= t;
                far += isFar;
                // colours are 0x00BBGGRR: the back colour is blue 0x0A, green 0x0B, red 0x0C
                wrong += out(0, x, y) != (isFar ? 0x0A : b);
                wrong += out(1, x, y) != (isFar ? 0x0B : g);
                wrong += out(2, x, y) != (isFar ? 0x0C : r);
                wrong += out(3, x, y) != src(3, x, y);
            }
        EXPECT_EQ(wrong, 0) << "tolerance " << tolerance;
        EXPECT_GT(far, 0);
        EXPECT_LT(far, int64_t(4096) * 4096);
    }
}

TEST(ToneColour, ReplaceBlendsByDistance) {
    // t = 164. d = 0: k = 1, the new colour. d = 164: k = 0, unchanged. d = 128:
    // k = 1 - 128 / 164 = 0.2195122: 55.98, 8 - 1.76 = 6.24, 247 - 54.22 = 192.78.
    // d = 82: k = 0.5: 127.5 -> 128, 4.5 -> 4, 127.
    const Bits src = makeBits(
        5, 1,
        {{0, 0, 255, 3}, {8, 10, 255, 4}, {0, 8, 247, 5}, {0, 9, 254, 6}, {100, 100, 100, 7}});
    EXPECT_TRUE(sameBits(makeBits(5, 1,
                                  {{255, 0, 0, 3},
                                   {8, 10, 255, 4},
                                   {56, 6, 193, 5},
                                   {128, 4, 127, 6},
                                   {100, 100, 100, 7}}),
                         run(src, [](cBitFilter& f) { return f.REPLACE(kRed, kBlue, 10); })));
}

TEST(ToneColour, ShiftMovesNearColoursThroughTheShiftTable) {
    // M[i] = clamp(i + 100). d = 0: (100, 100, 255). d = 164 = t is not strictly nearer:
    // unchanged. d = 82, k = 0.5: 50, 9 + 50 = 59, 254 + 0.5 -> 254.
    const Bits src = makeBits(3, 1, {{0, 0, 255, 1}, {8, 10, 255, 2}, {0, 9, 254, 3}});
    EXPECT_TRUE(sameBits(makeBits(3, 1, {{100, 100, 255, 1}, {8, 10, 255, 2}, {50, 59, 254, 3}}),
                         run(src, [](cBitFilter& f) { return f.Shift(kRed, 100, 10); })));
    // A negative shift: M[i] = clamp(i - 255) = 0; d = 0 gives black.
    EXPECT_TRUE(sameBits(makeBits(1, 1, {{0, 0, 0, 1}}),
                         run(makeBits(1, 1, {{0, 0, 255, 1}}),
                             [](cBitFilter& f) { return f.Shift(kRed, -255, 10); })));
}

TEST(ToneColour, ReplaceLTestsTruncatedLuminanceThenDistance) {
    // Grey 100 to black. lT = round(4 * 2.55) = 10, t = 16257 (tolerance 100).
    // (110, 110, 110): L 110, d = 300, k = 0.9815464: 110 - 107.97 = 2.03 -> 2.
    // (111, 111, 111): L differs by 11: unchanged.
    // (90, 100, 112): L = 302 \ 3 = 100, d = 244, k = 0.9849911: 1.35, 1.50, 1.68.
    const Bits src = makeBits(3, 1, {{110, 110, 110, 1}, {111, 111, 111, 2}, {90, 100, 112, 3}});
    EXPECT_TRUE(
        sameBits(makeBits(3, 1, {{2, 2, 2, 1}, {111, 111, 111, 2}, {1, 2, 2, 3}}),
                 run(src, [](cBitFilter& f) { return f.ReplaceL(0x646464u, 0u, 4, 100); })));
    // Apply tolerance 0: t = 1. d = 1 gives k = 0 (unchanged), d = 0 gives the new colour.
    const Bits exact = makeBits(2, 1, {{100, 100, 101, 0}, {100, 100, 100, 0}});
    EXPECT_TRUE(
        sameBits(makeBits(2, 1, {{100, 100, 101, 0}, {0, 0, 0, 0}}),
                 run(exact, [](cBitFilter& f) { return f.ReplaceL(0x646464u, 0u, 4, 0); })));
}

TEST(ToneColour, KillChannelAndSpecialColors) {
    const Bits src = makeBits(1, 1, {{10, 20, 30, 40}});
    EXPECT_TRUE(sameBits(makeBits(1, 1, {{0, 20, 0, 40}}),
                         run(src, [](cBitFilter& f) { return f.KillChannel(true, false, true); })));
    // "HARDRED" keeps red only, "CYAN" keeps green and blue; a flag of 1 is not -1.
    EXPECT_TRUE(sameBits(makeBits(1, 1, {{0, 0, 30, 40}}),
                         run(src, [](cBitFilter& f) { return f.SpecialColors(-1, 0, 0); })));
    EXPECT_TRUE(sameBits(makeBits(1, 1, {{10, 20, 0, 40}}),
                         run(src, [](cBitFilter& f) { return f.SpecialColors(0, -1, -1); })));
    EXPECT_TRUE(sameBits(makeBits(1, 1, {{0, 0, 30, 40}}),
                         run(src, [](cBitFilter& f) { return f.SpecialColors(-1, 1, 1); })));
}

TEST(ToneColour, SwapBanksModes) {
    const Bits src = makeBits(1, 1, {{1, 2, 3, 4}});
    const Px expected[] = {{1, 2, 3, 4}, {2, 3, 1, 4}, {3, 1, 2, 4}, {2, 1, 3, 4},
                           {3, 2, 1, 4}, {1, 3, 2, 4}, {1, 2, 3, 4}};
    for (int mode = 0; mode <= 6; ++mode) {
        const Px& e = expected[mode];
        EXPECT_TRUE(sameBits(makeBits(1, 1, {e}),
                             run(src, [mode](cBitFilter& f) { return f.SwapBanks(mode); })))
            << "mode " << mode;
    }
}

TEST(ToneColour, SwapRgbSourcesInvertAndKill) {
    const Bits src = makeBits(1, 1, {{10, 20, 30, 5}});
    // The dialog's start: sources 2, 1, 0 and no flags is the identity.
    EXPECT_TRUE(sameBits(src, run(src, [](cBitFilter& f) {
                             return f.SwapRGB(2, 1, 0, false, false, false, false, false, false);
                         })));
    // Red from blue, inverted: 245. Green from blue, killed. Blue from red, inverted and
    // killed: killing wins.
    EXPECT_TRUE(sameBits(makeBits(1, 1, {{0, 0, 245, 5}}), run(src, [](cBitFilter& f) {
                             return f.SwapRGB(0, 0, 2, true, false, true, false, true, true);
                         })));
    // Source 3 is the marker byte; a source past the pixel's bytes fails its read and
    // the channel keeps its value, inverting or not.
    EXPECT_TRUE(sameBits(makeBits(1, 1, {{10, 20, 5, 5}}), run(src, [](cBitFilter& f) {
                             return f.SwapRGB(3, 1, 9, false, false, true, false, false, false);
                         })));
    // Red from green, green from red inverted, blue from blue.
    EXPECT_TRUE(sameBits(makeBits(1, 1, {{10, 225, 20, 5}}), run(src, [](cBitFilter& f) {
                             return f.SwapRGB(1, 2, 0, false, true, false, false, false, false);
                         })));
}

TEST(ToneColour, ClassyColorsModes) {
    const Bits src = makeBits(2, 1, {{100, 50, 200, 9}, {0, 5, 200, 8}});
    auto classy = [&](int mode) {
        return run(src, [mode](cBitFilter& f) { return f.ClassyColors(mode); });
    };
    // Mode 0: 100 * atan(50) / 1.9 = 81.62; (198 + 49.5) / 2 = 123.75; red = old green.
    // Second pixel: 0 * atan(5) = 0; (198 + 4.95) / 2 = 101.475.
    EXPECT_TRUE(sameBits(makeBits(2, 1, {{82, 124, 50, 9}, {0, 101, 5, 8}}), classy(0)));
    EXPECT_TRUE(sameBits(makeBits(2, 1, {{100, 124, 50, 9}, {0, 101, 5, 8}}), classy(1)));
    // Mode 2: blue = red, red = (198 + 99) / 2 = 148.5 -> 148; (198 + 0) / 2 = 99.
    EXPECT_TRUE(sameBits(makeBits(2, 1, {{200, 50, 148, 9}, {200, 5, 99, 8}}), classy(2)));
    // Mode 3: blue = green, green = (49.5 + 99) / 2 = 74.25; (4.95 + 0) / 2 = 2.475.
    EXPECT_TRUE(sameBits(makeBits(2, 1, {{50, 74, 200, 9}, {5, 2, 200, 8}}), classy(3)));
    // Mode 6: 100 + 25, 50 + 25, 12.5 + 50 = 62.5 -> 62; 100 + 0, 50 + 2.5 -> 52,
    // 1.25 + 0 -> 1.
    EXPECT_TRUE(sameBits(makeBits(2, 1, {{125, 75, 62, 9}, {100, 52, 1, 8}}), classy(6)));
    // Mode 7: k = round((198 + 198) / 12) = 33: |~17| = 18, |~167| = 168, |~67| = 68.
    // k = round(198 / 12 = 16.5) = 16: |~(-11)| = 10, |~184| = 185, |~(-16)| = 15.
    EXPECT_TRUE(sameBits(makeBits(2, 1, {{18, 168, 68, 9}, {10, 185, 15, 8}}), classy(7)));
    EXPECT_TRUE(sameBits(makeBits(2, 1, {{50, 200, 200, 9}, {5, 200, 200, 8}}), classy(8)));
    // Mode 10: 50 / 2, 200 / 2; 5 / 2 = 2.5 -> 2.
    EXPECT_TRUE(sameBits(makeBits(2, 1, {{25, 100, 200, 9}, {2, 100, 200, 8}}), classy(10)));
    EXPECT_TRUE(sameBits(makeBits(2, 1, {{50, 100, 170, 9}, {5, 0, 170, 8}}), classy(11)));
    for (int mode : {4, 5, 9})
        EXPECT_TRUE(sameBits(src, classy(mode))) << "mode " << mode;
}

namespace {
// ClassyColors pixel by pixel, straight from the formulas.
Bits referenceClassy(const Bits& src, int mode) {
    Bits out = src;
    auto byteOf = [](double v) { return uint8_t(std::nearbyint(v)); };
    auto retro = [](int32_t a) { return uint8_t(std::abs(~a) & 255); };
    for (int y = 0; y < src.height(); ++y)
        for (int x = 0; x < src.width(); ++x) {
            const int B = src(0, x, y), G = src(1, x, y), R = src(2, x, y);
            uint8_t* o = out.pixel(x, y);
            switch (mode) {
            case 0:
                o[0] = byteOf(B * std::atan(double(G)) / 1.9);
                o[1] = byteOf((R * 0.99 + G * 0.99) / 2);
                o[2] = uint8_t(G);
                break;
            case 1:
                o[1] = byteOf((R * 0.99 + G * 0.99) / 2);
                o[2] = uint8_t(G);
                break;
            case 2:
                o[0] = uint8_t(R);
                o[2] = byteOf((R * 0.99 + B * 0.99) / 2);
                break;
            case 3:
                o[0] = uint8_t(G);
                o[1] = byteOf((G * 0.99 + B * 0.99) / 2);
                break;
            case 6:
                o[0] = byteOf(R / 2.0 + B / 4.0);
                o[1] = byteOf(R / 4.0 + G / 2.0);
                o[2] = byteOf(G / 4.0 + B / 2.0);
                break;
            case 7: {
                const int k = int(std::nearbyint((2 * B * 0.99 + R * 0.99) / 12));
                o[0] = retro(G - k);
                o[1] = retro(R - k);
                o[2] = retro(B - k);
                break;
            }
            case 8:
                o[0] = uint8_t(G);
                o[1] = uint8_t(R);
                break;
            case 10:
                o[0] = byteOf(G / 2.0);
                o[1] = byteOf(R / 2.0);
                break;
            case 11:
                o[0] = uint8_t(G);
                o[1] = uint8_t(B);
                o[2] = 170;
                break;
            default:
                break;
            }
        }
    return out;
}
} // namespace

TEST(ToneColour, ClassyColorsEqualsThePlainFormulasOnRandomImages) {
    const Bits src = patternBits(97, 61, 9);
    for (int mode = -1; mode <= 12; ++mode)
        EXPECT_TRUE(sameBits(referenceClassy(src, mode),
                             run(src, [mode](cBitFilter& f) { return f.ClassyColors(mode); })))
            << "mode " << mode;
}

TEST(ToneColour, ClassyColorsEqualsThePlainFormulasOnEveryColour) {
    // Every colour once, so every pair of bytes meets every two-byte formula; 4093 columns
    // leave a short tail on every row.
    Bits src(4093, 4100);
    for (int y = 0; y < 4100; ++y)
        for (int x = 0; x < 4093; ++x) {
            const uint32_t c = uint32_t(y) * 4093u + uint32_t(x);
            src(0, x, y) = uint8_t(c & 255u);
            src(1, x, y) = uint8_t((c >> 8) & 255u);
            src(2, x, y) = uint8_t((c >> 16) & 255u);
            src(3, x, y) = uint8_t(x + y);
        }
    for (int mode : {0, 1, 2, 3, 6, 7, 8, 10, 11, 5})
        EXPECT_TRUE(sameBits(referenceClassy(src, mode),
                             run(src, [mode](cBitFilter& f) { return f.ClassyColors(mode); })))
            << "mode " << mode;
}

namespace {
// REPLACE (kind 0), ReplaceL (1) and Shift (2) pixel by pixel, straight from the formulas.
Bits referenceBlend(const Bits& src, int kind, uint32_t colour, uint32_t newColour, int tol,
                    int lumTol, int shift) {
    const int r1 = colour & 255, g1 = (colour >> 8) & 255, b1 = (colour >> 16) & 255;
    const int r2 = newColour & 255, g2 = (newColour >> 8) & 255, b2 = (newColour >> 16) & 255;
    const double a = tol * 127.5 / 100.0;
    const int t = int(std::nearbyint(a * a + 1));
    const int lT = int(std::nearbyint(lumTol * 2.55)), l1 = (r1 + g1 + b1) / 3;
    Bits out = src;
    for (int y = 0; y < src.height(); ++y)
        for (int x = 0; x < src.width(); ++x) {
            const int c[3] = {src(0, x, y), src(1, x, y), src(2, x, y)};
            const int d =
                (c[0] - b1) * (c[0] - b1) + (c[1] - g1) * (c[1] - g1) + (c[2] - r1) * (c[2] - r1);
            bool take = kind == 2 ? d < t : d <= t;
            if (kind == 1) take = take && std::abs((c[0] + c[1] + c[2]) / 3 - l1) <= lT;
            if (!take) continue;
            const float k = float(1.0 - double(d) / t);
            const int target[3] = {b2, g2, r2};
            for (int ch = 0; ch < 3; ++ch) {
                const int to = kind == 2 ? std::clamp(c[ch] + shift, 0, 255) : target[ch];
                out(ch, x, y) = uint8_t(std::nearbyint(c[ch] + (to - c[ch]) * double(k)));
            }
        }
    return out;
}
} // namespace

TEST(ToneColour, DistanceBlendsEqualThePlainFormulasOnRandomImages) {
    for (uint32_t seed : {10u, 11u}) {
        const Bits src = patternBits(83, 47, seed);
        for (int tol : {0, 37, 100, 200}) {
            EXPECT_TRUE(sameBits(
                referenceBlend(src, 0, 0x2060A0u, 0x10E0F0u, tol, 0, 0),
                run(src, [=](cBitFilter& f) { return f.REPLACE(0x2060A0u, 0x10E0F0u, tol); })));
            EXPECT_TRUE(sameBits(referenceBlend(src, 1, 0x2060A0u, 0x10E0F0u, tol, 30, 0),
                                 run(src, [=](cBitFilter& f) {
                                     return f.ReplaceL(0x2060A0u, 0x10E0F0u, 30, tol);
                                 })));
            for (int shift : {-255, -40, 77, 255})
                EXPECT_TRUE(sameBits(
                    referenceBlend(src, 2, 0x2060A0u, 0, tol, 0, shift),
                    run(src, [=](cBitFilter& f) { return f.Shift(0x2060A0u, shift, tol); })));
        }
    }
}
