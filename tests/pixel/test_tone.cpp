// Tone filters on small hand-made images; every expected byte is worked out from the
// filter's formula by hand.
#include "pixel/bitfilter.h"
#include "pixel/tone_wide.h"
#include "pixel/region.h"
#include "filter_test_util.h"
#include "pixel_test_util.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <string>
#include <tuple>
#include <vector>

using namespace ostrivex;
using namespace ostrivex::test;

TEST(Tone, BrightnessAndShiftRgbClampPerChannel) {
    const Bits src = makeBits(2, 1, {{0, 100, 250, 7}, {30, 100, 255, 9}});
    EXPECT_TRUE(sameBits(makeBits(2, 1, {{50, 150, 255, 7}, {80, 150, 255, 9}}),
                         run(src, [](cBitFilter& f) { return f.BRIGHTNESS(50); })));
    EXPECT_TRUE(sameBits(makeBits(2, 1, {{0, 0, 150, 7}, {0, 0, 155, 9}}),
                         run(src, [](cBitFilter& f) { return f.BRIGHTNESS(-100); })));
    // The second pixel of 13 is odd so the vector and the tail paths are both checked.
    const Bits wide = patternBits(13, 1, 3);
    const Bits shifted = run(wide, [](cBitFilter& f) { return f.ShiftRGB(10, -20, 255); });
    for (int x = 0; x < 13; ++x) {
        EXPECT_EQ(shifted(0, x, 0), 255) << x; // blue + 255 always clamps
        EXPECT_EQ(shifted(1, x, 0), std::max(0, wide(1, x, 0) - 20)) << x;
        EXPECT_EQ(shifted(2, x, 0), std::min(255, wide(2, x, 0) + 10)) << x;
        EXPECT_EQ(shifted(3, x, 0), wide(3, x, 0)) << x;
    }
    const Bits two = makeBits(2, 1, {{1, 15, 250, 1}, {0, 200, 100, 2}});
    EXPECT_TRUE(sameBits(makeBits(2, 1, {{255, 0, 255, 1}, {255, 180, 110, 2}}),
                         run(two, [](cBitFilter& f) { return f.ShiftRGB(10, -20, 255); })));
}

TEST(Tone, InvertGreyScaleAndThreshold) {
    const Bits src = makeBits(3, 1, {{0, 128, 255, 9}, {100, 200, 50, 1}, {136, 0, 202, 2}});
    EXPECT_TRUE(sameBits(makeBits(3, 1, {{255, 127, 0, 9}, {155, 55, 205, 1}, {119, 255, 53, 2}}),
                         run(src, [](cBitFilter& f) { return f.Invert(); })));
    // 0*0.071 + 128*0.707 + 255*0.222 = 147.106; 7.1 + 141.4 + 11.1 = 159.6;
    // 136*0.071 + 202*0.222 = 54.5, a tie that goes to the even 54.
    EXPECT_TRUE(sameBits(makeBits(3, 1, {{147, 147, 147, 9}, {160, 160, 160, 1}, {54, 54, 54, 2}}),
                         run(src, [](cBitFilter& f) { return f.GreyScale(); })));
    const Bits byGrey = makeBits(2, 1, {{0, 0, 250, 0}, {0, 0, 255, 0}});
    // 250 * 0.222 = 55.5 -> 56 (even); 255 * 0.222 = 56.61 -> 57.
    EXPECT_TRUE(sameBits(makeBits(2, 1, {{56, 56, 56, 0}, {57, 57, 57, 0}}),
                         run(byGrey, [](cBitFilter& f) { return f.GreyScale(); })));

    // Means 302 \ 3 = 100 (not above 100) and 303 \ 3 = 101.
    const Bits t =
        makeBits(4, 1, {{100, 100, 102, 5}, {100, 100, 103, 6}, {0, 0, 2, 7}, {0, 0, 3, 8}});
    EXPECT_TRUE(
        sameBits(makeBits(4, 1, {{0, 0, 0, 5}, {255, 255, 255, 6}, {0, 0, 0, 7}, {0, 0, 0, 8}}),
                 run(t, [](cBitFilter& f) { return f.Threshold(100); })));
    // Cut 0: a mean of 0 stays black, a mean of 1 turns white.
    EXPECT_TRUE(sameBits(
        makeBits(4, 1, {{255, 255, 255, 5}, {255, 255, 255, 6}, {0, 0, 0, 7}, {255, 255, 255, 8}}),
        run(t, [](cBitFilter& f) { return f.Threshold(0); })));
    // Cut 255: everything black, white included.
    const Bits white = makeBits(1, 1, {{255, 255, 255, 3}});
    EXPECT_TRUE(sameBits(makeBits(1, 1, {{0, 0, 0, 3}}),
                         run(white, [](cBitFilter& f) { return f.Threshold(255); })));
}

TEST(Tone, SaturationMovesAwayFromTheTruncatedMean) {
    const Bits src = makeBits(3, 1, {{100, 150, 200, 1}, {0, 10, 250, 2}, {11, 10, 12, 3}});
    // f = 0.5. Pixel 1: a = 150: 100 - 25, 150, 200 + 25. Pixel 2: a = 260 \ 3 = 86:
    // -43 and -28 clamp to 0, 250 + 82 clamps to 255. Pixel 3: a = 11: 9.5 -> 10 and
    // 12.5 -> 12 (ties to even).
    EXPECT_TRUE(sameBits(makeBits(3, 1, {{75, 150, 225, 1}, {0, 0, 255, 2}, {11, 10, 12, 3}}),
                         run(src, [](cBitFilter& f) { return f.SATURATION(50); })));
    // f = -1 gives the mean on every channel.
    EXPECT_TRUE(sameBits(makeBits(3, 1, {{150, 150, 150, 1}, {86, 86, 86, 2}, {11, 11, 11, 3}}),
                         run(src, [](cBitFilter& f) { return f.SATURATION(-100); })));
}

TEST(Tone, ReductionRoundsHalfToEven) {
    const Bits src = makeBits(2, 1, {{1, 3, 255, 4}, {254, 5, 7, 6}});
    // n = 2: 1 -> round(0.5) * 2 = 0, 3 -> round(1.5) * 2 = 4, 255 -> min(255, 256),
    // 254 -> 254, 5 -> round(2.5) * 2 = 4, 7 -> round(3.5) * 2 = 8.
    EXPECT_TRUE(sameBits(makeBits(2, 1, {{0, 4, 255, 4}, {254, 4, 8, 6}}),
                         run(src, [](cBitFilter& f) { return f.Reduction(1); })));
    EXPECT_TRUE(sameBits(src, run(src, [](cBitFilter& f) { return f.Reduction(0); })));
    // n = 100: 149 -> 100, 150 -> round(1.5) = 2 -> 200, 250 -> round(2.5) = 2 -> 200,
    // 251 -> 300 -> 255.
    const Bits hundred = makeBits(2, 1, {{149, 150, 250, 0}, {251, 49, 50, 0}});
    EXPECT_TRUE(sameBits(makeBits(2, 1, {{100, 200, 200, 0}, {255, 0, 0, 0}}),
                         run(hundred, [](cBitFilter& f) { return f.Reduction(99); })));
}

TEST(Tone, ChannelTablesOnLongRows) {
    // Rows of 101 pixels take the wide paths of the table filters as well as their tails;
    // every byte must follow the per-byte rule, and the marker byte must stay.
    const Bits src = patternBits(101, 3, 12);
    const Bits reduced = run(src, [](cBitFilter& f) { return f.Reduction(1); });
    const Bits dark = run(src, [](cBitFilter& f) { return f.GammaCorrection(-50); });
    const Bits bright = run(src, [](cBitFilter& f) { return f.BRIGHTNESS(-77); });
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 101; ++x) {
            for (int c = 0; c < 3; ++c) {
                const int v = src(c, x, y);
                // n = 2: v / 2 rounded to even, times 2, at most 255.
                const int half = v / 2 + ((v % 4) == 3 ? 1 : 0);
                ASSERT_EQ(reduced(c, x, y), std::min(255, half * 2)) << x << "," << y;
                // g = 0.5: v^2 / 255 rounded (no ties: 255 does not divide 2 v^2 + 255).
                ASSERT_EQ(dark(c, x, y), (2 * v * v + 255) / 510) << x << "," << y;
                ASSERT_EQ(bright(c, x, y), std::max(0, v - 77)) << x << "," << y;
            }
            ASSERT_EQ(reduced(3, x, y), src(3, x, y));
            ASSERT_EQ(dark(3, x, y), src(3, x, y));
            ASSERT_EQ(bright(3, x, y), src(3, x, y));
        }
}

TEST(Tone, GammaCorrection) {
    const Bits src = makeBits(3, 1, {{0, 64, 100, 1}, {255, 128, 200, 2}, {16, 1, 254, 3}});
    // gamma 100: g = 2, c = round(255 * sqrt(c / 255)): 64 -> 127.75, 100 -> 159.69,
    // 128 -> 180.67, 200 -> 225.83, 16 -> 63.87, 1 -> 15.97, 254 -> 254.50 (254.4998).
    EXPECT_TRUE(sameBits(makeBits(3, 1, {{0, 128, 160, 1}, {255, 181, 226, 2}, {64, 16, 254, 3}}),
                         run(src, [](cBitFilter& f) { return f.GammaCorrection(100); })));
    // gamma -50: g = 0.5, c = round(c^2 / 255): 64 -> 16.06, 100 -> 39.2, 128 -> 64.25,
    // 200 -> 156.86, 16 -> 1.0, 1 -> 0.004, 254 -> 253.0.
    EXPECT_TRUE(sameBits(makeBits(3, 1, {{0, 16, 39, 1}, {255, 64, 157, 2}, {1, 0, 253, 3}}),
                         run(src, [](cBitFilter& f) { return f.GammaCorrection(-50); })));
    EXPECT_TRUE(sameBits(src, run(src, [](cBitFilter& f) { return f.GammaCorrection(0); })));
    EXPECT_TRUE(sameBits(makeBits(3, 1, {{0, 0, 0, 1}, {0, 0, 0, 2}, {0, 0, 0, 3}}),
                         run(src, [](cBitFilter& f) { return f.GammaCorrection(-100); })));
}

TEST(Tone, ContrastSpreadsTheOverflowOverTheOtherChannels) {
    // Means 100, 100, (0 + 0 + 255) \ 3 = 85, 115: image mean 400 \ 4 = 100. Level 100
    // gives f = 2 and M[i] = 2 i - 100.
    const Bits a = makeBits(
        2, 2, {{100, 100, 100, 1}, {100, 100, 100, 2}, {0, 0, 255, 3}, {115, 115, 115, 4}});
    // (0, 0, 255) -> b = g = -100, r = 410. Round 1: b spills -50 into g and r
    // (g -150, r 360); g spills -75 (b -75, r 285); r spills 15 (g 15, b -60). Round 2:
    // b spills -30 (g -15, r 225); g spills -7 (b -7, r 218). Round 3: b spills -3
    // (g -3, r 215); g spills -1 (b -1, r 214). Round 4: b spills -1 \ 2 = 0.
    EXPECT_TRUE(sameBits(
        makeBits(2, 2,
                 {{100, 100, 100, 1}, {100, 100, 100, 2}, {0, 0, 214, 3}, {130, 130, 130, 4}}),
        run(a, [](cBitFilter& f) { return f.Contrast(100); })));

    // (10, 150, 200): T = 120, so the fourth pixel of mean 80 keeps the image mean at 100.
    // b = -80, g = 200, r = 300: b spills -40 (g 160, r 260), then r spills 2 (g 162, b 2).
    const Bits b = makeBits(
        2, 2, {{100, 100, 100, 0}, {100, 100, 100, 0}, {10, 150, 200, 0}, {80, 80, 80, 0}});
    EXPECT_TRUE(sameBits(
        makeBits(2, 2, {{100, 100, 100, 0}, {100, 100, 100, 0}, {2, 162, 255, 0}, {60, 60, 60, 0}}),
        run(b, [](cBitFilter& f) { return f.Contrast(100); })));
    // (60, 100, 200): T = 120; r = 300 spills (300 - 255) \ 2 = 22 into b (20) and g (100).
    const Bits c = makeBits(
        2, 2, {{100, 100, 100, 0}, {100, 100, 100, 0}, {60, 100, 200, 0}, {80, 80, 80, 0}});
    EXPECT_EQ(run(c, [](cBitFilter& f) { return f.Contrast(100); })(0, 0, 1), 42);
    EXPECT_EQ(run(c, [](cBitFilter& f) { return f.Contrast(100); })(1, 0, 1), 122);

    // All below zero or all above 255: black and white.
    const Bits d = makeBits(2, 1, {{0, 0, 0, 0}, {200, 200, 200, 0}});
    EXPECT_TRUE(sameBits(makeBits(2, 1, {{0, 0, 0, 0}, {255, 255, 255, 0}}),
                         run(d, [](cBitFilter& f) { return f.Contrast(100); })));

    // Level -100: f = 0, every channel takes the mean of the whole image, even when only
    // one pixel is selected.
    const Region one = Region::rect(1, 1, 2, 2);
    Bits expected = a;
    expected(0, 1, 1) = expected(1, 1, 1) = expected(2, 1, 1) = 100;
    EXPECT_TRUE(sameBits(expected, run(
                                       a, [](cBitFilter& f) { return f.Contrast(-100); }, &one)));
}

namespace {
// Contrast's spill rule as the loop it is, on one pixel's table values: while a channel is
// outside 0..255, blue, then green, then red give half their overflow (truncated) to the
// other two and are limited.
void spillLoop(int& b, int& g, int& r) {
    auto out255 = [](int c) { return c < 0 || c > 255; };
    auto spill = [](int& c, int& o1, int& o2) {
        const int over = c < 0 ? c : (c > 255 ? c - 255 : 0);
        o1 += over / 2;
        o2 += over / 2;
        c -= over;
    };
    while (out255(b) || out255(g) || out255(r)) {
        if (b <= 0 && g <= 0 && r <= 0) b = g = r = 0;
        if (b >= 255 && g >= 255 && r >= 255) b = g = r = 255;
        spill(b, g, r);
        spill(g, b, r);
        spill(r, g, b);
    }
}

int contrastEntry(int c, int mean, float f) {
    return int(std::nearbyint((c - mean) * double(f) + mean));
}

// Contrast as a plain loop over the pixels.
Bits referenceContrast(const Bits& src, int32_t level) {
    int64_t sum = 0;
    for (int y = 0; y < src.height(); ++y)
        for (int x = 0; x < src.width(); ++x)
            sum += (src(0, x, y) + src(1, x, y) + src(2, x, y)) / 3;
    const int32_t mean = int32_t(sum / (int64_t(src.width()) * src.height()));
    const float f = float((level + 100) / 100.0);
    Bits out = src;
    for (int y = 0; y < src.height(); ++y)
        for (int x = 0; x < src.width(); ++x) {
            int b = contrastEntry(src(0, x, y), mean, f), g = contrastEntry(src(1, x, y), mean, f),
                r = contrastEntry(src(2, x, y), mean, f);
            spillLoop(b, g, r);
            out(0, x, y) = uint8_t(b);
            out(1, x, y) = uint8_t(g);
            out(2, x, y) = uint8_t(r);
        }
    return out;
}
} // namespace

namespace {
// Lowers the widest kernels the tone filters use for its lifetime.
struct KernelCeilingScope {
    explicit KernelCeilingScope(tone::KernelWidth width) : was(tone::KernelCeiling()) {
        tone::SetKernelCeiling(width);
    }
    ~KernelCeilingScope() { tone::SetKernelCeiling(was); }
    tone::KernelWidth was;
};
} // namespace

TEST(Tone, ContrastEqualsThePlainSpillLoopOnRandomImages) {
    // Short rows, and long ones that the filter takes in several chunks. At level 150 the
    // wide kernels' table is no integer line and is worked out in double. Each kernel
    // width the processor has: the plain loop, sixteen and thirty-two pixels a step.
    for (tone::KernelWidth width :
         {tone::KernelWidth::Plain, tone::KernelWidth::Avx2, tone::KernelWidth::Avx512}) {
        const KernelCeilingScope ceiling(width);
        for (auto [w, h, seed] : {std::tuple{67, 23, 4u}, {67, 23, 5u}, {2100, 5, 6u}})
            for (int32_t level : {-100, -30, 50, 60, 150, 250}) {
                const Bits src = patternBits(w, h, seed);
                EXPECT_TRUE(sameBits(referenceContrast(src, level),
                                     run(src, [=](cBitFilter& f) { return f.Contrast(level); })))
                    << "level " << level << ", kernel width " << int(width);
            }
    }
}

namespace {
// The pixels of the region taken from changed, the rest from src.
Bits insideFrom(const Bits& src, const Bits& changed, const Region& region) {
    Bits out = src;
    for (int y = 0; y < src.height(); ++y)
        for (int x = 0; x < src.width(); ++x)
            if (region.contains(x, y))
                for (int c = 0; c < 4; ++c) out(c, x, y) = changed(c, x, y);
    return out;
}
} // namespace

TEST(Tone, ContrastOfEveryColourEqualsThePlainSpillLoop) {
    // Every colour once, above 1024 rows of black or of white that move the image's mean
    // (about 101 and 152; 127 with no rows below), so every table value of these levels
    // meets every other through the spill rounds, at each kernel width.
    const Bits& all = everyColour();
    for (int below : {-1, 0, 255}) {
        Bits src(4096, below < 0 ? 4096 : 4096 + 1024);
        for (int y = 0; y < src.height(); ++y)
            for (int x = 0; x < 4096; ++x)
                for (int c = 0; c < 4; ++c)
                    src(c, x, y) = y < 4096 ? all(c, x, y) : uint8_t(c < 3 ? below : 9);
        for (int32_t level : {60, 250}) {
            const Bits want = referenceContrast(src, level);
            for (tone::KernelWidth width : {tone::KernelWidth::Avx2, tone::KernelWidth::Avx512}) {
                const KernelCeilingScope ceiling(width);
                EXPECT_TRUE(sameBits(want, run(src, [=](cBitFilter& f) { return f.Contrast(level); })))
                    << "rows below " << below << ", level " << level << ", kernel width " << int(width);
            }
        }
    }
}

TEST(Tone, ContrastKernelWritesOnlyTheRunItIsGiven) {
    // Runs that end at every place of the last group of sixteen or thirty-two pixels, which
    // goes through a padded copy: black padding spills too, and none of it may land past
    // the run. The bytes after the run keep their marker.
    if (!tone::hasWideKernels()) GTEST_SKIP() << "no wide kernels on this processor";
    const Bits src = patternBits(160, 1, 21);
    const int mean = 127;
    const float f = 1.6f;
    std::vector<int32_t> m(256);
    for (int i = 0; i < 256; ++i) m[size_t(i)] = contrastEntry(i, mean, f);
    tone::ContrastMap map;
    map.m = m.data();
    map.mean = mean;
    map.f = f;
    tone::fitContrastMap(map);
    ASSERT_TRUE(map.linear);
    for (tone::KernelWidth width : {tone::KernelWidth::Avx2, tone::KernelWidth::Avx512}) {
        const KernelCeilingScope ceiling(width);
        for (int n = 1; n <= 128; ++n) {
            std::vector<uint8_t> out(4 * 160, 0xA5);
            tone::contrastWide(src.row(0), out.data(), n, map);
            int wrong = 0;
            for (int x = 0; x < 160; ++x) {
                int b = contrastEntry(src(0, x, 0), mean, f), g = contrastEntry(src(1, x, 0), mean, f),
                    r = contrastEntry(src(2, x, 0), mean, f);
                spillLoop(b, g, r);
                const bool inRun = x < n;
                wrong += out[size_t(4 * x)] != (inRun ? b : 0xA5);
                wrong += out[size_t(4 * x + 1)] != (inRun ? g : 0xA5);
                wrong += out[size_t(4 * x + 2)] != (inRun ? r : 0xA5);
                wrong += out[size_t(4 * x + 3)] != (inRun ? src(3, x, 0) : 0xA5);
            }
            EXPECT_EQ(wrong, 0) << "run of " << n << ", kernel width " << int(width);
        }
    }
}

TEST(Tone, SaturationEqualsThePlainFormulaOnEveryColour) {
    const Bits& src = everyColour();
    for (int32_t level : {-100, -37, 1, 50, 133, 250}) {
        const Bits out = run(src, [=](cBitFilter& f) { return f.SATURATION(level); });
        const double f = double(float(level / 100.0));
        int64_t wrong = 0;
        for (int y = 0; y < 4096; ++y)
            for (int x = 0; x < 4096; ++x) {
                const int a = (src(0, x, y) + src(1, x, y) + src(2, x, y)) / 3;
                for (int c = 0; c < 3; ++c) {
                    const int v = src(c, x, y);
                    const int want = std::clamp(int(std::nearbyint(v + f * (v - a))), 0, 255);
                    wrong += out(c, x, y) != want;
                }
                wrong += out(3, x, y) != src(3, x, y);
            }
        EXPECT_EQ(wrong, 0) << "level " << level;
    }
}

TEST(Tone, ContrastOnSpansOfAnEllipseEqualsThePlainSpillLoop) {
    // Rows of every length from 1 up, so that runs end at every point of an 8-pixel group
    // and of the waiting list of slow pixels.
    const Bits src = patternBits(203, 61, 12);
    const Region ellipse = Region::ellipse(3, -4, 200, 60);
    for (tone::KernelWidth width : {tone::KernelWidth::Avx2, tone::KernelWidth::Avx512}) {
        const KernelCeilingScope ceiling(width);
        for (int32_t level : {-60, 40, 60, 250}) {
            const Bits want = insideFrom(src, referenceContrast(src, level), ellipse);
            EXPECT_TRUE(sameBits(
                want, run(src, [=](cBitFilter& f) { return f.Contrast(level); }, &ellipse)))
                << "level " << level << ", kernel width " << int(width);
        }
    }
}

TEST(Tone, GreyScaleEqualsTheDoubleSumOnEveryColour) {
    const Bits& src = everyColour();
    const Bits grey = run(src, [](cBitFilter& f) { return f.GreyScale(); });
    int64_t wrong = 0;
    for (int y = 0; y < 4096; ++y)
        for (int x = 0; x < 4096; ++x) {
            const int v = int(
                std::nearbyint(src(0, x, y) * 0.071 + src(1, x, y) * 0.707 + src(2, x, y) * 0.222));
            wrong += grey(0, x, y) != v || grey(1, x, y) != v || grey(2, x, y) != v;
        }
    EXPECT_EQ(wrong, 0);
}

namespace {
Bits referenceEqualize(const Bits& src) {
    int64_t hist[256] = {};
    for (int y = 0; y < src.height(); ++y)
        for (int x = 0; x < src.width(); ++x)
            ++hist[int(std::nearbyint(src(0, x, y) * 0.113 + src(1, x, y) * 0.586 +
                                      src(2, x, y) * 0.301))];
    const int64_t half = int64_t(src.width()) * src.height() / 2;
    int64_t sum = 0;
    int i = 0;
    for (; i < 256; ++i) {
        sum += hist[i];
        if (sum > half) break;
    }
    const int m = hist[i] / 2 <= sum - half ? i - 1 : i;
    const float high = float(127.0 / (255 - m)), low = float(127.0 / (m - 1));
    Bits out = src;
    for (int y = 0; y < src.height(); ++y)
        for (int x = 0; x < src.width(); ++x)
            for (int c = 0; c < 3; ++c) {
                const int v = src(c, x, y);
                const double e = v >= m ? (v - m) * double(high) + 128.0 : v * double(low);
                const double r = std::nearbyint(e);
                if (r >= 0 && r <= 255) out(c, x, y) = uint8_t(r);
            }
    return out;
}
} // namespace

// The filters with wide kernels give the bytes of their plain loops on every colour; and
// OLDPHOTO keeps blue and channel 3 (of the every-colour picture).
TEST(Tone, PlainAndWideKernelsAgreeOnEveryColour) {
    const Bits& src = everyColour();
    std::vector<FilterCase> cases = {
        {"GreyScale", [](cBitFilter& f) { return f.GreyScale(); }},
        {"OLDPHOTO", [](cBitFilter& f) { return f.OLDPHOTO(); }},
        {"SATURATION50", [](cBitFilter& f) { return f.SATURATION(50); }},
        {"SATURATION37", [](cBitFilter& f) { return f.SATURATION(37); }},
    };
    for (int32_t mode = 0; mode <= 11; ++mode)
        cases.push_back({"ClassyColors" + std::to_string(mode),
                         [mode](cBitFilter& f) { return f.ClassyColors(mode); }});
    for (const FilterCase& c : cases) {
        Bits plain;
        {
            const KernelCeilingScope ceiling(tone::KernelWidth::Plain);
            plain = run(src, c.op);
        }
        EXPECT_TRUE(sameBits(plain, run(src, c.op))) << c.name;
    }
    const Bits old = run(src, [](cBitFilter& f) { return f.OLDPHOTO(); });
    int64_t moved = 0;
    for (int y = 0; y < 4096; y += 7)
        for (int x = 0; x < 4096; ++x)
            moved += old(0, x, y) != src(0, x, y) || old(3, x, y) != src(3, x, y) ||
                     old(1, x, y) != old(2, x, y);
    EXPECT_EQ(moved, 0);
}

// The luminance of Equalize's histogram, by the wide kernel, against the double sum on
// every colour (ties included: 16 777 216 pixels reach every sum ending in 500).
TEST(Tone, EqualizeLuminanceOfEveryColour) {
    if (!tone::hasWideKernels()) GTEST_SKIP() << "no AVX2 on this processor";
    const Bits& src = everyColour();
    std::vector<uint32_t> lum(4096);
    int64_t wrong = 0;
    for (int y = 0; y < 4096; ++y) {
        tone::equalizeLumWide(src.pixel(0, y), 4096, lum.data());
        for (int x = 0; x < 4096; ++x)
            wrong += int64_t(lum[size_t(x)]) !=
                     int64_t(std::nearbyint(src(0, x, y) * 0.113 + src(1, x, y) * 0.586 +
                                            src(2, x, y) * 0.301));
    }
    EXPECT_EQ(wrong, 0);
}

TEST(Tone, EqualizeEqualsThePlainFormulaOnRandomImages) {
    for (uint32_t seed : {6u, 7u, 8u}) {
        Bits src = patternBits(61, 37, seed);
        // Darken some rows so that the median moves off the middle.
        for (int y = 0; y < 37; y += 2)
            for (int x = 0; x < 61; ++x)
                for (int c = 0; c < 3; ++c)
                    src(c, x, y) = uint8_t(src(c, x, y) / (seed - 4));
        EXPECT_TRUE(
            sameBits(referenceEqualize(src), run(src, [](cBitFilter& f) { return f.Equalize(); })));
    }
}

TEST(Tone, EqualizeMovesTheMedianTo128) {
    // Luminances 10, 50, 100 and round(210 * 0.113 + 190 * 0.586 + 200 * 0.301) = 195.
    // half = 2; the running sum passes 2 at 100 with 3, and 1 \ 2 = 0 <= 1, so m = 99.
    // high = 127 / 156, low = 127 / 98: 10 -> 12.96, 50 -> 64.80, 100 -> 128.81,
    // 210 -> 218.37, 190 -> 202.08, 200 -> 210.22.
    const Bits src =
        makeBits(2, 2, {{10, 10, 10, 1}, {50, 50, 50, 2}, {100, 100, 100, 3}, {210, 190, 200, 4}});
    EXPECT_TRUE(sameBits(
        makeBits(2, 2, {{13, 13, 13, 1}, {65, 65, 65, 2}, {129, 129, 129, 3}, {218, 202, 210, 4}}),
        run(src, [](cBitFilter& f) { return f.Equalize(); })));
    // 10, four times 100, three times 200: half = 4, the sum reaches 5 at 100, and
    // 4 \ 2 = 2 > 5 - 4, so m = 100: low = 127 / 99, high = 127 / 155.
    const Px g10{10, 10, 10}, g100{100, 100, 100}, g200{200, 200, 200};
    const Bits second = makeBits(4, 2, {g10, g100, g100, g100, g100, g200, g200, g200});
    const Bits eq = run(second, [](cBitFilter& f) { return f.Equalize(); });
    EXPECT_EQ(eq(0, 0, 0), 13);  // 12.83
    EXPECT_EQ(eq(1, 1, 0), 128); // the median itself
    EXPECT_EQ(eq(2, 1, 1), 210); // 100 * 127 / 155 + 128 = 209.94
}

TEST(Tone, LuminanceStatisticsIgnoreTheRegion) {
    const Bits src =
        makeBits(2, 2, {{0, 0, 1, 0}, {255, 255, 254, 0}, {10, 20, 30, 0}, {1, 1, 1, 0}});
    cBitFilter f;
    f.SetBits(src);
    const Region one = Region::rect(0, 0, 1, 1);
    f.BitsRegion(&one);
    EXPECT_EQ(f.GetLMax(), 254);
    EXPECT_EQ(f.GetLMin(), 0);
    EXPECT_EQ(f.GetLMed(), 68); // (0 + 254 + 20 + 1) \ 4
    cBitFilter empty;
    EXPECT_EQ(empty.GetLMax(), 0);
    EXPECT_EQ(empty.GetLMin(), 255);
    EXPECT_EQ(empty.GetLMed(), 0);
}
