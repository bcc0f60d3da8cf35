// The logo maker: the effect list on hand-made pixels, the pipeline's steps through what
// they must leave or change, and the effects on a finished logo.
#include "text/draw/logo.h"
#include "text/text_test_util.h"

#include <gtest/gtest.h>

using namespace ostrivex;
using namespace ostrivex::test;

namespace {

Bits grey(int w, int h, uint8_t v) {
    return Filled(w, h, packColour(v, v, v));
}

LogoSettings plainLogo() {
    LogoSettings s;
    s.fontName = TestFontFamily;
    s.text = "Hi";
    s.fontSize = 30;
    s.width = 120;
    s.height = 60;
    s.border = false;
    s.fontFill = LogoFontFill::Solid;
    s.fontColour = 0x0000FF;
    s.background = LogoBackground::Solid;
    s.backColour = 0xFFFFFF;
    return s;
}

Bits flipped(const Bits& b) {
    Bits out(b.width(), b.height());
    for (int y = 0; y < b.height(); ++y)
        for (int x = 0; x < b.width(); ++x)
            for (int c = 0; c < 3; ++c)
                out(c, b.width() - 1 - x, y) = b(c, x, y);
    return out;
}

} // namespace

TEST(Logo, EffectListOnHandMadePixels) {
    // Monochrome: 0.3 red + 0.59 green + 0.11 blue, rounded, into all three channels.
    Bits p(3, 1);
    const uint32_t in[3] = {packColour(10, 200, 30), packColour(0, 0, 255),
                            packColour(255, 255, 255)};
    for (int x = 0; x < 3; ++x) {
        p(0, x, 0) = colourB(in[x]);
        p(1, x, 0) = colourG(in[x]);
        p(2, x, 0) = colourR(in[x]);
    }
    ApplyLogoFX(p, LogoFX::Monochrome);
    EXPECT_EQ(At(p, 0, 0), packColour(124, 124, 124)); // 124.3
    EXPECT_EQ(At(p, 1, 0), packColour(28, 28, 28));    // 28.05
    EXPECT_EQ(At(p, 2, 0), 0xFFFFFFu);
    // Negative.
    ApplyLogoFX(p, LogoFX::Negative);
    EXPECT_EQ(At(p, 0, 0), packColour(131, 131, 131));
    // Blur: the 3 x 3 mean inside a frame of one pixel, which stays.
    Bits b(4, 3);
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 4; ++x)
            for (int c = 0; c < 3; ++c)
                b(c, x, y) = uint8_t(10 * x + 30 * y + c);
    const Bits before = b;
    ApplyLogoFX(b, LogoFX::Blur);
    EXPECT_EQ(b(0, 1, 1), 40);
    EXPECT_EQ(b(2, 2, 1), 52);
    for (int x = 0; x < 4; ++x)
        EXPECT_EQ(At(b, x, 0), At(before, x, 0));
    EXPECT_EQ(At(b, 0, 1), At(before, 0, 1));
    EXPECT_EQ(At(b, 3, 1), At(before, 3, 1));
    Bits dot = grey(3, 3, 0);
    dot(1, 1, 1) = 255;
    ApplyLogoFX(dot, LogoFX::Blur);
    EXPECT_EQ(dot(1, 1, 1), 28); // 255 / 9
    // DePixel: a stray pixel goes, a block of nine stays.
    Bits speck = grey(7, 7, 50);
    speck(0, 2, 2) = 250;
    for (int y = 3; y < 6; ++y)
        for (int x = 3; x < 6; ++x)
            speck(2, x, y) = 200;
    ApplyLogoFX(speck, LogoFX::DePixel);
    EXPECT_EQ(speck(0, 2, 2), 50);
    EXPECT_EQ(speck(2, 4, 4), 200);
}

TEST(Logo, StepsOfThePipeline) {
    LogoSettings s = plainLogo();
    const LogoState base = DrawLogo(s);
    EXPECT_EQ(Colours(base.picture), (std::set<uint32_t>{0xFFFFFF, 0x0000FF}));
    // An empty text: the background only.
    LogoSettings empty = s;
    empty.text.clear();
    empty.background = LogoBackground::Gradient;
    EXPECT_EQ(DrawLogo(empty).picture, DrawLogo(empty).background);
    EXPECT_GT(Colours(DrawLogo(empty).picture).size(), 10u);
    // "Transparent" with no border: nothing over the background.
    LogoSettings holes = s;
    holes.fontFill = LogoFontFill::Transparent;
    EXPECT_EQ(DrawLogo(holes).picture, Filled(120, 60, 0xFFFFFF));
    // ... with a border: the letters are holes in it.
    holes.border = true;
    holes.borderColour = 0x00FF00;
    const LogoState ring = DrawLogo(holes);
    for (int y = 0; y < 60; ++y)
        for (int x = 0; x < 120; ++x)
            if (At(base.picture, x, y) == 0x0000FF) ASSERT_EQ(At(ring.picture, x, y), 0xFFFFFFu);
    EXPECT_GT(CountColour(ring.picture, 0x00FF00), 100);
    // Alpha: 100 % lets the whole background through, 0 % none of it.
    LogoSettings alpha = s;
    alpha.alpha = true;
    alpha.alphaPercent = 100;
    EXPECT_EQ(DrawLogo(alpha).picture, Filled(120, 60, 0xFFFFFF));
    alpha.alphaPercent = 0;
    EXPECT_EQ(DrawLogo(alpha).picture, base.picture);
    alpha.alphaPercent = 50;
    EXPECT_EQ(Colours(DrawLogo(alpha).picture),
              (std::set<uint32_t>{0xFFFFFF, packColour(255, 128, 128)}));
    // Mirror and invert act on the finished picture.
    LogoSettings turned = s;
    turned.mirror = true;
    EXPECT_EQ(DrawLogo(turned).picture, flipped(base.picture));
    turned.mirror = false;
    turned.invert = true;
    EXPECT_EQ(Colours(DrawLogo(turned).picture), (std::set<uint32_t>{0x000000, 0xFFFF00}));
    // Anti-aliasing softens the edges between the two colours only.
    LogoSettings soft = s;
    soft.antiAlias = true;
    const std::set<uint32_t> softColours = Colours(DrawLogo(soft).picture);
    EXPECT_GT(softColours.size(), 4u);
    for (uint32_t c : softColours)
        EXPECT_EQ(colourR(c), 255) << std::hex << c;
}

TEST(Logo, BorderGlowsRingByRing) {
    LogoSettings s = plainLogo();
    s.border = true;
    s.borderSize = 3;
    s.borderColour = 0x000000;
    s.glow = true;
    // Ring k of 3 lies k / 4 of the way from the border's black to the white behind.
    EXPECT_EQ(Colours(DrawLogo(s).picture),
              (std::set<uint32_t>{0xFFFFFF, 0x0000FF, packColour(64, 64, 64),
                                  packColour(128, 128, 128), packColour(191, 191, 191)}));
    // Without glow one colour; a border to the right only leaves the left edge bare.
    s.glow = false;
    s.left = s.top = s.bottom = false;
    const LogoState right = DrawLogo(s);
    EXPECT_EQ(Colours(right.picture), (std::set<uint32_t>{0xFFFFFF, 0x0000FF, 0x000000}));
    for (int y = 0; y < 60; ++y)
        for (int x = 1; x < 120; ++x)
            if (At(right.picture, x, y) == 0x0000FF) {
                EXPECT_NE(At(right.picture, x - 1, y), 0x000000u);
                break;
            }
}

TEST(Logo, EmbossBoxAndEffectsOnTheFinishedLogo) {
    // Emboss in a box: a light band to the upper left, a dark one to the lower right.
    LogoSettings s = plainLogo();
    s.text.clear();
    s.backColour = 0x808080;
    s.emboss = true;
    s.emEnBox = true;
    s.emEnDistance = 3;
    const Bits box = DrawLogo(s).picture;
    EXPECT_EQ(At(box, 0, 0), packColour(204, 204, 204)); // 128 + 127 * 0.6
    EXPECT_EQ(At(box, 119, 59), packColour(51, 51, 51)); // 128 * 0.4
    EXPECT_EQ(At(box, 60, 30), 0x808080u);
    s.emboss = false;
    s.engrave = true;
    EXPECT_EQ(At(DrawLogo(s).picture, 0, 0), packColour(51, 51, 51));

    // A square logo of grey 100 on 60 x 30, from x 20 to 29 and y 10 to 19.
    LogoState st;
    st.picture = grey(60, 30, 100);
    st.background = st.picture;
    st.shape.assign(60 * 30, 0);
    for (int y = 10; y < 20; ++y)
        for (int x = 20; x < 30; ++x)
            st.shape[size_t(y) * 60 + x] = 255;
    st.fontPixels = 16;
    // Backlight from the left, behind: the far side lights up, falling off with distance.
    const Bits behind = MakeBacklight(st, 0, 15, 0xFFFFFF, 4, 50, false);
    EXPECT_EQ(behind(0, 30, 15), 228); // 100 + 255 * 0.5
    EXPECT_EQ(behind(0, 32, 15), 164); // 100 + 255 * 0.25
    EXPECT_EQ(behind(0, 34, 15), 100); // beyond the distance
    EXPECT_EQ(behind(0, 19, 15), 100); // the side facing the light
    EXPECT_EQ(behind(0, 25, 15), 100); // the logo itself
    // In front: the logo's edge facing the light.
    const Bits front = MakeBacklight(st, 0, 15, 0x0000FF, 4, 50, true);
    EXPECT_EQ(front(2, 20, 15), 228);
    EXPECT_EQ(front(1, 20, 15), 100); // red light only
    EXPECT_EQ(front(2, 25, 15), 100);
    EXPECT_EQ(front(2, 29, 15), 100);
    EXPECT_EQ(front(2, 31, 15), 100);
    EXPECT_DOUBLE_EQ(distance(1, 2, 4, 6), 5.0);

    // Shadow: darker to the lower right of the logo, the logo untouched.
    LogoState shadow = st;
    MakeShadow(shadow);
    EXPECT_LT(shadow.picture(0, 31, 21), 100);
    EXPECT_EQ(shadow.picture(0, 18, 8), 100);
    EXPECT_EQ(shadow.picture(0, 25, 15), 100);
    LogoState hover = st;
    MakeHover(hover);
    EXPECT_LT(hover.picture(0, 33, 23), 100);
    EXPECT_LT(hover.picture(0, 35, 25), 100); // further off and softer
    EXPECT_EQ(shadow.picture(0, 35, 25), 100);
    // Bend: the middle columns move up, what is uncovered is background.
    LogoState bent = st;
    bent.background = grey(60, 30, 7);
    BendLogo(bent, true);
    EXPECT_EQ(bent.shape[size_t(5) * 60 + 25], 255); // up by 5 in the middle
    EXPECT_EQ(bent.picture(0, 30, 29), 7);
    EXPECT_EQ(bent.picture(0, 0, 29), 100); // the edge column does not move
}
