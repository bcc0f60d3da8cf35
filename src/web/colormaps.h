// The fixed colour maps of the optimizer, and the nearest-colour search every map uses.
//
// The fixed maps are built exactly:
// - "216 InternetSafe": the web-safe cube, levels 0, 51, ..., 255 on each channel, entry
//   r * 36 + g * 6 + b.
// - "VGA": the 16 colours of the VGA's default palette (levels 0x00, 0xAA, 0x55, 0xFF; entry
//   6 is brown, 0xAA5500).
// - "Fixed Grey": n greys evenly spaced from black to white, Round(i * 255 / (n - 1)).
// - "Fixed Color": a uniform colour cube of the preset's size: 256 = 8 x 8 x 4 (red, green,
//   blue levels), 128 = 4 x 8 x 4, 64 = 4 x 4 x 4, 32 = 4 x 4 x 2, 16 = 2 x 4 x 2, 8 = 2 x 2 x 2
//   (the cube's corners); entry (r * G + g) * B + b. No cube on three channels has two or
//   four entries, so two colours are black and white, four are black, cyan, magenta, white
//   (the classic four-colour display palette).
// - "MS Map": the Windows system palette of the preset's size: black and white for two;
//   the 16 Windows colours (levels 0x00, 0x80, 0xC0, 0xFF) for sixteen; for 256 the 20 static
//   colours (entries 0..9 and the last ten) around the web-safe cube's other 208 colours:
//   228 entries.
// - "MS 256": the Windows halftone palette of 256: "MS Map"'s 228 colours and 28 greys
//   between the cube's levels, Round(i * 255 / 29) for i = 1..28, placed before the last ten
//   static colours, so the 20 static colours keep entries 0..9 and 246..255.
#pragma once

#include <cstdint>
#include <vector>

namespace ostrivex {

struct PaletteColour {
    uint8_t r = 0, g = 0, b = 0;
    bool operator==(const PaletteColour&) const = default;
};
using Palette = std::vector<PaletteColour>;

Palette WebSafePalette();
Palette VgaColourMap();
Palette FixedGreyPalette(int count);
Palette FixedColorPalette(int bits);
// The 20 static colours of the Windows palette, in palette order (10 low, 10 high).
Palette SystemStaticColours();
Palette MsMapPalette(int bits);
Palette Ms256Palette();

// The fixed palette of a palette mode at a depth (1..8 bits); empty for "Optimal" and for
// values outside the list.
Palette FixedPalette(int32_t paletteMode, int bits);

// The step between neighbouring levels of a palette on each channel, which the ordered
// dithers spread their pattern over: a cube's level step per channel (a grey ramp's on all
// three); for any other palette, the median distance from an entry to its nearest other
// entry, at most 255. Red, green, blue.
struct DitherSpread {
    int r = 255, g = 255, b = 255;
};
DitherSpread SpreadOf(int32_t paletteMode, int bits, const Palette& palette);

// Exact nearest-colour search on a palette (squared distance in RGB; on a tie the lower
// entry wins). The colour space is cut into 32 x 32 x 32 cells; each cell keeps, once it is
// first asked, the entries that can be nearest to some colour inside it, ordered by their
// least possible distance, so a search reads a few entries instead of all. A small
// direct-mapped cache in front answers repeated colours at once. One object per thread.
class NearestColour {
public:
    explicit NearestColour(const Palette& palette);
    uint8_t operator()(uint8_t r, uint8_t g, uint8_t b);

private:
    struct Candidate {
        uint8_t index;
        int32_t minDistance;
    };
    void fillCell(uint32_t cell);

    Palette palette_;
    std::vector<int32_t> cellStart_;  // per cell: offset into candidates_, -1 not yet made
    std::vector<uint16_t> cellCount_;
    std::vector<Candidate> candidates_;
    std::vector<uint32_t> cacheKey_;  // colour | 1 << 24, 0 for an empty slot
    std::vector<uint8_t> cacheIndex_;
};

} // namespace ostrivex
