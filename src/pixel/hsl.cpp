#include "pixel/hsl.h"

#include <cmath>

namespace ostrivex {

void RGBToHSL(int32_t red, int32_t green, int32_t blue, float& hue, float& saturation,
              float& luminosity) {
    const float r = float(red) / 255.0f;
    const float g = float(green) / 255.0f;
    const float b = float(blue) / 255.0f;
    float mx = r, mn = r;
    if (g > mx) mx = g;
    if (b > mx) mx = b;
    if (g < mn) mn = g;
    if (b < mn) mn = b;
    luminosity = (mx + mn) / 2.0f;
    if (mx == mn) {
        saturation = 0.0f;
        hue = 0.0f;
        return;
    }
    const float d = mx - mn;
    if (luminosity <= 0.5f)
        saturation = d / (mx + mn);
    else
        saturation = d / (2.0f - mx - mn);
    // Red is tested first, then green: a tie for the largest goes to the earlier one.
    if (r == mx)
        hue = (g - b) / d;
    else if (g == mx)
        hue = 2.0f + (b - r) / d;
    else
        hue = 4.0f + (r - g) / d;
}

void HSLToRGB(float hue, float saturation, float luminosity, int32_t& red, int32_t& green,
              int32_t& blue) {
    float r, g, b;
    if (saturation == 0.0f) {
        r = g = b = luminosity;
    } else {
        const float mn = luminosity <= 0.5f ? luminosity * (1.0f - saturation)
                                            : luminosity - saturation * (1.0f - luminosity);
        const float mx = 2.0f * luminosity - mn;
        const float d = mx - mn;
        if (hue < 1.0f) {
            r = mx;
            if (hue < 0.0f) {
                g = mn;
                b = mn - hue * d;
            } else {
                b = mn;
                g = mn + hue * d;
            }
        } else if (hue < 3.0f) {
            g = mx;
            if (hue < 2.0f) {
                b = mn;
                r = mn - (hue - 2.0f) * d;
            } else {
                r = mn;
                b = mn + (hue - 2.0f) * d;
            }
        } else {
            b = mx;
            if (hue < 4.0f) {
                r = mn;
                g = mn - (hue - 4.0f) * d;
            } else {
                g = mn;
                r = mn + (hue - 4.0f) * d;
            }
        }
    }
    red = int32_t(std::nearbyintf(r * 255.0f));
    green = int32_t(std::nearbyintf(g * 255.0f));
    blue = int32_t(std::nearbyintf(b * 255.0f));
}

} // namespace ostrivex
