// The gradient tool's pixels on small images, worked out by hand.
#include "document/paint/paint_gradient.h"

#include "document/paint/paint_test_util.h"

#include <gtest/gtest.h>

namespace ostrivex {
namespace {

using test::px;
using test::solidBits;
using test::wholeRegion;

// The blue channel of each pixel of row y.
std::vector<int> blueRow(const Bits& b, int y) {
    std::vector<int> out;
    for (int x = 0; x < b.width(); ++x) out.push_back(b(0, x, y));
    return out;
}

GradientParams blackToWhite(int x1, int y1, int x2, int y2) {
    GradientParams s;
    s.x1 = x1, s.y1 = y1, s.x2 = x2, s.y2 = y2;
    s.colour1 = 0x000000;
    s.colour2 = 0xFFFFFF;
    s.pressure = 100;
    return s;
}

TEST(Gradient, LinearRunsFromColourOneToColourTwoAndRoundsTiesToEven) {
    Bits b = solidBits(5, 1, 100, 100, 100);
    BitsGradient(b, wholeRegion(b), blackToWhite(0, 0, 4, 0));
    // w = 0, .25, .5, .75, 1 of 255: 0, 63.75, 127.5 (even: 128), 191.25, 255.
    EXPECT_EQ(blueRow(b, 0), (std::vector<int>{0, 64, 128, 191, 255}));
    EXPECT_EQ(px(b, 2, 0), (std::vector<int>{128, 128, 128}));
    EXPECT_TRUE(test::guardClear(b));
}

TEST(Gradient, PressureBlendsOverTheImage) {
    Bits b = solidBits(5, 1, 100, 100, 100);
    GradientParams s = blackToWhite(0, 0, 4, 0);
    s.pressure = 50;
    BitsGradient(b, wholeRegion(b), s);
    // g * .5 + 50: 50, 81.875, 113.75, 145.625, 177.5 (even: 178).
    EXPECT_EQ(blueRow(b, 0), (std::vector<int>{50, 82, 114, 146, 178}));
}

TEST(Gradient, ChannelsFollowTheirOwnColours) {
    Bits b = solidBits(5, 1, 0, 0, 0);
    GradientParams s = blackToWhite(0, 0, 4, 0);
    s.colour1 = 0x0000FF; // red
    s.colour2 = 0xFF0000; // blue
    BitsGradient(b, wholeRegion(b), s);
    // Blue, green, red.
    EXPECT_EQ(px(b, 0, 0), (std::vector<int>{0, 0, 255}));
    EXPECT_EQ(px(b, 1, 0), (std::vector<int>{64, 0, 191}));   // 63.75, 191.25
    EXPECT_EQ(px(b, 2, 0), (std::vector<int>{128, 0, 128})); // 127.5 both ways
    EXPECT_EQ(px(b, 4, 0), (std::vector<int>{255, 0, 0}));
}

TEST(Gradient, EndColoursRunOnBeforeTheStartAndPastTheEnd) {
    Bits b = solidBits(7, 1, 100, 100, 100);
    BitsGradient(b, wholeRegion(b), blackToWhite(2, 0, 4, 0));
    EXPECT_EQ(blueRow(b, 0), (std::vector<int>{0, 0, 0, 128, 255, 255, 255}));
}

TEST(Gradient, FrequencyTwoGoesThereAndBack) {
    Bits b = solidBits(5, 1, 100, 100, 100);
    GradientParams s = blackToWhite(0, 0, 4, 0);
    s.frequency = 2;
    BitsGradient(b, wholeRegion(b), s);
    // u = 0, .5, 1, 1.5, 2: the second run is mirrored and ends on colour 1.
    EXPECT_EQ(blueRow(b, 0), (std::vector<int>{0, 128, 255, 128, 0}));
    // Frequency 0 counts as 1.
    Bits c = solidBits(5, 1, 100, 100, 100);
    s.frequency = 0;
    BitsGradient(c, wholeRegion(c), s);
    EXPECT_EQ(blueRow(c, 0), (std::vector<int>{0, 64, 128, 191, 255}));
}

TEST(Gradient, LinearDiagonalProjectsOntoTheDrag) {
    Bits b = solidBits(3, 3, 100, 100, 100);
    BitsGradient(b, wholeRegion(b), blackToWhite(0, 0, 2, 2));
    // t = (x * 2 + y * 2) / 8.
    EXPECT_EQ(blueRow(b, 0), (std::vector<int>{0, 64, 128}));
    EXPECT_EQ(blueRow(b, 1), (std::vector<int>{64, 128, 191}));
    EXPECT_EQ(blueRow(b, 2), (std::vector<int>{128, 191, 255}));
}

TEST(Gradient, RadialGoesByDistanceFromThePress) {
    Bits b = solidBits(5, 5, 100, 100, 100);
    GradientParams s = blackToWhite(2, 2, 4, 2); // radius 2
    s.radial = true;
    BitsGradient(b, wholeRegion(b), s);
    EXPECT_EQ(b(0, 2, 2), 0);
    EXPECT_EQ(b(0, 3, 2), 128); // d 1: 127.5
    EXPECT_EQ(b(0, 2, 1), 128);
    EXPECT_EQ(b(0, 4, 2), 255);
    EXPECT_EQ(b(0, 3, 3), 180); // d sqrt 2: 255 * 0.7071 = 180.3
    EXPECT_EQ(b(0, 0, 0), 255); // past the radius
}

TEST(Gradient, TransparentFadesColourOneIntoTheImage) {
    Bits b = solidBits(5, 1, 100, 100, 100);
    GradientParams s = blackToWhite(0, 0, 4, 0);
    s.transparent = true;
    BitsGradient(b, wholeRegion(b), s);
    // Weight of black 1, .75, .5, .25, 0 over 100.
    EXPECT_EQ(blueRow(b, 0), (std::vector<int>{0, 25, 50, 75, 100}));

    Bits c = solidBits(5, 1, 100, 100, 100);
    s.colour1 = 0xFFFFFF;
    s.pressure = 50;
    BitsGradient(c, wholeRegion(c), s);
    // a = .5, .375, .25, .125, 0: 177.5 (even: 178), 158.125, 138.75, 119.375, 100.
    EXPECT_EQ(blueRow(c, 0), (std::vector<int>{178, 158, 139, 119, 100}));
}

TEST(Gradient, OnlyTheRegionChangesAndAClickChangesNothing) {
    Bits b = solidBits(5, 2, 100, 100, 100);
    BitsGradient(b, Region::rect(1, 1, 3, 2), blackToWhite(0, 0, 4, 0));
    EXPECT_EQ(blueRow(b, 0), (std::vector<int>{100, 100, 100, 100, 100}));
    EXPECT_EQ(blueRow(b, 1), (std::vector<int>{100, 64, 128, 100, 100}));

    Bits c = solidBits(3, 1, 100, 100, 100);
    BitsGradient(c, wholeRegion(c), blackToWhite(1, 0, 1, 0));
    EXPECT_EQ(blueRow(c, 0), (std::vector<int>{100, 100, 100}));
    // A region past the image stays inside it.
    BitsGradient(c, Region::rect(-2, -2, 6, 4), blackToWhite(0, 0, 2, 0));
    EXPECT_EQ(blueRow(c, 0), (std::vector<int>{0, 128, 255}));
    EXPECT_TRUE(test::guardClear(c));
}

} // namespace
} // namespace ostrivex
