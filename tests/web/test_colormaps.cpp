// The fixed colour maps and the nearest-colour search.
#include "web/colormaps.h"
#include "web/optimizesettings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <set>

namespace ostrivex {
namespace {

std::set<uint32_t> distinct(const Palette& p) {
    std::set<uint32_t> s;
    for (const PaletteColour& c : p) s.insert(uint32_t(c.r) << 16 | uint32_t(c.g) << 8 | c.b);
    return s;
}

bool has(const Palette& p, uint32_t rgb) { return distinct(p).count(rgb) > 0; }

TEST(ColourMaps, WebSafeIsTheSixLevelCube) {
    const Palette p = WebSafePalette();
    ASSERT_EQ(p.size(), 216u);
    const uint8_t levels[6] = {0, 51, 102, 153, 204, 255};
    for (int r = 0; r < 6; ++r)
        for (int g = 0; g < 6; ++g)
            for (int b = 0; b < 6; ++b)
                EXPECT_EQ(p[size_t(r * 36 + g * 6 + b)], (PaletteColour{levels[r], levels[g], levels[b]}));
}

TEST(ColourMaps, VgaAndWindowsPalettes) {
    const Palette vga = VgaColourMap();
    ASSERT_EQ(distinct(vga).size(), 16u);
    for (const PaletteColour& c : vga)
        for (uint8_t v : {c.r, c.g, c.b}) EXPECT_TRUE(v == 0 || v == 0x55 || v == 0xAA || v == 0xFF);
    EXPECT_EQ(vga[6], (PaletteColour{0xAA, 0x55, 0x00})); // brown, the one odd entry
    EXPECT_EQ(vga[15], (PaletteColour{255, 255, 255}));

    const Palette fixed = SystemStaticColours();
    ASSERT_EQ(distinct(fixed).size(), 20u);
    EXPECT_TRUE(has(fixed, 0xC0DCC0) && has(fixed, 0xA6CAF0) && has(fixed, 0xFFFBF0) && has(fixed, 0xA0A0A4));

    EXPECT_EQ(MsMapPalette(1).size(), 2u);
    EXPECT_EQ(distinct(MsMapPalette(4)).size(), 16u);
    const Palette ms = MsMapPalette(8);
    const Palette ms256 = Ms256Palette();
    EXPECT_EQ(distinct(ms).size(), ms.size());
    EXPECT_EQ(ms.size(), 228u);
    ASSERT_EQ(ms256.size(), 256u);
    EXPECT_EQ(distinct(ms256).size(), 256u);
    // The static colours keep Windows' places: the first ten and the last ten.
    for (size_t i = 0; i < 10; ++i) {
        EXPECT_EQ(ms256[i], fixed[i]);
        EXPECT_EQ(ms256[246 + i], fixed[10 + i]);
    }
    for (const PaletteColour& c : WebSafePalette()) EXPECT_TRUE(has(ms256, uint32_t(c.r) << 16 | c.g << 8 | c.b));
}

TEST(ColourMaps, FixedGreyAndFixedColourHaveThePresetsSize) {
    for (int bits = 1; bits <= 8; ++bits) {
        const Palette grey = FixedPalette(MapFixedGrey, bits);
        ASSERT_EQ(grey.size(), size_t(1) << bits);
        EXPECT_EQ(grey.front(), (PaletteColour{0, 0, 0}));
        EXPECT_EQ(grey.back(), (PaletteColour{255, 255, 255}));
        for (size_t i = 0; i < grey.size(); ++i) {
            EXPECT_TRUE(grey[i].r == grey[i].g && grey[i].g == grey[i].b);
            if (i) {
                EXPECT_GT(grey[i].r, grey[i - 1].r);
            }
        }
        // Even spacing: neighbouring steps differ by at most one level (rounding).
        if (grey.size() > 2) {
            int lo = 255, hi = 0;
            for (size_t i = 1; i < grey.size(); ++i) {
                lo = std::min(lo, grey[i].r - grey[i - 1].r);
                hi = std::max(hi, grey[i].r - grey[i - 1].r);
            }
            EXPECT_LE(hi - lo, 1) << bits;
        }
        const Palette colour = FixedPalette(MapFixedColor, bits);
        EXPECT_EQ(colour.size(), size_t(1) << bits);
        EXPECT_EQ(distinct(colour).size(), colour.size());
        EXPECT_TRUE(has(colour, 0x000000) && has(colour, 0xFFFFFF)) << bits;
    }
    // 256 colours: eight levels of red and green, four of blue.
    const Palette cube = FixedColorPalette(8);
    std::set<uint8_t> reds, blues;
    for (const PaletteColour& c : cube) reds.insert(c.r), blues.insert(c.b);
    EXPECT_EQ(reds.size(), 8u);
    EXPECT_EQ(blues, (std::set<uint8_t>{0, 85, 170, 255}));
    EXPECT_TRUE(FixedPalette(MapOptimal, 8).empty());
}

TEST(ColourMaps, SpreadIsTheLevelStep) {
    const DitherSpread web = SpreadOf(MapWebSafe, 8, WebSafePalette());
    EXPECT_EQ(web.r, 51);
    const DitherSpread cube = SpreadOf(MapFixedColor, 8, FixedColorPalette(8));
    EXPECT_EQ(cube.r, 36);
    EXPECT_EQ(cube.b, 85);
    EXPECT_EQ(SpreadOf(MapFixedGrey, 2, FixedGreyPalette(4)).g, 85);
    // An irregular palette: the median distance to the nearest other entry.
    EXPECT_EQ(SpreadOf(MapOptimal, 2, Palette{{0, 0, 0}, {10, 0, 0}, {200, 0, 0}, {210, 0, 0}}).r, 10);
    EXPECT_EQ(SpreadOf(MapOptimal, 1, Palette{{0, 0, 0}, {255, 255, 255}}).r, 255);
}

TEST(ColourMaps, NearestColourEqualsTheFullSearch) {
    uint32_t s = 99;
    const auto next = [&s] { return s = s * 1103515245u + 12345u, uint8_t(s >> 16); };
    for (int round = 0; round < 6; ++round) {
        Palette p;
        const int n = round == 0 ? 1 : round == 1 ? 2 : 7 + round * 40;
        for (int i = 0; i < n; ++i) p.push_back({next(), next(), next()});
        if (round == 2) p.push_back(p[3]); // a repeated entry: the lower index wins
        NearestColour nearest(p);
        for (int k = 0; k < 20000; ++k) {
            const uint8_t r = next(), g = next(), b = next();
            int best = 0, bestD = INT32_MAX;
            for (size_t i = 0; i < p.size(); ++i) {
                const int d = (r - p[i].r) * (r - p[i].r) + (g - p[i].g) * (g - p[i].g) +
                              (b - p[i].b) * (b - p[i].b);
                if (d < bestD) bestD = d, best = int(i);
            }
            ASSERT_EQ(nearest(r, g, b), best) << "round " << round << " colour " << int(r) << ","
                                              << int(g) << "," << int(b);
            ASSERT_EQ(nearest(r, g, b), best); // the cached answer
        }
    }
}

} // namespace
} // namespace ostrivex
