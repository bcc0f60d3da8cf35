// The paint primitives: the `Bits*` operations that the paint tools, the stamp, the paste
// and the batch tool write into an image with.
//
// They know nothing of the mouse or of a window: each takes the image, the region it may
// paint in (the selection if there is one, else the whole image), the stroke's `DoneBits`
// table, and the tool's arguments in image coordinates. None of them keeps undo state.
//
// Every painted pixel is tested against the region and, besides, against the image's own
// rectangle, so a region that reaches past the image (or a stroke that starts outside it)
// never writes into the guard band.
//
// Colours are 0x00BBGGRR; pressure is an integer percent (0 to 100) and a blend of new
// over old is new*p + old*(1-p) in double precision, rounded to nearest with ties to even.
#pragma once

#include "pixel/bits.h"
#include "pixel/region.h"

#include <cstdint>
#include <vector>

namespace ostrivex {

// One flag per pixel of the image, indices 0 to W+2 and 0 to H+2, all false when made.
// A stroke makes a fresh table at its start, so that a pixel is painted once in the
// stroke however often the brush passes over it.
class DoneBits {
public:
    DoneBits() = default;
    DoneBits(int32_t w, int32_t h) { reset(w, h); }

    // Reallocates for an image of w x h: every flag false.
    void reset(int32_t w, int32_t h) {
        w_ = w < 0 ? 0 : w;
        h_ = h < 0 ? 0 : h;
        flags_.assign(size_t(w_ + 3) * size_t(h_ + 3), 0);
    }

    int32_t width() const { return w_; }
    int32_t height() const { return h_; }
    bool empty() const { return flags_.empty(); }

    // Flags outside 0..W+2, 0..H+2 read as set, so nothing paints there.
    bool get(int32_t x, int32_t y) const {
        if (!inTable(x, y)) return true;
        return flags_[index(x, y)] != 0;
    }
    void set(int32_t x, int32_t y) {
        if (inTable(x, y)) flags_[index(x, y)] = 1;
    }

    // The flags row by row, (W + 3) to a row, for walks that index them directly.
    uint8_t* data() { return flags_.data(); }
    size_t stride() const { return size_t(w_ + 3); }

private:
    bool inTable(int32_t x, int32_t y) const {
        return x >= 0 && y >= 0 && x <= w_ + 2 && y <= h_ + 2 && !flags_.empty();
    }
    size_t index(int32_t x, int32_t y) const {
        return size_t(y) * size_t(w_ + 3) + size_t(x);
    }

    int32_t w_ = 0;
    int32_t h_ = 0;
    std::vector<uint8_t> flags_;
};

// What `BitsBrushLine` stamps along its path.
enum class BrushKind : int32_t {
    Brush = 0,       // BitsBrush
    Soften = 1,      // BitsSoften, once per pixel in the stroke
    SoftenRepeat = 2,// BitsSoften, again at every pass
    Sharpen = 3,     // BitsSharpen
    Lighten = 4,     // BitsBrightness, lighten
    Darken = 5,      // BitsBrightness, darken
};

// A fresh table for the image: every flag false. Called at the start of a stroke.
void CreateDoneBitsTable(DoneBits& done, const Bits& bits);

// The colour of the pixel: -1 with no picture, 0 outside the image, else 0x00BBGGRR.
int32_t BitsGetPixel(const Bits& bits, int32_t x, int32_t y);

// Source pixels (a Bits) placed with their top left at (x, y), column by column. The
// caller passes the selection's effective region or the whole image's region (the tool's
// use-selection flag). A source pixel equal to `transparent` (0x00BBGGRR; -1 for none) is
// skipped; the others blend with the pressure.
void BitsPaint(Bits& bits, const Region& region, DoneBits& done, int32_t x, int32_t y,
               const Bits& source, int32_t transparent, int32_t pressure);
// As BitsPaint, with the source's channel 3 as a skip mask: 255 skips, anything else
// blends all three colour channels with the pressure.
void BitsPaintPreMasked(Bits& bits, const Region& region, DoneBits& done, int32_t x,
                        int32_t y, const Bits& source, int32_t pressure);
// A black-on-white mask (channel 0) drawn in the colour: mask values of 190 and up are
// skipped; below, weight (1 - v/190) * pressure/100. Anti-aliased text is drawn this way.
void BitsBWMask(Bits& bits, const Region& region, DoneBits& done, int32_t x, int32_t y,
                const Bits& mask, int32_t colour, int32_t pressure);

// Anti-aliased line: two samples per step, each spread over four pixels. Samples that
// overlap darken twice: the table of done pixels plays no part.
void BitsLine(Bits& bits, const Region& region, DoneBits& done, int32_t x1, int32_t y1,
              int32_t x2, int32_t y2, int32_t colour, int32_t pressure);
// The four sides, clockwise from (x1, y1).
void BitsRectangle(Bits& bits, const Region& region, DoneBits& done, int32_t x1, int32_t y1,
                   int32_t x2, int32_t y2, int32_t colour, int32_t pressure);
// Regular polygon of `sides` sides about (cx, cy) with one vertex at (px, py).
void BitsPolygon(Bits& bits, const Region& region, DoneBits& done, int32_t cx, int32_t cy,
                 int32_t px, int32_t py, int32_t sides, int32_t colour, int32_t pressure);
// Outline of the ellipse of radii rx, ry about (cx, cy), in the line's anti-aliased plot.
void BitsEllipse(Bits& bits, const Region& region, DoneBits& done, int32_t cx, int32_t cy,
                 int32_t rx, int32_t ry, int32_t colour, int32_t pressure);

// Round brush of radius Round(size/2): flat edge, each pixel once per stroke.
void BitsBrush(Bits& bits, const Region& region, DoneBits& done, int32_t x, int32_t y,
               int32_t size, int32_t pressure, int32_t colour);
// Brush stamps along a line, size/10 apart (a size of 0 must not be passed).
void BitsBrushLine(Bits& bits, const Region& region, DoneBits& done, int32_t x1, int32_t y1,
                   int32_t x2, int32_t y2, int32_t size, int32_t pressure, int32_t colour,
                   BrushKind kind);
// Spray: each pixel of the circle is hit with probability density/100 and takes the
// colour more strongly near the centre; paint builds up (no done table).
void BitsAirbrush(Bits& bits, const Region& region, DoneBits& done, int32_t x, int32_t y,
                  int32_t size, int32_t pressure, int32_t density, int32_t falloff,
                  int32_t colour);
// Multiplies the three channels by 1 + pressure/100 (lighten) or 1 - pressure/100.
void BitsBrightness(Bits& bits, const Region& region, DoneBits& done, int32_t x, int32_t y,
                    int32_t size, int32_t pressure, bool lighten);
// Brush that paints a texture tiled from the image's top left, so the texture stays fixed
// to the image while the brush moves. The tile period includes one guard column and row.
void BitsMasked(Bits& bits, const Region& region, DoneBits& done, int32_t x, int32_t y,
                const Bits& texture, int32_t size, int32_t pressure);
void BitsMaskedLine(Bits& bits, const Region& region, DoneBits& done, int32_t x1, int32_t y1,
                    int32_t x2, int32_t y2, int32_t size, int32_t pressure,
                    const Bits& texture);
// Weighted four-neighbour average, in place (neighbours read as already changed).
void BitsSoften(Bits& bits, const Region& region, DoneBits& done, int32_t x, int32_t y,
                int32_t size, int32_t pressure, bool repeat);
// Four-neighbour sharpen, in place, clamped to 0..255.
void BitsSharpen(Bits& bits, const Region& region, DoneBits& done, int32_t x, int32_t y,
                 int32_t size, int32_t pressure);

// Flood fill from (x, y) of the pixels within `tolerance` (sum of the three channel
// differences) of the seed's colour, four-connected, pass by pass.
void BitsFill(Bits& bits, const Region& region, DoneBits& done, int32_t x, int32_t y,
              int32_t colour, int32_t tolerance, int32_t pressure);
// As BitsFill, painting a texture tiled from the image's top left.
void BitsFillTexture(Bits& bits, const Region& region, DoneBits& done, int32_t x, int32_t y,
                     const Bits& texture, int32_t tolerance, int32_t pressure);

} // namespace ostrivex
