// From a true-colour picture and a palette to one palette entry per pixel, with the dither
// of the list.
//
// Every dither but "None" and "Binary" is a threshold pattern: each pixel is moved by an
// offset from a small tile, (t - 1/2) times the palette's step on that channel
// (`SpreadOf`), where t = (rank + 1/2) / cells is the pixel's place in the tile, and then
// takes its nearest palette entry. So a flat colour between two entries comes out as the
// pattern, in the proportion of its place between them.
// - "None": the nearest entry.
// - "Binary": each channel first thresholded at 128 to 0 or 255, then the nearest entry.
// - "Ordered": the 8 x 8 Bayer matrix.
// - "Halftone": an 8 x 8 cell with one round dot: the ranks grow with the distance from
//   the cell's centre, so dark dots grow from the centres and light ones from the corners.
// - "Forward Diagonal", "Backward Diagonal", "Horizontal", "Vertical": line screens of
//   period 4 whose lines thicken from their middle: "\" lines (equal along x - y), "/" lines
//   (equal along x + y), rows, columns; the names follow the Windows hatch brushes, whose
//   forward diagonal runs down to the right.
// - "Odd", "Even": a one-pixel checkerboard; "Odd" puts the upper threshold on the pixels
//   whose x + y is odd, "Even" on those whose x + y is even.
// With `grey`, each pixel is taken as its luminance (0.299 R + 0.587 G + 0.114 B, rounded)
// on all three channels first.
#pragma once

#include "pixel/bits.h"
#include "web/colormaps.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace ostrivex {

// The tile of a dither: `width` x `height` ranks (0 .. width * height - 1, row by row).
// "None" and "Binary" have none (an empty tile).
struct DitherTile {
    int width = 0, height = 0;
    std::vector<uint8_t> rank;
};
DitherTile DitherTileOf(int32_t ditherMode);

// Returns W * H palette indices, row by row; an empty vector when `cancelled` says so
// (it is asked every few rows).
std::vector<uint8_t> MapToPalette(const Bits& picture, const Palette& palette, int32_t ditherMode,
                                  DitherSpread spread, bool grey,
                                  const std::function<bool()>& cancelled = {});

// The luminance of a pixel as the grey maps see it.
inline uint8_t Luminance(uint8_t r, uint8_t g, uint8_t b) {
    return uint8_t((299u * r + 587u * g + 114u * b + 500u) / 1000u);
}

} // namespace ostrivex
