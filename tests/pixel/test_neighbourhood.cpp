// The neighbourhood filters on small hand-made images. Every expected byte below was
// worked out by hand from the filter's rule; the guard band around the image reads black.
#include "pixel/bitfilter.h"
#include "pixel/pixel_test_util.h"
#include "pixel/random.h"
#include "pixel/vbmath.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

namespace ostrivex {
namespace {

using test::makeBits;
using test::Px;
using test::sameBits;

// A filter loaded with b, whole-image selection (no region object).
struct Loaded {
    cBitFilter f;
    explicit Loaded(const Bits& b) { f.SetBits(b); }
};

// An image whose channel c follows the given values (row by row); the other channels take
// `other`, alpha is 7 everywhere so that its carrying through is checked too.
Bits channelImage(int w, int h, int c, const std::vector<int>& v, int other = 0) {
    Bits out(w, h);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            for (int k = 0; k < 3; ++k) out(k, x, y) = uint8_t(other);
            out(c, x, y) = uint8_t(v[size_t(y * w + x)]);
            out(3, x, y) = 7;
        }
    return out;
}

std::vector<int> channelOf(const Bits& b, int c) {
    std::vector<int> v;
    for (int y = 0; y < b.height(); ++y)
        for (int x = 0; x < b.width(); ++x) v.push_back(b(c, x, y));
    return v;
}

TEST(Neighbourhood, BlursAveragesTheEightPixelsAtTheLevelsDistance) {
    // Blue varies, green is flat 255, red has a single 200 in the centre; alpha 7.
    Bits src = channelImage(3, 3, 0, {10, 20, 30, 40, 50, 60, 70, 80, 90});
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 3; ++x) src(1, x, y) = 255;
    src(2, 1, 1) = 200;
    Loaded l(src);
    const Bits out = l.f.Blurs(1);
    // Sums of the eight neighbours \ 8, e.g. corner (0,0): 20 + 40 + 50 = 110 -> 13.
    EXPECT_EQ(channelOf(out, 0), (std::vector<int>{13, 23, 16, 28, 50, 33, 21, 38, 23}));
    // Flat 255: three, five or eight neighbours inside the image.
    EXPECT_EQ(channelOf(out, 1), (std::vector<int>{95, 159, 95, 159, 255, 159, 95, 159, 95}));
    // The centre doesn't count itself.
    EXPECT_EQ(channelOf(out, 2), (std::vector<int>{25, 25, 25, 25, 0, 25, 25, 25, 25}));
    EXPECT_EQ(channelOf(out, 3), std::vector<int>(9, 7));
    EXPECT_TRUE(sameBits(src, l.f.bits())) << "the object's buffer stays the source";

    // Level 0 is 8 * C \ 8, the identity.
    EXPECT_TRUE(sameBits(src, l.f.Blurs(0)));

    // Level 2 reads two pixels away, two pixels into the guard band at the edge.
    Bits five(5, 5);
    five(0, 2, 2) = 80;
    five(0, 4, 4) = 160;
    Loaded l5(five);
    const Bits b2 = l5.f.Blurs(2);
    std::vector<int> want(25, 0);
    want[0] = 10, want[2] = 10, want[4] = 10;  // row 0: (0,0), (2,0), (4,0) see (2,2)
    want[10] = 10, want[12] = 20, want[14] = 30; // row 2: (2,2) sees (4,4); (4,2) both
    want[20] = 10, want[22] = 30, want[24] = 10; // row 4
    EXPECT_EQ(channelOf(b2, 0), want);

    // Level 3 would read past the guard band at the image's edge: a failure for the
    // caller. Inside a region three pixels from every edge it reads only the image.
    EXPECT_THROW(l5.f.Blurs(3), std::out_of_range);
    Bits seven(7, 7);
    seven(0, 0, 0) = 80; // (3,3) sees (0,0) at level 3
    cBitFilter g;
    g.SetBits(seven);
    const Region centre = Region::rect(3, 3, 4, 4);
    g.BitsRegion(&centre);
    EXPECT_EQ(g.Blurs(3)(0, 3, 3), 10);
}

TEST(Neighbourhood, SoftenWeighsTheCentreAgainstItsFourNeighbours) {
    const Bits src = channelImage(4, 3, 0, {0, 13, 20, 30, 40, 50, 60, 70, 80, 90, 107, 110});
    // Level 97: k = 4, divisor 8. Margin 1: only (1,1) and (2,1) are inside the box.
    // (1,1): 4*51 + 40 + 60 + 13 + 90 = 407 -> 50; (2,1): 240 + 51 + 70 + 20 + 107 = 488 -> 61.
    Bits src2 = src;
    src2(0, 1, 1) = 51;
    Loaded l2(src2);
    Bits want2 = src2;
    want2(0, 1, 1) = 50;
    want2(0, 2, 1) = 61;
    EXPECT_TRUE(sameBits(want2, l2.f.SOFTEN(97)));
    // Level 0: k = 101, divisor 105: (101*51 + 203) / 105 = 5354 / 105 -> 50;
    // (101*60 + 51 + 70 + 20 + 107) / 105 = 6308 / 105 -> 60.
    Bits want3 = src2;
    want3(0, 1, 1) = 50;
    want3(0, 2, 1) = 60;
    EXPECT_TRUE(sameBits(want3, l2.f.SOFTEN(0)));
    // Level 105 makes the divisor 0: every statement fails and the image stays.
    EXPECT_TRUE(sameBits(src2, l2.f.SOFTEN(105)));
}

TEST(Neighbourhood, SharpenAndEdgeEnhance) {
    // Centre blue 100 among 90s, green 10 among 50s, red 250 among 0s.
    Bits src(3, 3);
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 3; ++x) src(0, x, y) = 90, src(1, x, y) = 50, src(3, x, y) = 9;
    src(0, 1, 1) = 100, src(1, 1, 1) = 10, src(2, 1, 1) = 250;
    Loaded l(src);
    // Level 100: (24 C - 2 sum8) \ 8: blue (2400 - 1440) / 8 = 120; green (240 - 800) / 8
    // is negative -> 0; red 6000 / 8 -> 255. Margin 1: only the centre.
    Bits want = src;
    want(0, 1, 1) = 120, want(1, 1, 1) = 0, want(2, 1, 1) = 255;
    EXPECT_TRUE(sameBits(want, l.f.SHARPEN(100)));
    // Level 0: (124 * 100 - 1440) / 108 = 101.48 -> 101.
    EXPECT_EQ(l.f.SHARPEN(0)(0, 1, 1), 101);
    // Level 108 divides by zero: nothing changes.
    EXPECT_TRUE(sameBits(src, l.f.SHARPEN(108)));

    // A flat area stays flat at any level: (124 - L - 16) / (108 - L) = 1.
    Bits flat(4, 4);
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 4; ++x) flat(0, x, y) = 100, flat(1, x, y) = 150, flat(2, x, y) = 200;
    Loaded lf(flat);
    for (int level : {0, 37, 100}) EXPECT_TRUE(sameBits(flat, lf.f.SHARPEN(level))) << level;

    // EDGEENHANCE, margin 0: blue flat 20, red 255 with a 0 in the centre.
    Bits e(3, 3);
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 3; ++x) e(0, x, y) = 20, e(2, x, y) = 255;
    e(2, 1, 1) = 0;
    Loaded le(e);
    const Bits e0 = le.f.EDGEENHANCE(0);
    // Level 0: 9 C - sum8; the flat centre stays, the edge reads the black guard band.
    EXPECT_EQ(channelOf(e0, 0), (std::vector<int>{120, 80, 120, 80, 20, 80, 120, 80, 120}));
    // Red: centre 0 - 8 * 255 -> 0; corner 2295 - 510 -> 255; edge 2295 - 4 * 255 -> 255.
    EXPECT_EQ(channelOf(e0, 2), (std::vector<int>{255, 255, 255, 255, 0, 255, 255, 255, 255}));
    // Level 10 (the menu's "EDGEENHANCE"): (19 C - sum8) \ 11: corner 320 / 11 -> 29,
    // edge 280 / 11 -> 25, centre 220 / 11 = 20.
    EXPECT_EQ(channelOf(le.f.EDGEENHANCE(10), 0),
              (std::vector<int>{29, 25, 29, 25, 20, 25, 29, 25, 29}));
    // Level -1 divides by zero: nothing changes.
    EXPECT_TRUE(sameBits(e, le.f.EDGEENHANCE(-1)));
}

TEST(Neighbourhood, DilateErodeAndTheRankFilters) {
    const std::vector<int> v = {5, 9, 1, 7, 3, 8, 2, 6, 4};
    const Bits src = channelImage(3, 3, 0, v, 40);
    Loaded l(src);
    EXPECT_EQ(channelOf(l.f.DILATE(), 0), (std::vector<int>{9, 9, 9, 9, 9, 9, 7, 8, 8}));
    EXPECT_EQ(channelOf(l.f.DILATE(), 1), std::vector<int>(9, 40));
    // Every edge pixel's window reaches the black guard band.
    EXPECT_EQ(channelOf(l.f.ERODE(), 0), (std::vector<int>{0, 0, 0, 0, 1, 0, 0, 0, 0}));
    EXPECT_EQ(channelOf(l.f.ERODE(), 3), std::vector<int>(9, 7));

    // Centre and diagonals, maximum, margin 0.
    EXPECT_EQ(channelOf(l.f.RankFilterND(1), 0), (std::vector<int>{5, 9, 3, 9, 5, 9, 3, 8, 4}));
    // Minimum, margin 1: only the centre, min(3, 5, 1, 2, 4).
    EXPECT_EQ(channelOf(l.f.RankFilterND(0), 0), (std::vector<int>{5, 9, 1, 7, 1, 8, 2, 6, 4}));
    // Centre and axis neighbours.
    EXPECT_EQ(channelOf(l.f.RankFilterN4(1), 0), (std::vector<int>{9, 9, 9, 7, 9, 8, 7, 6, 8}));
    EXPECT_EQ(channelOf(l.f.RankFilterN4(0), 0), (std::vector<int>{5, 9, 1, 7, 3, 8, 2, 6, 4}));
    // Any other mode compares nothing and paints the start value, black.
    const Bits painted = l.f.RankFilterN4(2);
    for (int c = 0; c < 3; ++c) EXPECT_EQ(channelOf(painted, c), std::vector<int>(9, 0));
    EXPECT_EQ(channelOf(painted, 3), std::vector<int>(9, 7));
}

TEST(Neighbourhood, ContourTakesTheColourWhereTheMeanReachesTheWeight) {
    // Grey 100 with a darker blue centre (60).
    Bits src(3, 3);
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 3; ++x) src(0, x, y) = src(1, x, y) = src(2, x, y) = 100;
    src(0, 1, 1) = 60;
    Loaded l(src);
    // Centre: blue 480 - 800 + 255 < 0 -> 0, green and red 255: mean 170.
    // Every other pixel: all e = 255 (the guard band only raises 8C - sum8).
    // 255255255 is the packed value 0x0F36E2D7: red 215, green 226, blue 54.
    const Bits heavy = l.f.CONTOUR(255, 255255255);
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 3; ++x) {
            if (x == 1 && y == 1) continue;
            EXPECT_EQ(heavy(0, x, y), 54);
            EXPECT_EQ(heavy(1, x, y), 226);
            EXPECT_EQ(heavy(2, x, y), 215);
        }
    EXPECT_EQ(heavy(0, 1, 1), 0);
    EXPECT_EQ(heavy(1, 1, 1), 255);
    EXPECT_EQ(heavy(2, 1, 1), 255);
    // The mean 170 reaches a weight of 170 but not 171.
    EXPECT_EQ(l.f.CONTOUR(170, 0x00102030)(0, 1, 1), 0x10);
    EXPECT_EQ(l.f.CONTOUR(171, 0x00102030)(0, 1, 1), 0);
}

TEST(Neighbourhood, EmbossAndEngraveUseTheLowerRightNeighbour) {
    // Blue: 100 at (0,0), 60 at (1,1), 30 at (2,2). Green 1 and red 3 at (0,0).
    Bits src(3, 3);
    src(0, 0, 0) = 100, src(0, 1, 1) = 60, src(0, 2, 2) = 30;
    src(1, 0, 0) = 1, src(2, 0, 0) = 3;
    Loaded l(src);
    // Weight 10: w = 1, |d + 128|. (0,0): 40 -> 168; (1,1): 30 -> 158; zeros -> 128. The last
    // column copies the output on its left, the last row the output above.
    const Bits e10 = l.f.EMBOSS(10);
    EXPECT_EQ(channelOf(e10, 0), (std::vector<int>{168, 128, 128, 128, 158, 158, 128, 158, 158}));
    // Weight 25: w = 2.5: 40 * 2.5 + 128 = 228, 30 * 2.5 + 128 = 203.
    EXPECT_EQ(channelOf(l.f.EMBOSS(25), 0),
              (std::vector<int>{228, 128, 128, 128, 203, 203, 128, 203, 203}));
    // Weight 50: 328 and 278 are no bytes; those bytes keep their source, and the copies
    // take the kept value.
    EXPECT_EQ(channelOf(l.f.EMBOSS(50), 0),
              (std::vector<int>{100, 128, 128, 128, 60, 60, 128, 60, 60}));
    // Engrave, weight 50: -40 * 5 + 128 = -72 -> 72, -30 * 5 + 128 = -22 -> 22.
    EXPECT_EQ(channelOf(l.f.Engrave(50), 0),
              (std::vector<int>{72, 128, 128, 128, 22, 22, 128, 22, 22}));
    // Weight 5: w = 0.5: green 1 * 0.5 + 128 = 128.5 -> 128, red 3 * 0.5 + 128 = 129.5 ->
    // 130: ties go to even.
    const Bits e5 = l.f.EMBOSS(5);
    EXPECT_EQ(e5(1, 0, 0), 128);
    EXPECT_EQ(e5(2, 0, 0), 130);
}

TEST(Neighbourhood, ReliefAddsAQuarterOfTheDiagonalGradient) {
    // Blue: a 100 square on the lower right of a 4x4 image.
    Bits src = channelImage(4, 4, 0, {0, 0, 0, 0, 0, 100, 100, 100, 0, 100, 100, 100, 0, 100, 100, 100});
    Loaded l(src);
    // Margin 1: pixels (1,1), (2,1), (1,2), (2,2).
    // (1,1): 100 + (2*100 + 100 + 100 - 0) / 4 = 200; (2,1): 100 + (200 + 100 + 100 - 0 - 0 -
    // 100) / 4 = 175; (1,2): likewise 175; (2,2): 100 + (400 - 200 - 100 - 100) / 4 = 100.
    EXPECT_EQ(channelOf(l.f.RELIEF(), 0),
              (std::vector<int>{0, 0, 0, 0, 0, 200, 175, 100, 0, 175, 100, 100, 0, 100, 100, 100}));
    // The dark side: a 100 square on the upper left. (1,1): SE 0, S and E 100, NW, N and W
    // 100: 100 + (0 + 100 + 100 - 200 - 100 - 100) / 4 = 50.
    Bits dark = channelImage(4, 4, 0, {100, 100, 100, 0, 100, 100, 100, 0, 100, 100, 0, 0, 0, 0, 0, 0});
    Loaded ld(dark);
    const Bits r = ld.f.RELIEF();
    EXPECT_EQ(r(0, 1, 1), 50);
    // (2,1): C 100, SE (3,2) 0, S (2,2) 0, E (3,1) 0, NW (1,0) 100, N (2,0) 100, W (1,1) 100:
    // 100 + (0 - 400) / 4 = 0.
    EXPECT_EQ(r(0, 2, 1), 0);
}

TEST(Neighbourhood, NoiseDrawsRedGreenBlueInThatOrder) {
    Bits src = makeBits(2, 2, {{10, 20, 30, 5}, {0, 0, 0}, {0, 0, 0}, {250, 250, 250}});
    const Region one = Region::rect(0, 0, 1, 1);
    cBitFilter f;
    f.SetBits(src);
    f.BitsRegion(&one);
    Randomize(77);
    const double a = Rnd(), b = Rnd(), c = Rnd();
    Randomize(77);
    const Bits out = f.NOISE(40, false);
    // n = 81: c + (81 r - 40), rounded.
    const auto noisy = [](int v, double r) { return clampByte(vbRound(v + (81 * r - 40))); };
    EXPECT_EQ(out(2, 0, 0), noisy(30, a));
    EXPECT_EQ(out(1, 0, 0), noisy(20, b));
    EXPECT_EQ(out(0, 0, 0), noisy(10, c));
    EXPECT_EQ(out(3, 0, 0), 5);
    // Outside the one-pixel region nothing changed.
    for (int i = 1; i < 4; ++i)
        for (int ch = 0; ch < 4; ++ch) EXPECT_EQ(out(ch, i % 2, i / 2), src(ch, i % 2, i / 2));

    // Equalized: one number for all three channels, so grey stays grey.
    cBitFilter g;
    Bits grey(6, 4);
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 6; ++x) grey(0, x, y) = grey(1, x, y) = grey(2, x, y) = uint8_t(40 * x);
    g.SetBits(grey);
    const Bits eq = g.NOISE(30, true);
    bool moved = false;
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 6; ++x) {
            EXPECT_EQ(eq(0, x, y), eq(1, x, y));
            EXPECT_EQ(eq(1, x, y), eq(2, x, y));
            moved = moved || eq(0, x, y) != grey(0, x, y);
        }
    EXPECT_TRUE(moved);

    // Intensity 0: c + r rounds to c or c + 1.
    const Bits zero = g.NOISE(0, false);
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 6; ++x)
            for (int ch = 0; ch < 3; ++ch) {
                const int d = zero(ch, x, y) - grey(ch, x, y);
                EXPECT_TRUE(d == 0 || d == 1) << d;
            }
}

TEST(Neighbourhood, DiffuseTakesSourcesInsideTheRegionOnly) {
    const Bits src = test::patternBits(9, 7, 3);
    cBitFilter f;
    f.SetBits(src);
    // (0, 0) is the identity inside the region.
    EXPECT_TRUE(sameBits(src, f.DIFFUSE(0, 0)));

    // A region of a single pixel: its box is that pixel, whose only possible source
    // within the region is itself.
    const Region one = Region::rect(4, 3, 5, 4);
    f.BitsRegion(&one);
    EXPECT_TRUE(sameBits(src, f.DIFFUSE(6, 6)));

    // An L-shaped region: every changed pixel lies in the box and took a pixel of the
    // region; the box corner outside the region may change too.
    const Region ell = Region::fromRects({{1, 1, 3, 6}, {1, 4, 8, 6}});
    f.BitsRegion(&ell);
    Randomize(5);
    const Bits out = f.DIFFUSE(4, 4);
    int changed = 0;
    for (int y = -2; y < 9; ++y)
        for (int x = -2; x < 11; ++x) {
            bool same = true;
            for (int c = 0; c < 4; ++c) same = same && out(c, x, y) == src(c, x, y);
            if (same) continue;
            ++changed;
            EXPECT_TRUE(x >= 1 && x < 8 && y >= 1 && y < 6) << x << "," << y;
            EXPECT_EQ(out(3, x, y), src(3, x, y));
            bool found = false; // some region pixel within reach carries these colours
            for (int sy = y - 2; sy <= y + 2; ++sy)
                for (int sx = x - 2; sx <= x + 2; ++sx)
                    if (ell.contains(sx, sy) && out(0, x, y) == src(0, sx, sy) &&
                        out(1, x, y) == src(1, sx, sy) && out(2, x, y) == src(2, sx, sy))
                        found = true;
            EXPECT_TRUE(found) << x << "," << y;
        }
    EXPECT_GT(changed, 5);
}

TEST(Neighbourhood, ProgressEndsAtOneHundredAndAnEmptyRegionChangesNothing) {
    const Bits src = test::patternBits(5, 4, 9);
    cBitFilter f;
    f.SetBits(src);
    std::vector<int> seen;
    f.Progress = [&](int32_t& p) { seen.push_back(p); };
    const Region none;
    f.BitsRegion(&none);
    EXPECT_TRUE(sameBits(src, f.Blurs(1)));
    EXPECT_TRUE(sameBits(src, f.SHARPEN(10)));
    EXPECT_TRUE(sameBits(src, f.MaskFilter({{1, 1, 1}, {1, 1, 1}, {1, 1, 1}}, 0, 0, 0, 0, false)))
        << "no pixel computed, so no division by zero either";
    ASSERT_EQ(seen.size(), 3u);
    for (int p : seen) EXPECT_EQ(p, 100);
}

} // namespace
} // namespace ostrivex
