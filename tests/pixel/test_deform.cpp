// Geometric deformations on small images whose every pixel is distinct, so that the
// expected images can be written as the list of source pixels worked out by hand from the
// mapping formulas.
#include "pixel/bitfilter.h"
#include "pixel/polar.h"
#include "pixel/region.h"
#include "filter_test_util.h"
#include "pixel_test_util.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

using namespace ostrivex;
using namespace ostrivex::test;

namespace {

// Pixel (x, y) is blue 10 * x + y + 1, green 100 + 10 * y + x, red 200 + x, alpha 50 + x + y.
Bits numbered(int w, int h) {
    Bits b(w, h);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            uint8_t* p = b.pixel(x, y);
            p[0] = uint8_t(10 * x + y + 1);
            p[1] = uint8_t(100 + 10 * y + x);
            p[2] = uint8_t(200 + x);
            p[3] = uint8_t(50 + x + y);
        }
    return b;
}

constexpr std::pair<int, int> K{-100, -100}; // keeps its old value
constexpr std::pair<int, int> B{-200, -200}; // turns black

// The expected result: output pixel i (row by row) takes the colour of src at from[i],
// keeps its own, or turns black; alpha always stays.
Bits expectFrom(const Bits& src, const std::vector<std::pair<int, int>>& from) {
    Bits out = src;
    const int w = src.width();
    for (size_t i = 0; i < from.size(); ++i) {
        const int x = int(i) % w, y = int(i) / w;
        uint8_t* d = out.pixel(x, y);
        if (from[i] == K) continue;
        if (from[i] == B) {
            d[0] = d[1] = d[2] = 0;
            continue;
        }
        const uint8_t* s = src.pixel(from[i].first, from[i].second);
        d[0] = s[0];
        d[1] = s[1];
        d[2] = s[2];
    }
    return out;
}

} // namespace

TEST(PolarAngle, AxesQuadrantsAndTheShortPi) {
    // The 32-bit pi 3.141592 (not the true pi) is visible on the axis.
    EXPECT_EQ(PolarAngle(0, 1), 1.570796f);
    EXPECT_EQ(PolarAngle(0, 5), 1.570796f);
    EXPECT_EQ(PolarAngle(0, 0), -1.570796f);
    EXPECT_EQ(PolarAngle(0, -3), -1.570796f);
    EXPECT_NEAR(PolarAngle(1, 1), 0.7853982, 1e-7);
    EXPECT_NEAR(PolarAngle(2, -2), -0.7853982, 1e-7);
    // Left of the axis: atan(y / x) + 3.141592.
    EXPECT_NEAR(PolarAngle(-1, 1), 2.3561938, 2e-7);
    EXPECT_NEAR(PolarAngle(-1, -1), 3.9269902, 2e-7);
    EXPECT_NEAR(PolarAngle(-4, 0), 3.141592, 2e-7);
}

TEST(Deform, StretchScalesAboutTheBoxCentreWithTiesToEven) {
    const Bits src = numbered(5, 1);
    Loaded l(src);
    EXPECT_TRUE(sameBits(src, l.f.STRETCH(0, 0, true)));
    // h = 2, centre 2: sx = 2 * dx + 2 = -2, 0, 2, 4, 6.
    EXPECT_TRUE(sameBits(expectFrom(src, {B, {0, 0}, {2, 0}, {4, 0}, B}), l.f.STRETCH(100, 0, true)));
    EXPECT_TRUE(sameBits(expectFrom(src, {K, {0, 0}, {2, 0}, {4, 0}, K}), l.f.STRETCH(100, 0, false)));
    // h = 0.5: sx = round(1), round(1.5), 2, round(2.5), 3 with ties to even.
    EXPECT_TRUE(sameBits(expectFrom(src, {{1, 0}, {2, 0}, {2, 0}, {2, 0}, {3, 0}}),
                         l.f.STRETCH(-50, 0, true)));
    // The object's buffer is still the source.
    EXPECT_TRUE(sameBits(src, l.f.GetBits()));
}

TEST(Deform, StretchTestsTheSourceAgainstTheRegion) {
    // 5 x 3, region columns 1..3: box centre x = 2, y = 1.
    const Bits src = numbered(5, 3);
    Loaded l(src, Region::rect(1, 0, 4, 3));
    // v = 2 along y as well: sy = 2 * (y - 1) + 1 = -1, 1, 3.
    const std::vector<std::pair<int, int>> black = {
        K, B, B, B, K, //
        K, B, {2, 1}, B, K, //
        K, B, B, B, K};
    EXPECT_TRUE(sameBits(expectFrom(src, black), l.f.STRETCH(100, 100, true)));
    const std::vector<std::pair<int, int>> keep = {
        K, K, K, K, K, //
        K, K, {2, 1}, K, K, //
        K, K, K, K, K};
    EXPECT_TRUE(sameBits(expectFrom(src, keep), l.f.STRETCH(100, 100, false)));
}

TEST(Deform, RotateTurnsAboutTheIntegerCentre) {
    const Bits src = numbered(3, 3);
    Loaded l(src);
    EXPECT_TRUE(sameBits(src, l.f.ROTATE(0, true)));
    // 180 degrees: (x, y) takes (2 - x, 2 - y).
    EXPECT_TRUE(sameBits(expectFrom(src, {{2, 2}, {1, 2}, {0, 2}, {2, 1}, {1, 1}, {0, 1},
                                          {2, 0}, {1, 0}, {0, 0}}),
                         l.f.ROTATE(180, true)));
    // 90 degrees: sx = 2 - y, sy = x.
    EXPECT_TRUE(sameBits(expectFrom(src, {{2, 0}, {2, 1}, {2, 2}, {1, 0}, {1, 1}, {1, 2},
                                          {0, 0}, {0, 1}, {0, 2}}),
                         l.f.ROTATE(90, true)));

    // An even box has its centre at (0 + 3) >> 1 = 1: sx = 2 - x, so column 3 looks at -1.
    const Bits src4 = numbered(4, 1);
    Loaded l4(src4, Region::rect(0, 0, 4, 1));
    EXPECT_TRUE(sameBits(expectFrom(src4, {{2, 0}, {1, 0}, {0, 0}, B}), l4.f.ROTATE(180, true)));
    EXPECT_TRUE(sameBits(expectFrom(src4, {{2, 0}, {1, 0}, {0, 0}, K}), l4.f.ROTATE(180, false)));
}

TEST(Deform, FoldVariesEachAxisScaleAlongTheOther) {
    const Bits src = numbered(5, 5);
    Loaded l(src);
    EXPECT_TRUE(sameBits(src, l.f.FOLD(0, 0, true)));
    // horizontal 100: sy = round(dy * (dx / 4 + 1) + 2), factors 0.5, 0.75, 1, 1.25, 1.5.
    //   x = 0: 1, 1.5, 2, 2.5, 3 -> 1, 2, 2, 2, 3
    //   x = 1: 0.5, 1.25, 2, 2.75, 3.5 -> 0, 1, 2, 3, 4
    //   x = 3: -0.5, 0.75, 2, 3.25, 4.5 -> 0, 1, 2, 3, 4
    //   x = 4: -1, 0.5, 2, 3.5, 5 -> out, 0, 2, 4, out
    const int rows[5][5] = {{1, 2, 2, 2, 3}, {0, 1, 2, 3, 4}, {0, 1, 2, 3, 4},
                            {0, 1, 2, 3, 4}, {-1, 0, 2, 4, 5}};
    std::vector<std::pair<int, int>> from;
    for (int y = 0; y < 5; ++y)
        for (int x = 0; x < 5; ++x) {
            const int sy = rows[x][y];
            from.push_back(sy < 0 || sy > 4 ? B : std::pair<int, int>{x, sy});
        }
    EXPECT_TRUE(sameBits(expectFrom(src, from), l.f.FOLD(100, 0, true)));
}

TEST(Deform, TwirlTurnsByOffsetAndTwistsByDistance) {
    const Bits src = numbered(5, 5);
    Loaded l(src);
    // Level 0, offset 0: in a 5 x 5 box the rounding of r moves nothing
    // (r = 3 for (2, 2): round(3 * cos 45) = 2).
    EXPECT_TRUE(sameBits(src, l.f.TWIRL(0, 0, true)));

    // Offset 90 only: (3, 2) takes (2, 3); (2, 3) takes (1, 2); the centre stays.
    const Bits turned = l.f.TWIRL(0, 90, true);
    EXPECT_EQ(turned(0, 3, 2), src(0, 2, 3));
    EXPECT_EQ(turned(0, 2, 3), src(0, 1, 2));
    EXPECT_EQ(turned(0, 2, 1), src(0, 3, 2));
    EXPECT_EQ(turned(0, 2, 2), src(0, 2, 2));

    // Level 10: k = 10 / 10 / 2 = 0.5, the angle falls by r / 2.
    //   (3, 2): r 1, a -0.5 -> (round(2.878), round(1.521)) = (3, 2)
    //   (4, 2): r 2, a -1 -> (round(3.081), round(0.317)) = (3, 0)
    //   (2, 4): r 2, a 0.570796 -> (round(3.683), round(3.081)) = (4, 3)
    //   (0, 2): r 2, a 2.141592 -> (round(0.919), round(3.683)) = (1, 4)
    const Bits twisted = l.f.TWIRL(10, 0, true);
    EXPECT_EQ(twisted(1, 3, 2), src(1, 3, 2));
    EXPECT_EQ(twisted(1, 4, 2), src(1, 3, 0));
    EXPECT_EQ(twisted(1, 2, 4), src(1, 4, 3));
    EXPECT_EQ(twisted(1, 0, 2), src(1, 1, 4));
}

TEST(Deform, BendUnrollsAngleAndDistance) {
    const Bits src = numbered(5, 5);
    Loaded l(src);
    // k = 2, W - 1 = H - 1 = 4, centre (2, 2); sx = round(4 * t / 6.28318), sy = round(4 - 2r).
    const Bits out = l.f.BEND(0, true);
    auto colourAt = [](const Bits& b, int x, int y) {
        return std::vector<int>{b(0, x, y), b(1, x, y), b(2, x, y)};
    };
    const std::vector<int> black{0, 0, 0};
    // (2, 0): t = pi / 2 -> (1, 0).
    EXPECT_EQ(colourAt(out, 2, 0), colourAt(src, 1, 0));
    // (4, 1): t = 0.463648 -> sx 0; r = 2.236 -> sy round(-0.47) = 0.
    EXPECT_EQ(colourAt(out, 4, 1), colourAt(src, 0, 0));
    // (1, 2): dy 0, dx -1: t = -pi + 2 pi -> sx 2; r 1 -> sy 2.
    EXPECT_EQ(colourAt(out, 1, 2), colourAt(src, 2, 2));
    // (2, 3): t = -pi / 2 + 2 pi -> sx 3, sy 2.
    EXPECT_EQ(colourAt(out, 2, 3), colourAt(src, 3, 2));
    // (0, 2): t = pi -> sx 2; r 2 -> sy 0.
    EXPECT_EQ(colourAt(out, 0, 2), colourAt(src, 2, 0));
    // (3, 3): t = -0.785 -> sx -1; the centre: t = 5 pi / 2 -> sx 5. Both outside.
    EXPECT_EQ(colourAt(out, 3, 3), black);
    EXPECT_EQ(colourAt(out, 2, 2), black);
    const Bits kept = l.f.BEND(0, false);
    EXPECT_EQ(colourAt(kept, 3, 3), colourAt(src, 3, 3));
    EXPECT_EQ(colourAt(kept, 2, 2), colourAt(src, 2, 2));
    // Radius 100: k = 3, (0, 2) has r 2 -> sy = round(4 - 6) = -2: outside.
    EXPECT_EQ(colourAt(l.f.BEND(100, true), 0, 2), black);
    // Alpha is never written.
    for (int y = 0; y < 5; ++y)
        for (int x = 0; x < 5; ++x) EXPECT_EQ(out(3, x, y), src(3, x, y));
}

TEST(Deform, WavesMoveWholeRowsAndStayInsideTheImage) {
    const Bits src = numbered(2, 5);
    Loaded l(src);
    // M[y] = round(y + 4 * 0.25 * sin((90 + 90 y) degrees)) = round(y + 1, y, y - 1, y, y + 1)
    // = 1, 1, 1, 3, 5 -> 4.
    EXPECT_TRUE(sameBits(expectFrom(src, {{0, 1}, {1, 1}, {0, 1}, {1, 1}, {0, 1}, {1, 1},
                                          {0, 3}, {1, 3}, {0, 4}, {1, 4}}),
                         l.f.WAVES(90, 4, 90)));
    // Start 270: round(y - 1, y, y + 1, y, y - 1) = -1 -> 0, 1, 3, 3, 3.
    EXPECT_TRUE(sameBits(expectFrom(src, {{0, 0}, {1, 0}, {0, 1}, {1, 1}, {0, 3}, {1, 3},
                                          {0, 3}, {1, 3}, {0, 3}, {1, 3}}),
                         l.f.WAVES(90, 4, 270)));
    // Only pixels of the region move; the source row may lie outside it.
    Loaded part(src, Region::rect(1, 0, 2, 5));
    EXPECT_TRUE(sameBits(expectFrom(src, {K, {1, 1}, K, {1, 1}, K, {1, 1}, K, {1, 3}, K, {1, 4}}),
                         part.f.WAVES(90, 4, 90)));
}

TEST(Deform, TileRepeatsTheShrunkImageFromTheBoxCorner) {
    const Bits src = numbered(4, 4);
    Loaded l(src);
    // tw = th = round(3 / 2) = 2, fx = fy = 1.5: tile columns and rows 0 and round(1.5) = 2.
    EXPECT_TRUE(sameBits(expectFrom(src, {{0, 0}, {2, 0}, {0, 0}, {2, 0}, //
                                          {0, 2}, {2, 2}, {0, 2}, {2, 2}, //
                                          {0, 0}, {2, 0}, {0, 0}, {2, 0}, //
                                          {0, 2}, {2, 2}, {0, 2}, {2, 2}}),
                         l.f.TILE(2)));
    // From the box corner (1, 1).
    Loaded part(src, Region::rect(1, 1, 4, 4));
    EXPECT_TRUE(sameBits(expectFrom(src, {K, K, K, K, //
                                          K, {0, 0}, {2, 0}, {0, 0}, //
                                          K, {0, 2}, {2, 2}, {0, 2}, //
                                          K, {0, 0}, {2, 0}, {0, 0}}),
                         part.f.TILE(2)));
    // A factor that leaves no tile pixel changes nothing.
    EXPECT_TRUE(sameBits(src, l.f.TILE(50)));
}

TEST(Deform, LensMagnifiesInsideTheCircleOnly) {
    const Bits src = numbered(9, 9);
    Loaded l(src);
    // Magnify 0 is the identity.
    EXPECT_TRUE(sameBits(src, l.f.LENS(0.5f, 0.5f, 0.5f, 0)));
    // Centre (4, 4), R = round(0.5 * 8) = 4, magnify 100: m = 4 / 3, and the source lies at
    // ratio (m + (R - m) d / R) / R of the offset.
    const Bits out = l.f.LENS(0.5f, 0.5f, 0.5f, 100);
    auto from = [&](int x, int y, int sx, int sy) {
        for (int c = 0; c < 3; ++c) EXPECT_EQ(out(c, x, y), src(c, sx, sy)) << x << "," << y;
    };
    from(5, 4, 4, 4); // d 1: ratio 0.5 -> 4.5 -> 4
    from(3, 4, 4, 4); // 3.5 -> 4
    from(6, 4, 5, 4); // d 2: ratio 2/3 -> 5.33 -> 5
    from(6, 5, 5, 5); // d 2.236: ratio 0.706 -> (5.41, 4.71) -> (5, 5)
    from(5, 5, 5, 5); // d 1.414: ratio 0.569 -> (4.57, 4.57) -> (5, 5)
    from(4, 4, 4, 4);
    // On or outside the circle nothing moves.
    from(8, 4, 8, 4);
    from(4, 0, 4, 0);
    from(7, 7, 7, 7);
    for (int y = 0; y < 9; ++y)
        for (int x = 0; x < 9; ++x) EXPECT_EQ(out(3, x, y), src(3, x, y));
    // The fisheye: centre, magnify 60, the circle inscribed in the image. On 41 x 21 the
    // diameter is 0.5 * 20 / 40 = 0.25 of the larger side: R = 10, m = 6, ratio
    // (6 + 0.4 d) / 10 around (20, 10).
    const Bits wide = numbered(41, 21);
    Loaded lw(wide);
    const Bits fish = lw.f.FISHEYE();
    auto fishFrom = [&](int x, int y, int sx, int sy) {
        for (int c = 0; c < 3; ++c) EXPECT_EQ(fish(c, x, y), wide(c, sx, sy)) << x << "," << y;
    };
    fishFrom(22, 10, 21, 10); // d 2: 1.36 -> 21
    fishFrom(26, 10, 25, 10); // d 6: 5.04 -> 25
    fishFrom(28, 10, 27, 10); // d 8: 7.36 -> 27
    fishFrom(30, 10, 30, 10); // the rim
    fishFrom(20, 0, 20, 0);
}

TEST(Deform, GlassReedsTurnEachStripOver) {
    // L = 12: "Light" reeds are 6 wide, moved by round(1.5 * (2.5 - t)) = 4, 2, 1, -1, -2, -4.
    const Bits src = numbered(12, 2);
    Loaded l(src);
    std::vector<std::pair<int, int>> vertical;
    const int sx[12] = {4, 3, 3, 2, 2, 1, 10, 9, 9, 8, 8, 7};
    for (int y = 0; y < 2; ++y)
        for (int x = 0; x < 12; ++x) vertical.push_back({sx[x], y});
    EXPECT_TRUE(sameBits(expectFrom(src, vertical), l.f.GLASS("vertical", 0)));
    // "Tight": 4 wide, moves 2, 1, -1, -2.
    std::vector<std::pair<int, int>> tight;
    const int tx[12] = {2, 2, 1, 1, 6, 6, 5, 5, 10, 10, 9, 9};
    for (int y = 0; y < 2; ++y)
        for (int x = 0; x < 12; ++x) tight.push_back({tx[x], y});
    EXPECT_TRUE(sameBits(expectFrom(src, tight), l.f.GLASS("vertical", 1)));

    // Horizontal reeds move along y: 2 x 12, same moves.
    const Bits tall = numbered(2, 12);
    Loaded lt(tall);
    std::vector<std::pair<int, int>> horizontal;
    for (int y = 0; y < 12; ++y)
        for (int x = 0; x < 2; ++x) horizontal.push_back({x, sx[y]});
    EXPECT_TRUE(sameBits(expectFrom(tall, horizontal), lt.f.GLASS("horizontal", 0)));

    // Slanting: t = (x + y) mod 6, both axes move by round(0.75 * (2.5 - t)) = 2, 1, 0, 0,
    // -1, -2; a source outside the image leaves the pixel.
    const Bits sq = numbered(6, 6);
    Loaded ls(sq);
    const Bits slant = ls.f.GLASS("slanting", 0);
    const int move[6] = {2, 1, 0, 0, -1, -2};
    for (int y = 0; y < 6; ++y)
        for (int x = 0; x < 6; ++x) {
            const int m = move[(x + y) % 6];
            const int fx = x + m, fy = y + m;
            const bool in = fx >= 0 && fx < 6 && fy >= 0 && fy < 6;
            for (int c = 0; c < 3; ++c)
                EXPECT_EQ(slant(c, x, y), in ? sq(c, fx, fy) : sq(c, x, y)) << x << "," << y;
        }

    // "squary" value 0 is "Large": 8-pixel blocks, moves 5, 4, 2, 1, -1, -2, -4, -5 on
    // both axes.
    const Bits blk = numbered(8, 8);
    Loaded lb(blk);
    const Bits blocks = lb.f.GLASS("squary", 0);
    const int bm[8] = {5, 4, 2, 1, -1, -2, -4, -5};
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 8; ++x)
            EXPECT_EQ(blocks(0, x, y), blk(0, x + bm[x], y + bm[y])) << x << "," << y;
    // An unknown style changes nothing.
    EXPECT_TRUE(sameBits(blk, lb.f.GLASS("frosted", 0)));
}

TEST(Deform, CurtainFoldsShadeAndRipple) {
    // 8 x 1, grey columns 10 * x + 10: fold period 8, ripple round(0.8 sin) = 0, 1, 1, 1,
    // 0, -1, -1, -1 and shade 0.78 + 0.22 cos(2 pi t / 8).
    Bits src(8, 1);
    for (int x = 0; x < 8; ++x)
        for (int c = 0; c < 3; ++c) src(c, x, 0) = uint8_t(10 * x + 10);
    Loaded l(src);
    const Bits v = l.f.GLASS("curtain", 2);
    // x 1..3 take x + 1, x 5..7 take x - 1:
    //   10 * 1, 30 * 0.93556, 40 * 0.78, 50 * 0.62444, 50 * 0.56, 50 * 0.62444, 60 * 0.78,
    //   70 * 0.93556.
    const int want[8] = {10, 28, 31, 31, 28, 31, 47, 65};
    for (int x = 0; x < 8; ++x) {
        EXPECT_EQ(v(0, x, 0), want[x]) << x;
        EXPECT_EQ(v(2, x, 0), want[x]) << x;
    }
    // Whity: towards white by 0.4 + 0.15 cos: t 0 a 0.55: 10 + 245 * 0.55 = 144.75 -> 145;
    // t 4 (source x 4 = 50) a 0.25: 50 + 205 * 0.25 = 101.25 -> 101.
    const Bits w = l.f.GLASS("curtain", 4);
    EXPECT_EQ(w(1, 0, 0), 145);
    EXPECT_EQ(w(1, 4, 0), 101);
    // Value 0 or 5 is no curtain.
    EXPECT_TRUE(sameBits(src, l.f.GLASS("curtain", 5)));
}

TEST(Deform, EllipseRegionTestsTargetAndSourcePixelByPixel) {
    // On a region of many spans every output pixel follows the per-pixel rule: outside
    // the region it stays; inside, it takes its source if that lies in the region, else
    // turns black. STRETCH(100, 0) on 9 x 7: box 0..8 x 1..5 (the ellipse (0,1)-(9,6)),
    // centre (4, 3), sx = 2 x - 4.
    const Bits src = numbered(9, 7);
    Loaded l(src, Region::ellipse(0, 1, 9, 6));
    const Bits out = l.f.STRETCH(100, 0, true);
    int copied = 0, blackened = 0;
    for (int y = 0; y < 7; ++y)
        for (int x = 0; x < 9; ++x) {
            const int sx = 2 * x - 4;
            std::vector<int> want{src(0, x, y), src(1, x, y), src(2, x, y)};
            if (l.region.contains(x, y)) {
                if (l.region.contains(sx, y)) {
                    want = {src(0, sx, y), src(1, sx, y), src(2, sx, y)};
                    ++copied;
                } else {
                    want = {0, 0, 0};
                    ++blackened;
                }
            }
            EXPECT_EQ((std::vector<int>{out(0, x, y), out(1, x, y), out(2, x, y)}), want)
                << x << "," << y;
        }
    EXPECT_GT(copied, 5);
    EXPECT_GT(blackened, 5);
}
