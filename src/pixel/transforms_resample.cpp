// Scaling: bilinear (BitsResample) and nearest neighbour (BitsResize).
//
// Arithmetic: the ratios are held in single precision; a position is the product of the
// whole-number coordinate and that single-precision ratio, taken in double precision (so it
// is exact), and the weights and sums are in double precision. Every rounding is to the
// nearest integer with ties to even.
//
// Speed: all positions and weights depend on x alone or on y alone, so they are tables
// built before the loops. BitsResample interpolates along y first, once per output row, for
// just the source columns that the row will read; the horizontal step then reads two of
// those values per output pixel. The rounding uses the 2^52 trick, which rounds to nearest
// with ties to even for any value in 0..2^51 in the default rounding mode, so that the
// loops vectorise instead of calling nearbyint.
#include "pixel/bitfilter.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

namespace ostrivex {

namespace {

// Round to nearest, ties to even, for 0 <= v < 2^51 (all values here lie in 0..255).
inline double roundEven(double v) {
    constexpr double kShift = 4503599627370496.0; // 2^52
    return (v + kShift) - kShift;
}

// One output row of the horizontal step: out[x] = Round((1 - dx) * left + dx * right),
// left and right being the vertical results at columns ix and ix + 1.
void horizontalRow(uint8_t* out, int32_t w, const int32_t* ix, const double* w0,
                   const double* w1, const double* v0, const double* v1, const double* v2) {
    for (int32_t x = 0; x < w; ++x) {
        const int32_t i = ix[x];
        const double b = roundEven(w0[x] * v0[i] + w1[x] * v0[i + 1]);
        const double g = roundEven(w0[x] * v1[i] + w1[x] * v1[i + 1]);
        const double r = roundEven(w0[x] * v2[i] + w1[x] * v2[i + 1]);
        const uint32_t px = uint32_t(int32_t(b)) | (uint32_t(int32_t(g)) << 8) |
                            (uint32_t(int32_t(r)) << 16);
        std::memcpy(out + size_t(x) * 4u, &px, 4);
    }
}

} // namespace

void cBitFilter::BitsResample(const Bits& source, int32_t width, int32_t height) {
    const int32_t ws = source.width(), hs = source.height();
    const float ratioX = float(double(ws - 1) / double(width));
    const float ratioY = float(double(hs - 1) / double(height));
    const int32_t w = std::max(width, 0), h = std::max(height, 0);

    // Column tables.
    std::vector<int32_t> ix(size_t(w) + 1);
    std::vector<double> w0(size_t(w) + 1), w1(size_t(w) + 1);
    for (int32_t x = 0; x < w; ++x) {
        const double fx = double(x) * double(ratioX);
        const double fl = std::floor(fx);
        ix[size_t(x)] = int32_t(fl);
        w1[size_t(x)] = fx - fl;
        w0[size_t(x)] = 1.0 - w1[size_t(x)];
    }
    // The source columns the horizontal step reads (ix and ix + 1), in increasing order.
    std::vector<int32_t> cols;
    cols.reserve(size_t(w) * 2);
    for (int32_t x = 0; x < w; ++x)
        for (int32_t c : {ix[size_t(x)], ix[size_t(x)] + 1})
            if (cols.empty() || cols.back() < c) cols.push_back(c);
    // Vertical results by source column; the reads may reach into the guard band.
    const int32_t lo = cols.empty() ? 0 : cols.front();
    const int32_t span = cols.empty() ? 0 : cols.back() - lo + 1;
    std::vector<double> vb(static_cast<size_t>(span)), vg(vb), vr(vb);
    for (int32_t& v : ix) v -= lo;
    for (int32_t& c : cols) c -= lo;

    Bits fresh;
    Bits& out = (&source == &buffer_) ? fresh : buffer_;
    out.reset(w, h);
    lastColumn_ = w - 1;
    lastRow_ = h - 1;
    image_ = {0, 0, w, h};

    for (int32_t y = 0; y < h; ++y) {
        const double fy = double(y) * double(ratioY);
        const double fl = std::floor(fy);
        const int32_t iy = int32_t(fl);
        const double dy1 = fy - fl, dy0 = 1.0 - dy1;
        const uint8_t* top = source.pixel(lo, iy);
        const uint8_t* bottom = source.pixel(lo, iy + 1);
        for (int32_t c : cols) {
            const uint8_t* p = top + size_t(c) * 4u;
            const uint8_t* q = bottom + size_t(c) * 4u;
            vb[size_t(c)] = roundEven(dy0 * p[0] + dy1 * q[0]);
            vg[size_t(c)] = roundEven(dy0 * p[1] + dy1 * q[1]);
            vr[size_t(c)] = roundEven(dy0 * p[2] + dy1 * q[2]);
        }
        horizontalRow(out.row(y), w, ix.data(), w0.data(), w1.data(), vb.data(), vg.data(),
                      vr.data());
        progressStep(y);
    }
    if (&out == &fresh) buffer_ = std::move(fresh);
    finishProgress();
}

void cBitFilter::BitsResize(const Bits& source, int32_t width, int32_t height) {
    const int32_t ws = source.width(), hs = source.height();
    const float ratioX = float(double(ws) / double(width));
    const float ratioY = float(double(hs) / double(height));
    const int32_t w = std::max(width, 0), h = std::max(height, 0);
    std::vector<int32_t> sx(static_cast<size_t>(w));
    for (int32_t x = 0; x < w; ++x) sx[size_t(x)] = int32_t(std::floor(double(x) * double(ratioX)));

    Bits fresh;
    Bits& out = (&source == &buffer_) ? fresh : buffer_;
    out.reset(w, h);
    lastColumn_ = w - 1;
    lastRow_ = h - 1;
    image_ = {0, 0, w, h};

    int32_t previous = 0;
    for (int32_t y = 0; y < h; ++y) {
        const int32_t sy = int32_t(std::floor(double(y) * double(ratioY)));
        uint8_t* o = out.row(y);
        if (y > 0 && sy == previous) {
            // The same source row as the row above: the same output row.
            std::memcpy(o, o - out.stride(), size_t(w) * 4u);
        } else {
            const uint8_t* s = source.row(sy);
            const int32_t* tab = sx.data();
            for (int32_t x = 0; x < w; ++x) {
                uint32_t v;
                std::memcpy(&v, s + size_t(tab[x]) * 4u, 4);
                v &= 0x00FFFFFFu;
                std::memcpy(o + size_t(x) * 4u, &v, 4);
            }
        }
        previous = sy;
        progressStep(y);
    }
    if (&out == &fresh) buffer_ = std::move(fresh);
    finishProgress();
}

} // namespace ostrivex
