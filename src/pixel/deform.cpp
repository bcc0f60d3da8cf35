// Geometric deformations: every output pixel of the region's box asks where in the source
// it comes from (inverse mapping), with the source coordinate rounded to the nearest pixel,
// ties to even; no interpolation.
//
// Precision. The factors (h, v, the angle, its cosine and sine...) are kept as 32-bit
// floats; the products with the integer offsets dx and dy are then taken in double, the
// way a product of a 32-bit integer and a single is widened to a double. Where a term
// depends only on the column or only on the row, it is put in a table before the loop:
// the table holds the very same double, so the result does not change.
#include "pixel/bitfilter.h"
#include "pixel/deform_map.h"
#include "pixel/polar.h"
#include "pixel/vbmath.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace ostrivex {

using deform::roundEven;

namespace {
// Degrees to radians as the deformations write it.
constexpr double kDegToRad = 0.0174533;
// 2 pi from the 32-bit pi.
constexpr float kTwoPi = 2.0f * kDeformPi;
} // namespace

Bits cBitFilter::STRETCH(int32_t horizontal, int32_t vertical, bool cleanBack) {
    RegionBounds(0);
    const int32_t cx = (boxLeft_ + boxRight_) >> 1, cy = (boxTop_ + boxBottom_) >> 1;
    const float h = float(horizontal / 100.0 + 1), v = float(vertical / 100.0 + 1);
    // sx depends on the column only, sy on the row only.
    const int32_t left = boxLeft_, top = boxTop_;
    std::vector<int32_t> sxOf(size_t(std::max(boxRight_ - boxLeft_ + 1, 0)));
    std::vector<int32_t> syOf(size_t(std::max(boxBottom_ - boxTop_ + 1, 0)));
    for (size_t i = 0; i < sxOf.size(); ++i)
        sxOf[i] = roundEven(double(left + int32_t(i) - cx) * h + cx);
    for (size_t i = 0; i < syOf.size(); ++i)
        syOf[i] = roundEven(double(top + int32_t(i) - cy) * v + cy);
    return deformMap(cleanBack, [&](int32_t x, int32_t y, int32_t& sx, int32_t& sy) {
        sx = sxOf[size_t(x - left)];
        sy = syOf[size_t(y - top)];
    });
}

Bits cBitFilter::ROTATE(int32_t degrees, bool cleanBack) {
    RegionBounds(0);
    const int32_t cx = (boxLeft_ + boxRight_) >> 1, cy = (boxTop_ + boxBottom_) >> 1;
    const float a = float(degrees * kDegToRad);
    const float c = float(std::cos(double(a))), s = float(std::sin(double(a)));
    // dx * c and dx * s per column; dy * s and dy * c per row.
    const int32_t left = boxLeft_, top = boxTop_;
    const size_t nx = size_t(std::max(boxRight_ - boxLeft_ + 1, 0));
    const size_t ny = size_t(std::max(boxBottom_ - boxTop_ + 1, 0));
    std::vector<double> dxc(nx), dxs(nx), dys(ny), dyc(ny);
    for (size_t i = 0; i < nx; ++i) {
        const double dx = double(left + int32_t(i) - cx);
        dxc[i] = dx * c;
        dxs[i] = dx * s;
    }
    for (size_t i = 0; i < ny; ++i) {
        const double dy = double(top + int32_t(i) - cy);
        dys[i] = dy * s;
        dyc[i] = dy * c;
    }
    return deformMap(cleanBack, [&](int32_t x, int32_t y, int32_t& sx, int32_t& sy) {
        const size_t i = size_t(x - left), j = size_t(y - top);
        sx = roundEven(dxc[i] - dys[j] + cx);
        sy = roundEven(dxs[i] + dyc[j] + cy);
    });
}

Bits cBitFilter::FOLD(int32_t horizontal, int32_t vertical, bool cleanBack) {
    RegionBounds(0);
    const int32_t cx = (boxLeft_ + boxRight_) >> 1, cy = (boxTop_ + boxBottom_) >> 1;
    // The scale of x varies along y and the scale of y along x. An image of one row or
    // one column has no scale to vary (the division fails and is skipped): factor 1.
    const int32_t w1 = lastColumn_, h1 = lastRow_;
    const int32_t left = boxLeft_, top = boxTop_;
    std::vector<float> xScaleOfRow(size_t(std::max(boxBottom_ - boxTop_ + 1, 0)));
    std::vector<float> yScaleOfColumn(size_t(std::max(boxRight_ - boxLeft_ + 1, 0)));
    for (size_t j = 0; j < xScaleOfRow.size(); ++j) {
        const double dy = double(top + int32_t(j) - cy);
        xScaleOfRow[j] = h1 != 0 ? float(dy / 100 * vertical / h1 + 1) : 1.0f;
    }
    for (size_t i = 0; i < yScaleOfColumn.size(); ++i) {
        const double dx = double(left + int32_t(i) - cx);
        yScaleOfColumn[i] = w1 != 0 ? float(dx / 100 * horizontal / w1 + 1) : 1.0f;
    }
    return deformMap(cleanBack, [&](int32_t x, int32_t y, int32_t& sx, int32_t& sy) {
        const int32_t dx = x - cx, dy = y - cy;
        sx = roundEven(double(dx) * xScaleOfRow[size_t(y - top)] + cx);
        sy = roundEven(double(dy) * yScaleOfColumn[size_t(x - left)] + cy);
    });
}

Bits cBitFilter::TWIRL(int32_t level, int32_t offsetDegrees, bool cleanBack) {
    RegionBounds(0);
    const int32_t cx = (boxLeft_ + boxRight_) >> 1, cy = (boxTop_ + boxBottom_) >> 1;
    // Half of the box width, halved as an integer like the centre; a box one pixel wide
    // has no half and no twist.
    const int32_t half = (boxRight_ - boxLeft_ + 1) >> 1;
    const float k = half > 0 ? float(level / 10.0 / half) : 0.0f;
    const float o = float(offsetDegrees * kDegToRad);
    return deformMap(cleanBack, [&](int32_t x, int32_t y, int32_t& sx, int32_t& sy) {
        const int32_t dx = x - cx, dy = y - cy;
        const int32_t r = roundEven(std::sqrt(double(dx) * dx + double(dy) * dy));
        const float a = float(double(PolarAngle(dx, dy)) - double(r) * k);
        const double ao = double(a + o);
        sx = roundEven(r * std::cos(ao) + cx);
        sy = roundEven(r * std::sin(ao) + cy);
    });
}

Bits cBitFilter::BEND(int32_t radius, bool cleanBack) {
    RegionBounds(0);
    const int32_t cx = (boxLeft_ + boxRight_) >> 1, cy = (boxTop_ + boxBottom_) >> 1;
    const float k = float(radius / 100.0 + 2);
    const int32_t w1 = lastColumn_, h1 = lastRow_;
    // The angle runs across the width and the distance from the centre up the height:
    // the region is unrolled from polar to rectangular coordinates.
    return deformMap(cleanBack, [&](int32_t x, int32_t y, int32_t& sx, int32_t& sy) {
        const int32_t dx = x - cx, dy = y - cy;
        const float r = float(std::sqrt(double(dx) * dx + double(dy) * dy));
        const float rr = k * r;
        float t = -PolarAngle(dx, dy);
        if (dy >= 0 && dx <= 0) t += kTwoPi;
        sx = roundEven(double(w1) * t / 6.28318);
        sy = roundEven(double(h1) - rr);
    });
}

Bits cBitFilter::WAVES(int32_t frequency, int32_t amplitude, int32_t startDegree) {
    Bits out = buffer_;
    const int32_t h1 = lastRow_;
    // The source row of every image row, kept inside the image.
    std::vector<int32_t> rowOf(size_t(std::max(h1 + 1, 0)));
    for (int32_t y = 0; y <= h1; ++y) {
        const int32_t m = vbRound(
            y + amplitude * 0.25 * std::sin((startDegree + double(frequency) * y) * kDegToRad));
        rowOf[size_t(y)] = std::clamp(m, 0, h1);
    }
    RegionBounds(0);
    const Bits& src = buffer_;
    forEachSpan([&](int32_t y, int32_t x0, int32_t x1) {
        const int32_t sy = rowOf[size_t(y)];
        if (sy == y) return; // the copy already holds the row
        deform::copyColourRun(out.pixel(x0, y), src.pixel(x0, sy), x1 - x0);
    });
    finishProgress();
    return out;
}

Bits cBitFilter::TILE(int32_t factor) {
    Bits out = buffer_;
    RegionBounds(0);
    const int32_t w1 = lastColumn_, h1 = lastRow_;
    // A factor of 0, or one that leaves a tile no pixel wide or high, makes a division by
    // zero: the filter then changes nothing.
    const int32_t tw = factor != 0 ? vbRound(double(w1) / factor) : 0;
    const int32_t th = factor != 0 ? vbRound(double(h1) / factor) : 0;
    if (tw <= 0 || th <= 0) {
        finishProgress();
        return out;
    }
    const float fx = float(double(w1) / tw), fy = float(double(h1) / th);
    // Pixel (i, j) of the tile is the source (round(i * fx), round(j * fy)).
    std::vector<int32_t> srcX(static_cast<size_t>(tw)), srcY(static_cast<size_t>(th));
    for (int32_t i = 0; i < tw; ++i) srcX[size_t(i)] = roundEven(double(i) * fx);
    for (int32_t j = 0; j < th; ++j) srcY[size_t(j)] = roundEven(double(j) * fy);
    const int32_t left = boxLeft_, top = boxTop_;
    const Bits& src = buffer_;
    forEachSpan([&](int32_t y, int32_t x0, int32_t x1) {
        const int32_t sy = srcY[size_t((y - top) % th)];
        int32_t i = (x0 - left) % tw;
        uint8_t* d = out.pixel(x0, y);
        for (int32_t x = x0; x < x1; ++x, d += 4) {
            deform::copyColour(d, src.pixel(srcX[size_t(i)], sy));
            if (++i == tw) i = 0;
        }
    });
    finishProgress();
    return out;
}

// Inside the circle the source lies on the same ray from the centre, at the distance
// s(d) = d * (m + (R - m) * d / R) / R. So s(0) = 0 and s(R) = R (no seam at the rim),
// s(d) <= d, and the slope at the centre is m / R = (150 - magnify) / 150: magnify 0 is the
// identity, magnify 100 shows the centre three times larger.
Bits cBitFilter::LENS(float centreX, float centreY, float diameter, int32_t magnify) {
    Bits out = buffer_;
    RegionBounds(0);
    const int32_t w1 = lastColumn_, h1 = lastRow_;
    const int32_t px = vbRound(double(centreX) * w1), py = vbRound(double(centreY) * h1);
    const int32_t R = vbRound(double(diameter) * (w1 + 1 <= h1 + 1 ? h1 : w1));
    const double m = double(150 - magnify) * R / 150;
    const int64_t limit = int64_t(R) * R;
    const Bits& src = buffer_;
    if (R > 0) {
        const double invR = 1.0 / R, slope = (R - m) * invR;
        forEachSpan([&](int32_t y, int32_t x0, int32_t x1) {
            const int64_t dy = y - py;
            if (dy * dy >= limit) return;
            uint8_t* d = out.pixel(x0, y);
            for (int32_t x = x0; x < x1; ++x, d += 4) {
                const int64_t dx = x - px;
                const int64_t d2 = dx * dx + dy * dy;
                if (d2 >= limit) continue;
                const double dist = std::sqrt(double(d2));
                const double ratio = (m + slope * dist) * invR;
                const int32_t sx = roundEven(px + double(dx) * ratio);
                const int32_t sy = roundEven(py + double(dy) * ratio);
                deform::copyColour(d, src.pixel(sx, sy));
            }
        });
    }
    finishProgress();
    return out;
}

// The fisheye is the lens at the centre with magnify 60 and the circle inscribed in the
// image: its radius is half of the smaller side.
Bits cBitFilter::FISHEYE() {
    const int32_t w1 = lastColumn_, h1 = lastRow_;
    const int32_t larger = std::max(w1, h1), smaller = std::min(w1, h1);
    const float diameter = larger > 0 ? float(0.5 * smaller / larger) : 0.0f;
    return LENS(0.5f, 0.5f, diameter, 60);
}

} // namespace ostrivex
