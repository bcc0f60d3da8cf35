// Reading a pixel, and source buffers placed onto the image.
#include "paint_test_util.h"

#include <gtest/gtest.h>

namespace ostrivex::test {
namespace {

using V = std::vector<int>;

TEST(PaintSources, GetPixelPacksRedLowAndAnswersOutsideAndEmpty) {
    Bits none;
    EXPECT_EQ(BitsGetPixel(none, 0, 0), -1);
    Bits img = makeBits(2, 1, {{3, 2, 1}, {0xAA, 0xBB, 0xCC}});
    EXPECT_EQ(BitsGetPixel(img, 0, 0), 0x030201);
    EXPECT_EQ(BitsGetPixel(img, 1, 0), 0xAABBCC);
    EXPECT_EQ(BitsGetPixel(img, 2, 0), 0);
    EXPECT_EQ(BitsGetPixel(img, -1, 0), 0);
    EXPECT_EQ(BitsGetPixel(img, 0, 1), 0);
}

TEST(PaintSources, PaintBlendsSkipsTheKeyColourAndClipsToImageAndRegion) {
    // Source 2 x 2: pure red (the key), then three colours; red in Bits order is b0 g0 r255.
    const Bits src = makeBits(2, 2, {{0, 0, 255}, {200, 0, 50}, {10, 20, 30}, {0, 0, 255}});
    Bits img = solidBits(3, 2, 100, 100, 100);
    DoneBits done(3, 2);
    BitsPaint(img, wholeRegion(img), done, 1, 0, src, 0x0000FF, 50);
    EXPECT_EQ(px(img, 0, 0), (V{100, 100, 100}));
    EXPECT_EQ(px(img, 1, 0), (V{100, 100, 100})); // key: skipped
    EXPECT_EQ(px(img, 2, 0), (V{150, 50, 75}));
    EXPECT_EQ(px(img, 1, 1), (V{55, 60, 65}));
    EXPECT_EQ(px(img, 2, 1), (V{100, 100, 100})); // key
    EXPECT_TRUE(guardClear(img));

    // No key: red itself blends; 255 * 0.5 + 100 * 0.5 = 177.5 rounds to the even 178.
    // Placed at (-1, -1) only the source's last pixel lands, at (0, 0).
    Bits img2 = solidBits(3, 2, 100, 100, 100);
    BitsPaint(img2, wholeRegion(img2), done, -1, -1, src, -1, 50);
    EXPECT_EQ(px(img2, 0, 0), (V{50, 50, 178}));
    EXPECT_EQ(px(img2, 1, 0), (V{100, 100, 100}));

    // The region leaves column 2 out.
    Bits img3 = solidBits(3, 2, 100, 100, 100);
    BitsPaint(img3, Region::rect(0, 0, 2, 2), done, 1, 0, src, -1, 100);
    EXPECT_EQ(px(img3, 1, 0), (V{0, 0, 255}));
    EXPECT_EQ(px(img3, 1, 1), (V{10, 20, 30}));
    EXPECT_EQ(px(img3, 2, 0), (V{100, 100, 100}));
    EXPECT_EQ(px(img3, 2, 1), (V{100, 100, 100}));

    // Placed wholly outside: nothing changes.
    Bits img4 = solidBits(3, 2, 100, 100, 100);
    BitsPaint(img4, wholeRegion(img4), done, 3, 0, src, -1, 100);
    EXPECT_TRUE(sameBits(solidBits(3, 2, 100, 100, 100), img4));
}

TEST(PaintSources, PreMaskedSkipsAlpha255AndBlendsAnyOtherAlphaFully) {
    const Bits src = makeBits(3, 1, {{0, 0, 0, 255}, {200, 200, 200, 7}, {20, 40, 60, 254}});
    Bits img = solidBits(3, 1, 100, 100, 100);
    DoneBits done(3, 1);
    BitsPaintPreMasked(img, wholeRegion(img), done, 0, 0, src, 25);
    EXPECT_EQ(px(img, 0, 0), (V{100, 100, 100}));
    EXPECT_EQ(px(img, 1, 0), (V{125, 125, 125})); // 200/4 + 100*3/4
    EXPECT_EQ(px(img, 2, 0), (V{80, 85, 90}));    // 5+75, 10+75, 15+75
}

TEST(PaintSources, BWMaskWeightsByDistanceFromWhite) {
    // Mask values in channel 0: 190 (skipped), 0 (full), 95 (half), 189 (1/190).
    const Bits mask = makeBits(4, 1, {{190, 0, 0}, {0, 0, 0}, {95, 0, 0}, {189, 0, 0}});
    Bits img = solidBits(4, 1, 200, 100, 0);
    DoneBits done(4, 1);
    const int32_t colour = 0x000028; // red 40
    BitsBWMask(img, wholeRegion(img), done, 0, 0, mask, colour, 100);
    EXPECT_EQ(px(img, 0, 0), (V{200, 100, 0}));
    EXPECT_EQ(px(img, 1, 0), (V{0, 0, 40}));
    EXPECT_EQ(px(img, 2, 0), (V{100, 50, 20}));
    // 200 * 189/190 = 198.95, 100 * 189/190 = 99.47, 40/190 = 0.21
    EXPECT_EQ(px(img, 3, 0), (V{199, 99, 0}));

    // Half pressure on the full-weight pixel: 200/2, 100/2, 40/2.
    Bits img2 = solidBits(4, 1, 200, 100, 0);
    BitsBWMask(img2, wholeRegion(img2), done, 0, 0, mask, colour, 50);
    EXPECT_EQ(px(img2, 1, 0), (V{100, 50, 20}));
    // A quarter: 150, 75, 10.
    EXPECT_EQ(px(img2, 2, 0), (V{150, 75, 10}));
}

} // namespace
} // namespace ostrivex::test
