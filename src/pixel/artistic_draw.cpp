// Artistic filters that draw on the image: pencil sketch, brush strokes, dissolve and grid.
#include "pixel/bitfilter.h"
#include "pixel/random.h"
#include "pixel/vbmath.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <vector>

namespace ostrivex {

namespace {

// The grey of a pixel: the truncated mean of its three channels.
inline int32_t greyOf(const uint8_t* p) { return (p[0] + p[1] + p[2]) / 3; }

} // namespace

// Pencil sketch. The neighbourhood sum e is the sum over the eight neighbours of
// |grey(neighbour) - grey(pixel)|, with neighbours past the image's edge taken from the
// nearest edge pixel (a black guard band would draw a frame round every sketch). The
// stroke s = min(255, e * weight / 510) mixes the paper towards the pencil colour:
// channel = paper + (pencil - paper) * s / 255, truncating. The paper is white with bw,
// else the pixel washed halfway to white: c + (255 - c) / 2.
Bits cBitFilter::SKETCH(int32_t weight, bool bw, uint32_t colour) {
    Bits out = buffer_;
    RegionBounds(0);
    const int32_t w1 = lastColumn_, h1 = lastRow_;
    const int32_t pencil[3] = {colourB(colour), colourG(colour), colourR(colour)};
    const Bits& src = buffer_;
    forEachSpan([&](int32_t y, int32_t x0, int32_t x1) {
        const int32_t yUp = std::max(y - 1, 0), yDown = std::min(y + 1, h1);
        uint8_t* d = out.pixel(x0, y);
        for (int32_t x = x0; x < x1; ++x, d += 4) {
            const int32_t xl = std::max(x - 1, 0), xr = std::min(x + 1, w1);
            const int32_t g = greyOf(src.pixel(x, y));
            const int32_t e = std::abs(greyOf(src.pixel(xl, yUp)) - g) +
                              std::abs(greyOf(src.pixel(x, yUp)) - g) +
                              std::abs(greyOf(src.pixel(xr, yUp)) - g) +
                              std::abs(greyOf(src.pixel(xl, y)) - g) +
                              std::abs(greyOf(src.pixel(xr, y)) - g) +
                              std::abs(greyOf(src.pixel(xl, yDown)) - g) +
                              std::abs(greyOf(src.pixel(x, yDown)) - g) +
                              std::abs(greyOf(src.pixel(xr, yDown)) - g);
            const int32_t s = std::min(e * weight / 510, 255);
            for (int c = 0; c < 3; ++c) {
                const int32_t paper = bw ? 255 : d[c] + (255 - d[c]) / 2;
                d[c] = clampByte(paper + (pencil[c] - paper) * s / 255);
            }
        }
    });
    finishProgress();
    return out;
}

// Brush strokes. Each pixel is the mean (truncating) of a stroke of 7 pixels centred on it
// and laid along the edge through it, so strokes follow the shapes of the picture. The
// edge comes from the grey differences gx = grey(x + 1, y) - grey(x - 1, y) and
// gy = grey(x, y + 1) - grey(x, y - 1): a flat spot (both 0) gets the diagonal (1, 1); a
// mostly horizontal change (|gx| >= 2 |gy|) a vertical stroke; a mostly vertical change
// (|gy| >= 2 |gx|) a horizontal one; otherwise the diagonal across the change, (1, -1)
// when gx and gy have the same sign, else (1, 1). Coordinates past the image's edge are
// taken from the nearest edge pixel.
Bits cBitFilter::PAINTING() {
    Bits out = buffer_;
    RegionBounds(0);
    const int32_t w1 = lastColumn_, h1 = lastRow_;
    const Bits& src = buffer_;
    constexpr int32_t kHalf = 3, kLength = 2 * kHalf + 1;
    const ptrdiff_t stride = ptrdiff_t(src.stride());
    // The greys of three image rows, each kept in slot row mod 3 and made when first asked.
    const size_t w = size_t(std::max(w1 + 1, 0));
    std::vector<int32_t> greyRows(3 * w);
    int32_t rowInSlot[3] = {-1, -1, -1};
    auto greyRow = [&](int32_t yy) -> const int32_t* {
        const int slot = yy % 3;
        int32_t* g = greyRows.data() + size_t(slot) * w;
        if (rowInSlot[slot] != yy) {
            const uint8_t* s = src.row(yy);
            for (size_t x = 0; x < w; ++x) g[x] = greyOf(s + 4 * x);
            rowInSlot[slot] = yy;
        }
        return g;
    };
    forEachSpan([&](int32_t y, int32_t x0, int32_t x1) {
        const int32_t* gUp = greyRow(std::max(y - 1, 0));
        const int32_t* gMid = greyRow(y);
        const int32_t* gDown = greyRow(std::min(y + 1, h1));
        uint8_t* d = out.pixel(x0, y);
        for (int32_t x = x0; x < x1; ++x, d += 4) {
            const int32_t gx = gMid[std::min(x + 1, w1)] - gMid[std::max(x - 1, 0)];
            const int32_t gy = gDown[x] - gUp[x];
            const int32_t ax = std::abs(gx), ay = std::abs(gy);
            // The same choice as the rule above, written as selections rather than jumps:
            // on a busy picture the direction changes from pixel to pixel.
            const bool flat = (gx | gy) == 0, across = ax >= 2 * ay, along = ay >= 2 * ax;
            const bool sameSign = (gx > 0) == (gy > 0);
            const int32_t sx = (!flat && across) ? 0 : 1;
            const int32_t sy = (flat || across) ? 1 : (along ? 0 : (sameSign ? -1 : 1));
            int32_t sum[3] = {0, 0, 0};
            if (x >= kHalf && x + kHalf <= w1 && y >= kHalf && y + kHalf <= h1) {
                // Away from the edges the stroke is a fixed step through the buffer.
                const ptrdiff_t step = ptrdiff_t(sx) * 4 + ptrdiff_t(sy) * stride;
                const uint8_t* s = src.pixel(x, y) - kHalf * step;
                for (int32_t i = 0; i < kLength; ++i, s += step) {
                    sum[0] += s[0];
                    sum[1] += s[1];
                    sum[2] += s[2];
                }
            } else {
                for (int32_t i = -kHalf; i <= kHalf; ++i) {
                    const int32_t px = std::clamp(x + i * sx, 0, w1);
                    const int32_t py = std::clamp(y + i * sy, 0, h1);
                    const uint8_t* s = src.pixel(px, py);
                    sum[0] += s[0];
                    sum[1] += s[1];
                    sum[2] += s[2];
                }
            }
            d[0] = uint8_t(sum[0] / kLength);
            d[1] = uint8_t(sum[1] / kLength);
            d[2] = uint8_t(sum[2] / kLength);
        }
    });
    finishProgress();
    return out;
}

// Each pixel of the region turns into the colour when Rnd() falls below level / 100, so
// about level percent of them do; level 0 changes nothing and 100 fills the region.
Bits cBitFilter::Dissolve(int32_t level, uint32_t colour) {
    Bits out = buffer_;
    RegionBounds(0);
    const float chance = float(level / 100.0);
    const uint8_t b = colourB(colour), g = colourG(colour), r = colourR(colour);
    forEachSpan([&](int32_t y, int32_t x0, int32_t x1) {
        uint8_t* d = out.pixel(x0, y);
        for (int32_t x = x0; x < x1; ++x, d += 4)
            if (Rnd() < chance) {
                d[0] = b;
                d[1] = g;
                d[2] = r;
            }
    });
    finishProgress();
    return out;
}

// Grid lines: the columns hStep apart and the rows vStep apart, counted from the box's
// left and top edges, and with forceMargins also the box's last column and last row, so
// the grid is closed on every side. A line pixel is mixed with the colour:
// round((channel * (255 - opacity) + colour * opacity) / 255). A step below 1 draws no lines
// in its direction (its modulo fails).
Bits cBitFilter::Grid(int32_t hStep, int32_t vStep, bool forceMargins, uint32_t colour,
                      int32_t opacity) {
    Bits out = buffer_;
    RegionBounds(0);
    const int32_t ink[3] = {colourB(colour), colourG(colour), colourR(colour)};
    const int32_t keep = 255 - opacity;
    uint8_t mix[3][256];
    for (int c = 0; c < 3; ++c)
        for (int v = 0; v < 256; ++v)
            mix[c][v] = clampByte(vbRound((v * keep + ink[c] * opacity) / 255.0));
    const int32_t left = boxLeft_, top = boxTop_, right = boxRight_, bottom = boxBottom_;
    auto onColumn = [&](int32_t x) {
        return (hStep >= 1 && (x - left) % hStep == 0) || (forceMargins && x == right);
    };
    forEachSpan([&](int32_t y, int32_t x0, int32_t x1) {
        const bool lineRow = (vStep >= 1 && (y - top) % vStep == 0) || (forceMargins && y == bottom);
        uint8_t* d = out.pixel(x0, y);
        for (int32_t x = x0; x < x1; ++x, d += 4)
            if (lineRow || onColumn(x)) {
                d[0] = mix[0][d[0]];
                d[1] = mix[1][d[1]];
                d[2] = mix[2][d[2]];
            }
    });
    finishProgress();
    return out;
}

} // namespace ostrivex
