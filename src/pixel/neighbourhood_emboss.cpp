// EMBOSS and Engrave: the difference between a pixel and its lower-right neighbour, scaled
// by weight / 10 and lifted to mid-grey: byte(|d * w + 128|). A result outside a byte is a
// failed statement and the byte keeps its source value. The last column and the last row
// have no lower-right neighbour inside the image: a pixel of the last column copies the
// output to its left, one of the last row (not the last column) the output above it.
#include "pixel/bitfilter.h"
#include "pixel/vbmath.h"

#include <cmath>

namespace ostrivex {

namespace {

// The output of every difference -255..255: a byte, or -1 where byte() fails.
struct EmbossTable {
    int16_t v[511];
    EmbossTable(int32_t weight) {
        const float w = static_cast<float>(weight / 10.0);
        for (int32_t d = -255; d <= 255; ++d) {
            uint8_t b = 0;
            v[d + 255] = toByte(std::fabs(double(d) * double(w) + 128.0), b) ? int16_t(b) : -1;
        }
    }
    int16_t operator()(int32_t d) const { return v[d + 255]; }
};

} // namespace

Bits cBitFilter::EMBOSS(int32_t weight) { return embossBy(weight, 1); }
Bits cBitFilter::Engrave(int32_t weight) { return embossBy(weight, -1); }

// sign 1: d = C(x, y) - C(x + 1, y + 1) (EMBOSS); sign -1: the other way round (Engrave).
Bits cBitFilter::embossBy(int32_t weight, int32_t sign) {
    const EmbossTable table(weight);
    Bits out = buffer_;
    RegionBounds(0);
    const ptrdiff_t down = ptrdiff_t(buffer_.stride()) + 4;
    forEachSpan([&](int32_t y, int32_t x0, int32_t x1) {
        for (int32_t x = x0; x < x1; ++x) {
            uint8_t* o = out.pixel(x, y);
            if (x == lastColumn_) {
                const uint8_t* l = out.pixel(x - 1, y);
                o[0] = l[0], o[1] = l[1], o[2] = l[2];
            } else if (y == lastRow_) {
                const uint8_t* u = out.pixel(x, y - 1);
                o[0] = u[0], o[1] = u[1], o[2] = u[2];
            } else {
                const uint8_t* s = buffer_.pixel(x, y);
                for (int c = 0; c < 3; ++c) {
                    const int16_t v = table(sign * (int32_t(s[c]) - s[c + down]));
                    if (v >= 0) o[c] = uint8_t(v);
                }
            }
        }
    });
    finishProgress();
    return out;
}

} // namespace ostrivex
