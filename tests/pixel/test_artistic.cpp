// Artistic filters on small images with results worked out by hand from their rules.
#include "pixel/bitfilter.h"
#include "pixel/random.h"
#include "pixel/region.h"
#include "filter_test_util.h"
#include "pixel_test_util.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <utility>
#include <vector>

using namespace ostrivex;
using namespace ostrivex::test;

namespace {

// A w x h image of one grey with alpha 9.
Bits greyImage(int w, int h, uint8_t v) {
    Bits b(w, h);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            uint8_t* p = b.pixel(x, y);
            p[0] = p[1] = p[2] = v;
            p[3] = 9;
        }
    return b;
}

void setGrey(Bits& b, int x, int y, uint8_t v) {
    uint8_t* p = b.pixel(x, y);
    p[0] = p[1] = p[2] = v;
}

// The blue channel of a w x h image, row by row.
std::vector<int> blues(const Bits& b) {
    std::vector<int> out;
    for (int y = 0; y < b.height(); ++y)
        for (int x = 0; x < b.width(); ++x) out.push_back(b(0, x, y));
    return out;
}

} // namespace

TEST(Artistic, PixelizeAveragesBlocksAndKeepsStaleAverages) {
    // Blue: 10 20 30 / 40 50 61 / 70 80 90, green = blue + 1, alpha 5.
    const Bits src = makeBits(3, 3, {{10, 11, 0, 5}, {20, 21, 0, 5}, {30, 31, 0, 5},
                                     {40, 41, 0, 5}, {50, 51, 0, 5}, {61, 62, 0, 5},
                                     {70, 71, 0, 5}, {80, 81, 0, 5}, {90, 91, 0, 5}});
    Loaded l(src);
    EXPECT_TRUE(sameBits(src, l.f.PIXELIZE(1)));
    // Size 2: blocks (0..1, 0..1) = 120 / 4 = 30, (2, 0..1) = 91 / 2 = 45 (truncated),
    // (0..1, 2) = 75, (2, 2) = 90: the edge blocks average only the pixels that exist.
    const Bits two = l.f.PIXELIZE(2);
    EXPECT_EQ(blues(two), (std::vector<int>{30, 30, 45, 30, 30, 45, 75, 75, 90}));
    EXPECT_EQ(two(1, 0, 0), 31);
    EXPECT_EQ(two(1, 2, 0), 46); // 93 / 2
    EXPECT_EQ(two(3, 1, 1), 5);

    // A region without column 0: (1, 0) comes before any block start and gets the zero
    // averages; (1, 1) and (1, 2) keep the averages of block (2, 0..1) from the row before.
    Loaded part(src, Region::rect(1, 0, 3, 3));
    EXPECT_EQ(blues(part.f.PIXELIZE(2)), (std::vector<int>{10, 0, 45, 40, 45, 45, 70, 45, 90}));
}

TEST(Artistic, HalftoneDotsFadeAndOverlap) {
    // Blue 40 40 80 / 40 40 80 / 100 100 120; radius 1, definition 3: limit 4, fade
    // 1, 0.75, 0.5 at squared distances 0, 1, 2. Cells at (0,0), (2,0), (0,2), (2,2); the
    // later cells paint over the shared column 2 and row 2.
    //   cell (0, 0): average 640 / 9 -> 71; cell (2, 0): column 2, 280 / 3 -> 93;
    //   cell (0, 2): row 2, 320 / 3 -> 107; cell (2, 2): 120.
    const Bits src = makeBits(3, 3, {{40, 0, 0}, {40, 0, 0}, {80, 0, 0},
                                     {40, 0, 0}, {40, 0, 0}, {80, 0, 0},
                                     {100, 0, 0}, {100, 0, 0}, {120, 0, 0}});
    Loaded l(src);
    // 35.5 -> 36, 53.25, 46.5 -> 46, 53.25, 71, 69.75, 53.5 -> 54, 80.25, 60.
    EXPECT_EQ(blues(l.f.HALFTONE(1, 3, 0)), (std::vector<int>{36, 53, 46, 53, 71, 70, 54, 80, 60}));
    // Intensity 100 halves the counts: 9 -> round(4.5) = 4, 3 -> 2, 1 -> round(0.5) = 0, so
    // the averages are 160, 140, 160 and, for the one-pixel cell, the sum 120 as it stands.
    EXPECT_EQ(blues(l.f.HALFTONE(1, 3, 100)),
              (std::vector<int>{80, 120, 70, 120, 160, 105, 80, 120, 60}));
    // Definition 0: limit 1, so the corners of a disc are black and its sides fade to 0.
    EXPECT_EQ(blues(l.f.HALFTONE(1, 0, 0)), (std::vector<int>{0, 0, 0, 0, 71, 0, 0, 0, 0}));
}

TEST(Artistic, OldPhotoThermiqueAndTheTwoTones) {
    const Bits src = makeBits(4, 2, {{100, 50, 200, 1}, {0, 0, 255, 2}, {10, 20, 30, 3},
                                     {30, 30, 10, 4}, {127, 127, 127, 5}, {128, 128, 128, 6},
                                     {0, 200, 0, 7}, {77, 77, 77, 8}});
    Loaded l(src);
    // L = round(0.071 b + 0.707 g + 0.222 r): 86.85 -> 87, 56.61 -> 57, 21.52 -> 22,
    // 25.54 -> 26, 127, 128, 141.4 -> 141, 77.
    const Bits old = l.f.OLDPHOTO();
    EXPECT_TRUE(sameBits(makeBits(4, 2, {{100, 87, 87, 1}, {0, 57, 57, 2}, {10, 22, 22, 3},
                                         {30, 26, 26, 4}, {127, 127, 127, 5}, {128, 128, 128, 6},
                                         {0, 141, 141, 7}, {77, 77, 77, 8}}),
                         old));
    // Only a strictly largest channel survives; ties for the largest and greys stay.
    EXPECT_TRUE(sameBits(makeBits(4, 2, {{0, 0, 200, 1}, {0, 0, 255, 2}, {0, 0, 30, 3},
                                         {30, 30, 10, 4}, {127, 127, 127, 5}, {128, 128, 128, 6},
                                         {0, 200, 0, 7}, {77, 77, 77, 8}}),
                         l.f.THERMIQUE()));
    // Dark is at most 127.5: (127, 127, 127) is dark, (128, 128, 128) bright.
    const Bits x = l.f.XBLACK();
    EXPECT_TRUE(sameBits(makeBits(4, 2, {{100, 50, 200, 1}, {0, 0, 255, 2}, {255, 255, 255, 3},
                                         {255, 255, 255, 4}, {255, 255, 255, 5}, {0, 0, 0, 6},
                                         {0, 200, 0, 7}, {255, 255, 255, 8}}),
                         x));
    EXPECT_TRUE(sameBits(makeBits(4, 2, {{100, 50, 200, 1}, {0, 0, 255, 2}, {0, 0, 0, 3},
                                         {0, 0, 0, 4}, {0, 0, 0, 5}, {255, 255, 255, 6},
                                         {0, 200, 0, 7}, {0, 0, 0, 8}}),
                         l.f.PHOTOCOP()));
    // XBLACK twice: dark pixels end black, bright ones white, not their source.
    l.f.SetBits(x);
    const Bits twice = l.f.XBLACK();
    EXPECT_EQ(twice(0, 2, 0), 0);
    EXPECT_EQ(twice(0, 1, 1), 255);
}

TEST(Artistic, LightAddsADiscThatFadesWithFocus) {
    const Bits src = greyImage(5, 5, 100);
    Loaded l(src);
    // Centre (2, 2), R = round(0.5 * 4) = 2; inside d2 < 4. Focus 0: add = round((1 - d / 2)
    // * 100) = 100 at the centre, 50 beside it, round(29.29) = 29 on the diagonals.
    const Bits out = l.f.Light(0.5f, 0.5f, 0.5f, 100, 0);
    EXPECT_EQ(blues(out), (std::vector<int>{100, 100, 100, 100, 100, //
                                            100, 129, 150, 129, 100, //
                                            100, 150, 200, 150, 100, //
                                            100, 129, 150, 129, 100, //
                                            100, 100, 100, 100, 100}));
    // Focus 100: the full intensity over the disc, capped at 255.
    const Bits full = l.f.Light(0.5f, 0.5f, 0.5f, 200, 100);
    EXPECT_EQ(full(2, 1, 1), 255);
    EXPECT_EQ(full(2, 2, 0), 100);
    // Focus 50: k = 0.5, beside the centre round(0.75 * 100) = 75.
    EXPECT_EQ(l.f.Light(0.5f, 0.5f, 0.5f, 100, 50)(1, 2, 1), 175);
    // A disc over the corner is cut by the region; alpha stays.
    const Bits corner = l.f.Light(0.0f, 0.0f, 0.5f, 100, 0);
    EXPECT_EQ(blues(corner), (std::vector<int>{200, 150, 100, 100, 100, //
                                               150, 129, 100, 100, 100, //
                                               100, 100, 100, 100, 100, //
                                               100, 100, 100, 100, 100, //
                                               100, 100, 100, 100, 100}));
    EXPECT_EQ(corner(3, 0, 0), 9);
    // Only region pixels change.
    Loaded part(src, Region::rect(2, 0, 5, 5));
    EXPECT_EQ(part.f.Light(0.5f, 0.5f, 0.5f, 100, 0)(0, 1, 2), 100);
}

TEST(Artistic, ScanlinesDarkenEveryOtherRowFromTheBoxTop) {
    const Bits src = makeBits(2, 4, {{10, 100, 200}, {40, 50, 60}, {10, 100, 200}, {40, 50, 60},
                                     {10, 100, 200}, {40, 50, 60}, {10, 100, 200}, {40, 50, 60}});
    Loaded l(src);
    EXPECT_TRUE(sameBits(src, l.f.Scanlines(0)));
    EXPECT_TRUE(sameBits(makeBits(2, 4, {{0, 70, 170}, {10, 20, 30}, {10, 100, 200}, {40, 50, 60},
                                         {0, 70, 170}, {10, 20, 30}, {10, 100, 200}, {40, 50, 60}}),
                         l.f.Scanlines(30)));
    // The stripes start at the box's top row (1), not at image row 0.
    Loaded part(src, Region::rect(0, 1, 1, 4));
    EXPECT_TRUE(sameBits(makeBits(2, 4, {{10, 100, 200}, {40, 50, 60}, {0, 70, 170}, {40, 50, 60},
                                         {10, 100, 200}, {40, 50, 60}, {0, 70, 170}, {40, 50, 60}}),
                         part.f.Scanlines(30)));
}

TEST(Artistic, TexturizeLaysTheTileWithOverlappingEdges) {
    // Tile 3 x 3, steps 2 and 2: only tile columns and rows 0 and 1 ever show, since each
    // copy's last column and row lie under the next copy. Blue 128 64 9 / 255 0 9 / 9 9 9.
    const Bits tile = makeBits(3, 3, {{128, 0, 0}, {64, 0, 0}, {9, 0, 0},
                                      {255, 0, 0}, {0, 0, 0}, {9, 0, 0},
                                      {9, 0, 0}, {9, 0, 0}, {9, 0, 0}});
    Bits src(4, 4);
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 4; ++x) {
            uint8_t* p = src.pixel(x, y);
            p[0] = 160;
            p[1] = 101;
            p[2] = 3;
            p[3] = 7;
        }
    Loaded l(src);
    const Bits out = l.f.Texturize(tile);
    // Factor 1: as is. Factor 0.5: 80, 50.5 -> 50, 1.5 -> 2. Factor 255/128: 318.75 -> 255,
    // 201.2 -> 201, 5.98 -> 6. Factor 0: black.
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 4; ++x) {
            std::vector<int> want;
            if (y % 2 == 0) want = x % 2 == 0 ? std::vector<int>{160, 101, 3} : std::vector<int>{80, 50, 2};
            else want = x % 2 == 0 ? std::vector<int>{255, 201, 6} : std::vector<int>{0, 0, 0};
            EXPECT_EQ((std::vector<int>{out(0, x, y), out(1, x, y), out(2, x, y)}), want) << x << "," << y;
            EXPECT_EQ(out(3, x, y), 7);
        }
    // A 1 x 1 tile would never step on: nothing changes.
    EXPECT_TRUE(sameBits(src, l.f.Texturize(makeBits(1, 1, {{0, 0, 0}}))));
}

TEST(Artistic, PaletteApplyNearestColourAndItsOwnDiffusion) {
    const int32_t bwr[3][3] = {{0, 0, 0}, {255, 255, 255}, {255, 0, 0}}; // red, green, blue
    // (r 200, g 30, b 20) is 105 from red; grey 100 is 300 from black, 355 from red.
    const Bits src = makeBits(2, 1, {{20, 30, 200, 4}, {100, 100, 100, 5}});
    Loaded l(src);
    EXPECT_TRUE(sameBits(makeBits(2, 1, {{0, 0, 255, 4}, {0, 0, 0, 5}}),
                         l.f.PaletteApply(false, bwr, 3)));
    // A tie goes to the first entry.
    const int32_t tie[2][3] = {{110, 100, 100}, {90, 100, 100}};
    EXPECT_EQ(l.f.PaletteApply(false, tie, 2)(2, 1, 0), 110);

    // Grey 100 everywhere, black and white, dithered (truncating):
    //   (0,0) black, err 100: (1,0) += 43 -> 143; no push down from column 0.
    //   (1,0) white, err -112: (2,0) += -49 -> 51; (1,1) += -28 -> 72.
    //   (2,0) black; the last column pushes nothing.
    //   (0,1) black, err 100: (1,1) += 43 -> 115.   (1,1) black, err 115: (2,1) += 50 -> 150.
    //   (2,1) white.
    const Bits grey = greyImage(3, 2, 100);
    Loaded g(grey);
    EXPECT_EQ(blues(g.f.PaletteApply(true, bwr, 2)), (std::vector<int>{0, 255, 0, 0, 0, 255}));
    EXPECT_EQ(blues(g.f.PaletteApply(false, bwr, 2)), (std::vector<int>{0, 0, 0, 0, 0, 0}));

    // An error of exactly 3 is not pushed: both pixels take red 97, though a pushed
    // error (+1 on red) would have tipped the second to red 104.
    const int32_t near3[2][3] = {{97, 100, 100}, {104, 100, 100}};
    const Bits two = greyImage(2, 1, 100);
    Loaded t(two);
    const Bits out = t.f.PaletteApply(true, near3, 2);
    EXPECT_EQ(out(2, 0, 0), 97);
    EXPECT_EQ(out(2, 1, 0), 97);
}

TEST(Artistic, StuckiDiffusesTheErrorOverThreeRows) {
    // Grey 100, level 0. Shares of an error e: e * 8 / 42, e * 4 / 42, e * 2 / 42, e / 42.
    //   row 0: 100 -> 0 (e 100: 19, 9, 4, 2); 119 -> 0 (e 119: 22, 11, 5, 2);
    //          100 + 9 + 22 = 131 -> 255 (e -124: -23, -11, -5, -2).
    //   row 1 carries 19 + 11 - 5 = 25, 9 + 22 - 11 = 20, 4 + 11 - 23 = -8:
    //          125 -> 0 (e 125: 23, 11); 100 + 20 + 23 = 143 -> 255 (e -112: -21, -10);
    //          100 - 8 + 11 - 21 = 82 -> 0.
    const Bits grey = greyImage(3, 2, 100);
    Loaded l(grey);
    const Bits out = l.f.StuckiBW(0);
    EXPECT_EQ(blues(out), (std::vector<int>{0, 0, 255, 0, 255, 0}));
    EXPECT_EQ(out(2, 2, 0), 255);
    EXPECT_EQ(out(1, 1, 1), 255);
    EXPECT_EQ(out(3, 0, 0), 9);

    // Level brightens: grey 60 with level 5 becomes 60 + 120 = 180 -> white, e -75 -> -14:
    // 166 -> white. Without level: 60 -> black, e 60 -> 11: 71 -> black.
    const Bits dim = greyImage(2, 2, 60);
    Loaded d(dim);
    EXPECT_EQ(blues(d.f.StuckiBW(5)), (std::vector<int>{255, 255, 255, 255}));
    EXPECT_EQ(blues(d.f.StuckiBW(0))[0], 0);
    EXPECT_EQ(blues(d.f.StuckiBW(0))[1], 0);
}

TEST(Artistic, SketchDrawsWhereTheNeighbourhoodChanges) {
    // Grey 90 with a centre of 120: every other pixel sees the centre once (e 30), the
    // centre sees 8 * 30 = 240. Weight 255: s = e * 255 / 510 -> 15 and 120.
    Bits src = greyImage(3, 3, 90);
    setGrey(src, 1, 1, 120);
    Loaded l(src);
    // On white with a black pencil: 255 - 15 = 240, 255 - 120 = 135.
    EXPECT_EQ(blues(l.f.SKETCH(255, true, 0x000000)),
              (std::vector<int>{240, 240, 240, 240, 135, 240, 240, 240, 240}));
    // In colour with a red pencil (0x0000FF): paper 90 + 165 / 2 = 172, centre 120 + 67 = 187.
    //   sides: blue 172 - 2580 / 255 = 162, red 172 + 1245 / 255 = 176;
    //   centre: blue 187 - 22440 / 255 = 99, red 187 + 8160 / 255 = 219.
    const Bits red = l.f.SKETCH(255, false, 0x0000FF);
    EXPECT_EQ(red(0, 0, 0), 162);
    EXPECT_EQ(red(1, 0, 0), 162);
    EXPECT_EQ(red(2, 0, 0), 176);
    EXPECT_EQ(red(0, 1, 1), 99);
    EXPECT_EQ(red(1, 1, 1), 99);
    EXPECT_EQ(red(2, 1, 1), 219);
    EXPECT_EQ(red(3, 1, 1), 9);
    // Weight 0 leaves only the paper.
    EXPECT_EQ(blues(l.f.SKETCH(0, true, 0)), std::vector<int>(9, 255));
    EXPECT_EQ(l.f.SKETCH(0, false, 0)(0, 1, 1), 187);
}

TEST(Artistic, PaintingStrokesFollowTheEdges) {
    // A vertical edge: columns 0..2 black, 3..6 grey 210.
    Bits edge = greyImage(7, 7, 210);
    for (int y = 0; y < 7; ++y)
        for (int x = 0; x < 3; ++x) setGrey(edge, x, y, 0);
    Loaded l(edge);
    const Bits out = l.f.PAINTING();
    // On the edge the strokes run down the columns and keep them.
    EXPECT_EQ(out(0, 3, 3), 210);
    EXPECT_EQ(out(0, 2, 3), 0);
    // In flat parts they run along (1, 1): (0, 0) averages (0,0) x 4, (1,1), (2,2), (3,3)
    // = 210 / 7 = 30; (1, 3) averages columns 0, 0, 0, 1, 2, 3, 4 = 420 / 7 = 60.
    EXPECT_EQ(out(0, 0, 0), 30);
    EXPECT_EQ(out(2, 1, 3), 60);
    EXPECT_EQ(out(0, 6, 6), 210);
    EXPECT_EQ(out(3, 1, 3), 9);

    // A ramp grey = 20 (x + y): at (1, 3) gx = gy = 40, so the stroke runs across it along
    // (1, -1): (0,6) (0,5) (0,4) (1,3) (2,2) (3,1) (4,0) = 120 100 80 80 80 80 80 -> 88.
    Bits ramp(7, 7);
    for (int y = 0; y < 7; ++y)
        for (int x = 0; x < 7; ++x) setGrey(ramp, x, y, uint8_t(20 * (x + y)));
    Loaded r(ramp);
    EXPECT_EQ(r.f.PAINTING()(1, 1, 3), 88);
    // One colour stays one colour.
    const Bits flat = greyImage(4, 4, 77);
    Loaded f(flat);
    EXPECT_TRUE(sameBits(flat, f.f.PAINTING()));
}

TEST(Artistic, DissolveTurnsAShareOfPixelsIntoTheColour) {
    const Bits src = greyImage(20, 20, 50);
    Loaded l(src);
    Randomize(7);
    EXPECT_TRUE(sameBits(src, l.f.Dissolve(0, 0x00FF00)));
    const Bits all = l.f.Dissolve(100, 0x00FF00);
    EXPECT_EQ(all(1, 13, 7), 255);
    EXPECT_EQ(all(0, 13, 7), 0);
    EXPECT_EQ(all(3, 13, 7), 9);

    Randomize(11);
    const Bits half = l.f.Dissolve(50, 0x00FF00);
    int turned = 0;
    for (int y = 0; y < 20; ++y)
        for (int x = 0; x < 20; ++x) {
            const bool isColour = half(0, x, y) == 0 && half(1, x, y) == 255 && half(2, x, y) == 0;
            const bool isSource = half(0, x, y) == 50 && half(1, x, y) == 50 && half(2, x, y) == 50;
            EXPECT_TRUE(isColour || isSource) << x << "," << y;
            turned += isColour;
        }
    // 400 draws at one half: the count lies well within 140..260.
    EXPECT_GT(turned, 140);
    EXPECT_LT(turned, 260);
    // The same seed gives the same pixels; outside the region nothing changes.
    Randomize(11);
    EXPECT_TRUE(sameBits(half, l.f.Dissolve(50, 0x00FF00)));
    Loaded part(src, Region::rect(0, 0, 10, 20));
    const Bits left = part.f.Dissolve(100, 0x00FF00);
    EXPECT_EQ(left(1, 9, 3), 255);
    EXPECT_EQ(left(1, 10, 3), 50);
}

TEST(Artistic, GridDrawsLinesFromTheBoxCorner) {
    const Bits src = greyImage(5, 5, 100);
    Loaded l(src);
    // Columns 0, 2, 4 and rows 0, 3, fully white.
    EXPECT_EQ(blues(l.f.Grid(2, 3, false, 0xFFFFFF, 255)),
              (std::vector<int>{255, 255, 255, 255, 255, //
                                255, 100, 255, 100, 255, //
                                255, 100, 255, 100, 255, //
                                255, 255, 255, 255, 255, //
                                255, 100, 255, 100, 255}));
    // Steps of 3 with the margins forced: columns 0, 3, 4 and rows 0, 3, 4; black at
    // opacity 128: 100 * 127 / 255 = 49.8 -> 50.
    EXPECT_EQ(blues(l.f.Grid(3, 3, true, 0x000000, 128)),
              (std::vector<int>{50, 50, 50, 50, 50, //
                                50, 100, 100, 50, 50, //
                                50, 100, 100, 50, 50, //
                                50, 50, 50, 50, 50, //
                                50, 50, 50, 50, 50}));
    // From the corner of the box (1, 1) of a selection.
    Loaded part(src, Region::rect(1, 1, 4, 4));
    EXPECT_EQ(blues(part.f.Grid(2, 2, false, 0xFFFFFF, 255)),
              (std::vector<int>{100, 100, 100, 100, 100, //
                                100, 255, 255, 255, 100, //
                                100, 255, 100, 255, 100, //
                                100, 255, 255, 255, 100, //
                                100, 100, 100, 100, 100}));
}

TEST(Artistic, OldPhotoRoundsHalvesToEven) {
    // 0.222 * 250 = 55.5 -> 56 and 0.707 * 50 + 0.071 * 50 + 0.222 * 25 = 44.45 -> 44;
    // 0.071 * 0 + 0.707 * 0 + 0.222 * 252.25 is not a pixel, but red 125 gives 27.75 -> 28
    // and (b 100, g 0, r 0) gives 7.1 -> 7.
    const Bits src = makeBits(4, 1, {{0, 0, 250}, {50, 50, 25}, {0, 0, 125}, {100, 0, 0}});
    Loaded l(src);
    EXPECT_TRUE(sameBits(makeBits(4, 1, {{0, 56, 56}, {50, 44, 44}, {0, 28, 28}, {100, 7, 7}}),
                         l.f.OLDPHOTO()));
    // Every pixel whose exact sum ends in .5 (71 b + 707 g + 222 r = 500 mod 1000) is
    // rounded as the formula's own double sum rounds with nearbyint.
    std::vector<std::array<int, 3>> ties;
    for (int b = 0; b < 256; b += 3)
        for (int g = 0; g < 256; ++g)
            for (int r = 0; r < 256; ++r)
                if ((71 * b + 707 * g + 222 * r) % 1000 == 500) ties.push_back({b, g, r});
    ASSERT_GT(ties.size(), 1000u);
    Bits tieImage(int(ties.size()), 1);
    for (size_t i = 0; i < ties.size(); ++i) {
        uint8_t* p = tieImage.pixel(int(i), 0);
        p[0] = uint8_t(ties[i][0]);
        p[1] = uint8_t(ties[i][1]);
        p[2] = uint8_t(ties[i][2]);
    }
    Loaded t(tieImage);
    const Bits out = t.f.OLDPHOTO();
    for (size_t i = 0; i < ties.size(); ++i) {
        const auto& c = ties[i];
        const int want = int(std::nearbyint(0.071 * c[0] + 0.707 * c[1] + 0.222 * c[2]));
        ASSERT_EQ(out(1, int(i), 0), want) << c[0] << "," << c[1] << "," << c[2];
    }
}

TEST(Artistic, EmptyRegionChangesNothingAndStillReportsDone) {
    const Bits src = patternBits(6, 5);
    Loaded l(src, Region());
    const cBitFilter::ClockFunction realClock = cBitFilter::clock;
    cBitFilter::clock = []() -> uint32_t { return 0; };
    std::vector<int> reported;
    l.f.Progress = [&](int32_t& percent) { reported.push_back(percent); };
    const int32_t palette[1][3] = {{1, 2, 3}};
    const std::vector<std::pair<const char*, Bits>> results = {
        {"PIXELIZE", l.f.PIXELIZE(2)},
        {"HALFTONE", l.f.HALFTONE(1, 50, 0)},
        {"OLDPHOTO", l.f.OLDPHOTO()},
        {"THERMIQUE", l.f.THERMIQUE()},
        {"XBLACK", l.f.XBLACK()},
        {"PHOTOCOP", l.f.PHOTOCOP()},
        {"Scanlines", l.f.Scanlines(30)},
        {"Texturize", l.f.Texturize(patternBits(3, 3))},
        {"PaletteApply", l.f.PaletteApply(true, palette, 1)},
        {"StuckiBW", l.f.StuckiBW(0)},
        {"SKETCH", l.f.SKETCH(255, true, 0)},
        {"PAINTING", l.f.PAINTING()},
        {"Dissolve", l.f.Dissolve(100, 0)},
        {"Grid", l.f.Grid(1, 1, true, 0, 255)},
        {"Light", l.f.Light(0.5f, 0.5f, 0.5f, 100, 0)},
        {"STRETCH", l.f.STRETCH(50, 50, true)},
        {"ROTATE", l.f.ROTATE(45, true)},
        {"FOLD", l.f.FOLD(50, 50, true)},
        {"TWIRL", l.f.TWIRL(50, 0, true)},
        {"BEND", l.f.BEND(0, true)},
        {"WAVES", l.f.WAVES(30, 40, 0)},
        {"TILE", l.f.TILE(2)},
        {"LENS", l.f.LENS(0.5f, 0.5f, 0.5f, 100)},
        {"GLASS slanting", l.f.GLASS("slanting", 0)},
        {"GLASS curtain", l.f.GLASS("curtain", 3)},
    };
    cBitFilter::clock = realClock;
    for (const auto& [name, out] : results) EXPECT_TRUE(sameBits(src, out)) << name;
    // Each one ends with 100, and with a test clock standing still nothing else is raised.
    EXPECT_EQ(reported, std::vector<int>(results.size(), 100));
}
