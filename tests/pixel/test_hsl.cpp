#include "pixel/hsl.h"

#include <gtest/gtest.h>

#include <array>

using namespace ostrivex;

namespace {
struct HslValue {
    float h, s, l;
};
HslValue hsl(int r, int g, int b) {
    HslValue v{};
    RGBToHSL(r, g, b, v.h, v.s, v.l);
    return v;
}
// Red, green, blue.
using Rgb = std::array<int32_t, 3>;
Rgb rgb(float h, float s, float l) {
    Rgb v{};
    HSLToRGB(h, s, l, v[0], v[1], v[2]);
    return v;
}
} // namespace

TEST(Hsl, RgbToHslPrimariesGreyAndTies) {
    // Grey: hue 0, saturation 0, luminosity the channel itself.
    HslValue v = hsl(100, 100, 100);
    EXPECT_EQ(v.h, 0.0f);
    EXPECT_EQ(v.s, 0.0f);
    EXPECT_EQ(v.l, 100.0f / 255.0f);

    v = hsl(255, 0, 0);
    EXPECT_EQ(v.h, 0.0f);
    EXPECT_EQ(v.s, 1.0f);
    EXPECT_EQ(v.l, 0.5f);
    v = hsl(0, 0, 255); // pure blue is hue 4
    EXPECT_EQ(v.h, 4.0f);
    EXPECT_EQ(v.s, 1.0f);
    v = hsl(0, 255, 0);
    EXPECT_EQ(v.h, 2.0f);

    // Ties for the largest: red wins over green (yellow = 0 + (g - b) / d = 1), green over
    // blue (cyan = 2 + (b - r) / d = 3).
    EXPECT_EQ(hsl(255, 255, 0).h, 1.0f);
    EXPECT_EQ(hsl(0, 255, 255).h, 3.0f);
    // Magenta: red is largest, (g - b) / d = -1.
    EXPECT_EQ(hsl(255, 0, 255).h, -1.0f);
    // Just below 5: 4 + (r - g) / d with blue largest.
    EXPECT_NEAR(hsl(250, 0, 255).h, 4.0f + 250.0f / 255.0f, 1e-6);
}

TEST(Hsl, RgbToHslDarkAndLightSaturation) {
    // r 0.2, g 0.4, b 0.8: L = 0.5, S = 0.6 / (0.8 + 0.2), H = 4 + (0.2 - 0.4) / 0.6.
    HslValue v = hsl(51, 102, 204);
    EXPECT_NEAR(v.l, 0.5f, 1e-6);
    EXPECT_NEAR(v.s, 0.6f, 1e-6);
    EXPECT_NEAR(v.h, 4.0f - 1.0f / 3.0f, 1e-6);
    // r 0.8, g 230/255, b 0.6: L = 0.75098 > 0.5, so S = d / (2 - max - min).
    v = hsl(204, 230, 153);
    EXPECT_NEAR(v.l, (230.0f + 153.0f) / 510.0f, 1e-6);
    EXPECT_NEAR(v.s, (77.0f / 255.0f) / (2.0f - 383.0f / 255.0f), 1e-6);
    EXPECT_NEAR(v.h, 2.0f - (51.0f / 255.0f) / (77.0f / 255.0f), 1e-5);
}

TEST(Hsl, HslToRgbSectorsRoundingAndNoClamp) {
    // Grey at 0.5: 127.5 rounds to the even 128.
    EXPECT_EQ(rgb(3.0f, 0.0f, 0.5f), (Rgb{128, 128, 128}));
    // Blue at hue 4: not below 4, so green is the minimum and red min + 0 * d.
    EXPECT_EQ(rgb(4.0f, 1.0f, 0.5f), (Rgb{0, 0, 255}));
    // Hue -0.5: red max, green min, blue = 0 - (-0.5) * 1 = 0.5 -> 127.5 -> 128.
    EXPECT_EQ(rgb(-0.5f, 1.0f, 0.5f), (Rgb{255, 0, 128}));
    // Light: min = 0.75 - 0.5 * 0.25 = 0.625, max = 0.875, d = 0.25; hue 2.5: green max,
    // red min, blue = 0.625 + 0.5 * 0.25 = 0.75 -> 159.375, 223.125, 191.25.
    EXPECT_EQ(rgb(2.5f, 0.5f, 0.75f), (Rgb{159, 223, 191}));
    // Hue 1.5 (green max, blue min, red = min - (1.5 - 2) * d), dark: min = 0.4 * 0.5:
    // red (0.2 + 0.5 * 0.4) * 255, green 0.6 * 255, blue 0.2 * 255.
    EXPECT_EQ(rgb(1.5f, 0.5f, 0.4f), (Rgb{102, 153, 51}));
    // Hue 3.25 (blue max, red min, green = min - (3.25 - 4) * d): green 0.75 * 255 = 191.25.
    EXPECT_EQ(rgb(3.25f, 1.0f, 0.5f), (Rgb{0, 191, 255}));
    // Out of range hue: red = 0 + 1.5 * 1 -> 382.5 -> 382, not clamped.
    EXPECT_EQ(rgb(5.5f, 1.0f, 0.5f), (Rgb{382, 0, 255}));
}

TEST(Hsl, RoundTripOfPrimariesAndGreys) {
    const int colours[][3] = {{255, 0, 0},   {0, 255, 0},   {0, 0, 255}, {255, 255, 0},
                              {0, 255, 255}, {255, 0, 255}, {0, 0, 0},   {255, 255, 255},
                              {17, 17, 17},  {51, 102, 204}};
    for (const auto& c : colours) {
        const HslValue v = hsl(c[0], c[1], c[2]);
        EXPECT_EQ(rgb(v.h, v.s, v.l), (Rgb{c[0], c[1], c[2]}));
    }
}
