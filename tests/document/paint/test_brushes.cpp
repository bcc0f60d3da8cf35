// The round brushes and the done table of a stroke.
#include "paint_test_util.h"
#include "pixel/random.h"

#include <gtest/gtest.h>

namespace ostrivex::test {
namespace {

using V = std::vector<int>;

TEST(PaintBrush, SizeOneIsOnePixelSizeThreeIsRadiusTwo) {
    // Size 1: r = Round(0.5) = 0 (ties to even): the centre only.
    Bits one = solidBits(5, 5, 0, 0, 0);
    DoneBits done(5, 5);
    BitsBrush(one, wholeRegion(one), done, 2, 2, 1, 100, 0xFFFFFF);
    Bits want = solidBits(5, 5, 0, 0, 0);
    setPx(want, 2, 2, 255, 255, 255);
    EXPECT_TRUE(sameBits(want, one));

    // Size 3: r = Round(1.5) = 2; inside when dx^2 + dy^2 < 5: the 3 x 3 block and the
    // four tips at distance 2, not the (2,1) knight offsets nor the corners.
    Bits three = solidBits(5, 5, 0, 0, 0);
    CreateDoneBitsTable(done, three);
    BitsBrush(three, wholeRegion(three), done, 2, 2, 3, 100, 0xFFFFFF);
    const char* mask[5] = {"..#..", ".###.", "#####", ".###.", "..#.."};
    for (int y = 0; y < 5; ++y)
        for (int x = 0; x < 5; ++x)
            EXPECT_EQ(three(1, x, y), mask[y][x] == '#' ? 255 : 0) << x << "," << y;
}

TEST(PaintBrush, SecondPassInOneStrokeChangesNothingUntilANewTable) {
    Bits img = solidBits(3, 1, 0, 0, 0);
    DoneBits done;
    CreateDoneBitsTable(done, img);
    // Half pressure of white over black: 127.5 rounds to the even 128.
    BitsBrush(img, wholeRegion(img), done, 1, 0, 1, 50, 0xFFFFFF);
    EXPECT_EQ(px(img, 1, 0), (V{128, 128, 128}));
    BitsBrush(img, wholeRegion(img), done, 1, 0, 1, 50, 0xFFFFFF);
    EXPECT_EQ(px(img, 1, 0), (V{128, 128, 128}));
    // A new stroke blends again: 255/2 + 128/2 = 191.5 -> 192.
    CreateDoneBitsTable(done, img);
    BitsBrush(img, wholeRegion(img), done, 1, 0, 1, 50, 0xFFFFFF);
    EXPECT_EQ(px(img, 1, 0), (V{192, 192, 192}));
    EXPECT_EQ(px(img, 0, 0), (V{0, 0, 0}));

    // Outside the region nothing is painted and nothing is marked done.
    Bits img2 = solidBits(3, 1, 0, 0, 0);
    CreateDoneBitsTable(done, img2);
    BitsBrush(img2, Region::rect(0, 0, 1, 1), done, 0, 0, 3, 100, 0x0000FF);
    EXPECT_EQ(px(img2, 0, 0), (V{0, 0, 255}));
    EXPECT_EQ(px(img2, 1, 0), (V{0, 0, 0}));
    EXPECT_TRUE(done.get(0, 0));
    EXPECT_FALSE(done.get(1, 0));
    EXPECT_TRUE(guardClear(img2));
}

// Size 1 on (0,0)-(3,0): n = 4, spacing 0.1, step 0.075, Round(4 / 0.1) = 40, so 41
// stamps from x = 0 to x = 3 at sub-pixel spacing; each pixel is painted once.
TEST(PaintBrush, BrushLineStampsEachPixelOnceAlongTheWay) {
    Bits img = solidBits(5, 1, 0, 0, 0);
    DoneBits done(5, 1);
    BitsBrushLine(img, wholeRegion(img), done, 0, 0, 3, 0, 1, 50, 0xFFFFFF, BrushKind::Brush);
    for (int x = 0; x < 4; ++x) EXPECT_EQ(px(img, x, 0), (V{128, 128, 128})) << x;
    EXPECT_EQ(px(img, 4, 0), (V{0, 0, 0}));

    // Darken at 50: k = 0.5; 101 -> 50.5 -> 50, 3 -> 1.5 -> 2, 200 -> 100.
    Bits dark = makeBits(3, 1, {{101, 3, 200}, {101, 3, 200}, {101, 3, 200}});
    CreateDoneBitsTable(done, dark);
    BitsBrushLine(dark, wholeRegion(dark), done, 2, 0, 1, 0, 1, 50, 0, BrushKind::Darken);
    EXPECT_EQ(px(dark, 0, 0), (V{101, 3, 200}));
    EXPECT_EQ(px(dark, 1, 0), (V{50, 2, 100}));
    EXPECT_EQ(px(dark, 2, 0), (V{50, 2, 100}));
}

TEST(PaintBrush, BrightnessTableCapsWhenLightening) {
    // Lighten at 50: k = 1.5; 100 -> 150, 200 -> 300 capped at 255, 5 -> 7.5 -> 8.
    Bits img = makeBits(2, 1, {{100, 200, 5}, {100, 200, 5}});
    DoneBits done(2, 1);
    BitsBrightness(img, wholeRegion(img), done, 0, 0, 1, 50, true);
    EXPECT_EQ(px(img, 0, 0), (V{150, 255, 8}));
    EXPECT_EQ(px(img, 1, 0), (V{100, 200, 5}));
    BitsBrightness(img, wholeRegion(img), done, 0, 0, 1, 50, true); // done: no change
    EXPECT_EQ(px(img, 0, 0), (V{150, 255, 8}));
    // Darken at 100: everything to 0.
    BitsBrightness(img, wholeRegion(img), done, 1, 0, 1, 100, false);
    EXPECT_EQ(px(img, 1, 0), (V{0, 0, 0}));
}

TEST(PaintBrush, AirbrushFallsOffFromTheCentreAndBuildsUp) {
    Randomize(7);
    Bits img = solidBits(5, 5, 0, 0, 0);
    DoneBits done(5, 5);
    // Density 100 hits every pixel; falloff 0 gives F = 1, t = 1 - d/2 at radius 2.
    BitsAirbrush(img, wholeRegion(img), done, 2, 2, 3, 100, 100, 0, 0xFFFFFF);
    EXPECT_EQ(px(img, 2, 2), (V{255, 255, 255}));   // d = 0
    EXPECT_EQ(px(img, 3, 2), (V{128, 128, 128}));   // d = 1: 127.5 -> 128
    EXPECT_EQ(px(img, 1, 1), (V{75, 75, 75}));      // d = 1.414: 255 * 0.2929 = 74.7
    EXPECT_EQ(px(img, 4, 2), (V{0, 0, 0}));         // d = 2: t = 0
    EXPECT_EQ(px(img, 0, 0), (V{0, 0, 0}));         // outside the circle
    // No done table: a second spray builds up: 255/2 + 128/2 = 191.5 -> 192.
    BitsAirbrush(img, wholeRegion(img), done, 2, 2, 3, 100, 100, 0, 0xFFFFFF);
    EXPECT_EQ(px(img, 3, 2), (V{192, 192, 192}));

    // Falloff 100 gives F = 0: flat strength A = pressure/100 = 0.2 over the circle.
    Bits flat = solidBits(5, 5, 0, 0, 0);
    BitsAirbrush(flat, wholeRegion(flat), done, 2, 2, 3, 20, 100, 100, 0x0000FF);
    EXPECT_EQ(px(flat, 4, 2), (V{0, 0, 51}));
    EXPECT_EQ(px(flat, 1, 1), (V{0, 0, 51}));
    EXPECT_EQ(px(flat, 4, 3), (V{0, 0, 0}));

    // Density 0 (with a fixed sequence): nothing lands.
    Randomize(7);
    Bits none = solidBits(5, 5, 0, 0, 0);
    BitsAirbrush(none, wholeRegion(none), done, 2, 2, 3, 100, 0, 0, 0xFFFFFF);
    EXPECT_TRUE(sameBits(solidBits(5, 5, 0, 0, 0), none));
}

// Texture 2 x 1: A, B; the tile period is the upper bound 3, so every third column reads
// the texture's black guard column: A, B, black, A, B from x = 0.
TEST(PaintBrush, TexturedBrushTilesFromTheImageOrigin) {
    const Bits tex = makeBits(2, 1, {{10, 20, 30}, {40, 50, 60}});
    Bits img = solidBits(5, 1, 200, 200, 200);
    DoneBits done(5, 1);
    // Size 5: r = Round(2.5) = 2, covering the whole row from x = 2.
    BitsMasked(img, wholeRegion(img), done, 2, 0, tex, 5, 100);
    EXPECT_EQ(px(img, 0, 0), (V{10, 20, 30}));
    EXPECT_EQ(px(img, 1, 0), (V{40, 50, 60}));
    EXPECT_EQ(px(img, 2, 0), (V{0, 0, 0}));
    EXPECT_EQ(px(img, 3, 0), (V{10, 20, 30}));
    EXPECT_EQ(px(img, 4, 0), (V{40, 50, 60}));

    // Along a line at half pressure, once per pixel: (10+200)/2 = 105, ...
    Bits line = solidBits(5, 1, 200, 200, 200);
    DoneBits lineDone(5, 1);
    BitsMaskedLine(line, wholeRegion(line), lineDone, 3, 0, 4, 0, 1, 50, tex);
    EXPECT_EQ(px(line, 2, 0), (V{200, 200, 200}));
    EXPECT_EQ(px(line, 3, 0), (V{105, 110, 115}));
    EXPECT_EQ(px(line, 4, 0), (V{120, 125, 130}));
}

// One pixel (size 1) with neighbours left 10, up 20, down 30, right 41 in blue; 1, 2, 3, 5
// in green; 255 all round in red.
Bits softenCase(uint8_t centre) {
    Bits img = solidBits(3, 3, 0, 0, 0);
    setPx(img, 0, 1, 10, 1, 255);
    setPx(img, 1, 0, 20, 2, 255);
    setPx(img, 1, 2, 30, 3, 255);
    setPx(img, 2, 1, 41, 5, 255);
    setPx(img, 1, 1, centre, centre, centre);
    return img;
}

TEST(PaintSoften, WeightedAverageRepeatFlagAndInPlaceReading) {
    // Pressure 100: K = 0, divisor 4: 101 \ 4 = 25, 11 \ 4 = 2, 1020 \ 4 = 255.
    Bits img = softenCase(90);
    DoneBits done(3, 3);
    BitsSoften(img, wholeRegion(img), done, 1, 1, 1, 100, false);
    EXPECT_EQ(px(img, 1, 1), (V{25, 2, 255}));
    EXPECT_EQ(px(img, 0, 1), (V{10, 1, 255}));

    // Pressure 50 from a centre of 90: K = 5, divisor 9: (450 + 101) \ 9 = 61,
    // (450 + 11) \ 9 = 51, (450 + 1020) \ 9 = 163.
    Bits fresh = softenCase(90);
    DoneBits freshDone(3, 3);
    BitsSoften(fresh, wholeRegion(fresh), freshDone, 1, 1, 1, 50, false);
    EXPECT_EQ(px(fresh, 1, 1), (V{61, 51, 163}));
    // Same stroke without the repeat flag: unchanged.
    BitsSoften(fresh, wholeRegion(fresh), freshDone, 1, 1, 1, 50, false);
    EXPECT_EQ(px(fresh, 1, 1), (V{61, 51, 163}));
    // With it, again: (305 + 101) \ 9 = 45, (255 + 11) \ 9 = 29, (815 + 1020) \ 9 = 203.
    BitsSoften(fresh, wholeRegion(fresh), freshDone, 1, 1, 1, 50, true);
    EXPECT_EQ(px(fresh, 1, 1), (V{45, 29, 203}));

    // Neighbours are read as already changed: in the pair (0,1) = 0, (1,1) = 90, the left
    // pixel goes first (90 \ 4 = 22) and the right one then sees 22: 22 \ 4 = 5.
    Bits pair = solidBits(3, 3, 0, 0, 0);
    setPx(pair, 1, 1, 90, 90, 90);
    DoneBits pairDone(3, 3);
    BitsSoften(pair, Region::rect(0, 1, 2, 2), pairDone, 1, 1, 3, 100, false);
    EXPECT_EQ(px(pair, 0, 1), (V{22, 22, 22}));
    EXPECT_EQ(px(pair, 1, 1), (V{5, 5, 5}));
    EXPECT_EQ(px(pair, 2, 1), (V{0, 0, 0}));
}

// A one-point brush line of size 1 stamps 11 times (Round(1 / 0.1) = 10, from 0 to 10) on
// the same pixel: once for the kinds that keep to the done table, 11 times for kind 2.
// Pressure 50 (K = 5, divisor 9) from a centre of 90, blue: 61, 45, 36, 31, 28, 26, 25, 25...
// green: 51, 29, 17, 10, 6, 4, 3, 2, 2...; red: 163, 203, 226, 238, 245, 249, 251, 252, 253.
TEST(PaintSoften, BrushLineKindsOneAndTwoDifferInRepeating) {
    Bits once = softenCase(90);
    DoneBits done(3, 3);
    BitsBrushLine(once, wholeRegion(once), done, 1, 1, 1, 1, 1, 50, 0, BrushKind::Soften);
    EXPECT_EQ(px(once, 1, 1), (V{61, 51, 163}));

    Bits again = softenCase(90);
    DoneBits againDone(3, 3);
    BitsBrushLine(again, wholeRegion(again), againDone, 1, 1, 1, 1, 1, 50, 0,
                  BrushKind::SoftenRepeat);
    EXPECT_EQ(px(again, 1, 1), (V{25, 2, 253}));

    // Kind 4 lightens once: 90 * 1.5 = 135 in every channel.
    Bits light = solidBits(3, 3, 90, 90, 90);
    DoneBits lightDone(3, 3);
    BitsBrushLine(light, wholeRegion(light), lightDone, 1, 1, 1, 1, 1, 50, 0,
                  BrushKind::Lighten);
    EXPECT_EQ(px(light, 1, 1), (V{135, 135, 135}));
    EXPECT_EQ(px(light, 0, 1), (V{90, 90, 90}));

    // Kind 3 sharpens once: centre 100 among 90s at pressure 100: (800 - 360) \ 4 = 110;
    // a second stamp would have given (880 - 360) \ 4 = 130.
    Bits sharp = solidBits(3, 3, 90, 90, 90);
    setPx(sharp, 1, 1, 100, 100, 100);
    DoneBits sharpDone(3, 3);
    BitsBrushLine(sharp, wholeRegion(sharp), sharpDone, 1, 1, 1, 1, 1, 100, 0,
                  BrushKind::Sharpen);
    EXPECT_EQ(px(sharp, 1, 1), (V{110, 110, 110}));
}

TEST(PaintSharpen, KernelFromPressureTruncatesAndClamps) {
    // Pressure 100: K = Round(15 - 6.67) = 8, divisor 4.
    // Blue: centre 100, neighbours 10, 20, 30, 40: (800 - 100) \ 4 = 175.
    // Green: centre 20, neighbours 50 each: (160 - 200) \ 4 = -10 -> 0.
    // Red: centre 200, neighbours 0: 1600 \ 4 = 400 -> 255.
    Bits img = solidBits(3, 3, 0, 50, 0);
    setPx(img, 0, 1, 10, 50, 0);
    setPx(img, 1, 0, 20, 50, 0);
    setPx(img, 1, 2, 30, 50, 0);
    setPx(img, 2, 1, 40, 50, 0);
    setPx(img, 1, 1, 100, 20, 200);
    DoneBits done(3, 3);
    BitsSharpen(img, wholeRegion(img), done, 1, 1, 1, 100);
    EXPECT_EQ(px(img, 1, 1), (V{175, 0, 255}));
    BitsSharpen(img, wholeRegion(img), done, 1, 1, 1, 100); // done in this stroke
    EXPECT_EQ(px(img, 1, 1), (V{175, 0, 255}));

    // Pressure 0: K = 15, divisor 11. Blue: (1500 - 100) \ 11 = 127 (127.3).
    Bits low = solidBits(3, 3, 0, 0, 0);
    setPx(low, 0, 1, 10, 1, 0);
    setPx(low, 1, 0, 20, 1, 0);
    setPx(low, 1, 2, 30, 1, 0);
    setPx(low, 2, 1, 40, 0, 0);
    setPx(low, 1, 1, 100, 10, 0);
    DoneBits lowDone(3, 3);
    BitsSharpen(low, wholeRegion(low), lowDone, 1, 1, 1, 0);
    EXPECT_EQ(low(0, 1, 1), 127);
    // Green at pressure 0: (150 - 3) \ 11 = 13 (13.4).
    EXPECT_EQ(low(1, 1, 1), 13);
}

} // namespace
} // namespace ostrivex::test
