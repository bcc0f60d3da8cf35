// Bilinear and nearest-neighbour scaling: small cases worked out by hand, and the fast
// loops against a plain per-pixel reference on random images.
#include "pixel/bitfilter.h"
#include "pixel/transforms_simd.h"
#include "pixel/vbmath.h"
#include "pixel_test_util.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

using namespace ostrivex;
using namespace ostrivex::test;

namespace {

// The bilinear rule written out pixel by pixel, with nothing precomputed.
Bits referenceResample(const Bits& s, int w, int h) {
    Bits out(w, h);
    const float rx = float(double(s.width() - 1) / w), ry = float(double(s.height() - 1) / h);
    for (int y = 0; y < h; ++y) {
        const double fy = y * double(ry);
        const int iy = vbInt(fy);
        const double dy = fy - iy;
        for (int x = 0; x < w; ++x) {
            const double fx = x * double(rx);
            const int ix = vbInt(fx);
            const double dx = fx - ix;
            for (int c = 0; c < 3; ++c) {
                const int left = vbRound((1 - dy) * s(c, ix, iy) + dy * s(c, ix, iy + 1));
                const int right = vbRound((1 - dy) * s(c, ix + 1, iy) + dy * s(c, ix + 1, iy + 1));
                out(c, x, y) = clampByte(vbRound((1 - dx) * left + dx * right));
            }
        }
    }
    return out;
}

Bits referenceResize(const Bits& s, int w, int h) {
    Bits out(w, h);
    const float rx = float(double(s.width()) / w), ry = float(double(s.height()) / h);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
            for (int c = 0; c < 3; ++c)
                out(c, x, y) = s(c, vbInt(x * double(rx)), vbInt(y * double(ry)));
    return out;
}

// Runs body once for every vector level this processor has (plain loops included), so
// that each loop is checked on one machine.
template <class Body> void forEachLevel(Body body) {
    using namespace transforms_detail;
    const SimdLevel saved = simdLimit();
    for (SimdLevel level : {kPlain, kAvx2, kAvx512, kAvx512Vbmi}) {
        simdLimit() = level;
        if (simdLevel() != level) continue;
        SCOPED_TRACE(int(level));
        body();
    }
    simdLimit() = saved;
}

} // namespace

TEST(Resample, TwoByTwoToFourByFourRoundsTwice) {
    // Ratio (2 - 1) / 4 = 0.25 on both axes: positions 0, .25, .5, .75, so every read
    // stays in the source. Blue: 10 20 / 30 41. Along y, column 0 gives 10 15 20 25 and
    // column 1 gives 20, 25.25 -> 25, 30.5 -> 30 (tie to even), 35.75 -> 36.
    // Green: 0 255 / 255 0; red is flat 200; the source's channel 3 is dropped.
    Bits src = makeBits(
        2, 2, {{10, 0, 200, 77}, {20, 255, 200, 77}, {30, 255, 200, 77}, {41, 0, 200, 77}});
    cBitFilter f;
    f.SetBits(Bits(7, 7));
    f.BitsResample(src, 4, 4);
    const int blue[4][4] = {{10, 12, 15, 18}, {15, 18, 20, 22}, {20, 22, 25, 28}, {25, 28, 30, 33}};
    const int green[4][4] = {
        {0, 64, 128, 191}, {64, 96, 128, 159}, {128, 128, 128, 128}, {191, 159, 128, 96}};
    Bits want(4, 4);
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 4; ++x) {
            want(0, x, y) = uint8_t(blue[y][x]);
            want(1, x, y) = uint8_t(green[y][x]);
            want(2, x, y) = 200;
        }
    EXPECT_TRUE(sameBits(want, f.bits()));
    EXPECT_EQ(f.BitsWidth(), 4);
    EXPECT_EQ(f.BitsHeight(), 4);
    // Without the rounding after the vertical step, (3, 1) would be
    // 0.25 * 15 + 0.75 * 25.25 = 22.69 -> 23.
    EXPECT_EQ(f.bits()(0, 3, 1), 22);
}

TEST(Resample, RatioHasTheMinusOneResizeDoesNot) {
    // A row 0 10 20 30 40 shrunk to 2: BitsResample steps (5 - 1) / 2 = 2 (columns 0, 2),
    // BitsResize steps 5 / 2 = 2.5 (columns 0, 2 as well); grown to 8 the last pixel
    // differs: BitsResample stops at 3.5 (a blend 35), BitsResize reaches column 4.
    Bits src = makeBits(5, 1, {{0, 0, 0}, {10, 0, 0}, {20, 0, 0}, {30, 0, 0}, {40, 0, 0}});
    cBitFilter f;
    f.BitsResample(src, 2, 1);
    EXPECT_TRUE(sameBits(makeBits(2, 1, {{0, 0, 0}, {20, 0, 0}}), f.bits()));
    f.BitsResize(src, 2, 1);
    EXPECT_TRUE(sameBits(makeBits(2, 1, {{0, 0, 0}, {20, 0, 0}}), f.bits()));
    // Grow to 8 (blue only): resample ratio 0.5 -> 0 5 10 15 20 25 30 35; resize ratio
    // 0.625 -> columns 0 0 1 1 2 3 3 4.
    f.BitsResample(src, 8, 1);
    EXPECT_TRUE(sameBits(makeBits(8, 1, {{0}, {5}, {10}, {15}, {20}, {25}, {30}, {35}}), f.bits()));
    f.BitsResize(src, 8, 1);
    EXPECT_TRUE(sameBits(makeBits(8, 1, {{0}, {0}, {10}, {10}, {20}, {30}, {30}, {40}}), f.bits()));
}

TEST(Resize, SinglePrecisionRatioAndChannels) {
    // 14 -> 20: the ratio 0.7 held in single precision is 0.69999998807907, so column 10
    // reads source column 6 (6.9999999), not 7. Columns: 0 0 1 2 2 3 4 4 5 6 6 7 8 9 9 10
    // 11 11 12 13.
    Bits src(14, 2);
    for (int x = 0; x < 14; ++x) {
        src(0, x, 0) = uint8_t(x * 10);
        src(1, x, 1) = uint8_t(x);
        src(2, x, 0) = 9;
        src(3, x, 0) = 99;
    }
    cBitFilter f;
    f.BitsResize(src, 20, 3);
    const int cols[20] = {0, 0, 1, 2, 2, 3, 4, 4, 5, 6, 6, 7, 8, 9, 9, 10, 11, 11, 12, 13};
    // Rows: ratio 2 / 3 -> source rows 0, 0, 1.
    Bits want(20, 3);
    for (int x = 0; x < 20; ++x) {
        for (int y : {0, 1}) {
            want(0, x, y) = uint8_t(cols[x] * 10);
            want(2, x, y) = 9;
        }
        want(1, x, 2) = uint8_t(cols[x]);
    }
    EXPECT_TRUE(sameBits(want, f.bits()));
}

TEST(Resample, ProgressCountsRowsOfTheNewHeight) {
    static uint32_t now = 0;
    cBitFilter::ClockFunction saved = cBitFilter::clock;
    cBitFilter::clock = [] { return now += 11; }; // every row passes the 10 ms mark
    cBitFilter f;
    std::vector<int> seen;
    f.Progress = [&](int32_t& p) { seen.push_back(p); };
    f.SetBits(Bits(2, 2));
    f.BitsResample(patternBits(9, 9), 3, 4);
    EXPECT_EQ(seen, (std::vector<int>{0, 33, 66, 100, 100}));
    seen.clear();
    f.BitsResize(patternBits(9, 9), 5, 3);
    EXPECT_EQ(seen, (std::vector<int>{0, 50, 100, 100}));
    cBitFilter::clock = saved;
}

TEST(Resample, FastLoopsEqualThePlainRule) {
    forEachLevel([] {
        std::mt19937 rng(11);
        // Small and wide sizes: growing (by less and by more than twice, which take different
        // loops), shrinking slightly and strongly, and rows of vector width plus a remainder.
        for (int round = 0; round < 90; ++round) {
            const int range = round % 3 == 0 ? 300 : 40;
            const int ws = 2 + int(rng() % range), hs = 2 + int(rng() % 40);
            const int w = 2 + int(rng() % (range * 2)), h = 2 + int(rng() % 70);
            const Bits src = patternBits(ws, hs, rng());
            cBitFilter f;
            f.SetBits(patternBits(5, 3)); // a buffer of another size, to be replaced
            f.BitsResample(src, w, h);
            ASSERT_TRUE(sameBits(referenceResample(src, w, h), f.bits()))
                << ws << "x" << hs << " -> " << w << "x" << h;
            f.BitsResize(src, w, h);
            ASSERT_TRUE(sameBits(referenceResize(src, w, h), f.bits()))
                << ws << "x" << hs << " -> " << w << "x" << h;
        }
        // The object's own buffer as the source.
        cBitFilter f;
        const Bits src = patternBits(31, 17);
        f.SetBits(src);
        f.BitsResample(f.bits(), 45, 12);
        EXPECT_TRUE(sameBits(referenceResample(src, 45, 12), f.bits()));
        f.SetBits(src);
        f.BitsResize(f.bits(), 12, 45);
        EXPECT_TRUE(sameBits(referenceResize(src, 12, 45), f.bits()));
    });
}

TEST(Resample, GrowingMoreThanTwiceMatchesThePlainRule) {
    // Growing by more than twice makes the weights too fine for 32-bit sums; sums whose
    // fraction comes within a hair of one half must still round as the plain rule does.
    forEachLevel([] {
        std::mt19937 rng(3);
        for (int round = 0; round < 16; ++round) {
            const int ws = 50 + int(rng() % 400), hs = 20 + int(rng() % 100);
            const int w = ws * (2 + int(rng() % 4)) + int(rng() % 50);
            const int h = hs * (2 + int(rng() % 3)) + int(rng() % 7);
            const Bits src = patternBits(ws, hs, rng());
            cBitFilter f;
            f.BitsResample(src, w, h);
            ASSERT_TRUE(sameBits(referenceResample(src, w, h), f.bits()))
                << ws << "x" << hs << " -> " << w << "x" << h;
        }
    });
}

TEST(Resample, ScalingIntoAReusedBufferWritesEveryByte) {
    // The object's buffer already has the new size and holds 255 in every byte, guard band
    // included: the result must still be the plain rule's, channel 3 and guard band 0.
    auto dirty = [](int w, int h) {
        Bits b(w, h);
        std::fill(b.data(), b.data() + b.size(), uint8_t(255));
        return b;
    };
    forEachLevel([&] {
        std::mt19937 rng(21);
        // Growing, growing more than twice, shrinking a little and a lot, one row high.
        const int sizes[][4] = {{40, 30, 61, 45},  {20, 9, 130, 41}, {90, 70, 77, 50},
                                {300, 40, 19, 5}, {33, 2, 70, 1},   {17, 13, 17, 13}};
        for (const auto& s : sizes) {
            const Bits src = patternBits(s[0], s[1], rng());
            cBitFilter f;
            f.SetBits(dirty(s[2], s[3]));
            f.BitsResample(src, s[2], s[3]);
            ASSERT_TRUE(sameBits(referenceResample(src, s[2], s[3]), f.bits()))
                << s[0] << "x" << s[1] << " -> " << s[2] << "x" << s[3];
            f.SetBits(dirty(s[2], s[3]));
            f.BitsResize(src, s[2], s[3]);
            ASSERT_TRUE(sameBits(referenceResize(src, s[2], s[3]), f.bits()))
                << s[0] << "x" << s[1] << " -> " << s[2] << "x" << s[3];
        }
    });
}
