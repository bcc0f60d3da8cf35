// Effects with an exact meaning, checked pixel by pixel, and the frame's key rule.
#include "effects_test_util.h"
#include "pixel/bitfilter.h"
#include "pixel/effects/effects.h"
#include "pixel/effects/methods.h"

#include <gtest/gtest.h>

using namespace ostrivex;
using namespace ostrivex::test;
using namespace ostrivex::effects;

namespace {

// Every pixel of the picture through fn(b, g, r) -> {b, g, r}, channel 3 kept.
template <class Fn> Bits perPixel(const Bits& src, Fn&& fn) {
    Bits out = src;
    for (int y = 0; y < src.height(); ++y)
        for (int x = 0; x < src.width(); ++x) {
            uint8_t* p = out.pixel(x, y);
            const std::array<int, 3> v = fn(int(p[0]), int(p[1]), int(p[2]));
            for (int c = 0; c < 3; ++c) p[c] = uint8_t(v[size_t(c)]);
        }
    return out;
}

Bits coreResult(const Bits& src, Bits (cBitFilter::*filter)()) {
    cBitFilter f;
    f.SetBits(src);
    return (f.*filter)();
}

TEST(ExactEffects, ChannelMaps) {
    const Bits src = patternBits(16, 16, 3);
    Bits out;
    Invert(out, src, 0, -1);
    EXPECT_TRUE(sameBits(perPixel(src, [](int b, int g, int r) { return std::array{255 - b, 255 - g, 255 - r}; }), out));
    Invert(out, src, 255, -1);
    EXPECT_TRUE(sameBits(src, out));
    ReduceTo8Colors(out, src, -1);
    auto two = [](int c) { return c >= 128 ? 255 : 0; };
    EXPECT_TRUE(sameBits(perPixel(src, [&](int b, int g, int r) { return std::array{two(b), two(g), two(r)}; }), out));
    WebColors(out, src, -1);
    auto web = [](int c) { return (c + 25) / 51 * 51; };
    EXPECT_TRUE(sameBits(perPixel(src, [&](int b, int g, int r) { return std::array{web(b), web(g), web(r)}; }), out));
    Brightness(out, src, -40, -1);
    auto down = [](int c) { return std::max(c - 40, 0); };
    EXPECT_TRUE(sameBits(perPixel(src, [&](int b, int g, int r) { return std::array{down(b), down(g), down(r)}; }), out));
    Solarize(out, src, 0, -1);
    auto sol = [](int c) { return c > 127 ? 255 - c : c; };
    EXPECT_TRUE(sameBits(perPixel(src, [&](int b, int g, int r) { return std::array{sol(b), sol(g), sol(r)}; }), out));
    // Gray at brightness 0 is the core's GreyScale; gamma 1, contrast 1, a strength-0 tone and
    // white ambient light leave the picture.
    GrayScale(out, src, 0, -1);
    EXPECT_TRUE(sameBits(coreResult(src, &cBitFilter::GreyScale), out));
    Gamma(out, src, 1.0f, -1);
    EXPECT_TRUE(sameBits(src, out));
    Contrast(out, src, 1, 1, 1, -1);
    EXPECT_TRUE(sameBits(src, out));
    Tone(out, src, 0, 0x123456, -1);
    EXPECT_TRUE(sameBits(src, out));
    AmbientLight(out, src, 255, 0xFFFFFF, -1);
    EXPECT_TRUE(sameBits(src, out));
}

TEST(ExactEffects, SepiaAndHue) {
    const Bits src = makeBits(3, 1, {{100, 100, 100}, {0, 0, 255}, {255, 255, 255}});
    Bits out;
    Sepia(out, src, -1);
    // r = .393 R + .769 G + .189 B, g = .349 R + .686 G + .168 B, b = .272 R + .534 G + .131 B.
    EXPECT_EQ(bgr(out, 0, 0), (std::array<int, 3>{94, 120, 135}));
    EXPECT_EQ(bgr(out, 1, 0), (std::array<int, 3>{69, 89, 100}));
    EXPECT_EQ(bgr(out, 2, 0), (std::array<int, 3>{239, 255, 255}));
    // A third of a turn takes red to green and keeps grey.
    const Bits colours = makeBits(4, 1, {{0, 0, 255}, {0, 255, 0}, {255, 0, 0}, {90, 90, 90}});
    Hue(out, colours, 120, -1);
    EXPECT_TRUE(sameBits(makeBits(4, 1, {{0, 255, 0}, {255, 0, 0}, {0, 0, 255}, {90, 90, 90}}), out));
    Hue(out, colours, 0, -1);
    EXPECT_TRUE(sameBits(colours, out));
}

TEST(ExactEffects, ContrastAboutTheMean) {
    // Mean luminance 100 (the key pixel does not count).
    const Bits src = makeBits(3, 1, {{80, 80, 80}, {120, 120, 120}, {255, 0, 255}});
    Bits out;
    Contrast(out, src, 2, 0, 1, kTestKey);
    EXPECT_EQ(bgr(out, 0, 0), (std::array<int, 3>{80, 100, 60})); // blue x1, green flat, red x2
    EXPECT_EQ(bgr(out, 1, 0), (std::array<int, 3>{120, 100, 140}));
    EXPECT_EQ(bgr(out, 2, 0), (std::array<int, 3>{255, 0, 255}));
}

TEST(ExactEffects, StretchHistogramSpreadsTheRangeToTheEnds) {
    Bits src(10, 10);
    for (int y = 0; y < 10; ++y)
        for (int x = 0; x < 10; ++x) {
            uint8_t* p = src.pixel(x, y);
            const bool low = x < 5;
            p[0] = low ? 50 : 200;
            p[1] = low ? 60 : 210;
            p[2] = low ? 70 : 220;
        }
    Bits out;
    StretchHistogram(out, src, 7, 1.0, -1);
    // 50..220 to 0..255: 60 -> 15, 70 -> 30, 200 -> 225, 210 -> 240.
    EXPECT_EQ(bgr(out, 0, 0), (std::array<int, 3>{0, 15, 30}));
    EXPECT_EQ(bgr(out, 9, 9), (std::array<int, 3>{225, 240, 255}));
}

TEST(ExactEffects, BackdropRemovalReplacesWithinTheTolerance) {
    const Bits src = makeBits(4, 1, {{10, 20, 30}, {10, 20, 45}, {10, 20, 46}, {0, 255, 0}});
    Bits out;
    // Colour (r 30, g 20, b 10), tolerance 15: the first two match.
    BackDropRemoval(out, src, 15, 0x0A141E, 0x00FF00, -1);
    EXPECT_TRUE(sameBits(makeBits(4, 1, {{0, 255, 0}, {0, 255, 0}, {10, 20, 46}, {0, 255, 0}}), out));
    // A replacement with the key colour stops one step of blue short of it.
    BackDropRemoval(out, src, 15, 0x0A141E, uint32_t(kTestKey), kTestKey);
    EXPECT_EQ(bgr(out, 0, 0), (std::array<int, 3>{254, 0, 255}));
}

TEST(ExactEffects, MosaicTakesBlockMeans) {
    const Bits src = patternBits(6, 4, 9);
    Bits out;
    Mosaic(out, src, 3, -1);
    for (int by = 0; by < 4; by += 3)
        for (int bx = 0; bx < 6; bx += 3)
            for (int c = 0; c < 3; ++c) {
                int sum = 0, n = 0;
                for (int y = by; y < std::min(by + 3, 4); ++y)
                    for (int x = bx; x < bx + 3; ++x, ++n) sum += src(c, x, y);
                for (int y = by; y < std::min(by + 3, 4); ++y)
                    for (int x = bx; x < bx + 3; ++x) EXPECT_NEAR(out(c, x, y), sum / n, 1) << x << "," << y;
            }
}

TEST(ExactEffects, FlipsMirrorTheWholePictureKeyIncluded) {
    const Bits src = keyedPicture(5, 4, 2);
    Bits h, v, both;
    Flip(h, src, true, false, kTestKey);
    Flip(v, src, false, true, kTestKey);
    Flip(both, src, true, true, kTestKey);
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 5; ++x) {
            EXPECT_EQ(bgr(h, x, y), bgr(src, 4 - x, y));
            EXPECT_EQ(bgr(v, x, y), bgr(src, x, 3 - y));
            EXPECT_EQ(bgr(both, x, y), bgr(src, 4 - x, 3 - y));
        }
}

TEST(ExactEffects, AlphaBlends) {
    const Bits a = makeBits(2, 1, {{100, 100, 100}, {255, 0, 255}});
    const Bits b = makeBits(2, 1, {{200, 0, 50}, {10, 10, 10}});
    // Into dest at 25 %: transparent pixels of dest stay.
    Bits dest = a;
    AlphaBlendInto(dest, b, 25, kTestKey);
    EXPECT_EQ(bgr(dest, 0, 0), (std::array<int, 3>{125, 75, 88}));
    EXPECT_EQ(bgr(dest, 1, 0), (std::array<int, 3>{255, 0, 255}));
    // At a place on a cleared picture of the key colour: the blend is against the key.
    Bits placed;
    AlphaBlendAt(placed, 3, 2, b, 1, 1, 100, kTestKey);
    EXPECT_EQ(placed.width(), 3);
    EXPECT_EQ(bgr(placed, 0, 0), (std::array<int, 3>{255, 0, 255}));
    EXPECT_EQ(bgr(placed, 1, 1), (std::array<int, 3>{200, 0, 50}));
    EXPECT_EQ(bgr(placed, 2, 1), (std::array<int, 3>{10, 10, 10}));
    AlphaBlendAt(placed, 2, 1, b, 0, 0, 50, -1); // no key: cleared to black
    EXPECT_EQ(bgr(placed, 0, 0), (std::array<int, 3>{100, 0, 25}));
}

TEST(ExactEffects, BlendModes) {
    const Bits bottom = makeBits(1, 1, {{100, 200, 0}});
    const Bits top = makeBits(1, 1, {{50, 255, 128}});
    Bits out;
    BlendMode(out, bottom, top, 1, -1); // multiply
    EXPECT_EQ(bgr(out, 0, 0), (std::array<int, 3>{20, 200, 0}));
    BlendMode(out, bottom, top, 2, -1); // screen
    EXPECT_EQ(bgr(out, 0, 0), (std::array<int, 3>{130, 255, 128}));
    BlendMode(out, bottom, top, 6, -1); // difference
    EXPECT_EQ(bgr(out, 0, 0), (std::array<int, 3>{50, 55, 128}));
    // The third picture's transparent pixels leave the source.
    const Bits keyTop = makeBits(1, 1, {{255, 0, 255}});
    BlendMode(out, bottom, keyTop, 0, kTestKey);
    EXPECT_TRUE(sameBits(bottom, out));
    EXPECT_STREQ(BlendModeName(1), "Multiply");
}

TEST(ExactEffects, KeyRuleAndWorkingCopy) {
    // An effect that would paint the key is moved one step of blue; blue 255 steps down.
    const Bits src = makeBits(3, 1, {{0, 255, 0}, {255, 0, 255}, {1, 2, 3}});
    Bits out;
    Invert(out, src, 0, kTestKey); // (0, 255, 0) inverts to the key
    EXPECT_EQ(bgr(out, 0, 0), (std::array<int, 3>{254, 0, 255}));
    EXPECT_EQ(bgr(out, 1, 0), (std::array<int, 3>{255, 0, 255}));
    // The working copy fills a run of key pixels from its neighbours on both sides.
    const Bits row = makeBits(5, 1, {{0, 0, 0}, {255, 0, 255}, {255, 0, 255}, {255, 0, 255}, {200, 100, 40}});
    const Bits work = workingCopy(row, Key(kTestKey));
    EXPECT_EQ(bgr(work, 1, 0), (std::array<int, 3>{50, 25, 10}));
    EXPECT_EQ(bgr(work, 3, 0), (std::array<int, 3>{150, 75, 30}));
    EXPECT_EQ(bgr(work, -2, 0), bgr(work, 0, 0)); // the guard band repeats the edge
}

TEST(ExactEffects, ShapeIsThePixelsThatAreNotTheKey) {
    const Bits pic = keyedPicture(9, 7, 5);
    const Region byRows = ShapeRegion(pic, kTestKey, true);
    EXPECT_EQ(byRows, ShapeRegion(pic, kTestKey, false));
    const Key k(kTestKey);
    for (int y = 0; y < 7; ++y)
        for (int x = 0; x < 9; ++x) EXPECT_EQ(byRows.contains(x, y), !k.is(load32(pic.pixel(x, y)))) << x << "," << y;

    clsTransForm t;
    t.SetTransparentColor(kTestKey);
    EXPECT_FALSE(t.ShapeMe(kTestKey, true, nullptr, nullptr));
    EXPECT_FALSE(t.ShapeMe(kTestKey, true, &pic, &pic));
    // A method shapes its result by the layer's key.
    Bits first;
    t.Apply(*FindEffectMethod("Sepia"), first, pic, {}, kTestKey);
    EXPECT_EQ(t.Shape(), byRows);
    EXPECT_THROW(t.Apply(*FindEffectMethod("Hue"), first, pic, {}, kTestKey), std::invalid_argument);
}

TEST(ExactEffects, IncreaseSizeScalesTheShapeAsBlocks) {
    const Bits src = makeBits(2, 1, {{255, 0, 255}, {10, 20, 30}});
    Bits out;
    IncreaseSize(out, src, 4, 2, kTestKey);
    EXPECT_EQ(bgr(out, 0, 1), (std::array<int, 3>{255, 0, 255}));
    EXPECT_EQ(bgr(out, 1, 0), (std::array<int, 3>{255, 0, 255}));
    EXPECT_EQ(bgr(out, 3, 1), (std::array<int, 3>{10, 20, 30}));
    IncreaseSize(out, src);
    EXPECT_TRUE(sameBits(src, out));
}

} // namespace
