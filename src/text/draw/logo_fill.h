// Colour helpers shared by the logo maker's steps.
#pragma once

#include "text/draw/logo.h"

#include <cstdint>

namespace ostrivex {

// a + (b - a) * t per channel, rounded to nearest, halves up (0x00BBGGRR colours; t is
// taken in steps of 1/65536).
uint32_t LerpColour(uint32_t a, uint32_t b, double t);
// The texture's colour for picture pixel (x, y): tiled from the corner, waved when the
// texture deforms.
uint32_t TextureColour(const LogoTexture& t, int x, int y);
// The mean colour of a picture (black for none).
uint32_t MeanColour(const Bits& p);

} // namespace ostrivex
