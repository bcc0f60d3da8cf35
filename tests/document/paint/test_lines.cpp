// The anti-aliased outlines: line, rectangle, polygon, ellipse.
#include "paint_test_util.h"

#include <gtest/gtest.h>

namespace ostrivex::test {
namespace {

using V = std::vector<int>;

// A one-point line: both samples sit at (x + 0.001, y + 0.001), giving the pixel a
// coverage of Round(0.999 * 0.999 * 255) = 254 twice and its neighbours Round(0.25) = 0.
TEST(PaintLine, OnePointLineDarkensTwiceAndPressureZeroStillPaints) {
    Bits img = solidBits(3, 3, 200, 200, 200);
    DoneBits done(3, 3);
    // Colour red 100, green 50, blue 0; b = 254/255 at full pressure.
    BitsLine(img, wholeRegion(img), done, 1, 1, 1, 1, 0x003264, 100);
    // Blue: 200 - b*200 = 0.78 -> 1, then 1 - b*1 -> 0.
    // Green: 200 - b*150 = 50.59 -> 51, then 51 - b*1 = 50.004 -> 50.
    // Red: 200 - b*100 = 100.39 -> 100, then 100.
    EXPECT_EQ(px(img, 1, 1), (V{0, 50, 100}));
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 3; ++x)
            if (x != 1 || y != 1) {
                EXPECT_EQ(px(img, x, y), (V{200, 200, 200})) << x << "," << y;
            }

    // Pressure 0 gives opacity 1/255: b = 254/255/255; 255 -> 254.004 -> 254 -> 253.008.
    Bits white = solidBits(3, 3, 255, 255, 255);
    BitsLine(white, wholeRegion(white), done, 1, 1, 1, 1, 0, 0);
    EXPECT_EQ(px(white, 1, 1), (V{253, 253, 253}));
    EXPECT_EQ(px(white, 2, 1), (V{255, 255, 255}));
}

// (1,1)-(2,1): n = 2, four samples at x = 1.25, 1.5, 1.75, 2.001, all at y = 1.001.
// Coverages on (1,1): 191, 127, 64; on (2,1): 64, 127, 191, 254; on (3,1): 0.
// (1,1): 255 -> 64 -> 32.13 -> 23.97: 24. (2,1): 255 -> 191 -> 95.88 -> 24.09 -> 0.09: 0.
TEST(PaintLine, ShortHorizontalLineFromTheWeights) {
    Bits img = solidBits(4, 3, 255, 255, 255);
    DoneBits done(4, 3);
    BitsLine(img, wholeRegion(img), done, 1, 1, 2, 1, 0, 100);
    Bits want = solidBits(4, 3, 255, 255, 255);
    setPx(want, 1, 1, 24, 24, 24);
    setPx(want, 2, 1, 0, 0, 0);
    EXPECT_TRUE(sameBits(want, img));

    // The region leaves (2,1) out; (1,1) gets the same samples.
    Bits clipped = solidBits(4, 3, 255, 255, 255);
    Region region = wholeRegion(clipped).subtracted(Region::rect(2, 1, 3, 2));
    BitsLine(clipped, region, done, 1, 1, 2, 1, 0, 100);
    setPx(want, 2, 1, 255, 255, 255);
    EXPECT_TRUE(sameBits(want, clipped));

    // On an image two pixels wide the right end falls outside and nothing spills.
    Bits narrow = solidBits(2, 3, 255, 255, 255);
    BitsLine(narrow, wholeRegion(narrow), done, 1, 1, 2, 1, 0, 100);
    EXPECT_EQ(px(narrow, 1, 1), (V{24, 24, 24}));
    EXPECT_EQ(px(narrow, 0, 1), (V{255, 255, 255}));
    EXPECT_TRUE(guardClear(narrow));
}

// A line whose ends lie outside the image paints exactly what the same line paints in
// the middle of a larger image, shifted; the guard band stays clear. With dx = 7 and
// dy = 3 the steps are 7/16 and 3/16, exact in binary, so the shift changes no rounding.
TEST(PaintLine, EndpointsOutsideTheImageMatchTheSameLineInsideALargerOne) {
    Bits small = solidBits(4, 2, 255, 255, 255);
    DoneBits done(4, 2);
    BitsLine(small, wholeRegion(small), done, -2, -1, 5, 2, 0x204060, 80);
    EXPECT_TRUE(guardClear(small));

    Bits big = solidBits(45, 34, 255, 255, 255);
    DoneBits bigDone(45, 34);
    BitsLine(big, wholeRegion(big), bigDone, 18, 14, 25, 17, 0x204060, 80);
    int painted = 0;
    for (int y = 0; y < 2; ++y)
        for (int x = 0; x < 4; ++x) {
            EXPECT_EQ(px(small, x, y), px(big, x + 20, y + 15)) << x << "," << y;
            painted += px(small, x, y) != V{255, 255, 255};
        }
    EXPECT_GE(painted, 4);
}

// Rectangle (1,1)-(1,1) is four one-point lines: eight samples of coverage 254. At
// pressure 0 each takes about 0.98 off a value above 128: 255 -> 247.
TEST(PaintLine, DegenerateRectangleIsEightSamples) {
    Bits img = solidBits(3, 3, 255, 255, 255);
    DoneBits done(3, 3);
    BitsRectangle(img, wholeRegion(img), done, 1, 1, 1, 1, 0, 0);
    EXPECT_EQ(px(img, 1, 1), (V{247, 247, 247}));
    EXPECT_EQ(px(img, 0, 1), (V{255, 255, 255}));
}

// Square about (2,2) through (4,2): start angle Atn(0) = 0, step 1.570795, R = 2; the
// vertices round to (4,2), (2,4), (0,2), (2,0).
// Triangle about (3,3) through (1,3): dx < 0 so the angle is 3.1416; vertices (1,3),
// (4,1), (4,5), and the last side closes back on (1,3).
TEST(PaintPolygon, VerticesFromCentreAndOneCorner) {
    const int32_t colour = 0x102030;
    DoneBits done(7, 7);
    Bits square = solidBits(7, 7, 255, 255, 255);
    BitsPolygon(square, wholeRegion(square), done, 2, 2, 4, 2, 4, colour, 70);
    Bits want = solidBits(7, 7, 255, 255, 255);
    const Region all = wholeRegion(want);
    BitsLine(want, all, done, 4, 2, 2, 4, colour, 70);
    BitsLine(want, all, done, 2, 4, 0, 2, colour, 70);
    BitsLine(want, all, done, 0, 2, 2, 0, colour, 70);
    BitsLine(want, all, done, 2, 0, 4, 2, colour, 70);
    EXPECT_TRUE(sameBits(want, square));

    Bits tri = solidBits(7, 7, 255, 255, 255);
    BitsPolygon(tri, wholeRegion(tri), done, 3, 3, 1, 3, 3, colour, 70);
    Bits wantTri = solidBits(7, 7, 255, 255, 255);
    BitsLine(wantTri, all, done, 1, 3, 4, 1, colour, 70);
    BitsLine(wantTri, all, done, 4, 1, 4, 5, colour, 70);
    BitsLine(wantTri, all, done, 4, 5, 1, 3, colour, 70);
    EXPECT_TRUE(sameBits(wantTri, tri));
}

// Radii 0: the angle step is 6.283185 * 0.085 = 0.534, so twelve samples, all at
// (1.001, 1.001) with coverage 254. At pressure 0 each takes one level off: 255 -> 243.
TEST(PaintEllipse, ZeroRadiiPlotTwelveSamplesAtTheCentre) {
    Bits img = solidBits(3, 3, 255, 255, 255);
    DoneBits done(3, 3);
    BitsEllipse(img, wholeRegion(img), done, 1, 1, 0, 0, 0, 0);
    Bits want = solidBits(3, 3, 255, 255, 255);
    setPx(want, 1, 1, 243, 243, 243);
    EXPECT_TRUE(sameBits(want, img));
}

// Radius 4 horizontally, 0 vertically: samples at x = 5 + 4cos(a), all on row 5 (nudged
// to 5.001), so rows other than 5 and 6 stay white and the row-6 coverage rounds to 0.
// Pressure 100 black: the ends x = 1 and x = 9 are reached (cos = +-1 at a = 0 and near
// pi), the columns beyond them are not.
TEST(PaintEllipse, FlatEllipseStaysOnItsRowAndSpan) {
    Bits img = solidBits(11, 8, 255, 255, 255);
    DoneBits done(11, 8);
    BitsEllipse(img, wholeRegion(img), done, 5, 5, 4, 0, 0, 100);
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 11; ++x)
            if (y != 5) {
                EXPECT_EQ(px(img, x, y), (V{255, 255, 255})) << x << "," << y;
            }
    EXPECT_EQ(px(img, 0, 5), (V{255, 255, 255}));
    EXPECT_EQ(px(img, 10, 5), (V{255, 255, 255}));
    for (int x = 2; x <= 8; ++x) EXPECT_LT(img(0, x, 5), 128) << x;
}

} // namespace
} // namespace ostrivex::test
