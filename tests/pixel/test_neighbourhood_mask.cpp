// MaskFilter, the general convolution, on small hand-made images with hand-worked bytes.
#include "pixel/bitfilter.h"
#include "pixel/filtermask.h"
#include "pixel/pixel_test_util.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

namespace ostrivex {
namespace {

using test::sameBits;

Bits flatImage(int w, int h, uint8_t b, uint8_t g, uint8_t r, uint8_t a = 3) {
    Bits out(w, h);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) out(0, x, y) = b, out(1, x, y) = g, out(2, x, y) = r, out(3, x, y) = a;
    return out;
}

std::vector<int> channelOf(const Bits& b, int c) {
    std::vector<int> v;
    for (int y = 0; y < b.height(); ++y)
        for (int x = 0; x < b.width(); ++x) v.push_back(b(c, x, y));
    return v;
}

FilterMask preset(int i) {
    FilterMask m;
    EXPECT_TRUE(ParseFilterPreset(m, i));
    return m;
}

TEST(MaskFilter, BlurPresetDarkensTheMarginsUnlessTheyAreKept) {
    const Bits src = flatImage(3, 3, 90, 45, 9);
    cBitFilter f;
    f.SetBits(src);
    const FilterMask blur = preset(0);
    // The window reads the black guard band: corners 4 * 90 / 9 = 40, edges 6 * 90 / 9 = 60.
    const Bits open = f.MaskFilter(blur, false);
    EXPECT_EQ(channelOf(open, 0), (std::vector<int>{40, 60, 40, 60, 90, 60, 40, 60, 40}));
    // Green 45: 180 / 9 = 20, 270 / 9 = 30; red 9: 36 / 9 = 4, 54 / 9 = 6.
    EXPECT_EQ(channelOf(open, 1), (std::vector<int>{20, 30, 20, 30, 45, 30, 20, 30, 20}));
    EXPECT_EQ(channelOf(open, 2), (std::vector<int>{4, 6, 4, 6, 9, 6, 4, 6, 4}));
    EXPECT_EQ(channelOf(open, 3), std::vector<int>(9, 3));
    EXPECT_TRUE(sameBits(src, f.MaskFilter(blur, true)));

    // "Blur more", 5 x 5, on a 5 x 5 image of 50: (0,0) sees 9 image pixels -> 18, (1,1)
    // 16 -> 32, (2,0) 15 -> 30, the centre all 25 -> 50.
    cBitFilter g;
    g.SetBits(flatImage(5, 5, 50, 50, 50));
    const Bits more = g.MaskFilter(preset(1), false);
    EXPECT_EQ(more(0, 0, 0), 18);
    EXPECT_EQ(more(0, 1, 1), 32);
    EXPECT_EQ(more(0, 2, 0), 30);
    EXPECT_EQ(more(0, 2, 2), 50);
    EXPECT_EQ(more(0, 4, 3), 24); // 3 columns x 4 rows = 12 pixels: 600 / 25
    EXPECT_TRUE(sameBits(flatImage(5, 5, 50, 50, 50), g.MaskFilter(preset(1), true)));
}

TEST(MaskFilter, QuotientsTruncateTowardsZeroBeforeTheBias) {
    // 3 x 3: centre blue 100 among 90, green 10 among 50, red 250 among 0.
    Bits src = flatImage(3, 3, 90, 50, 0);
    src(0, 1, 1) = 100, src(1, 1, 1) = 10, src(2, 1, 1) = 250;
    cBitFilter f;
    f.SetBits(src);
    const FilterMask sharpen = preset(4); // 15 in the centre, -1 around, divisor 7
    // Blue (1500 - 720) / 7 = 111.4 -> 111 (bias 0). Green (150 - 400) / 7 = -35.7 ->
    // -35, + 40 = 5 (flooring would give 4). Red 3750 / 7 = 535 -> 255.
    const Bits out = f.MaskFilter(sharpen.Mask, 7, 0, 40, 0, true);
    Bits want = src;
    want(0, 1, 1) = 111, want(1, 1, 1) = 5, want(2, 1, 1) = 255;
    EXPECT_TRUE(sameBits(want, out));
    // A negative divisor flips the sign: blue 780 / -7 -> -111, + 200 = 89.
    EXPECT_EQ(f.MaskFilter(sharpen.Mask, -7, 0, 0, 200, true)(0, 1, 1), 89);

    // "Emboss [SE]": 128 + C - lower right; at the right and bottom edges the lower-right
    // neighbour is the black guard band.
    Bits e(2, 2);
    e(0, 0, 0) = 100, e(0, 1, 1) = 60;
    cBitFilter g;
    g.SetBits(e);
    EXPECT_EQ(channelOf(g.MaskFilter(preset(12), false), 0), (std::vector<int>{168, 128, 128, 188}));
    EXPECT_EQ(channelOf(g.MaskFilter(preset(13), false), 0), (std::vector<int>{88, 128, 128, 68}));
}

TEST(MaskFilter, TheFirstIndexIsTheRowAndTheSecondTheColumn) {
    // Blue = 10 * x + y + 1 on a 5 x 5 image.
    Bits src(5, 5);
    for (int y = 0; y < 5; ++y)
        for (int x = 0; x < 5; ++x) src(0, x, y) = uint8_t(10 * x + y + 1);
    cBitFilter f;
    f.SetBits(src);
    // mask[0][2]: row 0 (one up), column 2 (one right): each pixel takes its upper-right one.
    const Bits up = f.MaskFilter({{0, 0, 1}, {0, 0, 0}, {0, 0, 0}}, 1, 0, 0, 0, false);
    EXPECT_EQ(up(0, 2, 2), 32); // (3, 1): 30 + 1 + 1
    EXPECT_EQ(up(0, 4, 1), 0);  // its upper right is the guard band
    EXPECT_EQ(up(0, 0, 4), 14); // (1, 3): 10 + 3 + 1
    // 5 x 5: mask[4][0] = 2: two down, two left, doubled.
    std::vector<std::vector<int32_t>> m5(5, std::vector<int32_t>(5, 0));
    m5[4][0] = 2;
    const Bits down = f.MaskFilter(m5, 1, 0, 0, 0, false);
    EXPECT_EQ(down(0, 2, 2), 2 * 5);  // (0, 4): 0 + 4 + 1
    EXPECT_EQ(down(0, 4, 0), 2 * 23); // (2, 2): 20 + 2 + 1
    EXPECT_EQ(down(0, 1, 1), 0);      // (-1, 3) is the guard band
    // With keepMargins only (2, 2) has a full 5 x 5 window.
    Bits want = src;
    want(0, 2, 2) = 10;
    EXPECT_TRUE(sameBits(want, f.MaskFilter(m5, 1, 0, 0, 0, true)));
}

TEST(MaskFilter, RegionsFailuresAndLargeCoefficients) {
    const Bits src = flatImage(4, 4, 200, 100, 50);
    cBitFilter f;
    f.SetBits(src);
    // Only the pixels of the region change: a 2 x 1 region at (1, 2). An all-zero kernel
    // leaves the biases.
    const Region r = Region::rect(1, 2, 3, 3);
    f.BitsRegion(&r);
    const Bits shifted = f.MaskFilter({{0, 0, 0}, {0, 0, 0}, {0, 0, 0}}, 1, 7, 8, 9, false);
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 4; ++x) {
            const bool in = y == 2 && (x == 1 || x == 2);
            EXPECT_EQ(shifted(0, x, y), in ? 9 : 200);
            EXPECT_EQ(shifted(1, x, y), in ? 8 : 100);
            EXPECT_EQ(shifted(2, x, y), in ? 7 : 50);
            EXPECT_EQ(shifted(3, x, y), 3);
        }
    f.BitsRegion(nullptr);

    // A divisor of 0 is a failure for the caller.
    EXPECT_THROW(f.MaskFilter(preset(0).Mask, 0, 0, 0, 0, true), std::domain_error);
    // Not a square kernel of side 1 to 5.
    EXPECT_THROW(f.MaskFilter({{1, 1}, {1}}, 1, 0, 0, 0, true), std::invalid_argument);
    EXPECT_THROW(f.MaskFilter(std::vector<std::vector<int32_t>>(6, std::vector<int32_t>(6, 1)), 1,
                              0, 0, 0, true),
                 std::invalid_argument);
    // 2 * 10^7 * 200 leaves 32 bits.
    EXPECT_THROW(f.MaskFilter({{0, 0, 0}, {0, 20000000, 0}, {0, 0, 0}}, 1, 0, 0, 0, true),
                 std::overflow_error);
    // 8 * 10^6 * 255 still fits: sums beyond 2^24 divide exactly too (identity).
    EXPECT_TRUE(sameBits(src, f.MaskFilter({{0, 0, 0}, {0, 8000000, 0}, {0, 0, 0}}, 8000000, 0,
                                           0, 0, false)));
    // A divisor beyond every sum leaves only the biases.
    const Bits tiny = f.MaskFilter(preset(0).Mask, 100000000, 1, 2, 3, true);
    EXPECT_EQ(tiny(0, 1, 1), 3);
    EXPECT_EQ(tiny(2, 2, 2), 1);
}

} // namespace
} // namespace ostrivex
