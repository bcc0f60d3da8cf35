// Crops, quarter turn, mirror, tile placement and smooth rotation on small hand-made
// images.
#include "pixel/bitfilter.h"
#include "pixel/transforms_simd.h"
#include "pixel_test_util.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <stdexcept>
#include <vector>

using namespace ostrivex;
using namespace ostrivex::test;

namespace {

// Pixel (x, y) of a w x h image made by `numbered`: blue 10 x + y, green 100 + y,
// red 200 + x, channel 3 = 50 + x + 10 y.
Bits numbered(int w, int h) {
    Bits b(w, h);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            b(0, x, y) = uint8_t(10 * x + y);
            b(1, x, y) = uint8_t(100 + y);
            b(2, x, y) = uint8_t(200 + x);
            b(3, x, y) = uint8_t(50 + x + 10 * y);
        }
    return b;
}

Px at(int x, int y, bool keepAlpha) {
    return {uint8_t(10 * x + y), uint8_t(100 + y), uint8_t(200 + x),
            uint8_t(keepAlpha ? 50 + x + 10 * y : 0)};
}

struct ProgressLog {
    std::vector<int> seen;
    void attach(cBitFilter& f) {
        f.Progress = [this](int32_t& p) { seen.push_back(p); };
    }
};

} // namespace

TEST(Crop, CutsAllFourChannelsInsideTheImageRectangle) {
    cBitFilter f;
    ProgressLog log;
    log.attach(f);
    const Bits src = numbered(4, 3);
    f.SetBits(src);
    f.BitsCrop(src, 1, 1, 3, 3);
    EXPECT_TRUE(
        sameBits(makeBits(2, 2, {at(1, 1, true), at(2, 1, true), at(1, 2, true), at(2, 2, true)}),
                 f.bits()));
    EXPECT_EQ(f.BitsWidth(), 2);
    EXPECT_EQ(f.BitsHeight(), 2);
    EXPECT_EQ(log.seen, std::vector<int>{100});

    // Clipped to the image rectangle of the object (4 x 3 again).
    f.SetBits(src);
    f.BitsCrop(src, -5, -5, 2, 10);
    EXPECT_TRUE(sameBits(makeBits(2, 3,
                                  {at(0, 0, true), at(1, 0, true), at(0, 1, true), at(1, 1, true),
                                   at(0, 2, true), at(1, 2, true)}),
                         f.bits()));
    // Reversed edges and a rectangle beside the image give nothing.
    f.SetBits(src);
    f.BitsCrop(src, 3, 3, 1, 1);
    EXPECT_EQ(f.BitsWidth(), 0);
    EXPECT_EQ(f.BitsHeight(), 0);
    f.SetBits(src);
    f.BitsCrop(src, 4, 0, 9, 3);
    EXPECT_EQ(f.bits().width(), 0);
    // The own buffer as the source.
    f.SetBits(src);
    f.BitsCrop(f.bits(), 2, 0, 4, 1);
    EXPECT_TRUE(sameBits(makeBits(2, 1, {at(2, 0, true), at(3, 0, true)}), f.bits()));
    // An object whose image is larger than the source would read past it.
    f.SetBits(numbered(20, 20));
    EXPECT_THROW(f.BitsCrop(src, 0, 0, 20, 20), std::out_of_range);
    EXPECT_EQ(f.BitsWidth(), 20);
}

TEST(Crop, MaskedMarksWhatTheRegionLeavesOut) {
    cBitFilter f;
    ProgressLog log;
    log.attach(f);
    // The region is column 1 and pixel (0, 2); the object's own image is tiny, which
    // does not matter here: the source's bounds are used.
    const Region region = Region::rect(1, 0, 2, 3).united(Region::rect(0, 2, 1, 3));
    f.SetBits(Bits(1, 1));
    f.BitsRegion(&region);
    const Bits src = numbered(3, 3);
    f.BitsCropMasked(src, 0, 1, 5, 3);
    const Px out{0, 0, 0, 255};
    EXPECT_TRUE(sameBits(
        makeBits(3, 2, {out, at(1, 1, true), out, at(0, 2, true), at(1, 2, true), out}), f.bits()));
    EXPECT_EQ(log.seen, std::vector<int>{100});
    EXPECT_EQ(f.region(), &region); // the region stays
    // No region stands for the whole image.
    f.BitsRegion(nullptr);
    f.BitsCropMasked(src, 2, 2, 3, 3);
    EXPECT_TRUE(sameBits(makeBits(1, 1, {at(2, 2, true)}), f.bits()));
}

TEST(Rotate90, QuarterTurnToTheLeft) {
    // A B C / D E F becomes C F / B E / A D.
    const Bits src = numbered(3, 2);
    cBitFilter f;
    f.SetBits(Bits(9, 9));
    f.BitsRotate90(src);
    EXPECT_TRUE(sameBits(makeBits(2, 3,
                                  {at(2, 0, false), at(2, 1, false), at(1, 0, false),
                                   at(1, 1, false), at(0, 0, false), at(0, 1, false)}),
                         f.bits()));
    EXPECT_EQ(f.BitsWidth(), 2);
    EXPECT_EQ(f.BitsHeight(), 3);
    // Three more turns (on its own buffer) come back to the start, without channel 3.
    for (int i = 0; i < 3; ++i)
        f.BitsRotate90(f.bits());
    Bits want = src;
    for (int y = 0; y < 2; ++y)
        for (int x = 0; x < 3; ++x)
            want(3, x, y) = 0;
    EXPECT_TRUE(sameBits(want, f.bits()));
}

TEST(Rotate90, BlockedLoopEqualsThePlainRule) {
    // With the vector blocks and without them.
    using namespace transforms_detail;
    const SimdLevel saved = simdLimit();
    for (SimdLevel level : {kPlain, kAvx2}) {
        simdLimit() = level;
        if (simdLevel() != level) continue;
        std::mt19937 rng(5);
        for (int round = 0; round < 20; ++round) {
            const int w = 1 + int(rng() % 90), h = 1 + int(rng() % 90);
            const Bits src = patternBits(w, h, rng());
            Bits want(h, w);
            for (int y = 0; y < h; ++y)
                for (int x = 0; x < w; ++x)
                    for (int c = 0; c < 3; ++c)
                        want(c, y, w - 1 - x) = src(c, x, y);
            cBitFilter f;
            f.SetBits(src);
            f.BitsRotate90(src);
            ASSERT_TRUE(sameBits(want, f.bits())) << w << "x" << h << " level " << int(level);
            // Into a buffer of the new size that holds 255 in every byte, guard band
            // included: every byte of the result is still written (channel 3 and the
            // guard band 0).
            Bits dirty(h, w);
            std::fill(dirty.data(), dirty.data() + dirty.size(), uint8_t(255));
            f.SetBits(dirty);
            f.BitsRotate90(src);
            ASSERT_TRUE(sameBits(want, f.bits())) << w << "x" << h << " level " << int(level);
        }
    }
    simdLimit() = saved;
}

TEST(Flip, MirrorsColourOverTheWholeImage) {
    // A B C / D E F. The region (one pixel) is ignored; channel 3 stays in place.
    const Bits src = numbered(3, 2);
    const Region onePixel = Region::rect(1, 1, 2, 2);
    cBitFilter f;
    ProgressLog log;
    log.attach(f);
    f.SetBits(src);
    f.BitsRegion(&onePixel);
    auto moved = [](int sx, int sy, int x, int y) {
        Px p = at(sx, sy, false);
        p.a = uint8_t(50 + x + 10 * y);
        return p;
    };
    EXPECT_TRUE(sameBits(makeBits(3, 2,
                                  {moved(2, 0, 0, 0), moved(1, 0, 1, 0), moved(0, 0, 2, 0),
                                   moved(2, 1, 0, 1), moved(1, 1, 1, 1), moved(0, 1, 2, 1)}),
                         f.Flip(true, false)));
    EXPECT_TRUE(sameBits(makeBits(3, 2,
                                  {moved(0, 1, 0, 0), moved(1, 1, 1, 0), moved(2, 1, 2, 0),
                                   moved(0, 0, 0, 1), moved(1, 0, 1, 1), moved(2, 0, 2, 1)}),
                         f.Flip(false, true)));
    EXPECT_TRUE(sameBits(makeBits(3, 2,
                                  {moved(2, 1, 0, 0), moved(1, 1, 1, 0), moved(0, 1, 2, 0),
                                   moved(2, 0, 0, 1), moved(1, 0, 1, 1), moved(0, 0, 2, 1)}),
                         f.Flip(true, true)));
    EXPECT_TRUE(sameBits(src, f.Flip(false, false)));
    EXPECT_TRUE(sameBits(src, f.bits())); // the buffer is left alone
    EXPECT_EQ(log.seen.back(), 100);
}

TEST(TileMask, PlacesRepeatsBlendsAndSkipsTheKey) {
    // Image 4 x 3 of (b 10, g 20, r 30, channel 3 = 5). Tile 2 x 1: (100, 200, 50) and a
    // key-coloured pixel (b 1, g 2, r 3), key 0x00BBGGRR = 0x010203.
    Bits image(4, 3);
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 4; ++x)
            image.pixel(x, y)[0] = 10, image.pixel(x, y)[1] = 20, image.pixel(x, y)[2] = 30,
                           image.pixel(x, y)[3] = 5;
    Bits tile = makeBits(2, 1, {{100, 200, 50, 9}, {1, 2, 3, 9}});
    const int32_t key = 0x010203;
    cBitFilter f;
    f.SetBits(image);
    ProgressLog log;
    log.attach(f);
    const Px old{10, 20, 30, 5}, placed{100, 200, 50, 5};

    // Repeated from column 1: placements at x 1 and 3 on every row; the key pixel and the
    // part beyond the image are skipped. Opacity 0 shows the tile at full strength.
    EXPECT_TRUE(sameBits(
        makeBits(4, 3,
                 {old, placed, old, placed, old, placed, old, placed, old, placed, old, placed}),
        f.TileMask(tile, 1, 0, true, 0, key)));
    EXPECT_EQ(log.seen.back(), 100);
    // Without a key the second tile pixel is laid as well (column 2; column 0 is left of
    // the first placement).
    const Px keyPx{1, 2, 3, 5};
    EXPECT_TRUE(sameBits(makeBits(4, 3,
                                  {old, placed, keyPx, placed, old, placed, keyPx, placed, old,
                                   placed, keyPx, placed}),
                         f.TileMask(tile, 1, 0, true, 0, -1)));
    // Once only at (2, 1): the steps W - left and H - top end both loops.
    EXPECT_TRUE(
        sameBits(makeBits(4, 3, {old, old, old, old, old, old, placed, keyPx, old, old, old, old}),
                 f.TileMask(tile, 2, 1, false, 0, -1)));
    // Opacity 30: Round(10 * 0.3 + 100 * 0.7) = 73, 6 + 140 = 146, 9 + 35 = 44.
    EXPECT_EQ(f.TileMask(tile, 0, 0, false, 30, key).pixel(0, 0)[0], 73);
    const Bits thirty = f.TileMask(tile, 0, 0, false, 30, key);
    EXPECT_TRUE(sameBits(
        makeBits(4, 3, {{73, 146, 44, 5}, old, old, old, old, old, old, old, old, old, old, old}),
        thirty));
    // Opacity 50 with halves: (10 + 101) / 2 = 55.5 -> 56, (20 + 203) / 2 = 111.5 -> 112,
    // (30 + 51) / 2 = 40.5 -> 40: ties go to even.
    const Bits half = f.TileMask(makeBits(1, 1, {{101, 203, 51}}), 3, 2, false, 50, -1);
    EXPECT_TRUE(sameBits(
        makeBits(4, 3, {old, old, old, old, old, old, old, old, old, old, old, {56, 112, 40, 5}}),
        half));
    // Opacity 100 changes nothing.
    EXPECT_TRUE(sameBits(image, f.TileMask(tile, 0, 0, true, 100, -1)));
    // The region limits the targets: only column 1 of the left half.
    const Region left = Region::rect(0, 0, 2, 3);
    f.BitsRegion(&left);
    EXPECT_TRUE(sameBits(
        makeBits(4, 3, {old, placed, old, old, old, placed, old, old, old, placed, old, old}),
        f.TileMask(tile, 1, 0, true, 0, key)));
    // Negative corner, repeated: placements at -1, 1 and 3; the key pixel falls on columns
    // 0 and 2, the first pixel on columns -1 (outside), 1 and 3.
    f.BitsRegion(nullptr);
    EXPECT_TRUE(sameBits(
        makeBits(4, 3,
                 {old, placed, old, placed, old, placed, old, placed, old, placed, old, placed}),
        f.TileMask(tile, -1, 0, true, 0, key)));
    EXPECT_TRUE(sameBits(image, f.bits()));
}

TEST(RotateSmooth, TurnsAndFadesTheRim) {
    cBitFilter f;
    const Bits src = numbered(3, 3);
    f.SetBits(src);
    // 0 degrees is the identity.
    EXPECT_TRUE(sameBits(src, f.RotateSmooth(0, true)));
    // 90 degrees about (1, 1): cos is -6.7e-7 and sin 1 in single precision, so each
    // output (x, y) reads source (2 - y, x) with a weight of 0.9999993 on it: nothing
    // else shows after rounding. Channel 3 stays.
    Bits want = src;
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 3; ++x)
            for (int c = 0; c < 3; ++c)
                want(c, x, y) = src(c, 2 - y, x);
    EXPECT_TRUE(sameBits(want, f.RotateSmooth(90, true)));

    // 45 degrees on a flat 5 x 5 image of 200 about (2, 2). Output (4, 4) reads
    // (2 - 5e-7, 4.8284): weight 1 - 0.8284 = 0.1716 falls inside, on row 4, and the rest
    // on row 5 outside, so 200 * 0.1716 = 34.3 -> 34 with cleanBack. Without it, the
    // outside share takes the pixel's own 200. The centre stays 200; the corner (0, 0)
    // mirrors (4, 4).
    Bits flat(5, 5);
    for (int y = 0; y < 5; ++y)
        for (int x = 0; x < 5; ++x)
            for (int c = 0; c < 3; ++c)
                flat(c, x, y) = 200;
    f.SetBits(flat);
    const Bits clean = f.RotateSmooth(45, true);
    EXPECT_EQ(clean(0, 4, 4), 34);
    EXPECT_EQ(clean(2, 0, 0), 34);
    EXPECT_EQ(clean(1, 2, 2), 200);
    // Output (4, 2): dx = 2, dy = 0 reads (3.414, 3.414), all four neighbours inside.
    EXPECT_EQ(clean(0, 4, 2), 200);
    // Output (4, 0) reads (4.83, 2): columns 4 (weight 0.17) and 5 (outside).
    EXPECT_EQ(clean(0, 4, 0), 34);
    const Bits kept = f.RotateSmooth(45, false);
    EXPECT_TRUE(sameBits(flat, kept));

    // An inscribed circle as the region (".###." / "#####" x 3 / ".###."): the corners are
    // not written, and output (4, 2) reads (3.414, 3.414), whose neighbour (4, 4) lies
    // outside: 200 * (1 - 0.414 * 0.414) = 165.7 -> 166.
    const Region circle = Region::ellipse(0, 0, 5, 5);
    f.BitsRegion(&circle);
    EXPECT_TRUE(sameBits(flat, f.RotateSmooth(0, true)));
    const Bits round = f.RotateSmooth(45, true);
    EXPECT_EQ(round(0, 0, 0), 200);
    EXPECT_EQ(round(1, 4, 4), 200);
    EXPECT_EQ(round(2, 4, 2), 166);
    EXPECT_EQ(round(0, 2, 2), 200);
    f.BitsRegion(nullptr);

    // A region limits the output pixels and the sources: with the region (1..3, 1..3)
    // and 180 degrees, the 3 x 3 block turns about (2, 2) and the rest stays.
    const Bits big = numbered(5, 5);
    const Region box = Region::rect(1, 1, 4, 4);
    f.SetBits(big);
    f.BitsRegion(&box);
    Bits turned = big;
    for (int y = 1; y < 4; ++y)
        for (int x = 1; x < 4; ++x)
            for (int c = 0; c < 3; ++c)
                turned(c, x, y) = big(c, 4 - x, 4 - y);
    EXPECT_TRUE(sameBits(turned, f.RotateSmooth(180, true)));
}
