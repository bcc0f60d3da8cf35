// Pixels read from the image, and source buffers placed onto it: BitsGetPixel, BitsPaint,
// BitsPaintPreMasked, BitsBWMask.
#include "document/paint/paint.h"
#include "document/paint/paint_internal.h"

#include <algorithm>

namespace ostrivex {

using namespace paint_detail;

void CreateDoneBitsTable(DoneBits& done, const Bits& bits) {
    done.reset(bits.width(), bits.height());
}

int32_t BitsGetPixel(const Bits& bits, int32_t x, int32_t y) {
    if (bits.empty()) return -1;
    if (x < 0 || y < 0 || x >= bits.width() || y >= bits.height()) return 0;
    const uint8_t* p = bits.pixel(x, y);
    return int32_t(packColour(p[2], p[1], p[0]));
}

namespace {

// The part of the image covered by a source of w x h at (x, y); false when there is none
// or when either buffer has no pixels.
bool sourceBox(const Bits& bits, const Bits& source, int32_t x, int32_t y, Rect& box) {
    if (bits.width() == 0 || bits.height() == 0 || source.width() == 0 ||
        source.height() == 0)
        return false;
    box.left = std::max(x, 0);
    box.top = std::max(y, 0);
    box.right = int32_t(std::min<int64_t>(int64_t(x) + source.width(), bits.width()));
    box.bottom = int32_t(std::min<int64_t>(int64_t(y) + source.height(), bits.height()));
    return !box.isEmpty();
}

// Walks the box column by column, calling fn(image pixel, source pixel) inside the region.
template <class Fn>
void forEachPlaced(Bits& bits, const Region& region, const Bits& source, int32_t x, int32_t y,
                   Fn&& fn) {
    Rect box;
    if (!sourceBox(bits, source, x, y, box)) return;
    for (int32_t ix = box.left; ix < box.right; ++ix)
        for (int32_t iy = box.top; iy < box.bottom; ++iy)
            if (region.contains(ix, iy)) fn(bits.pixel(ix, iy), source.pixel(ix - x, iy - y));
}

} // namespace

void BitsPaint(Bits& bits, const Region& region, DoneBits&, int32_t x, int32_t y,
               const Bits& source, int32_t transparent, int32_t pressure) {
    const double p = pressure / 100.0;
    const bool keyed = transparent != -1;
    const Channels key = channelsOf(transparent);
    forEachPlaced(bits, region, source, x, y, [&](uint8_t* d, const uint8_t* s) {
        if (keyed && s[0] == key.c[0] && s[1] == key.c[1] && s[2] == key.c[2]) return;
        for (int c = 0; c < 3; ++c) d[c] = blend(s[c], d[c], p);
    });
}

void BitsPaintPreMasked(Bits& bits, const Region& region, DoneBits&, int32_t x, int32_t y,
                        const Bits& source, int32_t pressure) {
    const double p = pressure / 100.0;
    forEachPlaced(bits, region, source, x, y, [&](uint8_t* d, const uint8_t* s) {
        if (s[3] == 255) return;
        for (int c = 0; c < 3; ++c) d[c] = blend(s[c], d[c], p);
    });
}

void BitsBWMask(Bits& bits, const Region& region, DoneBits&, int32_t x, int32_t y,
                const Bits& mask, int32_t colour, int32_t pressure) {
    const double p = pressure / 100.0;
    const Channels col = channelsOf(colour);
    forEachPlaced(bits, region, mask, x, y, [&](uint8_t* d, const uint8_t* s) {
        const int32_t v = s[0];
        if (v >= 190) return;
        const double a = (1.0 - v / 190.0) * p;
        for (int c = 0; c < 3; ++c) d[c] = blend(col.c[c], d[c], a);
    });
}

} // namespace ostrivex
