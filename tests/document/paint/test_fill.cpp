// The flood fills.
#include "paint_test_util.h"

#include <gtest/gtest.h>

namespace ostrivex::test {
namespace {

using V = std::vector<int>;

// 4 x 3, W = 100 grey with a black wall in column 2 on rows 0 and 1:
//   W W K W
//   W W K W
//   W W W W
// The right column is reached only round the foot of the wall.
Bits wallImage() {
    Bits img = solidBits(4, 3, 100, 100, 100);
    setPx(img, 2, 0, 0, 0, 0);
    setPx(img, 2, 1, 0, 0, 0);
    return img;
}

TEST(PaintFill, FillsTheConnectedPixelsWithinTolerance) {
    Bits img = wallImage();
    DoneBits done(4, 3);
    BitsFill(img, wholeRegion(img), done, 0, 0, 0xC8C8C8, 0, 100);
    Bits want = solidBits(4, 3, 200, 200, 200);
    setPx(want, 2, 0, 0, 0, 0);
    setPx(want, 2, 1, 0, 0, 0);
    EXPECT_TRUE(sameBits(want, img));

    // Half pressure: the seed gets 0.5*100 + 0.5*200 = 150; the others T(100) =
    // Round(50 + Round(100)) = 150. Colour 200, 100, 50 (red 50): blue 150, green 100,
    // red 75 everywhere the fill reaches.
    Bits half = wallImage();
    CreateDoneBitsTable(done, half);
    BitsFill(half, wholeRegion(half), done, 3, 0, 0xC86432, 0, 50);
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 4; ++x)
            EXPECT_EQ(px(half, x, y), ((x == 2 && y < 2) ? V{0, 0, 0} : V{150, 100, 75}))
                << x << "," << y;
}

TEST(PaintFill, ToleranceIsTheSumOfTheChannelDifferences) {
    // (3,2) differs from the seed by 3 + 0 + 2 = 5.
    for (int tolerance : {4, 5}) {
        Bits img = wallImage();
        setPx(img, 3, 2, 103, 100, 98);
        DoneBits done(4, 3);
        BitsFill(img, wholeRegion(img), done, 0, 0, 0x000000, tolerance, 100);
        const bool reached = tolerance == 5;
        EXPECT_EQ(px(img, 3, 2), (reached ? V{0, 0, 0} : V{103, 100, 98})) << tolerance;
        // Past it, (3,1) and (3,0) are reached only through (3,2).
        EXPECT_EQ(px(img, 3, 0), (reached ? V{0, 0, 0} : V{100, 100, 100})) << tolerance;
        EXPECT_EQ(px(img, 1, 2), (V{0, 0, 0}));
        // The examined pixels are marked done, matched or not; the black wall's foot
        // neighbours (2,1) was looked at from (2,2).
        EXPECT_TRUE(done.get(2, 1));
        EXPECT_TRUE(done.get(3, 2));
    }
}

// The seed is painted before the walk and is not marked done, so a wide tolerance lets
// the walk come back to it. 3 x 1 of 100, colour 130, pressure 50: seed 115; T(i) =
// Round(i/2 + 65), T(100) = 115. From (1,0) the seed differs by 3 * 15 = 45: within 100
// it is mapped again, T(115) = Round(122.5) = 122; within 44 it stays 115.
TEST(PaintFill, WideToleranceReachesThePaintedSeedAgain) {
    for (int tolerance : {100, 44}) {
        Bits img = solidBits(3, 1, 100, 100, 100);
        DoneBits done(3, 1);
        BitsFill(img, wholeRegion(img), done, 0, 0, 0x828282, tolerance, 50);
        const int seed = tolerance == 100 ? 122 : 115;
        EXPECT_EQ(px(img, 0, 0), (V{seed, seed, seed})) << tolerance;
        EXPECT_EQ(px(img, 1, 0), (V{115, 115, 115}));
        EXPECT_EQ(px(img, 2, 0), (V{115, 115, 115}));
        EXPECT_TRUE(done.get(0, 0));
    }
}

TEST(PaintFill, ColourCloseToTheSeedPaintsOnlyTheSeed) {
    // Fill 109, 91, 100 against the seed's 100s: every channel within 9.
    Bits img = wallImage();
    DoneBits done(4, 3);
    BitsFill(img, wholeRegion(img), done, 1, 1, 0x645B6D, 1000, 100);
    Bits want = wallImage();
    setPx(want, 1, 1, 100, 91, 109);
    EXPECT_TRUE(sameBits(want, img));

    // Ten off in one channel is enough to fill: red 110.
    Bits img2 = wallImage();
    CreateDoneBitsTable(done, img2);
    BitsFill(img2, wholeRegion(img2), done, 1, 1, 0x64646E, 0, 100);
    EXPECT_EQ(px(img2, 0, 2), (V{100, 100, 110}));
    EXPECT_EQ(px(img2, 3, 0), (V{100, 100, 110}));
}

TEST(PaintFill, StopsAtTheRegionAndOutsideTheImage) {
    // Region: columns 0 and 1 only; the right column keeps its grey.
    Bits img = wallImage();
    DoneBits done(4, 3);
    BitsFill(img, Region::rect(0, 0, 2, 3), done, 0, 0, 0x0000FF, 0, 100);
    for (int y = 0; y < 3; ++y) {
        EXPECT_EQ(px(img, 0, y), (V{0, 0, 255}));
        EXPECT_EQ(px(img, 1, y), (V{0, 0, 255}));
        EXPECT_EQ(px(img, 3, y), (V{100, 100, 100}));
    }
    EXPECT_EQ(px(img, 2, 2), (V{100, 100, 100}));
    EXPECT_TRUE(guardClear(img));

    // An L-shaped region (columns 0 and 1, and the pixel (3,0)): (3,0) is inside it but
    // joined to the rest only through (2,0) and (3,1), both outside, so it is not reached.
    Bits ell = wallImage();
    CreateDoneBitsTable(done, ell);
    const Region lShape = Region::rect(0, 0, 2, 3).united(Region::rect(3, 0, 4, 1));
    BitsFill(ell, lShape, done, 0, 0, 0x0000FF, 0, 100);
    EXPECT_EQ(px(ell, 1, 2), (V{0, 0, 255}));
    EXPECT_EQ(px(ell, 3, 0), (V{100, 100, 100}));
    EXPECT_EQ(px(ell, 2, 2), (V{100, 100, 100}));
    EXPECT_FALSE(done.get(3, 0));
    EXPECT_FALSE(done.get(2, 2));
    EXPECT_TRUE(done.get(1, 2));

    // A seed outside the image does nothing.
    Bits out = wallImage();
    CreateDoneBitsTable(done, out);
    BitsFill(out, wholeRegion(out), done, 4, 0, 0x0000FF, 0, 100);
    EXPECT_TRUE(sameBits(wallImage(), out));

    // A seed outside the region is not painted, though the fill runs from it.
    Bits seedOut = solidBits(3, 1, 100, 100, 100);
    CreateDoneBitsTable(done, seedOut);
    BitsFill(seedOut, Region::rect(1, 0, 3, 1), done, 0, 0, 0x0000FF, 0, 100);
    EXPECT_EQ(px(seedOut, 0, 0), (V{100, 100, 100}));
    EXPECT_EQ(px(seedOut, 1, 0), (V{0, 0, 255}));
    EXPECT_EQ(px(seedOut, 2, 0), (V{0, 0, 255}));
}

// Texture 1 x 1 of (60, 80, 100): with the guard column the tile period is 2, so the row
// alternates texture and black from x = 0.
TEST(PaintFill, TextureFillTilesFromTheOriginAndScalesByPressure) {
    const Bits tex = makeBits(1, 1, {{60, 80, 100}});
    Bits img = solidBits(4, 1, 100, 100, 100);
    DoneBits done(4, 1);
    BitsFillTexture(img, wholeRegion(img), done, 0, 0, tex, 0, 100);
    EXPECT_EQ(px(img, 0, 0), (V{60, 80, 100}));
    EXPECT_EQ(px(img, 1, 0), (V{0, 0, 0}));
    EXPECT_EQ(px(img, 2, 0), (V{60, 80, 100}));
    EXPECT_EQ(px(img, 3, 0), (V{0, 0, 0}));

    // Half pressure: seed 0.5*100 + 0.5*texture = 80, 90, 100; elsewhere T(100) = 50 plus
    // the halved texture (30, 40, 50) or black.
    Bits half = solidBits(4, 1, 100, 100, 100);
    CreateDoneBitsTable(done, half);
    BitsFillTexture(half, wholeRegion(half), done, 0, 0, tex, 0, 50);
    EXPECT_EQ(px(half, 0, 0), (V{80, 90, 100}));
    EXPECT_EQ(px(half, 1, 0), (V{50, 50, 50}));
    EXPECT_EQ(px(half, 2, 0), (V{80, 90, 100}));
    EXPECT_EQ(px(half, 3, 0), (V{50, 50, 50}));

    // A texture within 9 of the seed at the seed paints the seed alone.
    const Bits near = makeBits(1, 1, {{105, 95, 100}});
    Bits still = solidBits(4, 1, 100, 100, 100);
    CreateDoneBitsTable(done, still);
    BitsFillTexture(still, wholeRegion(still), done, 0, 0, near, 0, 100);
    EXPECT_EQ(px(still, 0, 0), (V{105, 95, 100}));
    EXPECT_EQ(px(still, 2, 0), (V{100, 100, 100}));
}

// A large fill runs to the far corner through a winding corridor, pass after pass.
TEST(PaintFill, SerpentineCorridorIsFilledToItsEnd) {
    // 9 x 9 with walls on rows 1, 3, 5, 7, open at alternate ends.
    Bits img = solidBits(9, 9, 255, 255, 255);
    for (int row = 1; row < 9; row += 2)
        for (int x = 0; x < 9; ++x) {
            const bool gap = ((row / 2) % 2 == 0) ? x == 8 : x == 0;
            if (!gap) setPx(img, x, row, 0, 0, 0);
        }
    DoneBits done(9, 9);
    BitsFill(img, wholeRegion(img), done, 0, 0, 0x00FF00, 0, 100);
    int filled = 0;
    for (int y = 0; y < 9; ++y)
        for (int x = 0; x < 9; ++x) filled += px(img, x, y) == V{0, 255, 0};
    EXPECT_EQ(filled, 5 * 9 + 4); // five open rows and four gaps
    EXPECT_EQ(px(img, 0, 8), (V{0, 255, 0}));
    EXPECT_EQ(px(img, 4, 7), (V{0, 0, 0}));
}

} // namespace
} // namespace ostrivex::test
