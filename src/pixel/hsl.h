// Hue, saturation and luminosity.
//
// Hue is not in degrees: it runs from -1 to 5, one unit being 60 degrees, with 0 red,
// 2 green and 4 blue. Saturation and luminosity run from 0 to 1. All three are 32-bit
// floats, and every step of both conversions is done in single precision, so that the
// filters built on them (and their fast paths) agree byte for byte.
#pragma once

#include <cstdint>

namespace ostrivex {

// From bytes 0..255 to hue (-1..5), saturation and luminosity (0..1). Grey gives hue 0
// and saturation 0. When two channels tie for the largest, red wins, then green.
void RGBToHSL(int32_t red, int32_t green, int32_t blue, float& hue, float& saturation,
              float& luminosity);

// From hue, saturation and luminosity to rounded channel values (ties to even). The
// results are not clamped: a hue outside -1..5 can give values outside 0..255.
void HSLToRGB(float hue, float saturation, float luminosity, int32_t& red, int32_t& green,
              int32_t& blue);

} // namespace ostrivex
